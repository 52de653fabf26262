// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace links {

/// The hash under which the generator files a top-level domain and the program looks it up. `0x20` folds
/// ASCII letters; what else it folds together only costs the comparison that follows.
constexpr std::uint32_t labelHash(std::string_view label)
{
    std::uint32_t hash = 2166136261u;
    for (const char c : label)
        hash = (hash ^ (static_cast<unsigned char>(c) | 0x20u)) * 16777619u;
    return hash ^ (hash >> 15);
}

/// Where a label with this hash stands in a table of `size` slots (a power of two), given its bucket's seed.
constexpr std::uint32_t labelSlot(std::uint32_t hash, std::uint32_t seed, std::uint32_t size)
{
    const std::uint32_t mixed = (hash ^ (seed * 0x9E3779B9u)) * 0x85EBCA6Bu;
    return (mixed >> 12) & (size - 1);
}

} // namespace links

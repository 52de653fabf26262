// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string_view>
#include <type_traits>

namespace links {

/// The first bytes of a text, at most eight, as a number: short words are compared all at once.
constexpr std::uint64_t packedBytes(std::string_view text)
{
    if (std::is_constant_evaluated() || std::endian::native != std::endian::little) {
        std::uint64_t packed = 0;
        for (std::size_t i = 0; i < text.size() && i < 8; ++i)
            packed |= std::uint64_t(static_cast<unsigned char>(text[i])) << 8 * i;
        return packed;
    }
    // Two loads that overlap take any length between two powers of two.
    const auto load = [text = text.substr(0, 8)]<typename Part>(Part) {
        Part first, last;
        std::memcpy(&first, text.data(), sizeof(Part));
        std::memcpy(&last, text.data() + text.size() - sizeof(Part), sizeof(Part));
        return first | std::uint64_t(last) << 8 * (text.size() - sizeof(Part));
    };
    return text.size() >= 4 ? load(std::uint32_t())
        : text.size() >= 2  ? load(std::uint16_t())
        : text.empty()      ? 0
                            : static_cast<unsigned char>(text[0]);
}

/// The bit that makes letters lower-case and makes none of other bytes, as often as there are bytes.
constexpr std::uint64_t letterBits(std::size_t bytes)
{
    return bytes == 0 ? 0 : 0x2020202020202020 >> 8 * (8 - std::min<std::size_t>(bytes, 8));
}

/// A word of at most eight bytes in lower case, to compare with packed words; 0 for longer ones.
inline std::uint64_t foldedBytes(std::string_view word)
{
    return word.size() > 8 ? 0 : packedBytes(word) | letterBits(word.size());
}

/// A word of at most 16 lower-case letters, to compare texts with in either case.
class FoldedWord
{
public:
    consteval FoldedWord(const char *word)
        : m_begin(packedBytes(word))
        , m_rest(packedBytes(std::string_view(word).size() > 8 ? word + 8 : ""))
    {
    }
    explicit FoldedWord(std::string_view text)
        : m_begin(text.size() > 16 ? 0 : foldedBytes(text.substr(0, 8)))
        , m_rest(text.size() > 8 ? foldedBytes(text.substr(8)) : 0)
    {
    }
    bool operator==(const FoldedWord &) const = default;

private:
    std::uint64_t m_begin, m_rest;
};

/// Whether the text is one of the words, in either case.
inline bool isAnyOf(std::string_view text, std::initializer_list<FoldedWord> words)
{
    const FoldedWord folded(text);
    bool found = false;
    for (const FoldedWord &word : words)
        found |= word == folded;
    return found;
}

/// Schemes whose host has to be one: web and file servers.
bool hasHostRules(std::string_view scheme);

/// Schemes that are never links.
bool isForbidden(std::string_view scheme);

/// Whether `scheme` goes without slashes and `rest`, what follows its ":", begins as it has to.
bool isShortScheme(std::string_view scheme, std::string_view rest);

/// Top-level domains that are better known as file endings or as words of programs.
bool isCodeWord(std::string_view label);

} // namespace links

// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace links {

/// The first byte in [at, end) that is not plainly part of a path (CheckByte); `end` when all are.
std::size_t findCheckByte(std::string_view text, std::size_t at, std::size_t end);

/// The end of a web address whose host begins at `at`, when nothing about it needs a closer look: a host of
/// letters, digits, dots and hyphens, no port, a path without brackets, quotes and characters past ASCII, a
/// blank, quote or angle bracket after it and nothing to trim. `at` for all others. Most addresses are of
/// this kind.
std::size_t plainWebAddressEnd(std::string_view text, std::size_t at);

} // namespace links

// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace links {

inline constexpr std::size_t longestHost = 253; // bytes

/// A run of bytes that may be a host name: labels joined by single dots, hyphens and dots at its end left
/// out.
struct HostName
{
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t lastLabel = 0; ///< offset of the label after the last dot; `begin` when there is no dot
    std::size_t secondLastLabel = 0; ///< offset of the label before it; `begin` when there is none
    bool valid = false; ///< not empty, not too long, no label begins or ends with a hyphen

    bool hasDot() const { return lastLabel != begin; }
};

/// The host name that begins at `begin`. `runEnd` gets where it ends before anything is left out.
HostName readHostName(std::string_view text, std::size_t begin, std::size_t *runEnd);

/// Where the run around the dot at `dot` begins: not before `floor`, and no further back than a host is long.
std::size_t hostRunBegin(std::string_view text, std::size_t floor, std::size_t dot);

/// Moves `begin` over CJK characters and symbols that are glued to the Latin word after them.
std::size_t skipGluedPrefix(std::string_view text, std::size_t begin, std::size_t end);

/// "192.0.2.1": four numbers up to 255 without leading zeros.
bool isIpv4Address(std::string_view host);

/// The end of a bracketed IPv6 address whose "[" is at `at`; `at` when it is none.
std::size_t ipLiteralEnd(std::string_view text, std::size_t at);

struct Port
{
    std::size_t end; ///< where it begins when there is none
    int number = -1; ///< -1 for none, 65536 for all that are too large
};

/// The port whose ":" is at `at`, unless letters follow its digits.
Port readPort(std::string_view text, std::size_t at);

} // namespace links

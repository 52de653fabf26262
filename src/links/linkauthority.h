// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace links {

/// Whether "://" stands at `at`.
inline bool isSchemeEnd(std::string_view text, std::size_t at)
{
    return text.size() - at > 2 && text[at] == ':' && text[at + 1] == '/' && text[at + 2] == '/';
}

/// The end of the [user[:password]@]host[:port] at `at`, as web addresses have it; `at` when it is none.
std::size_t webAuthorityEnd(std::string_view text, std::size_t at);

} // namespace links

// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <string_view>

namespace links {

/// Whether the text is one of the words, which are lower-case; ASCII letters count in either case.
bool isAnyOf(std::string_view text, std::initializer_list<std::string_view> words);

/// Schemes whose host has to be one: web and file servers.
bool hasHostRules(std::string_view scheme);

/// Schemes that are never links.
bool isForbidden(std::string_view scheme);

/// Whether `scheme` goes without slashes and `rest`, what follows its ":", begins as it has to.
bool isShortScheme(std::string_view scheme, std::string_view rest);

/// Top-level domains that are better known as file endings or as words of programs.
bool isCodeWord(std::string_view label);

} // namespace links

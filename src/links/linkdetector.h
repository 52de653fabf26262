// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace links {

/// What the address lacks as it stands in the text.
enum class LinkForm : std::uint8_t {
    Complete,
    Host, ///< "www.example.org": "http://"
    NetworkPath, ///< "//example.org/x.js" in quotes: "http:"
    Mail, ///< "me@example.org": "mailto:"
};

/// One address found in a text, as a place in it.
struct Link
{
    std::size_t begin; ///< offset of its first byte
    std::uint32_t length; ///< in bytes
    LinkForm form;

    bool operator==(const Link &) const = default;
};

/// Every link of a text, in order, none overlapping another. One pass, linear in the text's length whatever
/// it holds. Bytes that are no UTF-8 end an address and do no other harm. docs/LINKS.md has the rules.
std::vector<Link> findLinks(std::string_view utf8);

/// The link as an absolute address: completed, and percent-encoded wherever RFC 3986 allows no such
/// character.
std::string absoluteAddress(std::string_view utf8, const Link &link);

/// The host of an absolute address as written there, without user and port; empty when it has none.
std::string_view addressHost(std::string_view address);

} // namespace links

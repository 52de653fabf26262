// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace links {

/// Where an address ends whose path, query or free part begins at `from`: before the first character that no
/// address holds, less the punctuation at its end. `before` is the character in front of the whole address
/// ('\0' for none): what opens there, a quote, a bar or a mark of emphasis, closes the address too.
std::size_t tailEnd(std::string_view text, std::size_t from, char before);

} // namespace links

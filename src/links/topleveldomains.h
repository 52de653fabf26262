// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace links {

/// Whether a host may end in this label: "com", "рф", "xn--p1ai". ASCII letters count in either case.
bool isTopLevelDomain(std::string_view label);

} // namespace links

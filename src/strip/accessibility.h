// SPDX-License-Identifier: MIT
#pragma once

namespace strip {

/// Tells screen readers what the toolkit does not know of our views: that the strip and its popovers are
/// windows, and that a row of links can be pressed. To be called before the views are made.
void installAccessibility();

} // namespace strip

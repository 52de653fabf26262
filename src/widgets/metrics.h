// SPDX-License-Identifier: MIT
#pragma once

/// Measures that the toolkit's styles leave open, in points; one point is one logical pixel.
namespace widgets {

inline constexpr int defaultPadding = 16;
inline constexpr int stackSpacing = 8;
inline constexpr int rowInset = 5; // of what a row shows, within its ring of focus; reaches into the padding
inline constexpr int bodyFontSize = 13; // pixels, as all font sizes here
inline constexpr int captionFontSize = 10;

} // namespace widgets

// SPDX-License-Identifier: MIT
#pragma once

/// Measures of the settings window, in points.
namespace settings {

inline constexpr int windowWidth = 512;
inline constexpr int windowHeight = 400;
inline constexpr int symbolSize = 16;
inline constexpr int sectionSpacing = 20;
inline constexpr int tileRowSpacing = 16;
inline constexpr int appIconSize = 64;
inline constexpr int tileIconSize = 32;
inline constexpr int widestPicker = 480;
inline constexpr int nameFontSize = 24; // pixels
inline constexpr int maxNameLength = 32; // user-perceived characters

} // namespace settings

// SPDX-License-Identifier: MIT
#pragma once

/// Measures of the strip, in points.
namespace strip {

inline constexpr int tileSize = 44; // both ways; also the strip's measure across
inline constexpr int capLength = 14; // along the strip
inline constexpr int idealLength =
    1024; // of the window; the part without elements is neither drawn nor clickable

/// No further tile is shown; twenty can be added, but a file may hold any number.
inline constexpr int mostTileViews = 1000;

} // namespace strip

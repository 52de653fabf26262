// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace themes {

constexpr int maxImageSide = 2048; ///< of a picture that is drawn or read, in pixels each way
constexpr int maxDensity = 4; ///< pixels a point

/// Pictures are made for whole densities, so that their edges fall on pixels: the density that serves a
/// device of the given scale, 1 to `maxDensity`. At scales between, painting draws the denser picture
/// smaller.
int densityFor(qreal scale);

/// The scale of the sharpest screen; 1 without a graphical application.
qreal screenScale();

/// An SVG drawing at `density` pixels a point, premultiplied and with that device pixel ratio. `points` is
/// the size to draw it at, by default its own. Null when it is no drawing or would exceed `maxImageSide` at
/// any density.
QImage svgImage(const QByteArray &svg, int density, QSize points = {});

} // namespace themes

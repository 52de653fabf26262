// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace themes {

/// Pictures are made for whole densities (pixels a point), so that their edges fall on pixels: the density
/// that serves a device of the given scale, 1 to 4. At scales between, painting draws the denser picture
/// smaller.
int densityFor(qreal scale);

/// The scale of the sharpest screen; 1 without a graphical application.
qreal screenScale();

/// An SVG drawing at `density` pixels a point, premultiplied and with that device pixel ratio. `points` is
/// the size to draw it at, by default its own. Null when it is no drawing or would be wider or higher than
/// `maxImageSide`.
QImage svgImage(const QByteArray &svg, int density, QSize points = {});

/// The largest picture that is drawn or read, in pixels each way.
constexpr int maxImageSide = 2048;

} // namespace themes

// SPDX-License-Identifier: MIT
#include "themes/svgimage.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImageReader>

#include <algorithm>
#include <cmath>

namespace themes {

int densityFor(qreal scale)
{
    return std::clamp(int(std::ceil(scale - 0.01)), 1, maxDensity);
}

qreal screenScale()
{
    const auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    return application ? application->devicePixelRatio() : 1.0;
}

QImage svgImage(const QByteArray &svg, int density, QSize points)
{
    QBuffer buffer;
    buffer.setData(svg);
    buffer.open(QIODevice::ReadOnly);
    // Through the image plugin rather than the SVG library: linking that would cost every start.
    QImageReader reader(&buffer, QByteArrayLiteral("svg"));
    reader.setAutoDetectImageFormat(false);
    if (points.isEmpty())
        points = reader.size();
    constexpr int maxSide = maxImageSide / maxDensity;
    if (points.isEmpty() || points.width() > maxSide || points.height() > maxSide)
        return QImage();
    reader.setScaledSize(points * density);
    QImage image = reader.read();
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(density);
    return image;
}

} // namespace themes

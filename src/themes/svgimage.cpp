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
    return std::clamp(int(std::ceil(scale - 0.01)), 1, 4);
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
    const QSize pixels = points * density;
    if (points.isEmpty() || points.width() > maxImageSide || pixels.width() > maxImageSide
        || points.height() > maxImageSide || pixels.height() > maxImageSide)
        return QImage();
    reader.setScaledSize(pixels);
    QImage image = reader.read();
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(density);
    return image;
}

} // namespace themes

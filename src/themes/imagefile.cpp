// SPDX-License-Identifier: MIT
#include "themes/imagefile.h"

#include "platform/files.h"
#include "themes/imagecache.h"
#include "themes/imagedecoder.h"

namespace themes {

namespace {

/// Halved once, here, rather than by the painter at every redraw.
QImage reducedTo(int density, const QImage &image)
{
    if (density > 1 || image.devicePixelRatio() != 2 || image.width() % 2 || image.height() % 2)
        return image;
    QImage half = image.scaled(image.size() / 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    half.setDevicePixelRatio(1);
    return half;
}

} // namespace

QImage imageFromFile(const QString &path, qreal scale)
{
    constexpr qint64 maxSize = 20 << 20; // a picture of the largest size without compression, and some
    const auto stamp = platform::FileStamp::ofFile(path);
    if (!stamp || stamp->size > maxSize)
        return QImage();
    const int density = densityFor(scale);
    return cachedImage(path, *stamp, density, [&path, density] {
        const auto bytes = platform::readWholeFile(path, nullptr, maxSize);
        return bytes ? reducedTo(density, decodeImage(*bytes, density)) : QImage();
    });
}

} // namespace themes

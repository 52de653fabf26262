// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSet>

/// Every colour of a picture in Format_ARGB32_Premultiplied.
inline QSet<QRgb> coloursOf(const QImage &image)
{
    const auto *pixels = reinterpret_cast<const QRgb *>(image.constBits());
    return {pixels, pixels + image.width() * image.height()};
}

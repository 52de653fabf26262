// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>

namespace themes {

/// The picture in the bytes of a file, told by the bytes themselves: PNG, TIFF, JPEG, WebP, BMP, GIF (the
/// first frame), or SVG, which is drawn at `density`. Premultiplied; device pixel ratio 2 when the file says
/// 144 dots per inch, else 1. Null for anything else, for damaged bytes and for more than `maxImageSide`
/// pixels each way, which the header tells before anything is decoded.
QImage decodeImage(const QByteArray &bytes, int density);

} // namespace themes

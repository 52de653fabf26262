// SPDX-License-Identifier: MIT
#pragma once

#include "themes/svgimage.h"

namespace themes {

/// The picture in a file, whatever its name says: PNG, TIFF, JPEG, WebP, BMP, GIF (the first frame) or SVG.
/// One pixel is one point, unless the file says 144 dots per inch: then it is drawn at half its size.
/// Premultiplied. Null, at once and silently, for everything else that may stand at the path: nothing, a
/// folder, a pipe, a device, a file that is damaged, not to be read, or larger than any picture of a theme.
///
/// Pictures are kept while room lasts. Each call asks the file system once whether the file is still the same
/// one.
QImage imageFromFile(const QString &path, qreal scale = screenScale());

} // namespace themes

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/fileidentity.h"

#include <QImage>

#include <functional>

namespace themes {

/// What `make` gives, made anew only when it is not kept from before for the same key, density and state of
/// the file it comes from. A null picture is kept too, so that a damaged file is read once and not at every
/// redraw. Pictures are kept while room lasts, the longest unused going first.
QImage cachedImage(const QString &key, const platform::FileStamp &stamp, int density,
                   const std::function<QImage()> &make);

/// Saves the pictures in use for the next start, when any was made since the last time: to be called when
/// nothing else is to do. What is saved is only a shortcut; failing to write it changes nothing.
void saveImageCache();

/// Forgets everything kept, as a fresh start would. For tests and measurements.
void clearImageCache();

} // namespace themes

// SPDX-License-Identifier: MIT
#pragma once

#include "themes/svgimage.h"

#include <QStringList>

namespace themes {

/// The elements that every theme draws, in the order in which they are installed.
const QStringList &chromeElementNames();

/// The icons of a built-in theme in the order in which they are installed; for any other name the three that
/// every theme has.
QStringList builtInIconNames(const QString &theme);

/// The names of all built-in pictures but the symbols: "<theme>-<element>", "<theme>-<icon>",
/// "<icon>-preview" of each application icon, "calendar-1" to "calendar-31" and "harrowline".
QStringList builtInImageNames();

/// The built-in picture of that name, drawn at the density of `scale`; null when there is none. Kept while
/// room lasts, so that a redraw can ask again.
QImage builtInImage(const QString &name, qreal scale = screenScale());

/// As `builtInImage`, but drawn anew and not kept.
QImage drawBuiltInImage(const QString &name, int density);

} // namespace themes

// SPDX-License-Identifier: MIT
#pragma once

#include "themes/svgimage.h"

#include <QColor>
#include <QStringList>

namespace themes {

/// The names of the drawn symbols.
const QStringList &symbolNames();

/// The symbol of that name as a square of `pointSize` points, all in the tint; an empty square for a name
/// that is none, so that a row keeps its place. Never null.
QImage symbolImage(const QString &name, const QColor &tint, int pointSize, qreal scale = screenScale());

} // namespace themes

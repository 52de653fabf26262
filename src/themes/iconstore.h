// SPDX-License-Identifier: MIT
#pragma once

#include "themes/svgimage.h"

#include <QStringList>

class Config;

namespace themes {

/// The names of the icons that the current theme offers, in the folder's order. A folder that cannot be
/// listed is reported, and offers none.
QStringList currentThemeIconNames(const Config &config);

/// The picture of a tile's icon in the current theme; the question-mark symbol when its file is missing or
/// cannot be read. "default" stands among the theme's elements. Never null.
QImage iconImage(const Config &config, const QString &name, qreal scale = screenScale());

/// Makes the chosen application icon that of all windows. An unknown one is reported and changes nothing.
void applyAppIcon(const Config &config);

} // namespace themes

// SPDX-License-Identifier: MIT
#pragma once

#include "themes/svgimage.h"

#include <QString>

class Config;

namespace themes {

/// Where the files of a theme lie: "Themes" / theme / subfolder in the application folder. Nothing is tested.
QString themeSubfolderURL(const Config &config, const QString &theme, const QString &subfolder);
QString chromeFolderURL(const Config &config, const QString &theme);
QString iconsFolderURL(const Config &config, const QString &theme);

/// Writes the built-in themes that the settings list, unless a Themes folder stands already: what the user
/// made of it is never touched again. Failures are reported.
void installBuiltInThemes(const Config &config);

/// The picture in a file of one of the current theme's two folders; null without one.
enum class ThemeFolder { Elements, Icons };
QImage themeFile(const Config &config, ThemeFolder folder, const QString &fileName, qreal scale);

/// While it lives, `themeFile` looks at no file twice: for a redraw, which asks for some of them once a tile.
class OneLook
{
public:
    OneLook();
    ~OneLook();
    Q_DISABLE_COPY_MOVE(OneLook)
};

/// The file of that name among the current theme's elements; without one that can be read, the built-in
/// picture. Never null. The size in points is the picture's `deviceIndependentSize`.
QImage themedImage(const Config &config, const QString &assetName, const QString &fileName,
                   qreal scale = screenScale());
/// The same with a symbol in its place.
QImage themedSymbolImage(const Config &config, const QString &symbolName, const QString &fileName,
                         qreal scale = screenScale());

QImage tabLeadingImage(const Config &config, qreal scale = screenScale());
QImage tabTrailingImage(const Config &config, qreal scale = screenScale());
QImage tileImage(const Config &config, qreal scale = screenScale());
QImage tabLeadingVerticalImage(const Config &config, qreal scale = screenScale());
QImage tabTrailingVerticalImage(const Config &config, qreal scale = screenScale());
QImage tileVerticalImage(const Config &config, qreal scale = screenScale());
QImage closeImage(const Config &config, qreal scale = screenScale());
QImage minimizeImage(const Config &config, qreal scale = screenScale());
QImage calendarImage(const Config &config, qreal scale = screenScale());
QImage homeImage(const Config &config, qreal scale = screenScale());

/// The symbol that stands for a missing picture on a tile, dark or light as the current theme's tile asks
/// for.
QImage fallbackSymbol(const Config &config, const QString &symbolName, qreal scale = screenScale());

} // namespace themes

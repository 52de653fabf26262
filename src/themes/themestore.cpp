// SPDX-License-Identifier: MIT
#include "themes/themestore.h"

#include "model/config.h"
#include "platform/files.h"
#include "platform/localized.h"
#include "platform/report.h"
#include "themes/imagecatalog.h"
#include "themes/imagefile.h"
#include "themes/symbolimage.h"

#include <QBuffer>
#include <QHash>
#include <QImageWriter>

#include <optional>

namespace themes {

namespace {

using platform::localizedFileName;

QString themesFolder(const Config &config)
{
    return config.documentDirectory() + QStringLiteral("/pondWicket ƒ/") + localizedFileName("Themes");
}

bool makeFolder(const QString &path)
{
    platform::Error error;
    if (platform::makeFolder(path, &error))
        return true;
    platform::report(error.description());
    return false;
}

/// The picture as TIFF data at double density; empty when there is no such picture or it cannot be written
/// so.
QByteArray tiffOf(const QString &assetName)
{
    constexpr int density = 2;
    constexpr int dotsPerMeter = 5669; // 144 per inch
    QImage image = drawBuiltInImage(assetName, density);
    if (image.isNull())
        return QByteArray();
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, QByteArrayLiteral("tiff"));
    writer.setCompression(1); // LZW
    return writer.write(image) ? bytes : QByteArray();
}

/// Writes the named pictures of a theme into a folder that must not stand there yet. False when one of them
/// does not exist, which ends the whole installation.
bool installPictures(const QString &folder, const QString &theme, const QStringList &names)
{
    if (platform::itemExists(folder) || !makeFolder(folder))
        return true;
    for (const QString &name : names) {
        const QByteArray bytes = tiffOf(theme + QLatin1Char('-') + name);
        if (bytes.isEmpty()) {
            platform::report(QStringLiteral("Image not found."));
            return false;
        }
        platform::Error error;
        if (!platform::writeInPlace(folder + QLatin1Char('/') + name + QStringLiteral(".png"), bytes, &error))
            platform::report(error.description());
    }
    return true;
}

/// What the present redraw has looked at.
struct Look
{
    qreal scale = screenScale();
    struct
    {
        QString path;
        QHash<QString, QImage> files;
    } folders[2];
};
std::optional<Look> look;

QString folderPath(const Config &config, ThemeFolder folder)
{
    return folder == ThemeFolder::Icons ? iconsFolderURL(config, config.currentTheme())
                                        : chromeFolderURL(config, config.currentTheme());
}

} // namespace

QString themeSubfolderURL(const Config &config, const QString &theme, const QString &subfolder)
{
    return themesFolder(config) + QLatin1Char('/') + theme + QLatin1Char('/') + subfolder;
}

QString chromeFolderURL(const Config &config, const QString &theme)
{
    return themeSubfolderURL(config, theme, localizedFileName("Chrome"));
}

QString iconsFolderURL(const Config &config, const QString &theme)
{
    return themeSubfolderURL(config, theme, localizedFileName("Icons"));
}

QImage themeFile(const Config &config, ThemeFolder folder, const QString &fileName, qreal scale)
{
    if (!look || scale != look->scale)
        return imageFromFile(folderPath(config, folder) + u'/' + fileName, scale);
    auto &[path, files] = look->folders[int(folder)];
    if (const auto seen = files.constFind(fileName); seen != files.constEnd())
        return *seen;
    if (path.isEmpty())
        path = folderPath(config, folder) + u'/';
    return *files.insert(fileName, imageFromFile(path + fileName, scale));
}

OneLook::OneLook()
{
    look.emplace();
}

OneLook::~OneLook()
{
    look.reset();
}

void installBuiltInThemes(const Config &config)
{
    const QString root = themesFolder(config);
    if (platform::itemExists(root) || !makeFolder(root))
        return;
    for (const QString &theme : config.availableThemes()) {
        const QString folder = root + QLatin1Char('/') + theme;
        if (platform::itemExists(folder) || !makeFolder(folder))
            continue;
        if (!installPictures(chromeFolderURL(config, theme), theme, chromeElementNames())
            || !installPictures(iconsFolderURL(config, theme), theme, builtInIconNames(theme)))
            return;
    }
}

QImage themedImage(const Config &config, const QString &assetName, const QString &fileName, qreal scale)
{
    const QImage image = themeFile(config, ThemeFolder::Elements, fileName, scale);
    return image.isNull() ? builtInImage(assetName, scale) : image;
}

QImage fallbackSymbol(const Config &config, const QString &symbolName, qreal scale)
{
    constexpr int points = 24;
    const QImage tile = config.isVertical() ? tileVerticalImage(config, scale) : tileImage(config, scale);
    const bool isDark = tile.pixelColor(tile.rect().center()).lightness() < 128;
    return symbolImage(symbolName, isDark ? QColor(0xe6, 0xe6, 0xe6) : QColor(0x33, 0x33, 0x33), points,
                       scale);
}

QImage themedSymbolImage(const Config &config, const QString &symbolName, const QString &fileName,
                         qreal scale)
{
    const QImage image = themeFile(config, ThemeFolder::Elements, fileName, scale);
    return image.isNull() ? fallbackSymbol(config, symbolName, scale) : image;
}

namespace {

/// The element of the current theme's folder, else that of the theme 2024.
QImage elementImage(const Config &config, const QString &element, qreal scale)
{
    return themedImage(config, QStringLiteral("2024-") + element, element + QStringLiteral(".png"), scale);
}

} // namespace

QImage tabLeadingImage(const Config &config, qreal scale)
{
    return elementImage(config, QStringLiteral("tab-leading"), scale);
}

QImage tabTrailingImage(const Config &config, qreal scale)
{
    return elementImage(config, QStringLiteral("tab-trailing"), scale);
}

QImage tileImage(const Config &config, qreal scale)
{
    return elementImage(config, QStringLiteral("tile"), scale);
}

QImage tabLeadingVerticalImage(const Config &config, qreal scale)
{
    return elementImage(config, QStringLiteral("tab-leading-vertical"), scale);
}

QImage tabTrailingVerticalImage(const Config &config, qreal scale)
{
    return elementImage(config, QStringLiteral("tab-trailing-vertical"), scale);
}

QImage tileVerticalImage(const Config &config, qreal scale)
{
    return elementImage(config, QStringLiteral("tile-vertical"), scale);
}

QImage closeImage(const Config &config, qreal scale)
{
    return elementImage(config, QStringLiteral("close"), scale);
}

QImage minimizeImage(const Config &config, qreal scale)
{
    return elementImage(config, QStringLiteral("minimize"), scale);
}

QImage calendarImage(const Config &config, qreal scale)
{
    return themedSymbolImage(config, QStringLiteral("calendar"), QStringLiteral("calendar.png"), scale);
}

QImage homeImage(const Config &config, qreal scale)
{
    return themedSymbolImage(config, QStringLiteral("switch.2"), QStringLiteral("home.png"), scale);
}

} // namespace themes

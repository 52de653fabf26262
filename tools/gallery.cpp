// SPDX-License-Identifier: MIT
// Draws the themes as the strip shows them, for looking at: gallery OUTPUT-FOLDER [THEME-FOLDER]
#include "model/config.h"
#include "platform/report.h"
#include "themes/iconstore.h"
#include "themes/imagecatalog.h"
#include "themes/imagefile.h"
#include "themes/palette.h"
#include "themes/symbolimage.h"
#include "themes/themestore.h"

#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QTemporaryDir>

#include <algorithm>
#include <functional>

using namespace themes;

namespace {

constexpr int tileSize = 44; // points, as all lengths here
constexpr int capLength = 14;
constexpr int margin = 20;
const QColor lightDesktop(0xe9, 0xec, 0xf1);
const QColor darkDesktop(0x1f, 0x23, 0x29);

QImage canvas(QSize points, qreal scale, const QColor &background)
{
    QImage image(points * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(background);
    return image;
}

/// Draws the picture at its own size in the middle of the frame, on whole pixels, cut off at the frame.
void drawCentred(QPainter &painter, const QRect &frame, const QImage &image)
{
    const qreal scale = painter.device()->devicePixelRatioF();
    const QSizeF size = image.deviceIndependentSize();
    const QPointF corner = QRectF(frame).center() - QPointF(size.width(), size.height()) / 2;
    painter.save();
    painter.setClipRect(frame);
    painter.drawImage((corner * scale).toPoint() / scale, image);
    painter.restore();
}

/// The elements of a strip from its first corner on: caps, the home tile with and without the calendar, and
/// tiles.
void drawStrip(QPainter &painter, QPoint corner, const Config &config, const QStringList &icons, qreal scale)
{
    const bool vertical = config.isVertical();
    const auto next = [&corner, vertical](int length) {
        const QRect frame(corner, vertical ? QSize(tileSize, length) : QSize(length, tileSize));
        corner += vertical ? QPoint(0, length) : QPoint(length, 0);
        return frame;
    };
    const auto tile = [&](const QImage &content) {
        const QRect frame = next(tileSize);
        drawCentred(painter, frame, vertical ? tileVerticalImage(config, scale) : tileImage(config, scale));
        drawCentred(painter, frame, content);
        return frame;
    };
    QRect cap = next(capLength);
    drawCentred(painter, cap,
                vertical ? tabLeadingVerticalImage(config, scale) : tabLeadingImage(config, scale));
    drawCentred(painter, cap, closeImage(config, scale));
    tile(homeImage(config, scale));
    drawCentred(painter, tile(calendarImage(config, scale)),
                builtInImage(QStringLiteral("calendar-%1").arg(vertical ? 8 : 24), scale));
    for (const QString &icon : icons)
        tile(iconImage(config, icon, scale));
    cap = next(capLength);
    drawCentred(painter, cap,
                vertical ? tabTrailingVerticalImage(config, scale) : tabTrailingImage(config, scale));
    drawCentred(painter, cap, minimizeImage(config, scale));
}

/// All of a theme on one desktop: a vertical strip, and beside it horizontal ones with all its icons.
QImage desktop(Config &config, qreal scale, const QColor &background)
{
    constexpr int tilesPerStrip = 10;
    QStringList icons = currentThemeIconNames(config);
    std::sort(icons.begin(), icons.end());
    icons.prepend(QStringLiteral("default"));
    const int rows = int(icons.size() + tilesPerStrip - 1) / tilesPerStrip;
    const int stripLength = (tilesPerStrip + 2) * tileSize + 2 * capLength;
    constexpr int verticalTiles = 3;
    const int height =
        qMax((verticalTiles + 2) * tileSize + 2 * capLength, rows * (tileSize + margin) - margin);
    QImage image = canvas(QSize(3 * margin + tileSize + stripLength, 2 * margin + height), scale, background);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    config.setDirection(QStringLiteral("ttb"));
    drawStrip(painter, QPoint(margin, margin), config, icons.mid(0, verticalTiles), scale);
    config.setDirection(QStringLiteral("ltr"));
    for (int row = 0; row < rows; ++row) {
        drawStrip(painter, QPoint(2 * margin + tileSize, margin + row * (tileSize + margin)), config,
                  icons.mid(row * tilesPerStrip, tilesPerStrip), scale);
    }
    return image;
}

/// The pictures in one row or column, every pixel as it is.
QImage joined(Qt::Orientation direction, const QList<QImage> &images)
{
    const auto after = [direction](QSize size) {
        return direction == Qt::Horizontal ? QPoint(size.width(), 0) : QPoint(0, size.height());
    };
    QRect frame;
    QPoint corner;
    for (const QImage &image : images) {
        frame |= QRect(corner, image.size());
        corner += after(image.size());
    }
    QImage all(frame.size(), QImage::Format_RGB32);
    QPainter painter(&all);
    corner = QPoint();
    for (QImage image : images) {
        image.setDevicePixelRatio(1);
        painter.drawImage(corner, image);
        corner += after(image.size());
    }
    return all;
}

QImage onBothDesktops(const std::function<QImage(qreal, const QColor &)> &draw)
{
    return joined(Qt::Vertical,
                  {joined(Qt::Horizontal, {draw(1, lightDesktop), draw(1, darkDesktop)}),
                   draw(2, lightDesktop), draw(2, darkDesktop)});
}

/// Every symbol in every colour and at two sizes, the days on the glyphs of all themes, the application
/// icons.
QImage sundries(qreal scale, const QColor &background)
{
    constexpr int cell = 36;
    QImage image = canvas(QSize(2 * margin + 21 * cell, 2 * margin + 12 * cell), scale, background);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const auto draw = [&painter](int column, int row, const QImage &picture) {
        drawCentred(painter, QRect(margin + column * cell, margin + row * cell, cell, cell), picture);
    };
    int column = 0;
    for (const QString &name : symbolNames()) {
        int row = 0;
        for (const QStringView word : {u"green", u"yellow", u"orange", u"red", u"violet", u"blue"}) {
            draw(column, row, symbolImage(name, paletteColor(word), row % 2 ? 16 : 13, scale));
            ++row;
        }
        draw(column, row, symbolImage(name, background.lightness() < 128 ? Qt::white : Qt::black, 24, scale));
        ++column;
    }
    const QStringList builtInThemes = SettingsData().availableThemes;
    for (int day = 1; day <= 31; ++day) {
        const QString &theme = builtInThemes.at(day % builtInThemes.size());
        for (const QString &name :
             {theme + QStringLiteral("-calendar"), QStringLiteral("calendar-%1").arg(day)})
            draw((day - 1) % 16, 7 + (day - 1) / 16, builtInImage(name, scale));
    }
    int x = margin;
    for (const char *name : {"Default", "1979", "1988", "1995", "2000"}) {
        const QString preview = QString::fromLatin1(name) + QStringLiteral("-preview");
        drawCentred(painter, QRect(x, margin + 9 * cell, 2 * cell, 3 * cell), builtInImage(preview, scale));
        x += 2 * cell;
    }
    drawCentred(painter, QRect(x, margin + 9 * cell, 6 * cell, 3 * cell),
                builtInImage(QStringLiteral("harrowline"), scale));
    return image;
}

/// A strip of every theme, for the documents.
QImage overview(Config &config)
{
    constexpr int tiles = 8;
    constexpr int scale = 2;
    const QStringList &all = config.availableThemes();
    const QSize size((tiles + 2) * tileSize + 2 * capLength, int(all.size()) * (tileSize + margin) - margin);
    QImage image = canvas(size + QSize(2 * margin, 2 * margin), scale, lightDesktop);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QPoint corner(margin, margin);
    for (const QString &theme : all) {
        config.setCurrentTheme(theme);
        // From the whole list, since neighbours are often variants of one picture.
        QStringList icons;
        const QStringList names = builtInIconNames(theme);
        for (int i = 0; i < tiles; ++i)
            icons += i < names.size()
                ? names.at(i * qMax<qsizetype>(names.size() - 1, tiles - 1) / (tiles - 1))
                : QStringLiteral("default");
        drawStrip(painter, corner, config, icons, scale);
        corner += QPoint(0, tileSize + margin);
    }
    return image;
}

/// Tells whoever makes a theme which of its files the strip uses, and at what size.
void describe(const Config &config)
{
    const auto line = [](const QString &folder, const QString &name, const QString &without) {
        const QImage image = imageFromFile(folder + QLatin1Char('/') + name + QStringLiteral(".png"), 2);
        const QSizeF size = image.deviceIndependentSize();
        const bool isCap = name.startsWith(QLatin1String("tab-"));
        const QSizeF place = isCap && name.endsWith(QLatin1String("-vertical")) ? QSizeF(tileSize, capLength)
            : isCap || name == QLatin1String("close") || name == QLatin1String("minimize")
            ? QSizeF(capLength, tileSize)
            : QSizeF(tileSize, tileSize);
        if (image.isNull())
            return platform::report(QStringLiteral("%1: no picture; %2 shows").arg(name, without));
        const bool fits = size.width() <= place.width() && size.height() <= place.height();
        platform::report(QStringLiteral("%1: %2 x %3 points%4")
                             .arg(name)
                             .arg(size.width())
                             .arg(size.height())
                             .arg(fits ? QString() : QStringLiteral(", more than its place shows")));
    };
    const QString theme = config.currentTheme();
    const QString builtIn = QStringLiteral("the built-in one");
    const QString questionMark = QStringLiteral("the question mark");
    for (const QString &name : chromeElementNames())
        line(chromeFolderURL(config, theme), name, name == QLatin1String("default") ? questionMark : builtIn);
    for (const QString &name : currentThemeIconNames(config))
        line(iconsFolderURL(config, theme), name, questionMark);
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen"); // nothing is shown
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    const bool forOneTheme = arguments.size() == 3;
    const QFileInfo folder(QDir::cleanPath(arguments.value(2)));
    if (arguments.size() < 2 || arguments.size() > 3 || (forOneTheme && !folder.isDir())) {
        platform::report(QStringLiteral("gallery OUTPUT-FOLDER [THEME-FOLDER]"));
        return 2;
    }
    const QDir output(arguments.at(1));
    QTemporaryDir documents;
    Config config(documents.path(), documents.path());
    if (forOneTheme) {
        const QString place = QFileInfo(chromeFolderURL(config, folder.fileName())).path();
        QDir().mkpath(QFileInfo(place).path());
        QFile::link(folder.canonicalFilePath(), place);
        config.setAvailableThemes({folder.fileName()});
        config.setCurrentTheme(folder.fileName());
        describe(config);
    } else {
        installBuiltInThemes(config);
    }

    bool written = output.mkpath(QStringLiteral("."));
    const auto save = [&](const QString &name, const QImage &image) {
        written = written && image.save(output.filePath(name + QStringLiteral(".png")));
    };
    for (const QString &theme : config.availableThemes()) {
        config.setCurrentTheme(theme);
        save(theme, onBothDesktops([&config](qreal scale, const QColor &background) {
                 return desktop(config, scale, background);
             }));
    }
    if (!forOneTheme) {
        save(QStringLiteral("symbols"), onBothDesktops(sundries));
        save(QStringLiteral("themes"), overview(config));
    }
    platform::report(written ? QStringLiteral("The pictures are in ") + output.absolutePath()
                             : QStringLiteral("The pictures could not be written"));
    return written ? 0 : 1;
}

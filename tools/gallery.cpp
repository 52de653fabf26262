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

/// Tells whoever makes a theme which of its files the strip uses, and at what size.
void describe(const Config &config)
{
    const auto line = [](const QString &folder, const QString &name) {
        const QImage image = imageFromFile(folder + QLatin1Char('/') + name + QStringLiteral(".png"), 2);
        const QSizeF size = image.deviceIndependentSize();
        platform::report(image.isNull() ? QStringLiteral("%1: no picture, the built-in one shows").arg(name)
                                        : QStringLiteral("%1: %2 x %3 points, %4 pixels a point")
                                              .arg(name)
                                              .arg(size.width())
                                              .arg(size.height())
                                              .arg(image.devicePixelRatio()));
    };
    for (const QString &name : chromeElementNames())
        line(chromeFolderURL(config, config.currentTheme()), name);
    for (const QString &name : currentThemeIconNames(config))
        line(iconsFolderURL(config, config.currentTheme()), name);
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() < 2 || arguments.size() > 3) {
        platform::report(QStringLiteral("gallery OUTPUT-FOLDER [THEME-FOLDER]"));
        return 2;
    }
    const QDir output(arguments.at(1));
    QTemporaryDir documents;
    Config config(documents.path(), documents.path());
    if (arguments.size() == 3) {
        const QFileInfo theme(arguments.at(2));
        const QString place = QFileInfo(chromeFolderURL(config, theme.fileName())).path();
        QDir().mkpath(QFileInfo(place).path());
        QFile::link(theme.absoluteFilePath(), place);
        config.setAvailableThemes({theme.fileName()});
        config.setCurrentTheme(theme.fileName());
        describe(config);
    } else {
        installBuiltInThemes(config);
    }

    bool written = output.mkpath(QStringLiteral("."));
    for (const QString &theme : config.availableThemes()) {
        config.setCurrentTheme(theme);
        const QImage image = onBothDesktops(
            [&config](qreal scale, const QColor &background) { return desktop(config, scale, background); });
        written = written && image.save(output.filePath(theme + QStringLiteral(".png")));
    }
    if (arguments.size() == 2)
        written = written && onBothDesktops(sundries).save(output.filePath(QStringLiteral("symbols.png")));
    platform::report(written ? QStringLiteral("The pictures are in ") + output.absolutePath()
                             : QStringLiteral("The pictures could not be written"));
    return written ? 0 : 1;
}

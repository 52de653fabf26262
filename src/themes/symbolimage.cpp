// SPDX-License-Identifier: MIT
#include "themes/symbolimage.h"

#include "themes/imagecache.h"

#include <QFile>
#include <QPainter>

namespace themes {

namespace {

QImage drawSymbol(const QString &name, const QColor &tint, int pointSize, int density)
{
    QImage image;
    if (symbolNames().contains(name)) {
        QFile file(QStringLiteral(":/pondwicket/symbols/%1.svg").arg(name));
        if (file.open(QIODevice::ReadOnly))
            image = svgImage(file.readAll(), density, QSize(pointSize, pointSize));
    }
    if (image.isNull()) {
        image = QImage(QSize(pointSize, pointSize) * density, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(density);
        image.fill(Qt::transparent);
        return image;
    }
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(0, 0, pointSize, pointSize, tint);
    return image;
}

} // namespace

const QStringList &symbolNames()
{
    static const QStringList names = {
        QStringLiteral("safari"),
        QStringLiteral("server.rack"),
        QStringLiteral("questionmark.square"),
        QStringLiteral("apple.terminal"),
        QStringLiteral("mail"),
        QStringLiteral("phone"),
        QStringLiteral("message"),
        QStringLiteral("square.on.square"),
        QStringLiteral("map"),
        QStringLiteral("folder"),
        QStringLiteral("document"),
        QStringLiteral("calendar"),
        QStringLiteral("switch.2"),
        QStringLiteral("ellipsis.circle"),
        QStringLiteral("plus.square"),
        QStringLiteral("gear"),
        QStringLiteral("plus"),
        QStringLiteral("trash.fill"),
        QStringLiteral("arrow.clockwise"),
        QStringLiteral("gearshape.2.fill"),
        QStringLiteral("app.edit"),
    };
    return names;
}

QImage symbolImage(const QString &name, const QColor &tint, int pointSize, qreal scale)
{
    pointSize = qBound(1, pointSize, 256);
    const int density = densityFor(scale);
    const QString key = QStringLiteral("symbol %1 %2 %3").arg(name).arg(tint.rgba()).arg(pointSize);
    return cachedImage(key, platform::FileStamp::ofProgram(), density,
                       [&] { return drawSymbol(name, tint, pointSize, density); });
}

} // namespace themes

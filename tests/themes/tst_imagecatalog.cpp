// SPDX-License-Identifier: MIT
#include "model/settingsdata.h"
#include "themes/imagecatalog.h"
#include "themes/palette.h"
#include "themes/symbolimage.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>

using namespace themes;

class ImageCatalogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void everyPictureIsDrawn();
    void otherNamesAreNoPictures();
    void sourcesStayInsideTheirFrame();
    void picturesOfAThemeDiffer();
    void oneBitThemeHasNoGrey();
    void symbolsTakeTheTint();
};

namespace {

bool isEmpty(const QImage &image)
{
    QImage nothing(image.size(), image.format());
    nothing.fill(Qt::transparent);
    nothing.setDevicePixelRatio(image.devicePixelRatio());
    return image == nothing;
}

QSizeF sizeOf(const QString &name)
{
    if (name.endsWith(u"-preview"))
        return {64, 64};
    if (name.endsWith(u"-close") || name.endsWith(u"-minimize"))
        return {10, 10};
    if (name.contains(u"-tile"))
        return {44, 44};
    if (name.contains(u"-tab-"))
        return name.endsWith(u"-vertical") ? QSizeF(44, 14) : QSizeF(14, 44);
    return {32, 32};
}

} // namespace

void ImageCatalogTest::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_qs));
}

void ImageCatalogTest::everyPictureIsDrawn()
{
    QCOMPARE(builtInImageNames().size(), 7 * 11 + 90 + 5 + 31 + 1);
    for (const QString &name : builtInImageNames()) {
        const QSizeF most = name == u"harrowline" ? QSizeF(1000, 1000) : sizeOf(name);
        for (int density = 1; density <= 3; ++density) {
            const QImage image = drawBuiltInImage(name, density);
            const QSizeF size = image.deviceIndependentSize();
            QVERIFY2(!isEmpty(image), qPrintable(name));
            QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
            QCOMPARE(image.devicePixelRatio(), density);
            QVERIFY2(size.boundedTo(most) == size, qPrintable(name));
            if (name.contains(u"-tile") || name.contains(u"-tab-"))
                QVERIFY2(size == most, qPrintable(name)); // or the strip would have seams
        }
    }
}

void ImageCatalogTest::otherNamesAreNoPictures()
{
    for (const char16_t *name :
         {u"", u"1984", u"1984-", u"1984-app-red", u"2024-blue", u"1979-tile", u"Default", u"2010-preview",
          u"2024-../2024-tile", u"calendar-0", u"calendar-07", u"calendar-32", u"calendar-", u"2024-Tile"}) {
        QVERIFY2(builtInImage(QString::fromUtf16(name)).isNull(), qPrintable(QString::fromUtf16(name)));
    }
}

void ImageCatalogTest::sourcesStayInsideTheirFrame()
{
    QDirIterator files(u":/pondwicket"_qs, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        const QString path = file.fileName();
        // Caps and tiles fill their frame; all else is a shape that must not be cut off.
        if (path.contains(u"/tab-") || path.contains(u"/tile") || path.endsWith(u".txt"))
            continue;
        QVERIFY(file.open(QIODevice::ReadOnly));
        QString svg = QString::fromUtf8(file.readAll());
        static const QRegularExpression frame(
            u"width=\"(\\d+)\" height=\"(\\d+)\" viewBox=\"0 0 (\\d+) (\\d+)\""_qs);
        const QRegularExpressionMatch match = frame.match(svg);
        QVERIFY2(match.hasMatch(), qPrintable(path));
        const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
        QCOMPARE(QSize(match.captured(3).toInt(), match.captured(4).toInt()), size);

        // The same drawing in a frame that is wider by a margin on all sides.
        const int margin = qMax(4, size.width() / 16);
        svg.replace(match.capturedStart(), match.capturedLength(),
                    u"width=\"%1\" height=\"%2\" viewBox=\"-%3 -%3 %1 %2\""_qs.arg(size.width() + 2 * margin)
                        .arg(size.height() + 2 * margin)
                        .arg(margin));
        const int part = size.width() > 256 ? 4 : 1; // the largest are drawn at a quarter of their size
        const QSize framed = size + QSize(2 * margin, 2 * margin);
        const QImage image = svgImage(svg.toUtf8(), 2, framed / part);
        QVERIFY2(!isEmpty(image), qPrintable(path));
        QImage cut = image; // nothing is left of it when its inside is cleared
        const QRect inside = QRect(QPoint(margin, margin) * 2 / part, size * 2 / part);
        for (int y = inside.top(); y <= inside.bottom(); ++y) {
            for (int x = inside.left(); x <= inside.right(); ++x)
                cut.setPixel(x, y, 0);
        }
        QVERIFY2(isEmpty(cut), qPrintable(path));
    }
}

void ImageCatalogTest::picturesOfAThemeDiffer()
{
    for (const QString &theme : SettingsData().availableThemes) {
        QHash<QByteArray, QString> seen;
        for (const QString &name : builtInIconNames(theme) + chromeElementNames()) {
            if (name == u"tile-vertical")
                continue; // may be the same as the horizontal one
            const QImage image = drawBuiltInImage(theme + u'-' + name, 1);
            const QByteArray pixels(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes());
            QVERIFY2(!seen.contains(pixels), qPrintable(name + u" looks as "_qs + seen.value(pixels)));
            seen.insert(pixels, name);
        }
    }
}

void ImageCatalogTest::oneBitThemeHasNoGrey()
{
    const QString theme = u"1984"_qs;
    for (const QString &name : builtInIconNames(theme) + chromeElementNames()) {
        for (int density = 1; density <= 3; ++density) {
            const QImage image = drawBuiltInImage(theme + u'-' + name, density);
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const QRgb pixel = image.pixel(x, y);
                    const bool oneBit = pixel == 0 || pixel == 0xff000000 || pixel == 0xffffffff;
                    QVERIFY2(oneBit, qPrintable(u"%1 at %2, %3"_qs.arg(name).arg(x).arg(y)));
                }
            }
        }
    }
}

void ImageCatalogTest::symbolsTakeTheTint()
{
    const QColor tint = paletteColor(u"violet");
    QCOMPARE(symbolNames().size(), 21);
    for (const QString &name : symbolNames()) {
        const QImage image = symbolImage(name, tint, 13, 2);
        QCOMPARE(image.deviceIndependentSize(), QSizeF(13, 13));
        bool drawn = false;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QRgb pixel = image.pixel(x, y);
                QVERIFY(qAlpha(pixel) < 255 || pixel == tint.rgb());
                drawn = drawn || qAlpha(pixel) == 255;
            }
        }
        QVERIFY2(drawn, qPrintable(name));
    }
    for (const QStringView other : {u"orange", u"Green", u""})
        QCOMPARE(paletteColor(other).rgb(), qRgb(255, 102, 31));
    QVERIFY(isEmpty(symbolImage(u"no.such.symbol"_qs, tint, 13)));
}

QTEST_GUILESS_MAIN(ImageCatalogTest)
#include "tst_imagecatalog.moc"

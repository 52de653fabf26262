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
    void everyPictureIsDrawn_data();
    void everyPictureIsDrawn();
    void otherNamesAreNoPictures();
    void sourcesStayInsideTheirFrame_data();
    void sourcesStayInsideTheirFrame();
    void picturesOfAThemeDiffer_data();
    void picturesOfAThemeDiffer();
    void oneBitThemeHasNoGrey();
    void symbolsTakeTheTint();
    void paletteWords_data();
    void paletteWords();
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
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

void ImageCatalogTest::everyPictureIsDrawn_data()
{
    const QStringList names = builtInImageNames();
    QCOMPARE(names.size(), 7 * 11 + 90 + 5 + 31 + 1);
    QTest::addColumn<QString>("name");
    for (const QString &name : names)
        QTest::addRow("%s", qPrintable(name)) << name;
}

void ImageCatalogTest::everyPictureIsDrawn()
{
    QFETCH(QString, name);
    for (int density = 1; density <= 3; ++density) {
        const QImage image = drawBuiltInImage(name, density);
        QVERIFY(!isEmpty(image));
        QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
        QCOMPARE(image.devicePixelRatio(), density);
        const QSizeF size = image.deviceIndependentSize();
        if (name != u"harrowline")
            QVERIFY2(size.width() <= sizeOf(name).width() && size.height() <= sizeOf(name).height(),
                     "too large");
        if (name.contains(u"-tile") || name.contains(u"-tab-"))
            QCOMPARE(size, sizeOf(name)); // or the strip would have seams
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

void ImageCatalogTest::sourcesStayInsideTheirFrame_data()
{
    QTest::addColumn<QString>("path");
    QDirIterator files(QStringLiteral(":/pondwicket"), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        // Caps and tiles fill their frame; all else is a shape that must not be cut off.
        if (!path.contains(u"/tab-") && !path.contains(u"/tile") && !path.endsWith(u".txt"))
            QTest::addRow("%s", qPrintable(path.mid(13))) << path;
    }
}

void ImageCatalogTest::sourcesStayInsideTheirFrame()
{
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QString svg = QString::fromUtf8(file.readAll());
    static const QRegularExpression frame(
        QStringLiteral("width=\"(\\d+)\" height=\"(\\d+)\" viewBox=\"0 0 (\\d+) (\\d+)\""));
    const QRegularExpressionMatch match = frame.match(svg);
    QVERIFY2(match.hasMatch(), "no frame in the usual form");
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    QCOMPARE(QSize(match.captured(3).toInt(), match.captured(4).toInt()), size);

    // The same drawing in a frame that is wider by a margin on all sides.
    const int margin = qMax(4, size.width() / 16);
    svg.replace(match.capturedStart(), match.capturedLength(),
                QStringLiteral("width=\"%1\" height=\"%2\" viewBox=\"-%3 -%3 %1 %2\"")
                    .arg(size.width() + 2 * margin)
                    .arg(size.height() + 2 * margin)
                    .arg(margin));
    const int part = size.width() > 256 ? 4 : 1; // the largest are drawn at a quarter of their size
    const QSize framed = size + QSize(2 * margin, 2 * margin);
    const QImage image = svgImage(svg.toUtf8(), 2, framed / part);
    QVERIFY(!isEmpty(image));
    const QRect inside = QRect(QPoint(margin, margin) * 2 / part, size * 2 / part);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (!inside.contains(x, y))
                QVERIFY2(qAlpha(image.pixel(x, y)) == 0, qPrintable(QStringLiteral("%1, %2").arg(x).arg(y)));
        }
    }
}

void ImageCatalogTest::picturesOfAThemeDiffer_data()
{
    QTest::addColumn<QString>("theme");
    for (const QString &theme : SettingsData().availableThemes)
        QTest::addRow("%s", qPrintable(theme)) << theme;
}

void ImageCatalogTest::picturesOfAThemeDiffer()
{
    QFETCH(QString, theme);
    QHash<QByteArray, QString> seen;
    for (const QString &name : builtInIconNames(theme) + chromeElementNames()) {
        if (name == u"tile-vertical")
            continue; // may be the same as the horizontal one
        const QImage image = drawBuiltInImage(theme + u'-' + name, 1);
        const QByteArray pixels(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes());
        QVERIFY2(!seen.contains(pixels),
                 qPrintable(name + QStringLiteral(" looks as ") + seen.value(pixels)));
        seen.insert(pixels, name);
    }
}

void ImageCatalogTest::oneBitThemeHasNoGrey()
{
    const QString theme = QStringLiteral("1984");
    for (const QString &name : builtInIconNames(theme) + chromeElementNames()) {
        for (int density = 1; density <= 3; ++density) {
            const QImage image = drawBuiltInImage(theme + u'-' + name, density);
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const QRgb pixel = image.pixel(x, y);
                    const bool oneBit = pixel == 0 || pixel == 0xff000000 || pixel == 0xffffffff;
                    QVERIFY2(oneBit, qPrintable(QStringLiteral("%1 at %2, %3").arg(name).arg(x).arg(y)));
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
    QVERIFY(isEmpty(symbolImage(QStringLiteral("no.such.symbol"), tint, 13)));
}

void ImageCatalogTest::paletteWords_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QRgb>("colour");
    QTest::newRow("green") << QStringLiteral("green") << qRgb(120, 191, 33);
    QTest::newRow("yellow") << QStringLiteral("yellow") << qRgb(255, 199, 43);
    QTest::newRow("orange") << QStringLiteral("orange") << qRgb(255, 102, 31);
    QTest::newRow("red") << QStringLiteral("red") << qRgb(199, 15, 46);
    QTest::newRow("violet") << QStringLiteral("violet") << qRgb(173, 26, 171);
    QTest::newRow("blue") << QStringLiteral("blue") << qRgb(0, 163, 224);
    QTest::newRow("capital letter") << QStringLiteral("Green") << qRgb(255, 102, 31);
    QTest::newRow("no word") << QString() << qRgb(255, 102, 31);
}

void ImageCatalogTest::paletteWords()
{
    QFETCH(QString, word);
    QTEST(paletteColor(word).rgb(), "colour");
}

QTEST_GUILESS_MAIN(ImageCatalogTest)
#include "tst_imagecatalog.moc"

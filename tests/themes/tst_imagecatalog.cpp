// SPDX-License-Identifier: MIT
#include "coloursof.h"

#include "themes/imagecatalog.h"

#include <QRegularExpression>
#include <QTest>

using namespace themes;

class ImageCatalogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_qs)); }

    void everyPictureIsDrawn()
    {
        QCOMPARE(builtInImageNames().size(), 7 * 11 + 90 + 5 + 31 + 1);
        for (const QString &name : builtInImageNames()) {
            for (int density = 1; density <= 3; ++density) {
                const QImage image = drawBuiltInImage(name, density);
                const QSet<QRgb> colours = coloursOf(image);
                QVERIFY2(!image.isNull() && colours != QSet<QRgb>{0}, qPrintable(name));
                if (name.contains(u"-tile")) // or the strip would have seams
                    QVERIFY2(image.size() == QSize(44, 44) * density, qPrintable(name));
                if (name.startsWith(u"1984-") && !name.endsWith(u"-preview")) // has no grey
                    QVERIFY2((colours - QSet<QRgb>{0, 0xff000000, 0xffffffff}).isEmpty(), qPrintable(name));
            }
        }
        for (const char16_t *name : {u"", u"1984-", u"1984-app-red", u"2010-preview", u"2024-../2024-tile",
                                     u"calendar-0", u"calendar-07", u"calendar-32", u"2024-Tile"})
            QVERIFY2(builtInImage(QString::fromUtf16(name)).isNull(), qPrintable(QString::fromUtf16(name)));
    }
};

QTEST_GUILESS_MAIN(ImageCatalogTest)
#include "tst_imagecatalog.moc"

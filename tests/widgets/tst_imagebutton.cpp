// SPDX-License-Identifier: MIT
#include "widgets/imagebutton.h"

#include <QBitmap>
#include <QTest>

using namespace widgets;

namespace {

QImage square(QSize points, qreal ratio, QColor colour)
{
    QImage image(points * ratio, QImage::Format_ARGB32_Premultiplied);
    image.fill(colour);
    image.setDevicePixelRatio(ratio);
    return image;
}

} // namespace

class TestImageButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void centresAndClips_data()
    {
        QTest::addColumn<QSize>("iconSize"); // points; the button has 44 by 44
        QTest::addColumn<qreal>("scale");
        QTest::addColumn<QRect>("iconPixels");
        QTest::newRow("centred at 2") << QSize(32, 32) << 2.0 << QRect(12, 12, 64, 64);
        QTest::newRow("larger than the button") << QSize(60, 60) << 1.0 << QRect(0, 0, 44, 44);
        QTest::newRow("as large at 1.25") << QSize(44, 44) << 1.25 << QRect(0, 0, 55, 55);
    }

    void centresAndClips()
    {
        QFETCH(QSize, iconSize);
        QFETCH(qreal, scale);
        const QSize size(44, 44);
        const QImage drawn =
            composeLook({{}, square(iconSize, 2, Qt::red), {}}, size, (QSizeF(size) * scale).toSize(), scale)
                .toImage();
        QTEST(QRegion(QBitmap::fromImage(drawn.createAlphaMask())).boundingRect(), "iconPixels");
    }

    /// At 1.25 the far cap of the strip covers 17 pixels where its picture has 17.5: drawn with 18, its rim
    /// was cut off.
    void fillsItsPixelsAtAnyScale()
    {
        QImage cap = square(QSize(14, 44), 2, Qt::white);
        for (int y = 0; y < cap.height(); ++y) {
            for (const int x : {0, 1, 26, 27})
                cap.setPixelColor(x, y, Qt::black);
        }
        for (const int width : {17, 18}) {
            const QImage drawn = composeLook({cap, {}, {}}, QSize(14, 44), QSize(width, 55), 1.25).toImage();
            QVERIFY(drawn.pixelColor(0, 20).lightness() < 60);
            QVERIFY(drawn.pixelColor(width - 1, 20).lightness() < 60);
        }
    }
};

QTEST_MAIN(TestImageButton)
#include "tst_imagebutton.moc"

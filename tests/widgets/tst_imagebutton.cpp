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
    void centresAndClips()
    {
        using Row = std::tuple<int, qreal, QRect>; // the icon's side in points, the scale, its pixels
        const QSize size(44, 44);
        for (const auto &[side, scale, pixels] :
             {Row(32, 2, {12, 12, 64, 64}), Row(60, 1, {0, 0, 44, 44}), Row(44, 1.25, {0, 0, 55, 55})}) {
            const QImage drawn = composeLook({{}, square({side, side}, 2, Qt::red), {}}, size,
                                             (QSizeF(size) * scale).toSize(), scale)
                                     .toImage();
            QCOMPARE(QRegion(QBitmap::fromImage(drawn.createAlphaMask())).boundingRect(), pixels);
        }
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

// SPDX-License-Identifier: MIT
#include "widgets/imagebutton.h"

#include <QTest>

using namespace widgets;

class TestImageButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// At 1.25 the far cap of the strip covers 17 pixels where its picture has 17.5: drawn with 18, its rim
    /// was cut off.
    void fillsItsPixelsAtAnyScale()
    {
        QImage cap(28, 88, QImage::Format_ARGB32_Premultiplied); // of 14 points
        cap.setDevicePixelRatio(2);
        cap.fill(Qt::white);
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

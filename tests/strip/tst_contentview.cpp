// SPDX-License-Identifier: MIT
#include "stripfixture.h"

#include "strip/hometileview.h"

#include <QWheelEvent>

class TestContentView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hidesAndShowsTheTiles()
    {
        StripFixture fixture(1);
        fixture.show();
        QTest::mouseClick(fixture.cap(), Qt::LeftButton);
        QTRY_COMPARE(fixture.tiles().size(), 0);
        QTRY_COMPARE(fixture.cap()->x(), 14 + 44);

        fixture.addTile(u"b"_qs, {});
        QCoreApplication::processEvents();
        QCOMPARE(fixture.tiles().size(), 0);
        QTest::mouseClick(fixture.cap(), Qt::LeftButton);
        QTRY_COMPARE(fixture.cap()->x(), 14 + 44 + 2 * 44);
        // The empty part is no part of the window.
        QCOMPARE(fixture.strip->mask().boundingRect(), QRect(0, 0, 14 + 44 + 2 * 44 + 14, 44));
    }

    /// With 20 tiles on a screen of 768 points the last ones and the far cap lay beyond the screen's edge.
    void tooLongAStripScrolls()
    {
        StripFixture fixture(20);
        fixture.config.setDirection(u"ttb"_qs);
        fixture.show(QSize(44, 768));
        const int end = fixture.placeOf(fixture.cap()).top();
        QCOMPARE(end, 768 - 14);
        const QList<Tile *> tiles = fixture.tiles();
        const auto turn = [&fixture](int notches) {
            QWheelEvent wheel({22, 300}, {22, 300}, {}, QPoint(0, -120 * notches), Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(&*fixture.strip, &wheel);
        };
        turn(100);
        QCOMPARE(fixture.placeOf(tiles.last()).bottom() + 1, end);

        // The arrow keys walk from the home tile to the far cap, and stay there.
        fixture.strip->findChild<HomeTileView *>()->setFocus();
        for (int i = 0; i < 20; ++i)
            QTest::keyClick(fixture.strip->focusWidget(), Qt::Key_Down);
        QCOMPARE(fixture.strip->focusWidget(), tiles.last());
        QCOMPARE(fixture.placeOf(tiles.last()).bottom() + 1, end);
        for (int i = 0; i < 2; ++i)
            QTest::keyClick(fixture.strip->focusWidget(), Qt::Key_Right);
        QCOMPARE(fixture.strip->focusWidget(), fixture.cap());
    }

    /// A settings file can hold any number of tiles. A view for each of them would take more than any screen
    /// shows.
    void hostileNumberOfTiles()
    {
        StripFixture fixture;
        fixture.config.setTileItems(QList<TileItem>(100'000));
        fixture.show(QSize(1024, 44));
        QCOMPARE(fixture.tiles().size(), 1000);
    }

    /// A strip closed by the window manager left the program running without a window.
    void closingAsksToQuit()
    {
        StripFixture fixture;
        fixture.show();
        QSignalSpy quit(&*fixture.strip, &ContentView::quitRequested);
        fixture.strip->close();
        QCOMPARE(quit.size(), 1);
    }
};

QTEST_MAIN(TestContentView)
#include "tst_contentview.moc"

// SPDX-License-Identifier: MIT
#include "strip/contentview.h"
#include "strip/tile.h"
#include "support/stripworld.h"

#include <QAbstractButton>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

using namespace support;

namespace {

QList<Tile *> tilesOf(const ContentView &strip)
{
    QList<Tile *> tiles;
    for (Tile *tile : strip.findChildren<Tile *>()) {
        if (!tile->isHidden())
            tiles.append(tile);
    }
    std::sort(tiles.begin(), tiles.end(), [](Tile *a, Tile *b) { return a->x() + a->y() < b->x() + b->y(); });
    return tiles;
}

QRect placeOf(const ContentView &strip, const QWidget *widget)
{
    return {widget->mapTo(&strip, QPoint(0, 0)), widget->size()};
}

} // namespace

class TestContentView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void packsItsElements_data()
    {
        QTest::addColumn<QString>("direction");
        QTest::addColumn<int>("tileCount");
        QTest::addColumn<QSize>("ideal");
        QTest::addColumn<QRect>("trailingCap");
        const QSize horizontal(1024, 44);
        QTest::newRow("horizontal") << "ltr" << 3 << horizontal << QRect(14 + 4 * 44, 0, 14, 44);
        QTest::newRow("grown") << "ltr" << 23 << QSize(2 * 14 + 24 * 44, 44)
                               << QRect(14 + 24 * 44, 0, 14, 44);
        QTest::newRow("vertical") << "ttb" << 3 << QSize(44, 1024) << QRect(0, 14 + 4 * 44, 44, 14);
        QTest::newRow("upper case is no direction")
            << "TTB" << 1 << horizontal << QRect(14 + 2 * 44, 0, 14, 44);
    }

    void packsItsElements()
    {
        QFETCH(QString, direction);
        QFETCH(int, tileCount);
        StripWorld world;
        world.config.setDirection(direction);
        for (int i = 0; i < tileCount; ++i)
            world.addTile(QString::number(i), {});
        ContentView strip(world.config, world.services);
        QTEST(strip.sizeHint(), "ideal");
        strip.resize(strip.sizeHint());
        strip.show();

        const auto *cap = strip.findChild<QAbstractButton *>(QStringLiteral("Hide or show tiles"));
        QTEST(placeOf(strip, cap), "trailingCap");
        QCOMPARE(tilesOf(strip).size(), tileCount);
        // The empty part is no part of the window.
        QCOMPARE(strip.mask().boundingRect(), QRect(QPoint(0, 0), placeOf(strip, cap).bottomRight()));
    }

    void keepsTheViewsOfEqualItems()
    {
        StripWorld world;
        const TileItem a = world.addTile(QStringLiteral("a"), {});
        const TileItem b = world.addTile(QStringLiteral("b"), {});
        ContentView strip(world.config, world.services);
        strip.show();
        const QList<Tile *> before = tilesOf(strip);

        world.config.editTile(a.id, [](TileItem &tile) { tile.tileName = QStringLiteral("renamed"); });
        QTRY_VERIFY(tilesOf(strip).first() != before.first());
        QCOMPARE(tilesOf(strip).last(), before.last());

        const Tile *renamed = tilesOf(strip).first();
        QList<TileItem> moved = world.config.tileItems();
        moved.swapItemsAt(0, 1);
        world.config.setTileItems(moved);
        QTRY_COMPARE(tilesOf(strip).first(), before.last());
        QCOMPARE(tilesOf(strip).last(), renamed);

        world.config.setDirection(QStringLiteral("ttb"));
        QTRY_VERIFY(strip.isVertical());
        QVERIFY(tilesOf(strip).first() != before.last());
    }

    void hidesAndShowsTheTiles()
    {
        StripWorld world;
        world.addTile(QStringLiteral("a"), {});
        ContentView strip(world.config, world.services);
        strip.resize(strip.sizeHint());
        strip.show();
        auto *cap = strip.findChild<QAbstractButton *>(QStringLiteral("Hide or show tiles"));
        QTest::mouseClick(cap, Qt::LeftButton);
        QVERIFY(!strip.tabsVisible());
        QTRY_COMPARE(tilesOf(strip).size(), 0);
        QTRY_COMPARE(cap->x(), 14 + 44);

        world.addTile(QStringLiteral("b"), {});
        QSignalSpy redrawn(&world.config, &Config::redrawNeeded);
        QVERIFY(redrawn.wait());
        QCOMPARE(tilesOf(strip).size(), 0);
        QTest::mouseClick(cap, Qt::LeftButton);
        QTRY_COMPARE(tilesOf(strip).size(), 2);
        QTRY_COMPARE(cap->x(), 14 + 44 + 2 * 44);
    }

    /// With 20 tiles on a screen of 768 points the last ones and the far cap lay beyond the screen's edge.
    void tooLongAStripScrolls()
    {
        StripWorld world;
        world.config.setDirection(QStringLiteral("ttb"));
        for (int i = 0; i < 20; ++i)
            world.addTile(QString::number(i), {});
        ContentView strip(world.config, world.services);
        strip.resize(44, 768);
        strip.show();
        const auto *cap = strip.findChild<QAbstractButton *>(QStringLiteral("Hide or show tiles"));
        QCOMPARE(placeOf(strip, cap).bottom(), 767);
        const QList<Tile *> tiles = tilesOf(strip);
        const auto turn = [&strip](int notches) {
            QWheelEvent wheel(QPointF(22, 300), strip.mapToGlobal(QPointF(22, 300)), QPoint(),
                              QPoint(0, -120 * notches), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                              false);
            QCoreApplication::sendEvent(&strip, &wheel);
        };
        turn(1);
        QCOMPARE(placeOf(strip, tiles.at(1)).top(), 14 + 44);
        turn(100);
        QCOMPARE(placeOf(strip, tiles.last()).bottom() + 1, placeOf(strip, cap).top());
        turn(-100);
        QCOMPARE(placeOf(strip, tiles.first()).top(), 14 + 44);

        strip.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&strip));
        tiles.first()->setFocus();
        for (int i = 0; i < 19; ++i)
            QTest::keyClick(strip.focusWidget(), Qt::Key_Down);
        QCOMPARE(strip.focusWidget(), tiles.last());
        QCOMPARE(placeOf(strip, tiles.last()).bottom() + 1, placeOf(strip, cap).top());
    }

    /// A settings file can hold any number of tiles. A view for each of them would take more than any screen
    /// shows.
    void hostileNumberOfTiles()
    {
        StripWorld world;
        QList<TileItem> tiles(100'000);
        for (TileItem &tile : tiles)
            tile.iconName = QStringLiteral("default");
        world.config.setTileItems(tiles);
        ContentView strip(world.config, world.services);
        strip.resize(1024, 44);
        strip.show();
        QCOMPARE(tilesOf(strip).size(), 1000);
        QCOMPARE(placeOf(strip, tilesOf(strip).at(20)), QRect(14 + 21 * 44, 0, 44, 44));
    }

    /// A strip closed by the window manager left the program running without a window.
    void closingAsksToQuit()
    {
        StripWorld world;
        ContentView strip(world.config, world.services);
        QSignalSpy quit(&strip, &ContentView::quitRequested);
        strip.show();
        strip.close();
        QCOMPARE(quit.size(), 1);
    }
};

QTEST_MAIN(TestContentView)
#include "tst_contentview.moc"

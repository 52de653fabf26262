// SPDX-License-Identifier: MIT
#include "model/config.h"

#include <QSignalSpy>
#include <QTest>

class TestConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void manyChangesMakeOneRedraw()
    {
        Config config{{}, {}};
        const QSignalSpy redraws(&config, &Config::redrawNeeded);
        for (int turn = 1; turn <= 2; ++turn) {
            config.setShowsDate(turn == 1);
            config.setTileItems({TileItem()});
            QCOMPARE(redraws.size(), turn - 1);
            QCoreApplication::processEvents();
            QCOMPARE(redraws.size(), turn);
        }
    }

    void editOfNothingChangesNothing()
    {
        Config config{{}, {}};
        const TileItem tile;
        config.setTileItems({TileItem(), tile, tile});
        const QSignalSpy willChange(&config, &Config::willChange);
        QVERIFY(!config.editTile(QUuid::createUuid(), [](TileItem &) { QFAIL("edited"); }));
        QVERIFY(config.editTile(tile.id, [](TileItem &) {}));
        QCOMPARE(willChange.size(), 0);
    }

    void observersMayChangeWhatChanges()
    {
        // An observer that emptied the list before an edit took hold left the edit an index past the end.
        Config config{{}, {}};
        const TileItem tile;
        config.setTileItems({tile});
        connect(
            &config, &Config::willChange, &config, [&config] { config.setTileItems({}); },
            Qt::SingleShotConnection);
        config.editTile(tile.id, [](TileItem &item) { item.tileName = u"new"_qs; });
        QCOMPARE(config.tileItems().value(0).tileName, u"new"_qs);
    }
};

QTEST_GUILESS_MAIN(TestConfig)
#include "tst_config.moc"

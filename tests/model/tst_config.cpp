// SPDX-License-Identifier: MIT
#include "model/config.h"

#include <QSignalSpy>
#include <QTest>

class TestConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oldValueStandsBeforeAChange();
    void equalValueIsNoChange();
    void manyChangesMakeOneRedraw();
    void editChangesTheFirstTileWithTheId();
    void editOfAVanishedTileChangesNothing();
    void observersMayChangeWhatChanges();
};

void TestConfig::oldValueStandsBeforeAChange()
{
    Config config(QStringLiteral("/documents"), QStringLiteral("/state"));
    QStringList seen;
    connect(&config, &Config::willChange, this, [&] { seen += config.direction(); });
    connect(&config, &Config::directionChanged, this, [&] { seen += config.direction(); });
    config.setDirection(QStringLiteral("ttb"));
    QCOMPARE(seen, QStringList({QStringLiteral("ltr"), QStringLiteral("ttb")}));
}

void TestConfig::equalValueIsNoChange()
{
    Config config(QStringLiteral("/documents"), QStringLiteral("/state"));
    const TileItem tile;
    config.setTileItems({tile});
    const QSignalSpy willChange(&config, &Config::willChange);
    config.setTileItems({tile});
    config.setShowsDate(false);
    QVERIFY(config.editTile(tile.id, [](TileItem &) {}));
    QCOMPARE(willChange.size(), 0);
}

void TestConfig::manyChangesMakeOneRedraw()
{
    Config config(QStringLiteral("/documents"), QStringLiteral("/state"));
    const QSignalSpy redraws(&config, &Config::redrawNeeded);
    config.setShowsDate(true);
    config.setTileItems({TileItem()});
    config.setCalendarMenuVisible(true);
    QCOMPARE(redraws.size(), 0);
    QCoreApplication::processEvents();
    QCOMPARE(redraws.size(), 1);
    config.setShowsDate(false);
    QCoreApplication::processEvents();
    QCOMPARE(redraws.size(), 2);
}

void TestConfig::editChangesTheFirstTileWithTheId()
{
    Config config(QStringLiteral("/documents"), QStringLiteral("/state"));
    const TileItem tile;
    config.setTileItems({TileItem(), tile, tile});
    const QSignalSpy changes(&config, &Config::tileItemsChanged);
    QVERIFY(config.editTile(tile.id, [](TileItem &item) { item.tileName = QStringLiteral("new"); }));
    QCOMPARE(changes.size(), 1);
    QCOMPARE(config.tileItems().at(1).tileName, QStringLiteral("new"));
    QCOMPARE(config.tileItems().at(2).tileName, QString());
}

void TestConfig::editOfAVanishedTileChangesNothing()
{
    Config config(QStringLiteral("/documents"), QStringLiteral("/state"));
    config.setTileItems({TileItem()});
    QVERIFY(!config.editTile(QUuid::createUuid(), [](TileItem &) { QFAIL("edited"); }));
}

void TestConfig::observersMayChangeWhatChanges()
{
    // An observer that emptied the list before an edit took hold left the edit an index past the end.
    Config config(QStringLiteral("/documents"), QStringLiteral("/state"));
    const TileItem tile;
    config.setTileItems({tile});
    connect(
        &config, &Config::willChange, &config, [&config] { config.setTileItems({}); },
        Qt::SingleShotConnection);
    config.editTile(tile.id, [](TileItem &item) { item.tileName = QStringLiteral("new"); });
    QCOMPARE(config.tileItems().size(), 1);
    QCOMPARE(config.tileItems().first().tileName, QStringLiteral("new"));
}

QTEST_GUILESS_MAIN(TestConfig)
#include "tst_config.moc"

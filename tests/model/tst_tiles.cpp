// SPDX-License-Identifier: MIT
#include "model/defaultcontent.h"
#include "model/settingsstore.h"
#include "model/tiles.h"
#include "platform/files.h"
#include "support/stdoutcapture.h"

#include <QDir>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

class TestTiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void firstRunLeavesThreeTilesAndNothingElse();
    void contentFollowsTheCount();
    void twentyIsTheLimit();
    void removingKeepsTheFolder();
    void removingAnUnknownTileWritesNothing();
    void folderThatCannotBeMadeIsReported();
    void folderPath_data();
    void folderPath();

private:
    QString settingsFile() const
    {
        return model::applicationFolder(*m_config) + QStringLiteral("/pondWicket-settings.json");
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<Config> m_config;
};

void TestTiles::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_config = std::make_unique<Config>(m_dir->filePath(QStringLiteral("Docu ments%")),
                                        m_dir->filePath(QStringLiteral("state")));
}

void TestTiles::firstRunLeavesThreeTilesAndNothingElse()
{
    StdoutCapture capture;
    model::writeDefaultSettings(*m_config);
    model::ensureTilesFolder(*m_config);
    for (int i = 0; i < 3; ++i)
        model::addTile(*m_config);
    QCOMPARE(capture.lines(), QStringList(QStringLiteral("New settings file written successfully.")));

    const QDir folder(model::applicationFolder(*m_config));
    QCOMPARE(folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList({QStringLiteral("pondWicket-settings.json"), QStringLiteral("Tiles")}));
    const QRegularExpression form(QStringLiteral("^Tile-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"));
    QSet<QString> folders;
    QSet<QUuid> ids;
    for (const TileItem &tile : m_config->tileItems()) {
        QVERIFY(QDir(model::tileFolderPath(tile)).exists());
        const QString name = model::tileFolderPath(tile).section(u'/', -1);
        QVERIFY2(form.match(name).hasMatch(), qPrintable(name));
        QVERIFY(tile.tileDirectory.endsWith(QStringLiteral("/Docu%20ments%25/pondWicket%20%C6%92/Tiles/")
                                            + name));
        folders.insert(name);
        ids.insert(tile.id);
        for (const TileMenuItem &link : tile.tileMenuItems)
            ids.insert(link.id);
    }
    QCOMPARE(folders.size(), 3);
    QCOMPARE(ids.size(), 3 + 3 + 5 + 3);

    Config next(m_config->documentDirectory(), m_config->stateDirectory());
    model::loadSettings(next);
    QCOMPARE(next.tileItems(), m_config->tileItems());
}

void TestTiles::contentFollowsTheCount()
{
    const auto names = [](int count) {
        QStringList all = {model::defaultTileName(count)};
        for (const TileMenuItem &link : model::defaultTileLinks(count))
            all += link.itemName + u' ' + link.itemString;
        return all.join(u'\n');
    };
    QCOMPARE(names(0),
             QStringLiteral("Welcome to pondWicket\n"
                            "About pondWicket https://www.pondwicket.example/pondWicket/index.html\n"
                            "1995 wallpaper https://www.pondwicket.example/beos/\n"
                            "1996 wallpaper https://www.pondwicket.example/copeland/"));
    QCOMPARE(names(1),
             QStringLiteral("Computer history\n"
                            "System/360 https://en.wikipedia.org/wiki/IBM_System/360\n"
                            "PDP-11 https://en.wikipedia.org/wiki/PDP-11\n"
                            "NeXT https://en.wikipedia.org/wiki/NeXT\n"
                            "Copeland https://en.wikipedia.org/wiki/Copland_(operating_system)\n"
                            "BeBox https://en.wikipedia.org/wiki/BeBox"));
    QCOMPARE(names(2),
             QStringLiteral("What’s for dinner?\nNoodles maps://?q=noodles\n"
                            "Pizza maps://?q=pizza\nTacos maps://?q=tacos"));
    QCOMPARE(names(3), QStringLiteral("Untitled\nWikipedia https://en.wikipedia.org/"));
    QCOMPARE(names(19), names(3));
}

void TestTiles::twentyIsTheLimit()
{
    m_config->setTileItems(QList<TileItem>(19));
    model::addTile(*m_config);
    QCOMPARE(m_config->tileItems().size(), 20);
    QCOMPARE(m_config->tileItems().last().tileName, QStringLiteral("Untitled"));
    QVERIFY(QDir(model::applicationFolder(*m_config)).removeRecursively());
    model::addTile(*m_config);
    QCOMPARE(m_config->tileItems().size(), 20);
    QVERIFY(!QDir(model::applicationFolder(*m_config)).exists());
}

void TestTiles::removingKeepsTheFolder()
{
    model::addTile(*m_config);
    model::addTile(*m_config);
    // Of two tiles with one id, the first goes.
    QList<TileItem> items = m_config->tileItems();
    items[1].id = items[0].id;
    m_config->setTileItems(items);
    model::removeTile(*m_config, items[0].id);
    QCOMPARE(m_config->tileItems(), QList<TileItem>{items[1]});
    QVERIFY(QDir(model::tileFolderPath(items[0])).exists());
    QCOMPARE(model::readSettingsFile(settingsFile(), nullptr)->tileItems, m_config->tileItems());
}

void TestTiles::removingAnUnknownTileWritesNothing()
{
    m_config->setTileItems({TileItem()});
    model::removeTile(*m_config, QUuid::createUuid());
    QCOMPARE(m_config->tileItems().size(), 1);
    QVERIFY(!QDir(model::applicationFolder(*m_config)).exists());
}

void TestTiles::folderThatCannotBeMadeIsReported()
{
    QVERIFY(QDir().mkpath(model::applicationFolder(*m_config)));
    QVERIFY(platform::writeInPlace(model::tilesFolder(*m_config), "a file", nullptr));
    StdoutCapture capture;
    model::ensureTilesFolder(*m_config); // something stands there, and that is all it asks
    QCOMPARE(capture.lines(), QStringList());
    model::addTile(*m_config);
    const QString name = model::tileFolderPath(m_config->tileItems().first()).section(u'/', -1);
    QCOMPARE(capture.lines(),
             QStringList(QStringLiteral("The folder “%1” could not be made: Not a directory.").arg(name)));
    QCOMPARE(model::readSettingsFile(settingsFile(), nullptr)->tileItems.size(), 1);
}

void TestTiles::folderPath_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("path");
    const auto row = [](const char *directory, const char *path) {
        QTest::newRow(directory) << QString::fromUtf8(directory) << QString::fromUtf8(path);
    };
    row("file:///a/pondWicket%20%C6%92/Tile-1", "/a/pondWicket ƒ/Tile-1/x");
    row("file:///a/Tile-1/", "/a/Tile-1/x");
    row("file:/a", "/a/x");
    row("FILE://LocalHost/a", "/a/x");
    row("file:///", "/x");
    row("file://server/a", "");
    row("https://example.org/a", "");
    row("a/b", "");
    row("file:a", "");
    row("file:///a%00b", "");
    row("file:///a%FF", "");
    row("", "");
}

void TestTiles::folderPath()
{
    QFETCH(QString, directory);
    QFETCH(QString, path);
    TileItem tile;
    tile.tileDirectory = directory;
    QCOMPARE(model::tileFilePath(tile, QStringLiteral("x")), path);
}

QTEST_GUILESS_MAIN(TestTiles)
#include "tst_tiles.moc"

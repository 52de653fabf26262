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
    void folderThatCannotBeMadeIsReported();
    void folderPath();

private:
    QString settingsFile() const
    {
        return model::applicationFolder(*m_config) + u"/pondWicket-settings.json"_qs;
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<Config> m_config;
};

void TestTiles::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_config = std::make_unique<Config>(m_dir->filePath(u"Docu ments%"_qs), m_dir->filePath(u"state"_qs));
}

void TestTiles::firstRunLeavesThreeTilesAndNothingElse()
{
    StdoutCapture capture;
    model::writeDefaultSettings(*m_config);
    model::ensureTilesFolder(*m_config);
    for (int i = 0; i < 3; ++i)
        model::addTile(*m_config);
    QCOMPARE(capture.lines(), QStringList(u"New settings file written successfully."_qs));

    const QDir folder(model::applicationFolder(*m_config));
    QCOMPARE(folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList({u"pondWicket-settings.json"_qs, u"Tiles"_qs}));
    const QRegularExpression form(u"^Tile-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"_qs);
    QSet<QString> folders;
    QSet<QUuid> ids;
    for (const TileItem &tile : m_config->tileItems()) {
        const QString name = model::tileFolderPath(tile).section(u'/', -1);
        QVERIFY2(QDir(model::tileFolderPath(tile)).exists() && form.match(name).hasMatch(), qPrintable(name));
        QVERIFY(tile.tileDirectory.endsWith(u"/Docu%20ments%25/pondWicket%20%C6%92/Tiles/"_qs + name));
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
    QCOMPARE(
        names(0).section(u'\n', 0, 1),
        u"Welcome to pondWicket\nAbout pondWicket https://www.pondwicket.example/pondWicket/index.html"_qs);
    QCOMPARE(names(1).section(u'\n', 0, 0), u"Computer history"_qs);
    QCOMPARE(names(2),
             QStringLiteral("What’s for dinner?\nNoodles maps://?q=noodles\n"
                            "Pizza maps://?q=pizza\nTacos maps://?q=tacos"));
    QCOMPARE(names(3), u"Untitled\nWikipedia https://en.wikipedia.org/"_qs);
    QCOMPARE(names(19), names(3));
}

void TestTiles::twentyIsTheLimit()
{
    m_config->setTileItems(QList<TileItem>(19));
    model::addTile(*m_config);
    QCOMPARE(m_config->tileItems().size(), 20);
    QCOMPARE(m_config->tileItems().last().tileName, u"Untitled"_qs);
    QVERIFY(QDir(model::applicationFolder(*m_config)).removeRecursively());
    model::addTile(*m_config);
    QCOMPARE(m_config->tileItems().size(), 20);
    QVERIFY(!QDir(model::applicationFolder(*m_config)).exists());
}

void TestTiles::removingKeepsTheFolder()
{
    model::removeTile(*m_config, QUuid::createUuid()); // an unknown one: nothing is written
    QVERIFY(!QDir(model::applicationFolder(*m_config)).exists());
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
             QStringList(u"The folder “%1” could not be made: Not a directory."_qs.arg(name)));
    QCOMPARE(model::readSettingsFile(settingsFile(), nullptr)->tileItems.size(), 1);
}

void TestTiles::folderPath()
{
    const std::pair<const char16_t *, const char16_t *> cases[] = {
        {u"file:///a/pondWicket%20%C6%92/Tile-1", u"/a/pondWicket ƒ/Tile-1/x"},
        {u"file:///a/Tile-1/", u"/a/Tile-1/x"},
        {u"FILE://LocalHost/a", u"/a/x"},
        {u"file:///", u"/x"},
        {u"file://server/a", u""},
        {u"https://example.org/a", u""},
        {u"a/b", u""},
        {u"file:a", u""},
        {u"file:///a%00b", u""},
        {u"file:///a%FF", u""},
        {u"", u""}};
    for (const auto &[directory, path] : cases) {
        TileItem tile;
        tile.tileDirectory = QString::fromUtf16(directory);
        QVERIFY2(model::tileFilePath(tile, u"x"_qs) == path, qPrintable(tile.tileDirectory));
    }
}

QTEST_GUILESS_MAIN(TestTiles)
#include "tst_tiles.moc"

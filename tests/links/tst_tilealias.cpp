// SPDX-License-Identifier: MIT
#include "links/linkkind.h"
#include "links/tilealias.h"
#include "model/settingsstore.h"
#include "model/tiles.h"
#include "platform/aliasfile.h"
#include "support/fakefilepanel.h"
#include "support/stdoutcapture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class TestTileAlias : public QObject
{
    Q_OBJECT

private:
    // On the home folder's file system, whose Trash is the one in the data folder.
    QTemporaryDir m_root{QDir::homePath() + QStringLiteral("/.tst_tilealias-XXXXXX")};
    std::unique_ptr<Config> m_config;

    QString at(const QString &name) const { return m_root.filePath(name); }
    QByteArray make(const QString &name) const
    {
        QDir().mkpath(at(name.section(QLatin1Char('/'), 0, -2)));
        if (!name.endsWith(QLatin1Char('/')) && !QFile(at(name)).open(QIODevice::WriteOnly))
            qFatal("cannot make a file");
        return QFile::encodeName(at(name));
    }
    const TileItem &tile() const { return m_config->tileItems().constFirst(); }
    TileMenuItem linkTo(const QString &path) const
    {
        TileMenuItem link;
        link.itemString = path;
        return link;
    }
    QStringList trashed() const
    {
        return QDir(at(QStringLiteral("data/Trash/files"))).entryList(QDir::Files);
    }

private Q_SLOTS:
    void initTestCase();
    void init();
    void names_data();
    void names();
    void chosenThingIsLinked_data();
    void chosenThingIsLinked();
    void cancelledPanelChangesNothing();
    void tileMayGoWhileThePanelIsOpen();
    void linkIsAddedWithoutItsAliasFile();
    void twoLinksHaveTwoFiles();
    void removedLinkGoesToTheTrash();
    void nothingElseGoesToTheTrash_data();
    void nothingElseGoesToTheTrash();
};

void TestTileAlias::initTestCase()
{
    QVERIFY(m_root.isValid());
    // Before GIO asks for it: it asks once.
    qputenv("XDG_DATA_HOME", QFile::encodeName(at(QStringLiteral("data"))));
    QDir().mkpath(at(QStringLiteral("data")));
}

void TestTileAlias::init()
{
    for (const char *folder : {"Documents", "state", "data/Trash"})
        QDir(at(QLatin1String(folder))).removeRecursively();
    m_config = std::make_unique<Config>(at(QStringLiteral("Documents")), at(QStringLiteral("state")));
    model::addTile(*m_config);
    const QUuid id = tile().id;
    m_config->editTile(id, [](TileItem &item) { item.tileMenuItems.clear(); });
}

void TestTileAlias::names_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *file, const QString &name) {
        QTest::newRow(file) << QByteArray(file) << name;
    };
    row("/a/Annual Report.pdf", QStringLiteral("AnnualReport"));
    row("/a/Calculator.app", QStringLiteral("Calculator"));
    row("/a/Projects", QStringLiteral("Projects"));
    row("/a/Notes (old)", QStringLiteral("Notesold"));
    row("/a/Mr. Smith", QStringLiteral("MrSmith"));
    row("/a/archive.tar.gz", QStringLiteral("archivetar"));
    row("/a/.profile", QStringLiteral("profile"));
    row("/a/etc.", QStringLiteral("etc"));
    row("/a/---", QString());
    row("/a/Cafe\u0301 Ⅻ ½ \U0001D49C.txt", QStringLiteral("Cafe\u0301Ⅻ½\U0001D49C"));
    row("/a/caf\xe9.txt", QStringLiteral("caf"));
    row("/", QString());
}

void TestTileAlias::names()
{
    QFETCH(QByteArray, file);
    QTEST(links::linkName(file), "name");
}

void TestTileAlias::chosenThingIsLinked_data()
{
    QTest::addColumn<QString>("thing");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("kind");
    QTest::newRow("application") << QStringLiteral("x/Calculator.app/") << QStringLiteral("Calculator")
                                 << QStringLiteral("appAlias");
    QTest::newRow("folder") << QStringLiteral("x/My Projects/") << QStringLiteral("MyProjects")
                            << QStringLiteral("folderAlias");
    QTest::newRow("document") << QStringLiteral("x/a.txt") << QStringLiteral("a")
                              << QStringLiteral("documentAlias");
}

void TestTileAlias::chosenThingIsLinked()
{
    QFETCH(QString, thing);
    make(thing);
    FakeFilePanel panel;
    panel.answer = at(thing);
    StdoutCapture output;
    links::linkApplicationOrFile(*m_config, tile().id, panel);
    QCOMPARE(output.lines(), QStringList());
    QCOMPARE(panel.titles, QStringList{QStringLiteral("Link application or file")});
    QCOMPARE(tile().tileMenuItems.size(), 1);
    const TileMenuItem link = tile().tileMenuItems.constFirst();
    QTEST(link.itemName, "name");
    QTEST(links::linkKind(link), "kind");
    const QString folder = model::tileFolderPath(tile()) + QLatin1Char('/');
    QVERIFY(link.itemString.startsWith(folder));
    QCOMPARE(link.itemString.size() - folder.size(), 36);
    QCOMPARE(model::readSettingsFile(model::settingsFileURL(*m_config), nullptr)->tileItems,
             m_config->tileItems());
}

void TestTileAlias::cancelledPanelChangesNothing()
{
    const QList<TileItem> before = m_config->tileItems();
    FakeFilePanel panel;
    links::linkApplicationOrFile(*m_config, tile().id, panel);
    QCOMPARE(m_config->tileItems(), before);
}

void TestTileAlias::tileMayGoWhileThePanelIsOpen()
{
    make(QStringLiteral("a.txt"));
    const QString folder = model::tileFolderPath(tile());
    FakeFilePanel panel;
    panel.answer = at(QStringLiteral("a.txt"));
    panel.meanwhile = [this] { model::removeTile(*m_config, tile().id); };
    links::linkApplicationOrFile(*m_config, tile().id, panel);
    QVERIFY(m_config->tileItems().isEmpty());
    QVERIFY(QDir(folder).isEmpty());
}

void TestTileAlias::linkIsAddedWithoutItsAliasFile()
{
    const QByteArray target = make(QStringLiteral("a.txt"));
    QVERIFY(QDir(model::tileFolderPath(tile())).removeRecursively());
    StdoutCapture output;
    links::linkFile(*m_config, tile().id, target);
    const QStringList lines = output.lines();
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.constFirst().startsWith(QLatin1String("Failed to create alias: The file")));
    QCOMPARE(tile().tileMenuItems.size(), 1);
}

void TestTileAlias::twoLinksHaveTwoFiles()
{
    const QByteArray target = make(QStringLiteral("a.txt"));
    links::linkFile(*m_config, tile().id, target);
    links::linkFile(*m_config, tile().id, target);
    QCOMPARE(tile().tileMenuItems.size(), 2);
    QVERIFY(tile().tileMenuItems.at(0).itemString != tile().tileMenuItems.at(1).itemString);
    QCOMPARE(QDir(model::tileFolderPath(tile())).entryList(QDir::Files).size(), 2);
}

void TestTileAlias::removedLinkGoesToTheTrash()
{
    links::linkFile(*m_config, tile().id, make(QStringLiteral("a.txt")));
    const TileMenuItem link = tile().tileMenuItems.constFirst();
    links::recycleAliasFile(*m_config, link);
    QTRY_COMPARE(trashed(), QStringList{link.itemString.section(QLatin1Char('/'), -1)});
    QVERIFY(!QFile::exists(link.itemString));
    QVERIFY(QFile::exists(at(QStringLiteral("a.txt"))));
}

void TestTileAlias::nothingElseGoesToTheTrash_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("the user's folder") << QStringLiteral("pictures/");
    QTest::newRow("the user's file") << QStringLiteral("letter.txt");
    QTest::newRow("a file beside the tile folders") << QStringLiteral("Documents/pondWicket ƒ/Tiles/x");
    QTest::newRow("the notes") << QStringLiteral("TILE/Notes.txt");
    QTest::newRow("a folder in a tile folder") << QStringLiteral("TILE/things/");
    QTest::newRow("the tile folder") << QStringLiteral("TILE/");
    QTest::newRow("out of the tile folder again") << QStringLiteral("TILE/../../../../letter.txt");
    QTest::newRow("broken alias") << QStringLiteral("TILE/broken");
}

void TestTileAlias::nothingElseGoesToTheTrash()
{
    QFETCH(QString, path);
    path.replace(QLatin1String("TILE"), QDir(m_root.path()).relativeFilePath(model::tileFolderPath(tile())));
    make(path);
    make(QStringLiteral("letter.txt"));
    if (path.endsWith(QLatin1String("broken"))) {
        QFile file(at(path));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("pondWicket alias 1\npath: /no/such/file\n");
    }
    // A second link tells when moves come through.
    links::linkFile(*m_config, tile().id, QFile::encodeName(at(QStringLiteral("letter.txt"))));
    StdoutCapture output;
    links::recycleAliasFile(*m_config, linkTo(at(path)));
    links::recycleAliasFile(*m_config, tile().tileMenuItems.constLast());
    QTRY_COMPARE(trashed().size(), 1);
    QVERIFY(QFile::exists(at(path)));
}

QTEST_MAIN(TestTileAlias)
#include "tst_tilealias.moc"

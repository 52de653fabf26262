// SPDX-License-Identifier: MIT
#include "onetile.h"

#include "links/linkkind.h"
#include "links/tilealias.h"
#include "support/fakefilepanel.h"

class TestTileAlias : public QObject
{
    Q_OBJECT

private:
    // On the home folder's file system, whose Trash is the one in the data folder.
    const QTemporaryDir m_data{QDir::homePath() + u"/.tst_tilealias-XXXXXX"_qs};

    QDir trash() const { return QDir(m_data.filePath(u"Trash/files"_qs)); }
    QStringList trashed() const { return trash().entryList(QDir::Files); }

private Q_SLOTS:
    // GIO asks for the folder once.
    void initTestCase() { QVERIFY(qputenv("XDG_DATA_HOME", QFile::encodeName(m_data.path()))); }
    void names();
    void chosenThingIsLinked();
    void tileMayGoWhileThePanelIsOpen();
    void linkIsAddedWithoutItsAliasFile();
    void onlyAliasFilesGoToTheTrash();
};

void TestTileAlias::names()
{
    const std::pair<QByteArray, QString> rows[] = {
        {"/a/Annual Report.pdf", u"AnnualReport"_qs},
        {"/a/Notes (old)", u"Notesold"_qs},
        {"/a/Mr. Smith", u"MrSmith"_qs},
        {"/a/archive.tar.gz", u"archivetar"_qs},
        {"/a/.profile", u"profile"_qs},
        {"/a/etc.", u"etc"_qs},
        {"/a/---", QString()},
        {"/a/Cafe\u0301 Ⅻ ½ \U0001D49C.txt", u"Cafe\u0301Ⅻ½\U0001D49C"_qs},
        {"/a/caf\xe9.txt", u"caf"_qs}};
    for (const auto &[file, name] : rows)
        QVERIFY2(links::linkName(file) == name, file.constData());
}

void TestTileAlias::chosenThingIsLinked()
{
    OneTile world;
    const std::tuple<QString, QString, QString> rows[] = {
        {u"x/Calculator.app/"_qs, u"Calculator"_qs, u"appAlias"_qs},
        {u"x/My Projects/"_qs, u"MyProjects"_qs, u"folderAlias"_qs},
        {u"x/a.txt"_qs, u"a"_qs, u"documentAlias"_qs}};
    for (const auto &[thing, name, kind] : rows) {
        FakeFilePanel panel;
        panel.answer = world.make(thing);
        links::linkApplicationOrFile(world.config, world.id, panel);
        QCOMPARE(panel.titles, QStringList{u"Link application or file"_qs});
        const TileMenuItem link = world.links().constLast();
        QCOMPARE(link.itemName, name);
        QCOMPARE(links::linkKind(link), kind);
        const QString folder = model::tileFolderPath(world.tile()) + u'/';
        QVERIFY(link.itemString.startsWith(folder) && link.itemString.size() == folder.size() + 36);
        QCOMPARE(model::readSettingsFile(model::settingsFileURL(world.config), nullptr)->tileItems,
                 world.config.tileItems());
    }
    FakeFilePanel cancelled;
    links::linkApplicationOrFile(world.config, world.id, cancelled);
    QCOMPARE(world.links().size(), 3);
}

void TestTileAlias::tileMayGoWhileThePanelIsOpen()
{
    OneTile world;
    const QString folder = model::tileFolderPath(world.tile());
    FakeFilePanel panel;
    panel.answer = world.make(u"a.txt"_qs);
    panel.meanwhile = [&world] { model::removeTile(world.config, world.id); };
    links::linkApplicationOrFile(world.config, world.id, panel);
    QVERIFY(world.config.tileItems().isEmpty());
    QVERIFY(QDir(folder).isEmpty());
}

void TestTileAlias::linkIsAddedWithoutItsAliasFile()
{
    OneTile world;
    QVERIFY(QDir(model::tileFolderPath(world.tile())).removeRecursively());
    StdoutCapture output;
    links::linkFile(world.config, world.id, QFile::encodeName(world.make(u"a.txt"_qs)));
    QVERIFY(output.lines().join(u'\n').startsWith(u"Failed to create alias: The file"));
    QCOMPARE(world.links().size(), 1);
}

void TestTileAlias::onlyAliasFilesGoToTheTrash()
{
    OneTile world(QDir::homePath());
    const QString target = world.make(u"letter.txt"_qs);
    const QString folder = QDir(world.root.path()).relativeFilePath(model::tileFolderPath(world.tile()));
    QStringList kept = {target,
                        world.make(u"pictures/"_qs),
                        world.make(u"Documents/pondWicket ƒ/Tiles/x"_qs),
                        world.make(folder + u"/Notes.txt"_qs),
                        world.make(folder + u"/things/"_qs),
                        world.at(folder + u'/'),
                        world.at(folder + u"/../../../../letter.txt"_qs),
                        world.make(folder + u"/broken"_qs, "pondWicket alias 1\npath: /no/such/file\n")};
    for (const QString &path : kept) {
        TileMenuItem link;
        link.itemString = path;
        links::recycleAliasFile(world.config, link);
    }
    for (int i = 0; i < 2; ++i)
        links::linkFile(world.config, world.id, QFile::encodeName(target));
    // The one that may go tells when moves come through.
    const QString alias = world.links()[0].itemString;
    links::recycleAliasFile(world.config, world.links()[0]);
    QTRY_COMPARE(trashed(), QStringList{alias.section(u'/', -1)});
    QVERIFY(!QFile::exists(alias));
    for (const QString &path : kept << world.links()[1].itemString)
        QVERIFY2(QFile::exists(path), qPrintable(path));
}

QTEST_MAIN(TestTileAlias)
#include "tst_tilealias.moc"

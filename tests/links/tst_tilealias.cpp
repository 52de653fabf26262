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

private Q_SLOTS:
    // GIO asks for the folder once.
    void initTestCase() { QVERIFY(qputenv("XDG_DATA_HOME", QFile::encodeName(m_data.path()))); }
    void names()
    {
        const std::pair<QByteArray, QString> rows[] = {
            {"/a/Annual Report.pdf", u"AnnualReport"_qs},
            {"/a/Mr. Smith", u"MrSmith"_qs},
            {"/a/archive.tar.gz", u"archivetar"_qs},
            {"/a/.profile", u"profile"_qs},
            {"/a/etc.", u"etc"_qs},
            {"/a/Cafe\u0301 Ⅻ ½ \U0001D49C.txt", u"Cafe\u0301Ⅻ½\U0001D49C"_qs},
            {"/a/caf\xe9.txt", u"caf"_qs}};
        for (const auto &[file, name] : rows)
            QVERIFY2(links::linkName(file) == name, file.constData());
    }

    void chosenThingIsLinked()
    {
        OneTile world;
        FakeFilePanel panel;
        links::linkApplicationOrFile(world.config, world.id, panel); // cancelled
        QVERIFY(world.links().isEmpty());
        panel.answer = world.make(u"x/My Projects/"_qs);
        links::linkApplicationOrFile(world.config, world.id, panel);
        const TileMenuItem link = world.links().constLast();
        QCOMPARE(link.itemName + u' ' + links::linkKind(link), u"MyProjects folderAlias"_qs);
        QVERIFY(link.itemString.startsWith(model::tileFolderPath(world.tile()) + u'/'));
        QVERIFY(world.saved());
    }

    void onlyAliasFilesGoToTheTrash()
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
        QTRY_COMPARE(support::namesIn(m_data.filePath(u"Trash/files"_qs)),
                     QStringList{alias.section(u'/', -1)});
        QVERIFY(!QFile::exists(alias));
        for (const QString &path : kept << world.links()[1].itemString)
            QVERIFY2(QFile::exists(path), qPrintable(path));
    }
};

QTEST_MAIN(TestTileAlias)
#include "tst_tilealias.moc"

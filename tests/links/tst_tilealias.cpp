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
    QStringList trashed() const
    {
        return QDir(at(QStringLiteral("data/Trash/files"))).entryList(QDir::Files);
    }

private Q_SLOTS:
    void initTestCase();
    void init();
    void names();
    void chosenThingIsLinked();
    void tileMayGoWhileThePanelIsOpen();
    void linkIsAddedWithoutItsAliasFile();
    void removedLinkGoesToTheTrash();
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

void TestTileAlias::names()
{
    const std::pair<QByteArray, QString> rows[] = {
        {"/a/Annual Report.pdf", u"AnnualReport"_qs},
        {"/a/Projects", u"Projects"_qs},
        {"/a/Notes (old)", u"Notesold"_qs},
        {"/a/Mr. Smith", u"MrSmith"_qs},
        {"/a/archive.tar.gz", u"archivetar"_qs},
        {"/a/.profile", u"profile"_qs},
        {"/a/etc.", u"etc"_qs},
        {"/a/---", QString()},
        {"/a/Cafe\u0301 Ⅻ ½ \U0001D49C.txt", u"Cafe\u0301Ⅻ½\U0001D49C"_qs},
        {"/a/caf\xe9.txt", u"caf"_qs},
        {"/", QString()}};
    for (const auto &[file, name] : rows)
        QVERIFY2(links::linkName(file) == name, file.constData());
}

void TestTileAlias::chosenThingIsLinked()
{
    const std::tuple<QString, QString, QString> rows[] = {
        {u"x/Calculator.app/"_qs, u"Calculator"_qs, u"appAlias"_qs},
        {u"x/My Projects/"_qs, u"MyProjects"_qs, u"folderAlias"_qs},
        {u"x/a.txt"_qs, u"a"_qs, u"documentAlias"_qs}};
    for (const auto &[thing, name, kind] : rows) {
        make(thing);
        FakeFilePanel panel;
        panel.answer = at(thing);
        links::linkApplicationOrFile(*m_config, tile().id, panel);
        QCOMPARE(panel.titles, QStringList{u"Link application or file"_qs});
        const TileMenuItem link = tile().tileMenuItems.constLast();
        QCOMPARE(link.itemName, name);
        QCOMPARE(links::linkKind(link), kind);
        const QString folder = model::tileFolderPath(tile()) + u'/';
        QVERIFY(link.itemString.startsWith(folder));
        QCOMPARE(link.itemString.size() - folder.size(), 36);
        QCOMPARE(model::readSettingsFile(model::settingsFileURL(*m_config), nullptr)->tileItems,
                 m_config->tileItems());
    }
    FakeFilePanel cancelled;
    links::linkApplicationOrFile(*m_config, tile().id, cancelled);
    QCOMPARE(tile().tileMenuItems.size(), 3);
}

void TestTileAlias::tileMayGoWhileThePanelIsOpen()
{
    make(u"a.txt"_qs);
    const QString folder = model::tileFolderPath(tile());
    FakeFilePanel panel;
    panel.answer = at(u"a.txt"_qs);
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

void TestTileAlias::removedLinkGoesToTheTrash()
{
    const QByteArray target = make(u"a.txt"_qs);
    links::linkFile(*m_config, tile().id, target);
    links::linkFile(*m_config, tile().id, target);
    const QString alias = tile().tileMenuItems.at(0).itemString;
    links::recycleAliasFile(*m_config, tile().tileMenuItems.at(0));
    QTRY_COMPARE(trashed(), QStringList{alias.section(u'/', -1)});
    QVERIFY(!QFile::exists(alias));
    QVERIFY(QFile::exists(tile().tileMenuItems.at(1).itemString));
    QVERIFY(QFile::exists(at(u"a.txt"_qs)));
}

void TestTileAlias::nothingElseGoesToTheTrash()
{
    const QString folder = QDir(m_root.path()).relativeFilePath(model::tileFolderPath(tile()));
    const QStringList paths = {u"pictures/"_qs,
                               u"letter.txt"_qs,
                               u"Documents/pondWicket ƒ/Tiles/x"_qs,
                               folder + u"/Notes.txt"_qs,
                               folder + u"/things/"_qs,
                               folder + u'/',
                               folder + u"/../../../../letter.txt"_qs,
                               folder + u"/broken"_qs};
    for (const QString &path : paths)
        make(path);
    QFile broken(at(paths.constLast()));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("pondWicket alias 1\npath: /no/such/file\n");
    broken.close();
    links::linkFile(*m_config, tile().id, QFile::encodeName(at(u"letter.txt"_qs)));
    for (const QString &path : paths) {
        TileMenuItem link;
        link.itemString = at(path);
        links::recycleAliasFile(*m_config, link);
    }
    // The one that may go tells when moves come through.
    links::recycleAliasFile(*m_config, tile().tileMenuItems.constLast());
    QTRY_COMPARE(trashed().size(), 1);
    for (const QString &path : paths)
        QVERIFY2(QFile::exists(at(path)), qPrintable(path));
}

QTEST_MAIN(TestTileAlias)
#include "tst_tilealias.moc"

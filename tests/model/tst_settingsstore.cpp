// SPDX-License-Identifier: MIT
// The settings file, and the operations on tiles that write it.
#include "model/safetycopies.h"
#include "model/settingsjson.h"
#include "model/settingsstore.h"
#include "model/tiles.h"
#include "support/files.h"
#include "support/stdoutcapture.h"

#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace support;

class TestSettingsStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_config = std::make_unique<Config>(documents(), state());
    }

    void savedFieldsLoadAndLoadingWritesNothing()
    {
        m_config->setCurrentTheme(u"1984"_qs);
        m_config->setAvailableThemes({u"1984"_qs, QString()});
        m_config->setShowsDate(true);
        m_config->setDirection(u"ttb"_qs);
        m_config->setAppIcon(u"1988"_qs);
        model::addTile(*m_config);
        QVERIFY(QDir(state()).removeRecursively());
        const QDateTime before = QFileInfo(file()).lastModified();

        Config other(documents(), state());
        StdoutCapture capture;
        model::loadSettings(other);
        QCOMPARE(capture.lines(), QStringList());
        QCOMPARE(model::settingsToJson(other.stored()), model::settingsToJson(m_config->stored()));
        QCOMPARE(QFileInfo(file()).lastModified(), before);
        QVERIFY(!QFile::exists(state()));
        QCOMPARE(namesIn(folder()), QStringList({u"Tiles"_qs, u"pondWicket-settings.json"_qs}));
    }

    void brokenFileChangesNothing()
    {
        StdoutCapture capture;
        model::loadSettings(*m_config);
        QCOMPARE(capture.lines(), QStringList(u"Settings file not found."_qs));
        QVERIFY(QDir(folder()).isEmpty());
        make(file(), R"({"currentTheme":"1984"})");
        model::loadSettings(*m_config);
        QCOMPARE(capture.lines().last(),
                 u"The settings file is not valid: “availableThemes” is missing (line 1, column 23)."_qs);
        QCOMPARE(m_config->currentTheme(), u"2024"_qs);
    }

    void failedSaveIsReported()
    {
        const QString name = u"pondWicket ƒ/pondWicket-settings.json"_qs;
        const QString nowhere = u"/nowhere/x"_qs;
        // Below the documents folder, a folder if it ends in a slash; the target of a link there; why it
        // fails.
        const std::array<QString, 3> cases[] = {
            {name + u'/', {}, u"Is a directory."_qs},
            {name, u"/dev/full"_qs, u"Invalid argument."_qs},
            {name, nowhere, u"No such file or directory."_qs},
            {u"pondWicket ƒ"_qs, {}, u"Not a directory."_qs},
            {u"pondWicket ƒ"_qs, nowhere, u"No such file or directory."_qs}};
        for (const auto &[obstacle, target, reason] : cases) {
            init();
            const QString path = documents() + u'/' + obstacle;
            if (target.isEmpty())
                make(path, "mine");
            else
                QVERIFY(QFile::link(target, make(path.section(u'/', 0, -2) + u'/') + path.section(u'/', -1)));
            StdoutCapture capture;
            QStringList said;
            if (path == folder() && !target.isEmpty())
                said += u"The folder “pondWicket ƒ” could not be made: File exists."_qs;
            said += u"Failed to save JSON data: The file “pondWicket-settings.json” could not be written: "_qs
                + reason;
            model::saveSettings(*m_config);
            QCOMPARE(capture.lines(), said);
            if (platform::itemExists(file()))
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^No safety copy"_qs));
            model::writeDefaultSettings(*m_config);
            QCOMPARE(capture.lines(), said);
        }
    }

    void linkStaysALink()
    {
        const QString elsewhere = m_dir->filePath(u"elsewhere.json"_qs);
        QVERIFY(QDir().mkpath(folder()));
        QVERIFY(QFile::link(elsewhere, file()));
        model::saveSettings(*m_config); // makes the file that the link names
        m_config->setShowsDate(true);
        model::saveSettings(*m_config);
        QVERIFY(QFileInfo(file()).isSymLink());
        QVERIFY(bytesOf(elsewhere).contains("\"showsDate\" : true"));
        QCOMPARE(namesIn(folder()).size(), 1);
    }

    void failedCopyDoesNotStopTheSave()
    {
        make(state().section(u'/', 0, -2), "a file in the state folder's place");
        const QRegularExpression warning(u"^No safety copy of the settings: .*Not a directory"_qs);
        QTest::ignoreMessage(QtWarningMsg, warning);
        StdoutCapture capture;
        model::saveSettings(*m_config);
        QCOMPARE(capture.lines(), QStringList());
        QVERIFY(QFile::exists(file()));
    }

    void replacedFileIsKept()
    {
        // A save was cut short: the file is in pieces, and only the copy of the save is whole. The first run
        // that follows must lose neither.
        m_config->setDirection(u"ttb"_qs);
        for (int save = 0; save < 2; ++save)
            model::saveSettings(*m_config);
        const QByteArray whole = bytesOf(file());
        QCOMPARE(bytesOf(state() + u"/save-before.json"_qs), whole);
        make(file(), whole.first(100));
        const StdoutCapture silent;
        model::writeDefaultSettings(*m_config);
        QVERIFY(bytesOf(file()).contains("\"direction\" : \"ltr\""));
        QCOMPARE(namesIn(state()).size(), 4);
        QCOMPARE(bytesOf(state() + u'/' + namesIn(state()).filter(u"replaced-"_qs).first()),
                 whole.first(100));
        QCOMPARE(bytesOf(state() + u'/' + namesIn(state()).filter(u"last-good-"_qs).first()), whole);

        // Only the newest ten stay, and nothing that is not ours goes.
        make(state() + u"/replaced-by-me.json"_qs, "x");
        for (int year = 2001; year < 2015; ++year)
            make(state() + u"/replaced-"_qs + QString::number(year) + u"0101T000000000Z.json"_qs, "x");
        model::writeDefaultSettings(*m_config);
        const QStringList replaced = namesIn(state()).filter(QRegularExpression(u"^replaced-2"_qs));
        QCOMPARE(replaced.size(), 10);
        QCOMPARE(replaced.first().left(13), u"replaced-2007"_qs);
        QVERIFY(namesIn(state()).contains(u"replaced-by-me.json"_qs));
    }

    void addedTilesHaveFoldersAndIdsOfTheirOwn()
    {
        for (int i = 0; i < 21; ++i)
            model::addTile(*m_config);
        const QRegularExpression form(
            u"/Docu%20ments%25/pondWicket%20%C6%92/Tiles/Tile-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"_qs);
        QSet<QUuid> ids;
        qsizetype links = 0;
        for (const TileItem &tile : m_config->tileItems()) {
            QVERIFY2(form.match(tile.tileDirectory).hasMatch(), qPrintable(tile.tileDirectory));
            ids.insert(tile.id);
            for (const TileMenuItem &link : tile.tileMenuItems)
                ids.insert(link.id);
            links += tile.tileMenuItems.size();
        }
        QCOMPARE(m_config->tileItems().size(), 20); // which is the limit
        QCOMPARE(namesIn(model::tilesFolder(*m_config)).size(), 20);
        QCOMPARE(ids.size(), 20 + links);
        QCOMPARE(saved(), m_config->tileItems());
    }

    void removingKeepsTheFolder()
    {
        model::removeTile(*m_config, QUuid::createUuid()); // an unknown one: nothing is written
        QVERIFY(!QDir(folder()).exists());
        // Of two tiles with one id, the first goes.
        model::addTile(*m_config);
        const TileItem tile = m_config->tileItems().first();
        TileItem second = tile;
        second.tileName = u"second"_qs;
        m_config->setTileItems({tile, second});
        model::removeTile(*m_config, tile.id);
        QCOMPARE(m_config->tileItems(), QList<TileItem>{second});
        QVERIFY(QDir(model::tileFolderPath(tile)).exists());
        QCOMPARE(saved(), m_config->tileItems());
    }

    void folderPath()
    {
        const auto pathOf = [](const char *directory) {
            TileItem tile;
            tile.tileDirectory = QString::fromUtf8(directory);
            return model::tileFilePath(tile, u"x"_qs);
        };
        QCOMPARE(pathOf("file:///a/pondWicket%20%C6%92/Tile-1/"), u"/a/pondWicket ƒ/Tile-1/x"_qs);
        QCOMPARE(pathOf("FILE://LocalHost/a"), u"/a/x"_qs);
        QCOMPARE(pathOf("file:///"), u"/x"_qs);
        for (const char *none : {"file://server/a", "https://example.org/a", "a/b", "file:a", "file:///a%00b",
                                 "file:///a%FF", ""})
            QCOMPARE(pathOf(none), QString());
    }

private:
    QString documents() const { return m_dir->filePath(u"Docu ments%"_qs); }
    QString state() const { return m_dir->filePath(u"state/pondWicket"_qs); }
    QString folder() const { return documents() + u"/pondWicket ƒ"_qs; }
    QString file() const { return folder() + u"/pondWicket-settings.json"_qs; }
    QList<TileItem> saved() const { return model::readSettingsFile(file(), nullptr)->tileItems; }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<Config> m_config;
};

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "tst_settingsstore.moc"

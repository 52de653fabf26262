// SPDX-License-Identifier: MIT
#include "model/safetycopies.h"
#include "model/settingsstore.h"
#include "platform/files.h"
#include "support/stdoutcapture.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

class TestSettingsStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void savedFieldsLoad();
    void brokenFileChangesNothing();
    void loadingWritesNothing();
    void deletedFolderComesBack();
    void failedSaveIsReported();
    void linkStaysALink();
    void lastGoodIsWholeWhenTheSaveFails();
    void failedCopyDoesNotStopTheSave();
    void replacedFileIsKept();

private:
    QString documents() const { return m_dir->filePath(u"Documents"_qs); }
    QString state() const { return m_dir->filePath(u"state/pondWicket"_qs); }
    QString folder() const { return documents() + u"/pondWicket ƒ"_qs; }
    QString file() const { return folder() + u"/pondWicket-settings.json"_qs; }
    static QByteArray bytesOf(const QString &path)
    {
        return platform::readWholeFile(path, nullptr).value_or("(none)");
    }
    static void write(const QString &path, const QByteArray &bytes)
    {
        QVERIFY(QDir().mkpath(path.section(u'/', 0, -2)));
        QVERIFY(platform::writeInPlace(path, bytes, nullptr));
    }
    QStringList copies() const { return QDir(state()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<Config> m_config;
};

void TestSettingsStore::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_config = std::make_unique<Config>(documents(), state());
}

void TestSettingsStore::savedFieldsLoad()
{
    m_config->setCurrentTheme(u"1984"_qs);
    m_config->setAvailableThemes({u"1984"_qs, QString()});
    m_config->setShowsDate(true);
    m_config->setDirection(u"ttb"_qs);
    m_config->setAppIcon(u"1988"_qs);
    TileItem tile;
    tile.tileDirectory = u"file:///x"_qs;
    m_config->setTileItems({tile});
    model::saveSettings(*m_config);

    Config other(documents(), state());
    QStringList order;
    const std::pair<void (Config::*)(), const char *> signs[] = {
        {&Config::tileItemsChanged, "tileItems"},
        {&Config::appIconChanged, "appIcon"},
        {&Config::directionChanged, "direction"},
        {&Config::showsDateChanged, "showsDate"},
        {&Config::availableThemesChanged, "availableThemes"},
        {&Config::currentThemeChanged, "currentTheme"}};
    for (const auto &[signal, name] : signs)
        connect(&other, signal, this, [&order, name = name] { order += QLatin1String(name); });
    model::loadSettings(other);
    QCOMPARE(order.join(u' '), u"currentTheme availableThemes showsDate direction appIcon tileItems"_qs);
    QCOMPARE(other.tileItems(), m_config->tileItems());
    QCOMPARE(other.availableThemes(), m_config->availableThemes());
}

void TestSettingsStore::brokenFileChangesNothing()
{
    StdoutCapture capture;
    model::loadSettings(*m_config);
    QCOMPARE(capture.lines(), QStringList(u"Settings file not found."_qs));
    QVERIFY(QDir(folder()).isEmpty());
    write(file(), R"({"currentTheme":"1984"})");
    model::loadSettings(*m_config);
    QCOMPARE(capture.lines().last(),
             u"The settings file is not valid: “availableThemes” is missing (line 1, column 23)."_qs);
    QCOMPARE(m_config->currentTheme(), u"2024"_qs);
}

void TestSettingsStore::loadingWritesNothing()
{
    model::saveSettings(*m_config);
    QVERIFY(QDir(state()).removeRecursively());
    const QDateTime before = QFileInfo(file()).lastModified();
    StdoutCapture capture;
    model::loadSettings(*m_config);
    QCOMPARE(capture.lines(), QStringList());
    QCOMPARE(QFileInfo(file()).lastModified(), before);
    QVERIFY(!QFile::exists(state()));
    QCOMPARE(QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 1);
}

void TestSettingsStore::deletedFolderComesBack()
{
    model::saveSettings(*m_config);
    const QByteArray bytes = bytesOf(file());
    QVERIFY(QDir(documents()).removeRecursively());
    model::saveSettings(*m_config);
    QCOMPARE(bytesOf(file()), bytes);
}

void TestSettingsStore::failedSaveIsReported()
{
    struct Case
    {
        QString obstacle; // below the documents folder; ends in a slash when it is a folder
        QString linkTarget; // of a link in the obstacle's place
        QString reason;
        QStringList before;
    };
    const QString name = u"pondWicket ƒ/pondWicket-settings.json"_qs;
    const QString nowhere = u"/nowhere/x"_qs;
    const Case cases[] = {{name + u'/', {}, u"Is a directory."_qs, {}},
                          {name, u"/dev/full"_qs, u"Invalid argument."_qs, {}},
                          {name, nowhere, u"No such file or directory."_qs, {}},
                          {u"pondWicket ƒ"_qs, {}, u"Not a directory."_qs, {}},
                          {u"pondWicket ƒ"_qs,
                           nowhere,
                           u"No such file or directory."_qs,
                           {u"The folder “pondWicket ƒ” could not be made: File exists."_qs}}};
    for (const Case &c : cases) {
        init();
        const QString path = documents() + u'/' + c.obstacle;
        QVERIFY(QDir().mkpath(path.section(u'/', 0, -2)));
        if (!c.linkTarget.isEmpty())
            QVERIFY(QFile::link(c.linkTarget, path));
        else if (!c.obstacle.endsWith(u'/'))
            write(path, "mine");
        const QString failed =
            u"Failed to save JSON data: The file “pondWicket-settings.json” could not be written: "_qs;
        StdoutCapture capture;
        model::saveSettings(*m_config);
        QCOMPARE(capture.lines(), c.before + QStringList(failed + c.reason));
        if (platform::itemExists(file()))
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^No safety copy"_qs));
        model::writeDefaultSettings(*m_config);
        QCOMPARE(capture.lines(), c.before + QStringList(failed + c.reason));
    }
}

void TestSettingsStore::linkStaysALink()
{
    const QString elsewhere = m_dir->filePath(u"elsewhere.json"_qs);
    QVERIFY(QDir().mkpath(folder()));
    QVERIFY(QFile::link(elsewhere, file()));
    model::saveSettings(*m_config); // makes the file that the link names
    m_config->setShowsDate(true);
    model::saveSettings(*m_config);
    QVERIFY(QFileInfo(file()).isSymLink());
    QVERIFY(bytesOf(elsewhere).contains("\"showsDate\" : true"));
    QCOMPARE(QDir(folder())
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
                 .size(),
             1);
}

void TestSettingsStore::lastGoodIsWholeWhenTheSaveFails()
{
    model::saveSettings(*m_config);
    QCOMPARE(bytesOf(model::lastGoodPath(state())), bytesOf(file()));
    QVERIFY(QFile::remove(file()));
    QVERIFY(QDir().mkpath(file()));
    m_config->setShowsDate(true);
    StdoutCapture capture;
    model::saveSettings(*m_config);
    QCOMPARE(capture.lines().size(), 1);
    QVERIFY(bytesOf(model::lastGoodPath(state())).contains("\"showsDate\" : true"));
    QVERIFY(bytesOf(state() + u"/save-before.json"_qs).contains("\"showsDate\" : false"));
    QCOMPARE(copies().size(), 2);
}

void TestSettingsStore::failedCopyDoesNotStopTheSave()
{
    write(state().section(u'/', 0, -2), "a file in the state folder's place");
    StdoutCapture capture;
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(u"^No safety copy of the settings: .*Not a directory"_qs));
    model::saveSettings(*m_config);
    QCOMPARE(capture.lines(), QStringList());
    QVERIFY(QFile::exists(file()));
}

void TestSettingsStore::replacedFileIsKept()
{
    // A save was cut short: the file is in pieces, and only the copy of the save is whole. The first run that
    // follows must lose neither.
    m_config->setDirection(u"ttb"_qs);
    model::saveSettings(*m_config);
    const QByteArray whole = bytesOf(file());
    write(file(), whole.first(100));
    StdoutCapture capture;
    model::writeDefaultSettings(*m_config);
    QCOMPARE(capture.lines(), QStringList(u"New settings file written successfully."_qs));
    QVERIFY(bytesOf(file()).contains("\"direction\" : \"ltr\""));
    QCOMPARE(copies().size(), 4);
    QCOMPARE(bytesOf(state() + u'/' + copies().filter(u"replaced-"_qs).first()), whole.first(100));
    QCOMPARE(bytesOf(state() + u'/' + copies().filter(u"last-good-"_qs).first()), whole);

    // Only the newest ten stay, and nothing that is not ours goes.
    write(state() + u"/replaced-by-me.json"_qs, "x");
    for (int year = 2001; year < 2015; ++year)
        write(state() + u"/replaced-"_qs + QString::number(year) + u"0101T000000000Z.json"_qs, "x");
    model::writeDefaultSettings(*m_config);
    const QStringList replaced = copies().filter(QRegularExpression(u"^replaced-2"_qs));
    QCOMPARE(replaced.size(), 10);
    QCOMPARE(replaced.first().left(13), u"replaced-2007"_qs);
    QVERIFY(copies().contains(u"replaced-by-me.json"_qs));
}

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "tst_settingsstore.moc"

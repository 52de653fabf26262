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
    void missingFileIsReported();
    void brokenFileChangesNothing();
    void loadingWritesNothing();
    void deletedFolderComesBack();
    void failedSaveIsReported_data();
    void failedSaveIsReported();
    void linkStaysALink();
    void lastGoodIsWholeWhenTheSaveFails();
    void failedCopyDoesNotStopTheSave();
    void replacedFileIsKept();

private:
    QString documents() const { return m_dir->filePath(QStringLiteral("Documents")); }
    QString state() const { return m_dir->filePath(QStringLiteral("state/pondWicket")); }
    QString folder() const { return documents() + QStringLiteral("/pondWicket ƒ"); }
    QString file() const { return folder() + QStringLiteral("/pondWicket-settings.json"); }
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
    m_config->setCurrentTheme(QStringLiteral("1984"));
    m_config->setAvailableThemes({QStringLiteral("1984"), QString()});
    m_config->setShowsDate(true);
    m_config->setDirection(QStringLiteral("ttb"));
    m_config->setAppIcon(QStringLiteral("1988"));
    TileItem tile;
    tile.tileDirectory = QStringLiteral("file:///x");
    m_config->setTileItems({tile});
    model::saveSettings(*m_config);

    Config other(documents(), state());
    QStringList order;
    const auto note = [&](void (Config::*signal)(), const char *name) {
        connect(&other, signal, this, [&order, name] { order += QLatin1String(name); });
    };
    note(&Config::tileItemsChanged, "tileItems");
    note(&Config::appIconChanged, "appIcon");
    note(&Config::directionChanged, "direction");
    note(&Config::showsDateChanged, "showsDate");
    note(&Config::availableThemesChanged, "availableThemes");
    note(&Config::currentThemeChanged, "currentTheme");
    model::loadSettings(other);
    QCOMPARE(order.join(u' '),
             QStringLiteral("currentTheme availableThemes showsDate direction appIcon tileItems"));
    QCOMPARE(other.tileItems(), m_config->tileItems());
    QCOMPARE(other.availableThemes(), m_config->availableThemes());
}

void TestSettingsStore::missingFileIsReported()
{
    StdoutCapture capture;
    model::loadSettings(*m_config);
    QCOMPARE(capture.lines(), QStringList(QStringLiteral("Settings file not found.")));
    QVERIFY(QDir(folder()).isEmpty());
}

void TestSettingsStore::brokenFileChangesNothing()
{
    write(file(), R"({"currentTheme":"1984"})");
    StdoutCapture capture;
    model::loadSettings(*m_config);
    QCOMPARE(capture.lines(),
             QStringList(QStringLiteral("The settings file is not valid: “availableThemes” is "
                                        "missing (line 1, column 23).")));
    QCOMPARE(m_config->currentTheme(), QStringLiteral("2024"));
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

void TestSettingsStore::failedSaveIsReported_data()
{
    QTest::addColumn<QString>("obstacle"); // below the documents folder; ends in a slash when it is a folder
    QTest::addColumn<QString>("linkTarget"); // of a link in the obstacle's place
    QTest::addColumn<QStringList>("lines");
    const QString name = QStringLiteral("pondWicket ƒ/pondWicket-settings.json");
    const QString failed = QStringLiteral(
        "Failed to save JSON data: The file “pondWicket-settings.json” could not be written: ");
    QTest::newRow("folder in the file's place")
        << name + u'/' << QString() << QStringList(failed + QStringLiteral("Is a directory."));
    QTest::newRow("device in the file's place")
        << name << QStringLiteral("/dev/full") << QStringList(failed + QStringLiteral("Invalid argument."));
    QTest::newRow("link into nowhere") << name << QStringLiteral("/nowhere/x")
                                       << QStringList(failed + QStringLiteral("No such file or directory."));
    QTest::newRow("file in the folder's place") << QStringLiteral("pondWicket ƒ") << QString()
                                                << QStringList(failed + QStringLiteral("Not a directory."));
    QTest::newRow("link into nowhere in the folder's place")
        << QStringLiteral("pondWicket ƒ") << QStringLiteral("/nowhere/x")
        << QStringList({QStringLiteral("The folder “pondWicket ƒ” could not be made: File exists."),
                        failed + QStringLiteral("No such file or directory.")});
}

void TestSettingsStore::failedSaveIsReported()
{
    QFETCH(QString, obstacle);
    QFETCH(QString, linkTarget);
    QFETCH(QStringList, lines);
    const QString path = documents() + u'/' + obstacle;
    QVERIFY(QDir().mkpath(path.section(u'/', 0, -2)));
    if (!linkTarget.isEmpty())
        QVERIFY(QFile::link(linkTarget, path));
    else if (!obstacle.endsWith(u'/'))
        write(path, "mine");
    StdoutCapture capture;
    model::saveSettings(*m_config);
    QCOMPARE(capture.lines(), lines);
    if (platform::itemExists(file()))
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^No safety copy")));
    model::writeDefaultSettings(*m_config);
    QCOMPARE(capture.lines(), lines);
}

void TestSettingsStore::linkStaysALink()
{
    const QString elsewhere = m_dir->filePath(QStringLiteral("elsewhere.json"));
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
    QVERIFY(bytesOf(state() + QStringLiteral("/save-before.json")).contains("\"showsDate\" : false"));
    QCOMPARE(copies().size(), 2);
}

void TestSettingsStore::failedCopyDoesNotStopTheSave()
{
    write(state().section(u'/', 0, -2), "a file in the state folder's place");
    StdoutCapture capture;
    QTest::ignoreMessage(
        QtWarningMsg,
        QRegularExpression(QStringLiteral("^No safety copy of the settings: .*Not a directory")));
    model::saveSettings(*m_config);
    QCOMPARE(capture.lines(), QStringList());
    QVERIFY(QFile::exists(file()));
}

void TestSettingsStore::replacedFileIsKept()
{
    // A save was cut short: the file is in pieces, and only the copy of the save is whole. The first run that
    // follows must lose neither.
    m_config->setDirection(QStringLiteral("ttb"));
    model::saveSettings(*m_config);
    const QByteArray whole = bytesOf(file());
    write(file(), whole.first(100));
    StdoutCapture capture;
    model::writeDefaultSettings(*m_config);
    QCOMPARE(capture.lines(), QStringList(QStringLiteral("New settings file written successfully.")));
    QVERIFY(bytesOf(file()).contains("\"direction\" : \"ltr\""));
    QCOMPARE(copies().size(), 4);
    QCOMPARE(bytesOf(state() + u'/' + copies().filter(QStringLiteral("replaced-")).first()),
             whole.first(100));
    QCOMPARE(bytesOf(state() + u'/' + copies().filter(QStringLiteral("last-good-")).first()), whole);

    // Only the newest ten stay, and nothing that is not ours goes.
    write(state() + QStringLiteral("/replaced-by-me.json"), "x");
    for (int year = 2001; year < 2015; ++year)
        write(state() + QStringLiteral("/replaced-") + QString::number(year)
                  + QStringLiteral("0101T000000000Z.json"),
              "x");
    model::writeDefaultSettings(*m_config);
    const QStringList replaced = copies().filter(QRegularExpression(QStringLiteral("^replaced-2")));
    QCOMPARE(replaced.size(), 10);
    QCOMPARE(replaced.first().left(13), QStringLiteral("replaced-2007"));
    QVERIFY(copies().contains(QStringLiteral("replaced-by-me.json")));
}

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "tst_settingsstore.moc"

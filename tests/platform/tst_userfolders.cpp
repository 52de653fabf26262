// SPDX-License-Identifier: MIT
#include "platform/files.h"
#include "platform/userfolders.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

class TestUserFolders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documents_data();
    void documents();
    void state_data();
    void state();
};

void TestUserFolders::documents_data()
{
    QTest::addColumn<QByteArray>("userDirs"); // the desktop's own list; empty for none
    QTest::addColumn<QString>("folder"); // in the home folder; null when there is none
    QTest::newRow("no list") << QByteArray() << QStringLiteral("/Documents");
    QTest::newRow("other language") << QByteArray("XDG_DOCUMENTS_DIR=\"$HOME/Dokumente ƒ/tief\"\n")
                                    << QStringLiteral("/Dokumente ƒ/tief");
    QTest::newRow("switched off") << QByteArray("XDG_DOCUMENTS_DIR=\"$HOME/\"\n") << QStringLiteral("");
    QTest::newRow("relative") << QByteArray("XDG_DOCUMENTS_DIR=\"Documents\"\n") << QString();
    QTest::newRow("file in its place")
        << QByteArray("XDG_DOCUMENTS_DIR=\"$HOME/.config/user-dirs.dirs\"\n") << QString();
}

void TestUserFolders::documents()
{
    QFETCH(QByteArray, userDirs);
    QFETCH(QString, folder);
    const QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    qunsetenv("XDG_CONFIG_HOME");
    if (!userDirs.isEmpty()) {
        QVERIFY(QDir().mkpath(home.filePath(QStringLiteral(".config"))));
        QVERIFY(platform::writeInPlace(home.filePath(QStringLiteral(".config/user-dirs.dirs")), userDirs,
                                       nullptr));
    }
    platform::Error error;
    const auto found = platform::documentsFolder(&error);
    QCOMPARE(found.has_value(), !folder.isNull());
    if (!found) {
        QVERIFY(error.fullDescription().contains(QStringLiteral("(domain POSIX, code ")));
        return;
    }
    QCOMPARE(QDir::cleanPath(*found), home.path() + folder);
    QVERIFY(!found->endsWith(u'/'));
    QVERIFY(QDir(*found).exists());
}

void TestUserFolders::state_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QString>("folder");
    QTest::newRow("unset") << QByteArray() << QStringLiteral("/home/user/.local/state/pondWicket");
    QTest::newRow("set") << QByteArray("/var/x/") << QStringLiteral("/var/x/pondWicket");
    QTest::newRow("relative") << QByteArray("x") << QStringLiteral("/home/user/.local/state/pondWicket");
}

void TestUserFolders::state()
{
    QFETCH(QByteArray, variable);
    QFETCH(QString, folder);
    qputenv("HOME", "/home/user");
    qputenv("XDG_STATE_HOME", variable);
    QCOMPARE(platform::stateFolder(), folder);
}

QTEST_APPLESS_MAIN(TestUserFolders)
#include "tst_userfolders.moc"

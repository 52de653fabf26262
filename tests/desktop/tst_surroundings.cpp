// SPDX-License-Identifier: MIT
// What a session usually gives a program and sometimes does not.
#include "support/program.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace support;

class TestSurroundings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stripIsShownAndEnds_data();
    void stripIsShownAndEnds();
};

void TestSurroundings::stripIsShownAndEnds_data()
{
    QTest::addColumn<QStringList>("without"); // variables
    QTest::addColumn<QStringList>("before"); // the program's path
    QTest::addColumn<bool>("managed");
    QTest::addColumn<QString>("line"); // that standard output holds
    const auto row = [](const char *name, const QStringList &without, const QStringList &before = {},
                        bool managed = true,
                        const QString &line = QStringLiteral("New settings file written successfully.")) {
        QTest::newRow(name) << without << before << managed << line;
    };
    const QString bus = QStringLiteral("DBUS_SESSION_BUS_ADDRESS");
    const QString limits = QStringLiteral("prlimit");
    row("no bus", {bus, QStringLiteral("XDG_RUNTIME_DIR")});
    row("dead bus", {}, {QStringLiteral("env"), bus + QStringLiteral("=unix:path=/dev/null")});
    row("no XDG_RUNTIME_DIR", {QStringLiteral("XDG_RUNTIME_DIR")});
    row("no HOME", {QStringLiteral("HOME")});
    row("no window manager", {}, {}, false);
    row("32 open files", {}, {limits, QStringLiteral("--nofile=32")});
    // The limit's own signal ended the program at its first write.
    row("no room in any file", {}, {limits, QStringLiteral("--fsize=0")}, true,
        QStringLiteral("Failed to save JSON data: "));
    // Its first line of output ended the program.
    row("nobody reads its output", {},
        {QStringLiteral("bash"), QStringLiteral("-c"),
         QStringLiteral("exec 3> >(exec true); wait $!; exec \"$0\" >&3")},
        true, {});
}

void TestSurroundings::stripIsShownAndEnds()
{
    QFETCH(const QStringList, without);
    QFETCH(QStringList, before);
    QFETCH(const bool, managed);
    QFETCH(const QString, line);
    Desktop desktop({.windowManager = managed ? QStringLiteral("openbox") : QString()});
    QVERIFY2(desktop.isUp(), qPrintable(desktop.problem()));
    QDir().mkpath(desktop.applicationFolder().section(u'/', 0, -2));
    QFile places(desktop.home()
                 + QStringLiteral("/.config/user-dirs.dirs")); // those of nobody without a HOME
    QVERIFY(places.open(QIODevice::WriteOnly));
    places.write("XDG_DOCUMENTS_DIR=\"" + desktop.home().toUtf8() + "/Documents\"\n");
    places.close();
    for (const QString &variable : without)
        desktop.environment().remove(variable);
    before.append(QStringLiteral(PW_PROGRAM));
    Program strip(desktop, before.first(), before.sliced(1));
    QVERIFY2(!strip.waitForWindow().isNull(), qPrintable(strip.errors()));
    strip.terminate();
    QCOMPARE(strip.waitForExit(), 0);
    QVERIFY2(strip.lines().join(u'\n').contains(line), qPrintable(strip.lines().join(u'\n')));
}

QTEST_GUILESS_MAIN(TestSurroundings)
#include "tst_surroundings.moc"

// SPDX-License-Identifier: MIT
// What a session usually gives a program and sometimes does not.
#include "support/program.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTest>

using namespace support;

/// What a desktop tells of its choice between light and dark.
class SettingsPortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public Q_SLOTS:
    // NOLINTNEXTLINE(readability-identifier-naming): the name on the bus
    QDBusVariant Read(const QString &, const QString &)
    {
        return QDBusVariant(QVariant::fromValue(QDBusVariant(1u)));
    }
};

class TestSurroundings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stripIsShownAndEnds_data();
    void stripIsShownAndEnds();
    void darkGnomeIsDark();
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
    // The toolkit loaded GTK there, at twice the cost of the rest.
    row("GNOME", {}, {QStringLiteral("env"), QStringLiteral("XDG_CURRENT_DESKTOP=ubuntu:GNOME")});
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
    QFile libraries(QStringLiteral("/proc/%1/maps").arg(strip.processId()));
    QVERIFY(libraries.open(QIODevice::ReadOnly));
    QVERIFY(!libraries.readAll().contains("libgtk"));
    strip.terminate();
    QCOMPARE(strip.waitForExit(), 0);
    QVERIFY2(strip.lines().join(u'\n').contains(line), qPrintable(strip.lines().join(u'\n')));
}

/// Without GTK nobody but the portal says whether the desktop is dark.
void TestSurroundings::darkGnomeIsDark()
{
    Desktop desktop;
    QVERIFY2(desktop.isUp(), qPrintable(desktop.problem()));
    desktop.environment().insert(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("GNOME"));
    QDBusConnection bus = QDBusConnection::connectToBus(
        desktop.environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")), QStringLiteral("portal"));
    SettingsPortal portal;
    QVERIFY(bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), &portal,
                               QDBusConnection::ExportAllContents));
    QVERIFY(bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));

    const Program strip(desktop, QStringLiteral(PW_PROGRAM), {QStringLiteral("--settings")});
    // Asked for each time: the window manager may still move the window. Black is the screen without it.
    const auto lightness = [&desktop] {
        const Window window =
            desktop.windows({QStringLiteral("--name"), QStringLiteral("Settings$")}).value(0);
        const QRect corner(window.geometry.bottomLeft() + QPoint(8, -12), QSize(4, 4));
        return window.isNull() ? 0 : desktop.screenshot(corner).pixelColor(1, 1).lightness();
    };
    QVERIFY(waitUntil([&] { return lightness() > 20 && lightness() < 80; }));
    QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
}

QTEST_GUILESS_MAIN(TestSurroundings)
#include "tst_surroundings.moc"

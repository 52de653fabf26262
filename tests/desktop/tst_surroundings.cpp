// SPDX-License-Identifier: MIT
// What a session usually gives a program and sometimes does not.
#include "support/files.h"
#include "support/program.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QFile>
#include <QImage>
#include <QTest>

using namespace support;

using Settings = QMap<QString, QVariantMap>;

/// What a desktop tells of its choices.
class SettingsPortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public Q_SLOTS:
    // NOLINTNEXTLINE(readability-identifier-naming): the name on the bus
    Settings ReadAll(const QStringList &)
    {
        return {{u"org.freedesktop.appearance"_qs, {{u"color-scheme"_qs, 1u}}},
                {u"org.gnome.desktop.interface"_qs, {{u"font-name"_qs, u"Sans 10000000"_qs}}}};
    }
};

class TestSurroundings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stripIsShownAndEnds();
    void takesTheChoicesOfGnome();
};

void TestSurroundings::stripIsShownAndEnds()
{
    const QString bus = u"DBUS_SESSION_BUS_ADDRESS"_qs;
    static const QString written = u"New settings file written successfully."_qs;
    const struct
    {
        const char *name;
        QStringList without; // variables
        QStringList before; // the program's path
        QString line = written; // that standard output holds
        QString manager = u"openbox"_qs;
    } rows[] = {
        {"no bus", {bus, u"XDG_RUNTIME_DIR"_qs}, {}},
        {"dead bus", {}, {u"env"_qs, bus + u"=unix:path=/dev/null"_qs}},
        {"no HOME", {u"HOME"_qs}, {}},
        // The toolkit loaded GTK there, at twice the cost of the rest.
        {"GNOME", {}, {u"env"_qs, u"XDG_CURRENT_DESKTOP=ubuntu:GNOME"_qs}},
        {"32 open files without a manager", {}, {u"prlimit"_qs, u"--nofile=32"_qs}, written, {}},
        // The limit's own signal ended the program at its first write.
        {"no room in any file", {}, {u"prlimit"_qs, u"--fsize=0"_qs}, u"Failed to save JSON data: "_qs},
        // Its first line of output ended the program.
        {"nobody reads its output",
         {},
         {u"bash"_qs, u"-c"_qs, u"exec 3> >(exec true); wait $!; exec \"$0\" >&3"_qs},
         {}},
        // The program waited for ever, and the strip was dead.
        {"its output is full",
         {},
         {u"bash"_qs, u"-c"_qs, u"mkfifo ~/p; exec 3<>~/p; head -c 65536 /dev/zero >&3; exec \"$0\" >&3"_qs},
         {}},
    };
    for (const auto &row : rows) {
        Desktop desktop({.windowManager = row.manager});
        QVERIFY2(desktop.isUp(), qPrintable(desktop.problem()));
        const QByteArray documents = desktop.home().toUtf8() + "/Documents"; // those of nobody without a HOME
        make(QString::fromUtf8(documents) + u'/');
        make(desktop.home() + u"/.config/user-dirs.dirs"_qs, "XDG_DOCUMENTS_DIR=\"" + documents + "\"\n");
        for (const QString &variable : row.without)
            desktop.environment().remove(variable);
        const QStringList command = row.before + QStringList(QStringLiteral(PW_PROGRAM));
        Program strip(desktop, command.first(), command.sliced(1));
        QVERIFY2(!strip.waitForWindow().isNull(), qPrintable(QLatin1String(row.name) + strip.errors()));
        QFile libraries(u"/proc/%1/maps"_qs.arg(strip.processId()));
        QVERIFY(libraries.open(QIODevice::ReadOnly));
        QVERIFY2(!libraries.readAll().contains("libgtk"), row.name);
        strip.terminate();
        QVERIFY2(strip.waitForExit() == 0, row.name);
        const QString lines = strip.lines().join(u'\n');
        QVERIFY2(lines.contains(row.line), qPrintable(QLatin1String(row.name) + lines));
    }
}

/// Without GTK nobody but the portal says whether the desktop is dark, at the start and later.
void TestSurroundings::takesTheChoicesOfGnome()
{
    Desktop desktop;
    QVERIFY2(desktop.isUp(), qPrintable(desktop.problem()));
    desktop.environment().insert(u"XDG_CURRENT_DESKTOP"_qs, u"GNOME"_qs);
    QDBusConnection bus = QDBusConnection::connectToBus(
        desktop.environment().value(u"DBUS_SESSION_BUS_ADDRESS"_qs), u"portal"_qs);
    qDBusRegisterMetaType<Settings>();
    SettingsPortal portal;
    QVERIFY(bus.registerObject(u"/org/freedesktop/portal/desktop"_qs, &portal,
                               QDBusConnection::ExportAllContents));
    QVERIFY(bus.registerService(u"org.freedesktop.portal.Desktop"_qs));

    const Program strip(desktop, QStringLiteral(PW_PROGRAM), {u"--settings"_qs});
    // Asked for each time: the window manager may still move the window. Black is the screen without it.
    const auto lightness = [&desktop] {
        const Window window = desktop.windows({u"--name"_qs, u"Settings$"_qs}).value(0);
        const QRect corner(window.geometry.bottomLeft() + QPoint(8, -12), QSize(4, 4));
        return window.isNull() ? 0 : desktop.screenshot(corner).pixelColor(1, 1).lightness();
    };
    QVERIFY(waitUntil([&] { return lightness() > 20 && lightness() < 80; }));
    QDBusMessage change = QDBusMessage::createSignal(
        u"/org/freedesktop/portal/desktop"_qs, u"org.freedesktop.portal.Settings"_qs, u"SettingChanged"_qs);
    change << u"org.freedesktop.appearance"_qs << u"color-scheme"_qs << QVariant::fromValue(QDBusVariant(0u));
    QVERIFY(bus.send(change));
    QVERIFY(waitUntil([&] { return lightness() > 200; }));
    QDBusConnection::disconnectFromBus(u"portal"_qs);
}

QTEST_GUILESS_MAIN(TestSurroundings)
#include "tst_surroundings.moc"

// SPDX-License-Identifier: MIT
#include "platform/addressopener.h"
#include "platform/childenvironment.h"
#include "support/privatedesktop.h"

#include <QTest>

using support::PrivateDesktop;

namespace {

const QString openArgument = QStringLiteral("--open");

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts);
}

// "https" stands for a handler of "x-scheme-handler/https", "inode/directory" for itself.
void addHandlers(PrivateDesktop &desktop, const QStringList &handlers)
{
    for (const QString &handler : handlers) {
        const bool isType = handler.contains(u'/');
        const bool isId = handler.contains(u'.');
        const QString type =
            isType ? handler : QStringLiteral("x-scheme-handler/%1").arg(isId ? u"maps"_qs : handler);
        desktop.addHandler(isType ? handler.section(u'/', -1) : handler, {type});
    }
}

} // namespace

class TestAddressOpener : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reachesTheHandlerAsWritten_data();
    void reachesTheHandlerAsWritten();
    void opensNothing_data();
    void opensNothing();
    void startsChildrenApart();
};

void TestAddressOpener::reachesTheHandlerAsWritten_data()
{
    QTest::addColumn<QStringList>("handlers");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QStringList>("arguments"); // the handler's id, then what it got
    QTest::addColumn<QString>("program");
    const QString recorder = QStringLiteral("recorder");
    const QString terminal = QStringLiteral("x-terminal-emulator");

    const auto row = [&](const char *name, const char *handlers, const char *address, const char *arguments) {
        QTest::newRow(name) << words(handlers) << QString::fromLatin1(address) << words(arguments)
                            << recorder;
    };
    row("phone without a number", "tel", "tel://", "tel tel://");
    row("letter case and escapes", "https", "HTTPS://Example.org/%7Ea", "https HTTPS://Example.org/%7Ea");
    row("shell characters", "https", "https://h/$(id);'&*~!", "https https://h/$(id);'&*~!");
    row("field codes", "https", "https://h/%25u%25f?%25k", "https https://h/%25u%25f?%25k");
    row("own handler before the file manager", "sftp inode/directory", "sftp://h/a%20b",
        "sftp sftp://h/a%20b");
    row("own handler before the terminal", "ssh", "ssh://u@h:22", "ssh ssh://u@h:22");
    row("mail with quotes and line ends", "mailto", "mailto:a@b.c?subject=%22%27%0A--x&body=%0D%0A",
        "mailto mailto:a@b.c?subject=%22%27%0A--x&body=%0D%0A");
    row("mail that attaches", "mailto", "mailto:a@b.c?ATTACH=/etc/passwd&cc=d@e.f&attac%68ment=x",
        "mailto mailto:a@b.c?cc=d@e.f");
    row("unknown word with a handler", "zork", "Zork:%41", "zork Zork:%41");
    row("maps", "maps https", "maps://?q=pizza", "maps maps://?q=pizza");
    row("GNOME Maps", "org.gnome.Maps https", "maps://?q=pizza", "org.gnome.Maps maps:q=pizza");
    row("maps for a geo handler", "geo https", "maps://?q=a%20b&z=1", "geo geo:0,0?q=a%20b");
    row("maps in the browser", "https", "maps://?q=a%26b",
        "https https://www.openstreetmap.org/search?query=a%26b");
    row("sftp in the file manager", "inode/directory https", "sftp://h/x", "directory sftp://h/x");
    row("smb in the file manager", "inode/directory", "SMB://h/x", "directory SMB://h/x");
    row("ftp in the file manager", "inode/directory https", "ftp://h/x", "directory ftp://h/x");

    const auto shell = [&](const char *name, const char *address, const char *arguments) {
        QTest::newRow(name) << words("https") << QString::fromLatin1(address) << words(arguments) << terminal;
    };
    shell("ssh in a terminal", "ssh://me@example.org:2222/x", "-e ssh -l me -p 2222 -- example.org");
    shell("ssh to a number", "SSH://[::1]", "-e ssh -- ::1");
}

void TestAddressOpener::reachesTheHandlerAsWritten()
{
    QFETCH(QStringList, handlers);
    QFETCH(QString, address);
    QFETCH(QString, program);
    PrivateDesktop desktop;
    addHandlers(desktop, handlers);
    desktop.addProgram(QStringLiteral("x-terminal-emulator"));
    const auto outcome = desktop.run({openArgument}, address.toUtf8());
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output, QByteArray());
    QCOMPARE(outcome.launches.size(), 1);
    QCOMPARE(outcome.launches.first().program, program);
    QTEST(outcome.launches.first().arguments, "arguments");
}

void TestAddressOpener::opensNothing_data()
{
    QTest::addColumn<QString>("handlers");
    QTest::addColumn<QByteArray>("address");

    const auto row = [](const char *name, const char *handlers, const QByteArray &address) {
        QTest::newRow(name) << QString::fromLatin1(handlers) << address;
    };
    const char *const others =
        "tel inode/directory application/octet-stream x-scheme-handler/unknown text/html";
    row("web without a browser", others, "https://example.org");
    row("maps without anything", others, "maps://?q=pizza");
    row("phone without a program", "https", "tel:1");
    row("unknown word", "https application/octet-stream", "zork://x");
    row("shortcuts", "https", "shortcuts://run-shortcut?name=x");
    row("no scheme", "https", "example.org/a");
    row("does not parse", "https", "https://a b");
    row("host as an option", "https", "ssh://-oProxyCommand=x");
    row("host as an option for a handler", "ssh", "ssh://-oProxyCommand=x");
    row("escaped option", "ssh sftp", "sftp://%2doProxyCommand=x/");
    row("user as an option", "ssh", "ssh://-oProxyCommand=x@h");
    row("ssh with odd characters", "https", "ssh://a;b");
    row("ssh with an escape", "https", "ssh://a%0Ab");
    row("ssh with a password", "https", "ssh://me:secret@h");
    row("ssh with an odd user", "https", "ssh://$(id)@h");
    row("ssh to port 0", "https", "ssh://h:0");
    row("ssh to port 65536", "https", "ssh://h:65536");
    row("ssh to nobody", "https", "ssh:");
    row("file of another machine", "https text/plain", "file://elsewhere/etc/hostname");
    // One argument of a program may have 128 KiB.
    row("longer than an argument", "https", "https://h/" + QByteArray(1024 * 1024, 'a'));
    row("long sftp", "inode/directory", "sftp://h/" + QByteArray(128 * 1024, 'a'));
}

void TestAddressOpener::opensNothing()
{
    QFETCH(QString, handlers);
    QFETCH(QByteArray, address);
    PrivateDesktop desktop;
    addHandlers(desktop, handlers.split(u' '));
    desktop.addProgram(QStringLiteral("x-terminal-emulator"));
    const auto outcome = desktop.run({openArgument}, address);
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output, QByteArray());
    QCOMPARE(outcome.launches.size(), 0);
}

void TestAddressOpener::startsChildrenApart()
{
    PrivateDesktop desktop;
    addHandlers(desktop, {u"https"_qs});
    for (const char *name : {"DESKTOP_AUTOSTART_ID", "INVOCATION_ID", "JOURNAL_STREAM", "QT_SCALE_FACTOR"})
        desktop.setVariable(QString::fromLatin1(name), QStringLiteral("1"));
    const auto launches = desktop.run({openArgument}, "https://h").launches;
    QCOMPARE(launches.size(), 1);
    const auto &launch = launches.first();
    QCOMPARE(launch.folder, desktop.path(QStringLiteral("home")));
    QCOMPARE(launch.output, QStringLiteral("/dev/null"));
    QVERIFY(launch.ownSession);
    for (const char *name :
         {"DESKTOP_AUTOSTART_ID", "INVOCATION_ID", "JOURNAL_STREAM", "QT_QPA_PLATFORMTHEME", "GIO_USE_VFS"})
        QVERIFY2(!launch.variables.contains(QString::fromLatin1(name)), name);
    // The user's own settings stay, also where we run with others.
    QCOMPARE(launch.variables.value(QStringLiteral("QT_SCALE_FACTOR")), QStringLiteral("1"));
}

// What a program that opens links does: sets up its own environment, opens, ends at once.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (application.arguments().value(1) != openArgument) {
        TestAddressOpener test;
        return QTest::qExec(&test, argc, argv);
    }
    platform::setOwnVariable("QT_QPA_PLATFORMTHEME", "own");
    platform::setOwnVariable("QT_SCALE_FACTOR", "2");
    platform::openAddress(QString::fromUtf8(support::readInput()));
    return 0;
}

#include "tst_addressopener.moc"

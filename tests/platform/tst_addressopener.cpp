// SPDX-License-Identifier: MIT
#include "platform/addressopener.h"
#include "platform/childenvironment.h"
#include "support/privatedesktop.h"

#include <QTest>

using support::PrivateDesktop;

namespace {

const QString openArgument = QStringLiteral("--open");

QStringList words(const QByteArray &text)
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
    void opens_data();
    void opens();
    void startsChildrenApart();
};

void TestAddressOpener::opens_data()
{
    QTest::addColumn<QStringList>("handlers");
    QTest::addColumn<QByteArray>("address");
    QTest::addColumn<QStringList>("arguments"); // the handler's id or the terminal's "-e", then what it got
    const auto row = [](const char *handlers, const QByteArray &address, const QByteArray &arguments = {}) {
        QTest::addRow("%s for %s", handlers, address.left(80).constData())
            << words(handlers) << address << words(arguments);
    };
    row("https", "HTTPS://Example.org/%7Ea", "https HTTPS://Example.org/%7Ea");
    row("https", "https://h/$(id);'&*~!", "https https://h/$(id);'&*~!");
    row("https", "https://h/%25u%25f?%25k", "https https://h/%25u%25f?%25k");
    row("sftp inode/directory", "sftp://h/a%20b", "sftp sftp://h/a%20b");
    row("ssh", "ssh://u@h:22", "ssh ssh://u@h:22");
    row("mailto", "mailto:a@b.c?subject=%22%27%0A--x&body=%0D%0A",
        "mailto mailto:a@b.c?subject=%22%27%0A--x&body=%0D%0A");
    row("mailto", "mailto:a@b.c?ATTACH=/etc/passwd&cc=d@e.f&attac%68ment=x", "mailto mailto:a@b.c?cc=d@e.f");
    row("zork", "Zork:%41", "zork Zork:%41");
    row("maps https", "maps://?q=pizza", "maps maps://?q=pizza");
    row("org.gnome.Maps https", "maps://?q=pizza", "org.gnome.Maps maps:q=pizza");
    row("geo https", "maps://?q=a%20b&z=1", "geo geo:0,0?q=a%20b");
    row("https", "maps://?q=a%26b", "https https://www.openstreetmap.org/search?query=a%26b");
    for (const char *address : {"sftp://h/x", "SMB://h/x", "ftp://h/x"})
        row("inode/directory https", address, QByteArray("directory ") + address);
    row("https", "ssh://me@example.org:2222/x", "-e ssh -l me -p 2222 -- example.org");
    row("https", "SSH://[::1]", "-e ssh -- ::1");

    const char *const others =
        "tel inode/directory application/octet-stream x-scheme-handler/unknown text/html";
    for (const char *address : {"https://example.org", "maps://?q=pizza"})
        row(others, address);
    for (const char *address :
         {"tel:1", "zork://x", "shortcuts://run-shortcut?name=x", "example.org/a", "https://a b",
          "ssh://-oProxyCommand=x", "ssh://a;b", "ssh://a%0Ab", "ssh://me:secret@h", "ssh://$(id)@h",
          "ssh://h:0", "ssh://h:65536", "ssh:", "file://elsewhere/etc/hostname"})
        row("https application/octet-stream text/plain", address);
    for (const char *address :
         {"ssh://-oProxyCommand=x", "sftp://%2doProxyCommand=x/", "ssh://-oProxyCommand=x@h"})
        row("ssh sftp", address);
    // One argument of a program may have 128 KiB.
    row("https", "https://h/" + QByteArray(1024 * 1024, 'a'));
    row("inode/directory", "sftp://h/" + QByteArray(128 * 1024, 'a'));
}

void TestAddressOpener::opens()
{
    QFETCH(QStringList, handlers);
    QFETCH(QByteArray, address);
    QFETCH(QStringList, arguments);
    PrivateDesktop desktop;
    addHandlers(desktop, handlers);
    desktop.addProgram(QStringLiteral("x-terminal-emulator"));
    const auto outcome = desktop.run({openArgument}, address);
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output, QByteArray());
    QCOMPARE(outcome.launches.size(), arguments.isEmpty() ? 0 : 1);
    if (arguments.isEmpty())
        return;
    QCOMPARE(outcome.launches.first().arguments, arguments);
    QCOMPARE(outcome.launches.first().program,
             arguments.first() == u"-e" ? u"x-terminal-emulator"_qs : u"recorder"_qs);
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

// SPDX-License-Identifier: MIT
#include "platform/addressopener.h"
#include "platform/childenvironment.h"
#include "support/privatedesktop.h"

#include <QTest>

using support::PrivateDesktop;

namespace {

// "https" stands for a handler of "x-scheme-handler/https", "inode/directory" for itself.
void addHandlers(PrivateDesktop &desktop, const QString &handlers)
{
    for (const QString &handler : handlers.split(u' ')) {
        const QString scheme = handler.contains(u'.') ? u"maps"_qs : handler;
        desktop.addHandler(handler.section(u'/', -1),
                           {handler.contains(u'/') ? handler : u"x-scheme-handler/"_qs + scheme});
    }
}

} // namespace

class TestAddressOpener : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opens()
    {
        const QString files = u"inode/directory https"_qs;
        const QString others =
            u"tel inode/directory application/octet-stream x-scheme-handler/unknown text/html"_qs;
        const QString some = u"https application/octet-stream text/plain"_qs;
        // The handlers; the address; the handler's id or the terminal's "-e", then what it got, or nothing
        QList<std::tuple<QString, QByteArray, QString>> rows = {
            {u"https"_qs, "https://h/$(id);'&*~!", u"https https://h/$(id);'&*~!"_qs},
            {u"https"_qs, "https://h/%25u%25f?%25k", u"https https://h/%25u%25f?%25k"_qs},
            {u"sftp inode/directory"_qs, "sftp://h/a%20b", u"sftp sftp://h/a%20b"_qs},
            {u"mailto"_qs, "mailto:a@b.c?subject=%22%27%0A--x&body=%0D%0A",
             u"mailto mailto:a@b.c?subject=%22%27%0A--x&body=%0D%0A"_qs},
            {u"mailto"_qs, "mailto:a@b.c?ATTACH=/etc/passwd&cc=d@e.f&attac%68ment=x",
             u"mailto mailto:a@b.c?cc=d@e.f"_qs},
            {u"zork"_qs, "Zork:%41", u"zork Zork:%41"_qs},
            {u"maps https"_qs, "maps://?q=pizza", u"maps maps://?q=pizza"_qs},
            {u"org.gnome.Maps https"_qs, "maps://?q=pizza", u"org.gnome.Maps maps:q=pizza"_qs},
            {u"geo https"_qs, "maps://?q=a%20b&z=1", u"geo geo:0,0?q=a%20b"_qs},
            {u"https"_qs, "maps://?q=a%26b", u"https https://www.openstreetmap.org/search?query=a%26b"_qs},
            {files, "SMB://h/x", u"directory SMB://h/x"_qs},
            {u"https"_qs, "ssh://me@example.org:2222/x", u"-e ssh -l me -p 2222 -- example.org"_qs},
            {u"https"_qs, "SSH://[::1]", u"-e ssh -- ::1"_qs},
        };
        for (const char *address : {"https://example.org", "maps://?q=pizza"})
            rows.append({others, address, {}});
        for (const char *address :
             {"tel:1", "shortcuts://run-shortcut?name=x", "example.org/a", "https://a b", "ssh://a;b",
              "ssh://a%0Ab", "ssh://me:secret@h", "ssh://$(id)@h", "ssh://h:0", "ssh://h:65536",
              "ssh:", "file://elsewhere/etc/hostname"})
            rows.append({some, address, {}});
        for (const char *address :
             {"ssh://-oProxyCommand=x", "ssh://-oProxyCommand=x@h", "sftp://%2doProxyCommand=x/"})
            rows += {{u"https"_qs, address, {}}, {u"ssh sftp"_qs, address, {}}};
        // One argument of a program may have 128 KiB.
        rows += {{u"https"_qs, "https://h/" + QByteArray(1024 * 1024, 'a'), {}},
                 {u"inode/directory"_qs, "sftp://h/" + QByteArray(128 * 1024, 'a'), {}}};
        for (const auto &[handlers, address, launch] : rows) {
            PrivateDesktop desktop;
            addHandlers(desktop, handlers);
            desktop.addProgram(u"x-terminal-emulator"_qs);
            const auto outcome = desktop.run(u"--open"_qs, address);
            const QByteArray what = handlers.toUtf8() + " for " + address.left(80);
            QVERIFY2(outcome.exitCode == 0 && outcome.output.isEmpty(), what.constData());
            QVERIFY2(outcome.launches.size() == (launch.isEmpty() ? 0 : 1), what.constData());
            if (launch.isEmpty())
                continue;
            QCOMPARE(outcome.launches.first().arguments, launch.split(u' '));
            QCOMPARE(outcome.launches.first().program,
                     launch.startsWith(u"-e") ? u"x-terminal-emulator"_qs : u"recorder"_qs);
        }
    }

    void startsChildrenApart()
    {
        PrivateDesktop desktop;
        addHandlers(desktop, u"https"_qs);
        const QStringList ours = u"DESKTOP_AUTOSTART_ID INVOCATION_ID JOURNAL_STREAM"_qs.split(u' ');
        for (const QString &name : ours + QStringList(u"QT_SCALE_FACTOR"_qs))
            desktop.setVariable(name, u"1"_qs);
        const auto launches = desktop.run(u"--open"_qs, "https://h").launches;
        QCOMPARE(launches.size(), 1);
        const auto &launch = launches.first();
        QCOMPARE(launch.facts[u"folder"_qs], desktop.path(u"home"_qs));
        QCOMPARE(launch.facts[u"output"_qs], u"/dev/null"_qs);
        QCOMPARE(launch.facts[u"ownSession"_qs], u"yes"_qs);
        for (const QString &name : ours + u"QT_QPA_PLATFORMTHEME GIO_USE_VFS"_qs.split(u' '))
            QVERIFY2(!launch.facts.contains(name), qPrintable(name));
        // The user's own settings stay, also where we run with others.
        QCOMPARE(launch.facts[u"QT_SCALE_FACTOR"_qs], u"1"_qs);
    }
};

// What a program that opens links does: sets up its own environment, opens, ends at once.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (application.arguments().value(1) != u"--open") {
        TestAddressOpener test;
        return QTest::qExec(&test, argc, argv);
    }
    platform::setOwnVariable("QT_QPA_PLATFORMTHEME", "own");
    platform::setOwnVariable("QT_SCALE_FACTOR", "2");
    platform::openAddress(QString::fromUtf8(support::readInput()));
    return 0;
}

#include "tst_addressopener.moc"

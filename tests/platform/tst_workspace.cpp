// SPDX-License-Identifier: MIT
#include "platform/aliasfile.h"
#include "platform/report.h"
#include "platform/workspace.h"
#include "support/privatedesktop.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

using support::PrivateDesktop;

class TestWorkspace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensFilesWithTheirHandlers()
    {
        // A name, the content, the mode and who opens the type; empty: nobody
        const std::tuple<QString, QByteArray, mode_t, QString> rows[] = {
            {u"folder/"_qs, "", 0755, u"folder"_qs},
            {u"a b%ƒ.txt"_qs, "hello", 0644, u"text"_qs},
            {u"a.pdf"_qs, "%PDF-1.4", 0644, {}},
            {u"run me.sh"_qs, "#!/bin/sh\ntouch $HOME/ran\n", 0755, u"text"_qs},
            {u"aliased.sh"_qs, "#!/bin/sh\ntouch $HOME/ran\n", 0755, u"text"_qs},
            {u"program"_qs, QByteArray("\177ELF\2\1\1\0\0\0\0", 11), 0755, {}},
            {u"a.AppImage"_qs, QByteArray("\177ELF\2\1\1\0AI\2", 11), 0644, {}}, // may not run
            {u"broken alias"_qs, "pondWicket alias 1\n", 0600, {}},
        };
        for (const auto &[name, content, mode, handler] : rows) {
            PrivateDesktop desktop;
            desktop.addHandler(u"text"_qs, {u"text/plain"_qs}, u"%f"_qs);
            desktop.addHandler(u"folder"_qs, {u"inode/directory"_qs}, u"%f"_qs);
            const QString path = QDir::cleanPath(desktop.write(u"home/"_qs + name, content));
            QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode), 0);
            const QByteArray alias = QFile::encodeName(desktop.path(u"home/alias"_qs));
            QVERIFY(platform::writeAliasFile(QFile::encodeName(path), alias, nullptr));
            const bool isAliased = name.startsWith(u"aliased");
            const auto outcome = desktop.run(u"--open"_qs, isAliased ? alias : path.toUtf8());
            QVERIFY2(outcome.exitCode == 0 && outcome.output.isEmpty(), qPrintable(name));
            QVERIFY2(!QFile::exists(desktop.path(u"home/ran"_qs)), qPrintable(name));
            QVERIFY2(outcome.launches.size() == (handler.isEmpty() ? 0 : 1), qPrintable(name));
            if (!handler.isEmpty())
                QCOMPARE(outcome.launches.first().arguments, (QStringList{handler, path}));
        }
    }

    void startsOnlyTrustedEntries()
    {
        // The last: what it then is a symbolic link to
        const std::tuple<const char *, mode_t, bool, const char *> rows[] = {
            {"shared/applications/x/a.desktop", 0644, true, ""},
            {"data/applications/a.desktop", 0644, true, "home/store/a.desktop"},
            {"home/a.desktop", 0644, true, "data/applications/a.desktop"},
            {"home/a.desktop", 0755, true, ""},
            {"home/a.desktop", 0757, false, ""},
            {"home/a.desktop", 0775, false, ""},
            {"home/a.desktop", 0655, false, ""},
            {"data/applications-2/a.desktop", 0644, false, ""},
            {"data/applications/../a.desktop", 0644, false, ""},
        };
        for (const auto &[name, mode, starts, linkedTo] : rows) {
            PrivateDesktop desktop;
            desktop.addHandler(u"editor"_qs, {u"text/plain"_qs}, u"%f"_qs);
            desktop.addHandler(u"runner"_qs, {u"application/x-desktop"_qs}, u"%f"_qs);
            const QString file = desktop.write(QString::fromLatin1(*linkedTo ? linkedTo : name),
                                               PrivateDesktop::desktopEntry(u"own"_qs));
            QCOMPARE(::chmod(QFile::encodeName(file).constData(), mode), 0);
            const QString path = desktop.path(QString::fromLatin1(name));
            QVERIFY2(!*linkedTo || QFile::link(file, path), name);
            const auto launches = desktop.run(u"--open"_qs, path.toUtf8()).launches;
            const QByteArray what = QByteArray(name) + ' ' + QByteArray::number(mode, 8) + ' ' + linkedTo;
            QVERIFY2(launches.size() == 1, what.constData());
            QVERIFY2(launches.first().arguments.first() == (starts ? u"own" : u"editor"), what.constData());
        }
    }

    void startsApplicationsByTheirProgram()
    {
        // The program is a link to the recorder.
        using Row = std::tuple<QString, QString, bool>;
        for (const auto &[opened, program, starts] :
             {Row(u"home/Some Thing"_qs, u"AppRun"_qs, true), Row(u"home/Thing.app"_qs, u"Thing"_qs, true),
              Row(u"home/Thing.app"_qs, u"other"_qs, false), Row(u"home/Thing.d"_qs, u"Thing"_qs, false)}) {
            PrivateDesktop desktop;
            desktop.addHandler(u"folder"_qs, {u"inode/directory"_qs}, u"%f"_qs);
            const QString path = desktop.write(opened + u'/', {}).chopped(1);
            QVERIFY(QFile::link(desktop.addProgram(u"recorder"_qs), path + u'/' + program));
            const auto launches = desktop.run(u"--open"_qs, path.toUtf8()).launches;
            QVERIFY2(launches.size() == 1, qPrintable(opened));
            QVERIFY2(launches.first().program == (starts ? program : u"recorder"_qs), qPrintable(opened));
            QCOMPARE(launches.first().facts[u"folder"_qs], desktop.path(u"home"_qs));
        }
    }

    void movesToTheTrashBeforeTheEndOrTellsWhyNot()
    {
        PrivateDesktop desktop;
        const QString path = desktop.write(u"home/Doc %41 ƒ"_qs, "text");
        QCOMPARE(desktop.run(u"--trash"_qs, path.toUtf8()).output, QByteArray());
        QVERIFY(!QFile::exists(path) && QFile::exists(desktop.path(u"data/Trash/files/Doc %41 ƒ"_qs)));
        QFile record(desktop.path(u"data/Trash/info/Doc %41 ƒ.trashinfo"_qs));
        QVERIFY(record.open(QIODevice::ReadOnly));
        QVERIFY(record.readAll().contains("/home/Doc%20%2541%20%C6%92\n"));
        const QByteArray problem = desktop.run(u"--trash"_qs, path.toUtf8()).output;
        QVERIFY2(problem.count('\n') == 1 && problem.contains("Doc"), problem.constData());
    }
};

// What a program does that opens or removes something and ends at once.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QString task = application.arguments().value(1);
    if (!task.startsWith(u"--")) {
        TestWorkspace test;
        return QTest::qExec(&test, argc, argv);
    }
    const QString path = QString::fromUtf8(support::readInput());
    const auto tell = [](const platform::Error &error) { platform::report(error.fullDescription()); };
    task == u"--open" ? platform::openFile(path) : platform::moveToTrash(path, tell);
    return 0;
}

#include "tst_workspace.moc"

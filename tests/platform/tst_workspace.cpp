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

namespace {

const QString openArgument = QStringLiteral("--open");
const QString trashArgument = QStringLiteral("--trash");

} // namespace

class TestWorkspace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opens_data();
    void opens();
    void runsNoScriptBehindAnAlias();
    void startsOnlyTrustedEntries();
    void startsApplicationsByTheirProgram();
    void movesToTheTrashBeforeTheEnd();
    void tellsWhyNothingWentToTheTrash();
};

void TestWorkspace::opens_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("handler"); // of the content type; empty: nobody opens it
    QTest::newRow("folder") << u"/"_qs << QByteArray() << 0755 << u"folder"_qs;
    QTest::newRow("text") << u"a b%ƒ.txt"_qs << QByteArray("hello") << 0644 << u"text"_qs;
    QTest::newRow("picture") << u"a.png"_qs << QByteArray("\x89PNG\r\n\x1a\n") << 0644 << u"image"_qs;
    QTest::newRow("type without a program") << u"a.pdf"_qs << QByteArray("%PDF-1.4") << 0644 << QString();
    QTest::newRow("script") << u"run.sh"_qs << QByteArray("#!/bin/sh\ntouch $HOME/ran\n") << 0755
                            << u"text"_qs;
    QTest::newRow("program") << u"tool"_qs << QByteArray("\177ELF\2\1\1\0\0\0\0", 11) << 0755 << QString();
    QTest::newRow("AppImage that may not run")
        << u"a.AppImage"_qs << QByteArray("\177ELF\2\1\1\0AI\2", 11) << 0644 << QString();
    QTest::newRow("broken alias") << u"broken"_qs << QByteArray("pondWicket alias 1\n") << 0600 << QString();
}

void TestWorkspace::opens()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(int, mode);
    QFETCH(QString, handler);
    PrivateDesktop desktop;
    desktop.addHandler(u"text"_qs, {u"text/plain"_qs}, u"%f"_qs);
    desktop.addHandler(u"image"_qs, {u"image/png"_qs}, u"%f"_qs);
    desktop.addHandler(u"folder"_qs, {u"inode/directory"_qs}, u"%f"_qs);
    const QString path =
        name.endsWith(u'/') ? desktop.path(u"home"_qs) : desktop.write(u"home/"_qs + name, content);
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode_t(mode)), 0);
    const auto outcome = desktop.run({openArgument}, path.toUtf8());
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output, QByteArray());
    QVERIFY(!QFile::exists(desktop.path(u"home/ran"_qs)));
    QCOMPARE(outcome.launches.size(), handler.isEmpty() ? 0 : 1);
    if (!handler.isEmpty())
        QCOMPARE(outcome.launches.first().arguments, (QStringList{handler, path}));
}

void TestWorkspace::runsNoScriptBehindAnAlias()
{
    PrivateDesktop desktop;
    desktop.addHandler(u"editor"_qs, {u"text/plain"_qs}, u"%f"_qs);
    const QString script = desktop.write(u"home/run me.sh"_qs, "#!/bin/sh\ntouch $HOME/ran\n");
    QVERIFY(QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const QString alias = desktop.path(u"home/alias"_qs);
    QVERIFY(platform::writeAliasFile(QFile::encodeName(script), QFile::encodeName(alias), nullptr));
    const auto outcome = desktop.run({openArgument}, alias.toUtf8());
    QVERIFY(!QFile::exists(desktop.path(u"home/ran"_qs)));
    QCOMPARE(outcome.launches.size(), 1);
    QCOMPARE(outcome.launches.first().arguments, (QStringList{u"editor"_qs, script}));
}

void TestWorkspace::startsOnlyTrustedEntries()
{
    const struct
    {
        const char *name;
        mode_t mode;
        bool starts;
        const char *linkedTo = ""; // what `name` is then a symbolic link to
    } rows[] = {
        {"data/applications/a.desktop", 0644, true},
        {"shared/applications/x/a.desktop", 0644, true},
        {"data/applications/a.desktop", 0644, true, "home/store/a.desktop"},
        {"home/a.desktop", 0644, true, "data/applications/a.desktop"},
        {"home/a.desktop", 0644, false},
        {"home/a.desktop", 0755, true},
        {"home/a.desktop", 0757, false},
        {"home/a.desktop", 0775, false},
        {"home/a.desktop", 0655, false},
        {"data/applications-2/a.desktop", 0644, false},
        {"data/applications/../a.desktop", 0644, false},
    };
    for (const auto &[name, mode, starts, linkedTo] : rows) {
        PrivateDesktop desktop;
        desktop.addHandler(u"editor"_qs, {u"text/plain"_qs}, u"%f"_qs);
        desktop.addHandler(u"runner"_qs, {u"application/x-desktop"_qs}, u"%f"_qs);
        const QString file = desktop.write(QString::fromLatin1(*linkedTo ? linkedTo : name),
                                           PrivateDesktop::desktopEntry(u"own"_qs));
        QCOMPARE(::chmod(QFile::encodeName(file).constData(), mode), 0);
        const QString path = desktop.path(QString::fromLatin1(name));
        if (*linkedTo)
            QVERIFY2(QFile::link(file, path), name);
        const auto launches = desktop.run({openArgument}, path.toUtf8()).launches;
        const QByteArray what = QByteArray(name) + ' ' + QByteArray::number(mode, 8) + ' ' + linkedTo;
        QVERIFY2(launches.size() == 1, what.constData());
        QVERIFY2(launches.first().arguments.first() == (starts ? u"own" : u"editor"), what.constData());
    }
}

void TestWorkspace::startsApplicationsByTheirProgram()
{
    const struct
    {
        QString opened, program; // the program is a link to the recorder
        bool starts;
    } rows[] = {{u"home/Some Thing"_qs, u"AppRun"_qs, true},
                {u"home/Thing.app"_qs, u"AppRun"_qs, true},
                {u"home/Thing.app"_qs, u"Thing"_qs, true},
                {u"home/Thing.app"_qs, u"other"_qs, false},
                {u"home/Thing.d"_qs, u"Thing"_qs, false}};
    for (const auto &[opened, program, starts] : rows) {
        PrivateDesktop desktop;
        desktop.addHandler(u"folder"_qs, {u"inode/directory"_qs}, u"%f"_qs);
        const QString path = desktop.path(opened);
        QVERIFY(QDir().mkpath(path));
        QVERIFY(QFile::link(desktop.addProgram(u"recorder"_qs), path + u'/' + program));
        const auto launches = desktop.run({openArgument}, path.toUtf8()).launches;
        const QByteArray what = (opened + u'/' + program).toUtf8();
        QVERIFY2(launches.size() == 1, what.constData());
        QVERIFY2(launches.first().program == (starts ? program : u"recorder"_qs), what.constData());
        QCOMPARE(launches.first().folder, desktop.path(u"home"_qs));
    }
}

void TestWorkspace::movesToTheTrashBeforeTheEnd()
{
    PrivateDesktop desktop;
    const QString path = desktop.write(u"home/Doc %41 ƒ"_qs, "text");
    const auto outcome = desktop.run({trashArgument}, path.toUtf8());
    QCOMPARE(outcome.output, QByteArray());
    QVERIFY(!QFile::exists(path));
    QVERIFY(QFile::exists(desktop.path(u"data/Trash/files/Doc %41 ƒ"_qs)));
    QFile record(desktop.path(u"data/Trash/info/Doc %41 ƒ.trashinfo"_qs));
    QVERIFY(record.open(QIODevice::ReadOnly));
    QVERIFY(record.readAll().contains("/home/Doc%20%2541%20%C6%92\n"));
}

void TestWorkspace::tellsWhyNothingWentToTheTrash()
{
    PrivateDesktop desktop;
    const auto outcome = desktop.run({trashArgument}, desktop.path(u"home/absent"_qs).toUtf8());
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output.count('\n'), 1);
    QVERIFY(outcome.output.contains("absent"));
}

// What a program does that opens or removes something and ends at once.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QString task = application.arguments().value(1);
    if (task == openArgument) {
        platform::openFile(QString::fromUtf8(support::readInput()));
    } else if (task == trashArgument) {
        platform::moveToTrash(QString::fromUtf8(support::readInput()), [](const platform::Error &error) {
            platform::report(error.fullDescription());
        });
    } else {
        TestWorkspace test;
        return QTest::qExec(&test, argc, argv);
    }
    return 0;
}

#include "tst_workspace.moc"

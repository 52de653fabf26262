// SPDX-License-Identifier: MIT
#include "platform/applicationid.h"
#include "platform/autostart.h"
#include "support/files.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using platform::setStartsAtLogin;
using platform::startsAtLogin;

class TestAutostart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_home->path()));
    }

    void readsTheEntry()
    {
        const QByteArray application = "[Desktop Entry]\nType=Application\nName=x\nExec=x\n";
        const std::pair<QByteArray, bool> rows[] = {
            {application, true},
            {application + "Hidden=true\n", false},
            {application + "X-GNOME-Autostart-enabled=false\n", false},
            {application + "[Desktop Action a]\nHidden=true\n", true},
            {"", false},
            {"[Desktop Entry]\nType=Link\nURL=x:\n", false}};
        for (const auto &[text, starts] : rows) {
            support::make(entry(), text);
            QVERIFY2(startsAtLogin() == starts, text.constData());
            // Whatever stood there, the switch has its way.
            QVERIFY2(setStartsAtLogin(true, nullptr) && startsAtLogin(), text.constData());
        }
    }

    void switchesOnAndOffOrTellsWhyNot()
    {
        QDir folder(m_home->filePath(u"autostart"_qs));
        for (const bool on : {false, true, false}) {
            QVERIFY(setStartsAtLogin(on, nullptr) && startsAtLogin() == on);
            QCOMPARE(folder.entryList(QDir::Files | QDir::Hidden).size(), on ? 1 : 0);
        }
        QVERIFY(folder.removeRecursively() && platform::writeInPlace(folder.path(), "no folder", nullptr));
        for (const bool on : {true, false}) {
            platform::Error error;
            QVERIFY(!setStartsAtLogin(on, &error));
            QVERIFY(error.description().contains(on ? u"autostart"_qs : platform::applicationId()));
        }
    }

    void desktopsFindTheProgram()
    {
        // A folder whose name holds what entries and their command lines escape; not "%", which GIO looks for
        // as it is escaped.
        const QString program = m_home->filePath(uR"(a "b" `c` $d \e \\ ƒ/program)"_qs);
        support::make(program.section(u'/', 0, -2) + u'/');
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
        const QString note = m_home->filePath(u"note"_qs);
        qputenv("PW_NOTE", QFile::encodeName(note));
        QCOMPARE(QProcess::execute(program, {u"--switch-on"_qs}), 0);
        QCOMPARE(QProcess::execute(u"gio"_qs, {u"launch"_qs, entry()}), 0);
        QTRY_VERIFY(QFileInfo(note).size() > 0);
        QCOMPARE(QFile::decodeName(support::bytesOf(note)), program);
    }

private:
    QString entry() const
    {
        return m_home->filePath(u"autostart/%1.desktop"_qs.arg(platform::applicationId()));
    }

    std::unique_ptr<QTemporaryDir> m_home;
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (application.arguments().value(1) == u"--switch-on")
        return setStartsAtLogin(true, nullptr) ? 0 : 1;
    if (qEnvironmentVariableIsSet("PW_NOTE")) { // started by the entry
        const QByteArray path = QFile::encodeName(QCoreApplication::applicationFilePath());
        return platform::writeAtomically(qEnvironmentVariable("PW_NOTE"), path, nullptr) ? 0 : 1;
    }
    TestAutostart test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_autostart.moc"

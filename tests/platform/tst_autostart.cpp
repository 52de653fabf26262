// SPDX-License-Identifier: MIT
#include "platform/applicationid.h"
#include "platform/autostart.h"
#include "platform/files.h"

#include <QDir>
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
    void init();
    void readsTheEntry();
    void switchesOnAndOff();
    void tellsWhyItFailed();
    void desktopsFindTheProgram();

private:
    QString entry() const
    {
        return m_home->filePath(u"autostart/%1.desktop"_qs.arg(platform::applicationId()));
    }

    std::unique_ptr<QTemporaryDir> m_home;
};

void TestAutostart::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_home->path()));
}

void TestAutostart::readsTheEntry()
{
    QVERIFY(platform::makeFolder(m_home->filePath(u"autostart"_qs), nullptr));
    const QByteArray application = "[Desktop Entry]\nType=Application\nName=x\nExec=x\n";
    for (const auto &[text, starts] : std::initializer_list<std::pair<QByteArray, bool>>{
             {application, true},
             {application + "Hidden=true\n", false},
             {application + "Hidden=false\n", true},
             {application + "X-GNOME-Autostart-enabled=false\n", false},
             {application + "[Desktop Action a]\nHidden=true\n", true},
             {"", false},
             {"[Desktop Entry]\nType=Link\nURL=x:\n", false}}) {
        QVERIFY(platform::writeInPlace(entry(), text, nullptr));
        QVERIFY2(startsAtLogin() == starts, text.constData());
        // Whatever stood there, the switch has its way.
        QVERIFY2(setStartsAtLogin(true, nullptr) && startsAtLogin(), text.constData());
    }
}

void TestAutostart::switchesOnAndOff()
{
    QVERIFY(!startsAtLogin());
    QVERIFY(setStartsAtLogin(false, nullptr));
    QVERIFY(setStartsAtLogin(true, nullptr));
    QVERIFY(startsAtLogin());
    QCOMPARE(QDir(m_home->filePath(u"autostart"_qs)).entryList(QDir::Files | QDir::Hidden).size(), 1);
    QVERIFY(setStartsAtLogin(false, nullptr));
    QVERIFY(!QFile::exists(entry()));
}

void TestAutostart::tellsWhyItFailed()
{
    platform::Error error;
    QVERIFY(platform::writeInPlace(m_home->filePath(u"autostart"_qs), "not a folder", nullptr));
    QVERIFY(!setStartsAtLogin(true, &error));
    QVERIFY(error.description().contains(u"autostart"));
    error = {};
    QVERIFY(!setStartsAtLogin(false, &error));
    QVERIFY(error.description().contains(platform::applicationId()));
}

void TestAutostart::desktopsFindTheProgram()
{
    // A folder whose name holds what entries and their command lines escape; not "%", which GIO looks for as
    // it is escaped.
    const QString folder = m_home->filePath(uR"(a "b" `c` $d \e \\ ƒ)"_qs);
    QVERIFY(QDir().mkpath(folder));
    const QString program = folder + QLatin1String("/program");
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
    const QString note = m_home->filePath(u"note"_qs);
    qputenv("PW_NOTE", QFile::encodeName(note));
    QCOMPARE(QProcess::execute(program, {u"--switch-on"_qs}), 0);
    QCOMPARE(QProcess::execute(u"gio"_qs, {u"launch"_qs, entry()}), 0);
    QTRY_VERIFY(QFileInfo(note).size() > 0);
    QCOMPARE(QFile::decodeName(*platform::readWholeFile(note, nullptr)), program);
}

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

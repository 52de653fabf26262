// SPDX-License-Identifier: MIT
#include "platform/contenttype.h"
#include "platform/desktopentry.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace platform;

class TestContentType : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void applications_data();
    void applications();
    void nameFollowsTheLocale_data();
    void nameFollowsTheLocale();
};

void TestContentType::applications_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("executable");
    QTest::addColumn<bool>("application");
    const QByteArray elf = QByteArray("\177ELF\2\1\1") + '\0';
    const QByteArray entry("# x\n\n[Desktop Entry]\nType=Application\n");
    QTest::newRow("desktop entry") << QByteArray("a.desktop") << entry << false << true;
    QTest::newRow("link entry") << QByteArray("b.desktop") << QByteArray("[Desktop Entry]\nType=Link\n")
                                << false << false;
    QTest::newRow("type in another group")
        << QByteArray("c.desktop") << QByteArray("[Desktop Entry]\n[Desktop Action x]\nType=Application\n")
        << false << false;
    QTest::newRow("entry under another name") << QByteArray("a.txt") << entry << true << false;
    QTest::newRow("AppImage 2") << QByteArray("d") << elf + "AI\2xxxx" << true << true;
    QTest::newRow("AppImage 1") << QByteArray("e") << elf + "AI\1" << true << true;
    QTest::newRow("AppImage that may not run") << QByteArray("f") << elf + "AI\2xxxx" << false << false;
    QTest::newRow("plain program") << QByteArray("g") << elf + QByteArray(8, '\0') << true << false;
    QTest::newRow("script") << QByteArray("h.sh") << QByteArray("#!/bin/sh\n") << true << false;
    QTest::newRow("short file") << QByteArray("i") << QByteArray("\177E") << true << false;
    QTest::newRow("empty folder") << QByteArray("folder/") << QByteArray() << false << false;
    QTest::newRow("folder by name") << QByteArray("Calculator.app/") << QByteArray() << false << true;
    QTest::newRow("folder with AppRun") << QByteArray("dir/AppRun") << QByteArray() << true << true;
    QTest::newRow("AppRun that may not run") << QByteArray("dir/AppRun") << QByteArray() << false << false;
    QTest::newRow("AppRun is a folder") << QByteArray("dir/AppRun/") << QByteArray() << false << false;
}

void TestContentType::applications()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, text);
    QFETCH(bool, executable);
    QFETCH(bool, application);
    QTemporaryDir folder;
    const QString path = folder.filePath(QFile::decodeName(name));
    QVERIFY(QDir().mkpath(path.section(QLatin1Char('/'), 0, -2)));
    if (!name.endsWith('/')) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
        if (executable)
            file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
    }
    const QByteArray first = QFile::encodeName(folder.path()) + '/' + name.split('/').constFirst();
    QCOMPARE(name.contains('/') ? isApplicationFolder(first) : isApplicationFile(first), application);
}

void TestContentType::nameFollowsTheLocale_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("name");
    QTest::newRow("no language") << QByteArray("C") << QStringLiteral("Files");
    QTest::newRow("language") << QByteArray("de_AT.UTF-8") << QStringLiteral("Dateien");
    QTest::newRow("language and country") << QByteArray("de_CH.UTF-8") << QStringLiteral("Ablage x");
    QTest::newRow("modifier") << QByteArray("sr_RS.UTF-8@latin") << QStringLiteral("Datoteke");
    QTest::newRow("empty") << QByteArray() << QStringLiteral("Files");
}

void TestContentType::nameFollowsTheLocale()
{
    QFETCH(QByteArray, locale);
    const std::optional<DesktopEntry> entry = parseDesktopEntry("[Desktop Entry]\n"
                                                                "Name[de_CH] = Ablage\\sx\n"
                                                                "Name=Files\nName[de]=Dateien\n"
                                                                "Name[sr@latin]=Datoteke\n"
                                                                "[Desktop Action y]\nName=Other\n",
                                                                locale);
    QVERIFY(entry);
    QTEST(entry->name, "name");
}

QTEST_GUILESS_MAIN(TestContentType)
#include "tst_contenttype.moc"

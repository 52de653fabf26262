// SPDX-License-Identifier: MIT
#include "platform/contenttype.h"
#include "platform/desktopentry.h"
#include "support/files.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace platform;

class TestContentType : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void applications()
    {
        const QByteArray elf = QByteArray("\177ELF\2\1\1") + '\0';
        const QByteArray entry("# x\n\n[Desktop Entry]\nType=Application\n");
        // A name, what is in it, whether it may run, whether it is an application
        const std::tuple<QByteArray, QByteArray, bool, bool> rows[] = {
            {"a.desktop", entry, false, true},
            {"link.desktop", "[Desktop Entry]\nType=Link\n", false, false},
            {"group.desktop", "[Desktop Entry]\n[Desktop Action x]\nType=Application\n", false, false},
            {"AppImage 2", elf + "AI\2xxxx", true, true},
            {"AppImage that may not run", elf + "AI\2xxxx", false, false},
            {"program", elf + QByteArray(8, '\0'), true, false},
            {"Calculator.app/", "", false, true},
            {"runs/AppRun", "", true, true},
            {"may not run/AppRun", "", false, false},
            {"folder/AppRun/", "", false, false},
        };
        const QTemporaryDir folder;
        for (const auto &[name, text, executable, application] : rows) {
            const QString path = support::make(folder.filePath(QFile::decodeName(name)), text);
            if (executable)
                QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
            const QByteArray first = QFile::encodeName(folder.path()) + '/' + name.split('/').constFirst();
            const bool found = name.contains('/') ? isApplicationFolder(first) : isApplicationFile(first);
            QVERIFY2(found == application, name.constData());
        }
    }

    void nameFollowsTheLocale()
    {
        const QByteArray text = "[Desktop Entry]\nName[de_CH] = Ablage\\sx\nName=Files\nName[de]=Dateien\n"
                                "Name[sr@latin]=Datoteke\n[Desktop Action y]\nName=Other\n";
        for (const auto &[locale, name] :
             {std::pair("C", u"Files"_qs), std::pair("de_AT.UTF-8", u"Dateien"_qs),
              std::pair("de_CH.UTF-8", u"Ablage x"_qs), std::pair("sr_RS.UTF-8@latin", u"Datoteke"_qs)}) {
            const auto entry = parseDesktopEntry(text, locale);
            QVERIFY2(entry, locale);
            QCOMPARE(entry->name, name);
        }
    }
};

QTEST_GUILESS_MAIN(TestContentType)
#include "tst_contenttype.moc"

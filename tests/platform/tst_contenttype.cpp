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
    void applications()
    {
        const QByteArray elf = QByteArray("\177ELF\2\1\1") + '\0';
        const QByteArray entry("# x\n\n[Desktop Entry]\nType=Application\n");
        const struct
        {
            QByteArray name, text;
            bool executable, application;
        } rows[] = {
            {"a.desktop", entry, false, true},
            {"link.desktop", "[Desktop Entry]\nType=Link\n", false, false},
            {"group.desktop", "[Desktop Entry]\n[Desktop Action x]\nType=Application\n", false, false},
            {"a.txt", entry, true, false},
            {"AppImage 2", elf + "AI\2xxxx", true, true},
            {"AppImage 1", elf + "AI\1", true, true},
            {"AppImage that may not run", elf + "AI\2xxxx", false, false},
            {"program", elf + QByteArray(8, '\0'), true, false},
            {"h.sh", "#!/bin/sh\n", true, false},
            {"short", "\177E", true, false},
            {"empty/", "", false, false},
            {"Calculator.app/", "", false, true},
            {"runs/AppRun", "", true, true},
            {"may not run/AppRun", "", false, false},
            {"folder/AppRun/", "", false, false},
        };
        const QTemporaryDir folder;
        for (const auto &[name, text, executable, application] : rows) {
            const QString path = folder.filePath(QFile::decodeName(name));
            QVERIFY(QDir().mkpath(path.section(u'/', 0, -2)));
            if (!name.endsWith('/')) {
                QFile file(path);
                QVERIFY(file.open(QIODevice::WriteOnly));
                file.write(text);
                if (executable)
                    file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
            }
            const QByteArray first = QFile::encodeName(folder.path()) + '/' + name.split('/').constFirst();
            const bool found = name.contains('/') ? isApplicationFolder(first) : isApplicationFile(first);
            QVERIFY2(found == application, name.constData());
        }
    }

    void nameFollowsTheLocale()
    {
        const std::pair<QByteArray, QString> rows[] = {{"C", u"Files"_qs},
                                                       {"", u"Files"_qs},
                                                       {"de_AT.UTF-8", u"Dateien"_qs},
                                                       {"de_CH.UTF-8", u"Ablage x"_qs},
                                                       {"sr_RS.UTF-8@latin", u"Datoteke"_qs}};
        for (const auto &[locale, name] : rows) {
            const auto entry = parseDesktopEntry("[Desktop Entry]\nName[de_CH] = Ablage\\sx\nName=Files\n"
                                                 "Name[de]=Dateien\nName[sr@latin]=Datoteke\n"
                                                 "[Desktop Action y]\nName=Other\n",
                                                 locale);
            QVERIFY2(entry, locale.constData());
            QCOMPARE(entry->name, name);
        }
    }
};

QTEST_GUILESS_MAIN(TestContentType)
#include "tst_contenttype.moc"

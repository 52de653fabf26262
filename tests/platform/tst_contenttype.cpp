// SPDX-License-Identifier: MIT
#include "platform/contenttype.h"
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
};

QTEST_GUILESS_MAIN(TestContentType)
#include "tst_contenttype.moc"

// SPDX-License-Identifier: MIT
#include "platform/userfolders.h"
#include "support/files.h"

#include <QTemporaryDir>
#include <QTest>

class TestUserFolders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documents()
    {
        // The desktop's own list and what it makes of the home folder; null when there is no folder.
        const std::pair<QByteArray, QString> rows[] = {
            {"", u"/Documents"_qs},
            {"XDG_DOCUMENTS_DIR=\"$HOME/Dokumente ƒ/tief\"\n", u"/Dokumente ƒ/tief"_qs},
            {"XDG_DOCUMENTS_DIR=\"$HOME/\"\n", u""_qs},
            {"XDG_DOCUMENTS_DIR=\"$HOME/.config/user-dirs.dirs\"\n", {}}};
        for (const auto &[list, folder] : rows) {
            const QTemporaryDir home;
            qputenv("HOME", QFile::encodeName(home.path()));
            qunsetenv("XDG_CONFIG_HOME");
            if (!list.isEmpty())
                support::make(home.filePath(u".config/user-dirs.dirs"_qs), list);
            platform::Error error;
            const auto found = platform::documentsFolder(&error);
            QVERIFY2(found.has_value() != folder.isNull(), list.constData());
            QVERIFY2(found || error.fullDescription().contains(u"(domain POSIX, code "), list.constData());
            if (!found)
                continue;
            QCOMPARE(QDir::cleanPath(*found), home.path() + folder);
            QVERIFY2(!found->endsWith(u'/') && QDir(*found).exists(), list.constData());
        }
        qunsetenv("HOME");
        QVERIFY(!platform::documentsFolder(nullptr)); // the toolkit would begin at the root
    }
};

QTEST_APPLESS_MAIN(TestUserFolders)
#include "tst_userfolders.moc"

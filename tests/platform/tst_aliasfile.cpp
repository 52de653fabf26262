// SPDX-License-Identifier: MIT
#include "platform/aliasfile.h"
#include "platform/aliasresolver.h"
#include "support/files.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace platform;

class TestAliasFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fileHoldsTheWholeRecord()
    {
        QVERIFY(::mkdir(path("Tile").constData(), 0700) == 0);
        const QByteArray target = write("Annual Report%.pdf", "text");
        const QByteArray alias = path("Tile/A");
        QVERIFY(writeAliasFile(target, alias, nullptr));
        const QByteArray text = support::bytesOf(QFile::decodeName(alias));
        QVERIFY(text.startsWith("pondWicket alias 1\npath: /"));
        const std::optional<AliasRecord> record = parseAlias(text, nullptr);
        QVERIFY(record && record->path == target && record->kind == FileKind::File && record->size == 4);
        QCOMPARE(record->relativePath, QByteArray("../Annual Report%.pdf"));
        QVERIFY(isSameFile(record->identity, *identify(target)));
        QVERIFY(record->folders.size() >= 2);
        QVERIFY(isSameFile(record->folders.at(0), *identify(parentPath(target))));
        QCOMPARE(serialiseAlias(*record), text);
    }

    void nameThatIsNotUtf8IsKept()
    {
        const QByteArray target = path("caf\xe9 \n\r#");
        QVERIFY(::mkdir(target.constData(), 0700) == 0);
        QVERIFY(writeAliasFile(target, path("B"), nullptr));
        const std::optional<AliasTarget> found = resolveAliasTarget(path("B"), nullptr);
        QVERIFY(found && found->path == target && found->isFolder);
        ::rmdir(target.constData()); // QTemporaryDir could not
    }

    void brokenText()
    {
        for (const QByteArray &rest :
             {QByteArray(), QByteArray("path: etc/passwd"), QByteArray("path: /tmp%00/x"),
              QByteArray("path: /tmp%4"), QByteArray("path: /\nkind"), QByteArray("path: /\nkind: planet"),
              QByteArray("path: /\ninode: 99999999999999999999"), QByteArray("path: /\nfolder: 1 -"),
              "path: /\n#" + QByteArray(maxAliasFileSize, 'x')})
            checkIsBroken("pondWicket alias 1\n" + rest + '\n');
        for (const char *version : {"2", "01"})
            checkIsBroken(QByteArray("pondWicket alias ") + version + "\npath: /\n");
    }

    void handEditedTextAndOtherFilesAreRead()
    {
        const QByteArray target = write("target", "");
        const auto leadsTo = [](const QByteArray &file) {
            return resolveAliasTarget(file, nullptr).value_or(AliasTarget()).path;
        };
        QCOMPARE(leadsTo(write("edited",
                               "pondWicket alias 1\r\n\r\n# mine\r\npath:" + target + "  \r\nnew: x\r\n")),
                 target);
        for (const char *text :
             {"", "pondWicket alias files are small\n", "pondWicket alias \n", " pondWicket alias 1\n"}) {
            const QByteArray file = write("other", text);
            QVERIFY2(!isAliasFile(file) && leadsTo(file) == file, text);
        }
    }

private:
    QByteArray path(const char *name) const { return QFile::encodeName(m_folder.path()) + '/' + name; }
    QByteArray write(const char *name, const QByteArray &text) const
    {
        return QFile::encodeName(support::make(QFile::decodeName(path(name)), text));
    }
    void checkIsBroken(const QByteArray &text) const
    {
        Error error;
        QVERIFY2(!resolveAliasTarget(write("broken", text), &error), text.left(80).constData());
        QVERIFY2(!error.reason.isEmpty(), text.left(80).constData());
        QCOMPARE(error.path, QFile::decodeName(path("broken")));
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(TestAliasFile)
#include "tst_aliasfile.moc"

// SPDX-License-Identifier: MIT
#include "platform/aliasfile.h"
#include "platform/aliasresolver.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace platform;

class TestAliasFile : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QByteArray path(const char *name) const { return QFile::encodeName(m_folder.path()) + '/' + name; }
    QByteArray write(const char *name, const QByteArray &text) const
    {
        QFile file(QFile::decodeName(path(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("cannot write");
        return path(name);
    }

private Q_SLOTS:
    void fileHoldsTheWholeRecord();
    void nameThatIsNotUtf8IsKept();
    void brokenText();
    void handEditedTextIsRead();
    void otherFilesAreNoAliases();
};

void TestAliasFile::fileHoldsTheWholeRecord()
{
    QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("Tiles/Tile-1")));
    const QByteArray target = write("Annual Report%.pdf", "text");
    const QByteArray alias = path("Tiles/Tile-1/A");
    Error error;
    QVERIFY2(writeAliasFile(target, alias, &error), qPrintable(error.fullDescription()));

    struct stat status;
    QCOMPARE(::stat(alias.constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 07777), 0600);
    QFile file(QFile::decodeName(alias));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QVERIFY(text.startsWith("pondWicket alias 1\npath: /"));
    const std::optional<AliasRecord> record = parseAlias(text, nullptr);
    QVERIFY(record);
    QCOMPARE(record->path, target);
    QCOMPARE(record->relativePath, QByteArray("../../Annual Report%.pdf"));
    QCOMPARE(record->kind, FileKind::File);
    QCOMPARE(record->size, 4);
    QVERIFY(isSameFile(record->identity, *identify(target)));
    QVERIFY(record->folders.size() >= 2);
    QVERIFY(isSameFile(record->folders.at(0), *identify(parentPath(target))));
    QCOMPARE(serialiseAlias(*record), text);
}

void TestAliasFile::nameThatIsNotUtf8IsKept()
{
    const QByteArray target = path("caf\xe9 \n\r#");
    QVERIFY(::mkdir(target.constData(), 0700) == 0);
    const QByteArray alias = path("B");
    QVERIFY(writeAliasFile(target, alias, nullptr));
    const std::optional<AliasTarget> found = resolveAliasTarget(alias, nullptr);
    QVERIFY(found && found->path == target && found->isFolder);
    ::rmdir(target.constData()); // QTemporaryDir could not
}

void TestAliasFile::brokenText()
{
    const QByteArray first = "pondWicket alias 1\n";
    for (const QByteArray &text :
         {first, QByteArray("pondWicket alias 2\npath: /\n"), QByteArray("pondWicket alias 01\npath: /\n"),
          first + "path: etc/passwd\n", first + "path: /tmp%00/x\n", first + "path: /tmp%4\n",
          first + "path: /\nkind\n", first + "path: /\nkind: planet\n",
          first + "path: /\ninode: 99999999999999999999\n", first + "path: /\nfolder: 1 -\n",
          first + "path: /\n#" + QByteArray(maxAliasFileSize, 'x')}) {
        Error error;
        QVERIFY2(!resolveAliasTarget(write("broken", text), &error), text.left(80).constData());
        QVERIFY2(!error.reason.isEmpty(), text.left(80).constData());
        QCOMPARE(error.path, QFile::decodeName(path("broken")));
    }
}

void TestAliasFile::handEditedTextIsRead()
{
    const QByteArray target = write("target", "");
    const QByteArray alias =
        write("edited", "pondWicket alias 1\r\n\r\n# mine\r\npath:" + target + "  \r\nnew key: x\r\n");
    const std::optional<AliasTarget> found = resolveAliasTarget(alias, nullptr);
    QVERIFY(found);
    QCOMPARE(found->path, target);
}

void TestAliasFile::otherFilesAreNoAliases()
{
    for (const QByteArray text :
         {"", "pondWicket alias files are small\n", "pondWicket alias \n", " pondWicket alias 1\n"}) {
        const QByteArray file = write("other", text);
        QVERIFY2(!isAliasFile(file), text.constData());
        const std::optional<AliasTarget> found = resolveAliasTarget(file, nullptr);
        QVERIFY2(found && found->path == file, text.constData());
    }
}

QTEST_GUILESS_MAIN(TestAliasFile)
#include "tst_aliasfile.moc"

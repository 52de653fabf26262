// SPDX-License-Identifier: MIT
#include "support/program.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QTest>

using namespace support;

namespace {

/// Every file and folder under `root` but caches: its path, time stamp and content.
QStringList snapshot(const QString &root)
{
    QStringList entries;
    QDirIterator walk(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QFileInfo info = walk.nextFileInfo();
        if (info.filePath().contains(QLatin1String("/.cache")))
            continue;
        QFile file(info.filePath());
        QCryptographicHash hash(QCryptographicHash::Sha256);
        if (info.isFile() && file.open(QIODevice::ReadOnly))
            hash.addData(&file);
        entries.append(info.filePath() + u' ' + QString::number(info.lastModified().toMSecsSinceEpoch())
                       + u' ' + QString::fromLatin1(hash.result().toHex()));
    }
    entries.sort();
    return entries;
}

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

bool isTiff(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray magic = file.read(4);
    return magic == QByteArray("II*\0", 4) || magic == QByteArray("MM\0*", 4);
}

} // namespace

class TestFirstStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesTheApplicationFolder();
    void secondStartWritesNothing();
    void settingsFileIsWrittenFourTimes();
};

void TestFirstStart::makesTheApplicationFolder()
{
    Desktop desktop;
    QVERIFY2(desktop.isUp(), qPrintable(desktop.problem()));
    Program strip(desktop, QStringLiteral(PW_PROGRAM));
    QVERIFY2(!strip.waitForWindow().isNull(), qPrintable(strip.errors()));
    strip.terminate();
    QCOMPARE(strip.waitForExit(), 0);
    QCOMPARE(strip.lines(), QStringList(QStringLiteral("New settings file written successfully.")));

    QCOMPARE(namesIn(desktop.applicationFolder()),
             QStringList({QStringLiteral("Themes"), QStringLiteral("Tiles"),
                          QStringLiteral("pondWicket-settings.json")}));
    QCOMPARE(namesIn(desktop.applicationFolder() + QStringLiteral("/Tiles")).size(), 3);

    const QList<std::pair<QString, int>> icons = {{QStringLiteral("1984"), 6}, {QStringLiteral("1988"), 5},
                                                  {QStringLiteral("1995"), 9}, {QStringLiteral("1996"), 22},
                                                  {QStringLiteral("2000"), 9}, {QStringLiteral("2010"), 15},
                                                  {QStringLiteral("2024"), 24}};
    const QString themes = desktop.applicationFolder() + QStringLiteral("/Themes/");
    QCOMPARE(namesIn(themes).size(), icons.size());
    for (const auto &[theme, count] : icons) {
        for (const auto &[folder, expected] :
             {std::pair(QStringLiteral("/Chrome"), 11), std::pair(QStringLiteral("/Icons"), count)}) {
            const QStringList names = namesIn(themes + theme + folder);
            QVERIFY2(names.size() == expected, qPrintable(theme + folder + u' ' + names.join(u' ')));
            for (const QString &name : names)
                QVERIFY2(isTiff(themes + theme + folder + u'/' + name), qPrintable(theme + folder + name));
        }
    }
}

void TestFirstStart::secondStartWritesNothing()
{
    Desktop desktop;
    QStringList before;
    for (int start = 0; start < 2; ++start) {
        Program strip(desktop, QStringLiteral(PW_PROGRAM));
        QVERIFY2(!strip.waitForWindow().isNull(), qPrintable(strip.errors()));
        strip.terminate();
        QCOMPARE(strip.waitForExit(), 0);
        if (start == 0)
            before = snapshot(desktop.home());
        else
            QCOMPARE(strip.lines(), QStringList());
    }
    QVERIFY(before.size() > 170);
    QCOMPARE(snapshot(desktop.home()), before);
}

/// Counted by the kernel: each write opens the file anew.
void TestFirstStart::settingsFileIsWrittenFourTimes()
{
    Desktop desktop;
    // The leak checker cannot work in a traced process.
    desktop.environment().insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    const QString trace = desktop.home() + QStringLiteral("/trace");
    // -D: the tracer is the program's child, so that the program is ours.
    Program strip(desktop, QStringLiteral("strace"),
                  {QStringLiteral("-D"), QStringLiteral("-f"), QStringLiteral("-e"),
                   QStringLiteral("trace=open,openat"), QStringLiteral("-o"), trace,
                   QStringLiteral(PW_PROGRAM)});
    const Window window = strip.waitForWindow();
    if (strip.errors().contains(QLatin1String("Operation not permitted")))
        QSKIP("this machine does not let one process trace another");
    QVERIFY2(!window.isNull(), qPrintable(strip.errors()));
    strip.terminate();
    QCOMPARE(strip.waitForExit(), 0);

    const auto writes = [&trace] {
        QFile file(trace);
        int count = 0;
        if (file.open(QIODevice::ReadOnly)) {
            for (const QByteArray &line : file.readAll().split('\n'))
                count += line.contains("/pondWicket-settings.json\"") && !line.contains("O_RDONLY");
        }
        return count;
    };
    QTRY_COMPARE(writes(), 4);
}

QTEST_GUILESS_MAIN(TestFirstStart)
#include "tst_firststart.moc"

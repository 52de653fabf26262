// SPDX-License-Identifier: MIT
#include "platform/files.h"
#include "support/program.h"
#include "support/savewatcher.h"

#include <QDir>
#include <QDirIterator>
#include <QTest>

using namespace support;

namespace {

QByteArray contentOf(const QString &path)
{
    return platform::readWholeFile(path, nullptr).value_or(QByteArray());
}

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
        entries.append(info.filePath() + u' ' + QString::number(info.lastModified().toMSecsSinceEpoch())
                       + u' ' + QString::fromLatin1(contentOf(info.filePath())));
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
    const QByteArray magic = contentOf(path).left(4);
    return magic == QByteArray("II*\0", 4) || magic == QByteArray("MM\0*", 4);
}

} // namespace

class TestFirstStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesTheApplicationFolderOnce();
    void aDamagedFileIsRestoredByHand();
};

void TestFirstStart::makesTheApplicationFolderOnce()
{
    Desktop desktop;
    QVERIFY2(desktop.isUp(), qPrintable(desktop.problem()));
    QStringList before;
    for (const bool isFirst : {true, false}) {
        Program strip(desktop, QStringLiteral(PW_PROGRAM));
        QVERIFY2(!strip.waitForWindow().isNull(), qPrintable(strip.errors()));
        strip.terminate();
        QCOMPARE(strip.waitForExit(), 0);
        QCOMPARE(strip.lines().join(u'\n'),
                 isFirst ? u"New settings file written successfully."_qs : QString());
        if (isFirst)
            before = snapshot(desktop.home());
    }
    QCOMPARE(snapshot(desktop.home()), before);

    const QString folder = desktop.applicationFolder();
    QCOMPARE(namesIn(folder), u"Themes Tiles pondWicket-settings.json"_qs.split(u' '));
    QCOMPARE(namesIn(folder + u"/Tiles"_qs).size(), 3);
    const QList<std::pair<QString, int>> icons = {{u"1984"_qs, 6},  {u"1988"_qs, 5}, {u"1995"_qs, 9},
                                                  {u"1996"_qs, 22}, {u"2000"_qs, 9}, {u"2010"_qs, 15},
                                                  {u"2024"_qs, 24}};
    QCOMPARE(namesIn(folder + u"/Themes"_qs).size(), icons.size());
    for (const auto &[theme, count] : icons) {
        for (const auto &[kind, expected] :
             {std::pair(u"/Chrome/"_qs, 11), std::pair(u"/Icons/"_qs, count)}) {
            const QString images = folder + u"/Themes/"_qs + theme + kind;
            const QStringList names = namesIn(images);
            QVERIFY2(names.size() == expected, qPrintable(images + names.join(u' ')));
            for (const QString &name : names)
                QVERIFY2(isTiff(images + name), qPrintable(images + name));
        }
    }
}

/// As docs/FILES.md tells, before and after a start has put the sample tiles in place.
void TestFirstStart::aDamagedFileIsRestoredByHand()
{
    Desktop desktop;
    const auto startAndEnd = [&desktop] {
        Program strip(desktop, QStringLiteral(PW_PROGRAM));
        const bool shown = !strip.waitForWindow().isNull();
        strip.terminate();
        return shown && strip.waitForExit() == 0;
    };
    const auto shell = [&desktop](const QString &command) {
        return desktop.run(u"bash"_qs, {u"-c"_qs, command});
    };
    const QString file = u" ~/Documents/\"pondWicket ƒ\"/pondWicket-settings.json"_qs;
    QVERIFY(platform::makeFolder(desktop.applicationFolder(), nullptr));
    SaveWatcher watcher(desktop.applicationFolder());
    QVERIFY(startAndEnd());
    QCOMPARE(watcher.saves(), 4);
    const QByteArray whole = shell(u"cat"_qs + file);
    QVERIFY(!whole.isEmpty());
    shell(u"truncate -s 100"_qs + file);
    shell(u"cp ~/.local/state/pondWicket/last-good.json"_qs + file);
    QVERIFY(startAndEnd());
    QCOMPARE(shell(u"cat"_qs + file), whole);

    shell(u"truncate -s 100"_qs + file);
    QVERIFY(startAndEnd());
    QVERIFY(shell(u"cat"_qs + file) != whole);
    shell(u"cp $(ls -t ~/.local/state/pondWicket/last-good-*.json | head -n 1)"_qs + file);
    QVERIFY(startAndEnd());
    QCOMPARE(shell(u"cat"_qs + file), whole);
}

QTEST_GUILESS_MAIN(TestFirstStart)
#include "tst_firststart.moc"

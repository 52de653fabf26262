// SPDX-License-Identifier: MIT
#include "platform/files.h"
#include "support/program.h"
#include "support/savewatcher.h"

#include <QDir>
#include <QDirIterator>
#include <QTest>

#include <optional>

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

/// What the program writes to standard output; nothing when it is not shown or does not end well.
std::optional<QString> startAndEnd(const Desktop &desktop)
{
    Program strip(desktop, QStringLiteral(PW_PROGRAM));
    const bool shown = !strip.waitForWindow().isNull();
    strip.terminate();
    return shown && strip.waitForExit() == 0 ? std::optional(strip.lines().join(u'\n')) : std::nullopt;
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
    QVERIFY(startAndEnd(desktop) == u"New settings file written successfully."_qs);
    const QStringList before = snapshot(desktop.home());
    QVERIFY(startAndEnd(desktop) == QString());
    QCOMPARE(snapshot(desktop.home()), before);

    const QString folder = desktop.applicationFolder();
    QCOMPARE(namesIn(folder), u"Themes Tiles pondWicket-settings.json"_qs.split(u' '));
    QCOMPARE(namesIn(folder + u"/Tiles"_qs).size(), 3);
    QStringList found;
    for (const QString &theme : namesIn(folder + u"/Themes"_qs)) {
        found += theme;
        for (const QString &kind : {u"/Chrome/"_qs, u"/Icons/"_qs}) {
            const QString images = folder + u"/Themes/"_qs + theme + kind;
            const QStringList names = namesIn(images);
            found += QString::number(names.size());
            for (const QString &name : names) {
                const QByteArray magic = contentOf(images + name).left(4);
                QVERIFY2(magic == QByteArray("II*\0", 4) || magic == QByteArray("MM\0*", 4),
                         qPrintable(images + name));
            }
        }
    }
    QCOMPARE(found.join(u' '),
             u"1984 11 6 1988 11 5 1995 11 9 1996 11 22 2000 11 9 2010 11 15 2024 11 24"_qs);
}

/// As docs/FILES.md tells, before and after a start has put the sample tiles in place.
void TestFirstStart::aDamagedFileIsRestoredByHand()
{
    Desktop desktop;
    const auto shell = [&desktop](const QString &command) {
        return desktop.run(u"bash"_qs, {u"-c"_qs, command});
    };
    const QString file = u" ~/Documents/\"pondWicket ƒ\"/pondWicket-settings.json"_qs;
    QVERIFY(platform::makeFolder(desktop.applicationFolder(), nullptr));
    SaveWatcher watcher(desktop.applicationFolder());
    QVERIFY(startAndEnd(desktop));
    QCOMPARE(watcher.saves(), 4);
    const QByteArray whole = shell(u"cat"_qs + file);
    QVERIFY(!whole.isEmpty());
    shell(u"truncate -s 100"_qs + file);
    shell(u"cp ~/.local/state/pondWicket/last-good.json"_qs + file);
    QVERIFY(startAndEnd(desktop));
    QCOMPARE(shell(u"cat"_qs + file), whole);

    shell(u"truncate -s 100"_qs + file);
    QVERIFY(startAndEnd(desktop));
    QVERIFY(shell(u"cat"_qs + file) != whole);
    shell(u"cp $(ls -t ~/.local/state/pondWicket/last-good-*.json | head -n 1)"_qs + file);
    QVERIFY(startAndEnd(desktop));
    QCOMPARE(shell(u"cat"_qs + file), whole);
}

QTEST_GUILESS_MAIN(TestFirstStart)
#include "tst_firststart.moc"

// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "support/program.h"
#include "support/savewatcher.h"

#include <QDir>
#include <QDirIterator>
#include <QTest>

#include <optional>

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
        entries.append(info.filePath() + u' ' + QString::number(info.lastModified().toMSecsSinceEpoch())
                       + u' ' + QString::fromLatin1(bytesOf(info.filePath())));
    }
    entries.sort();
    return entries;
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
    void makesTheApplicationFolderOnce()
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
        for (const QString &theme : namesIn(folder + u"/Themes"_qs)) {
            const QString icon = folder + u"/Themes/%1/Chrome/default.png"_qs.arg(theme);
            QVERIFY2(bytesOf(icon).startsWith(QByteArray("II*\0", 4)),
                     qPrintable(icon)); // a TIFF, whatever its name
        }
        QCOMPARE(namesIn(folder + u"/Themes"_qs).size(), 7);
    }

    /// The toolkit ended by a signal.
    void saysThatThereIsNoDisplay()
    {
        Desktop desktop;
        Program strip(desktop, u"env"_qs, {u"-u"_qs, u"DISPLAY"_qs, QStringLiteral(PW_PROGRAM)});
        QCOMPARE(strip.waitForExit(), 1);
        QVERIFY(strip.errors().endsWith(u"There is no X display to show the strip on.\n"));
    }

    /// As docs/FILES.md tells, before and after a start has put the sample tiles in place.
    void aDamagedFileIsRestoredByHand()
    {
        Desktop desktop;
        const auto shell = [&desktop](const QString &command) {
            return desktop.run(u"bash"_qs, {u"-c"_qs, command});
        };
        const QString file = u" ~/Documents/\"pondWicket ƒ\"/pondWicket-settings.json"_qs;
        SaveWatcher watcher(make(desktop.applicationFolder() + u'/'));
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
};

QTEST_GUILESS_MAIN(TestFirstStart)
#include "tst_firststart.moc"

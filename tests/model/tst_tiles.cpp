// SPDX-License-Identifier: MIT
#include "model/settingsstore.h"
#include "model/tiles.h"
#include "support/stdoutcapture.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

class TestTiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void threeTilesOnAFreshFolder();
};

void TestTiles::threeTilesOnAFreshFolder()
{
    const QTemporaryDir dir;
    StdoutCapture capture;
    Config config(dir.filePath(QStringLiteral("Documents")), dir.filePath(QStringLiteral("state")));
    model::writeDefaultSettings(config);
    for (int i = 0; i < 3; ++i)
        model::addTile(config);
    QCOMPARE(capture.lines(), QStringList(QStringLiteral("New settings file written successfully.")));

    const QDir folder(model::applicationFolder(config));
    QCOMPARE(folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList({QStringLiteral("pondWicket-settings.json"), QStringLiteral("Tiles")}));
    for (const TileItem &tile : config.tileItems())
        QVERIFY(QDir(model::tileFolderPath(tile)).exists());

    Config next(config.documentDirectory(), config.stateDirectory());
    model::loadSettings(next);
    QCOMPARE(next.tileItems(), config.tileItems());
    QCOMPARE(capture.lines(), QStringList());
}

QTEST_GUILESS_MAIN(TestTiles)
#include "tst_tiles.moc"

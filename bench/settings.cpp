// SPDX-License-Identifier: MIT
// What saving and loading cost beside the least that they could: one plain write of the same bytes, and the
// JSON parser alone with nothing built; for files of several sizes.
#include "table.h"

#include "model/settingsjson.h"
#include "model/settingsstore.h"
#include "platform/files.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>
#include <functional>

#include <fcntl.h>
#include <rapidjson/reader.h>
#include <unistd.h>

namespace {

QList<TileItem> manyTiles(int tiles, int linksPerTile)
{
    QList<TileItem> items(tiles);
    for (TileItem &tile : items) {
        tile.tileName = QStringLiteral("What’s for dinner?");
        tile.tileDirectory = QStringLiteral("file:///home/user/Documents/pondWicket%20%C6%92/Tiles/Tile-1");
        for (int i = 0; i < linksPerTile; ++i)
            tile.tileMenuItems.append(
                {.itemString = QStringLiteral("https://www.example.org/folder/page-%1.html?a=b").arg(i),
                 .itemName = QStringLiteral("A page about things, No. %1").arg(i)});
    }
    return items;
}

struct Timing
{
    std::function<void()> prepare; // not timed
    std::function<void()> run;
    QList<double> times; // ms on a processor
    QList<double> wall; // ms
};

/// Takes turns, so that what else the machine does meets all alike.
void measure(int rounds, std::initializer_list<Timing *> timings)
{
    for (int round = 0; round < rounds; ++round) {
        for (Timing *timing : timings) {
            timing->prepare();
            QElapsedTimer wall;
            wall.start();
            const double start = bench::processorTime();
            timing->run();
            timing->times.append(bench::processorTime() - start);
            timing->wall.append(double(wall.nsecsElapsed()) / 1e6);
        }
    }
}

void plainWrite(const QByteArray &path, const QByteArray &bytes)
{
    const int file = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (file < 0 || ::write(file, bytes.constData(), size_t(bytes.size())) != bytes.size()
        || ::close(file) != 0)
        std::abort();
}

void parseOnly(QByteArray bytes)
{
    rapidjson::InsituStringStream stream(bytes.data());
    rapidjson::BaseReaderHandler<> nothing;
    if (!rapidjson::Reader().Parse<rapidjson::kParseInsituFlag>(stream, nothing))
        std::abort();
}

void row(bench::Table &table, const QStringList &what, const Timing &ours, const Timing &least, int reach)
{
    const double mine = bench::median(ours.times);
    const double floor = bench::median(least.times);
    table.row(what
              + QStringList{bench::number(mine, 2), bench::number(floor, 2), bench::number(mine / floor, 2),
                            QString::number(reach), bench::number(bench::median(ours.wall), 2),
                            bench::number(bench::median(least.wall), 2)});
}

void measureFile(bench::Table &table, int tiles, int linksPerTile, int rounds)
{
    const QTemporaryDir dir;
    Config config(dir.path(), dir.filePath(QStringLiteral("state")));
    config.setTileItems(manyTiles(tiles, linksPerTile));
    model::saveSettings(config);
    const QString path = model::settingsFileURL(config);
    const QByteArray bytes = *platform::readWholeFile(path, nullptr);
    Config loaded(dir.path(), dir.filePath(QStringLiteral("state")));
    model::loadSettings(loaded);
    if (loaded.tileItems() != config.tileItems())
        std::abort();

    const QByteArray plainPath = QFile::encodeName(dir.filePath(QStringLiteral("plain.json")));
    const auto nothing = [] {};
    Timing save{nothing, [&] { model::saveSettings(config); }, {}, {}};
    Timing write{nothing, [&] { plainWrite(plainPath, bytes); }, {}, {}};
    measure(rounds, {&save, &write});
    Timing load{[&] { loaded.setTileItems({}); }, [&] { model::loadSettings(loaded); }, {}, {}};
    Timing parse{nothing, [&] { parseOnly(*platform::readWholeFile(path, nullptr)); }, {}, {}};
    measure(rounds, {&load, &parse});

    const QString size = QStringLiteral("%1 × %2").arg(tiles).arg(linksPerTile);
    const QString megabytes = bench::number(double(bytes.size()) / 1e6, 2);
    row(table, {QStringLiteral("save"), size, megabytes}, save, write, 3);
    row(table, {QStringLiteral("load"), size, megabytes}, load, parse, 2);
}

} // namespace

int main()
{
    bench::Table table(QStringLiteral("Settings, ms on a processor: a save with its safety copy beside a "
                                      "plain write, a load beside a parser that builds nothing"),
                       {QStringLiteral("what"), QStringLiteral("tiles × links"), QStringLiteral("MB"),
                        QStringLiteral("ms"), QStringLiteral("beside, ms"), QStringLiteral("ratio"),
                        QStringLiteral("reach"), QStringLiteral("by the clock, ms"),
                        QStringLiteral("beside, by the clock, ms")});
    measureFile(table, 20, 10, 41);
    measureFile(table, 20, 1000, 41);
    measureFile(table, 20, 10'000, 11);
    measureFile(table, 100'000, 0, 11);
    return 0;
}

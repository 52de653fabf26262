// SPDX-License-Identifier: MIT
// What saving and loading cost beside the least that they could: one plain write of the same bytes, and the
// JSON parser alone with nothing built. Rows of a Markdown table on standard output.
#include "model/settingsjson.h"
#include "model/settingsstore.h"
#include "platform/files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

#include <fcntl.h>
#include <rapidjson/reader.h>
#include <unistd.h>

namespace {

constexpr int tiles = 20;
constexpr int linksPerTile = 1000;
constexpr int rounds = 41;

QList<TileItem> manyTiles()
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
    std::vector<double> times; // ms
    double median() const { return times[times.size() / 2]; }
};

/// Takes turns, so that what else the machine does meets all alike.
void measure(std::initializer_list<Timing *> timings)
{
    for (int round = 0; round < rounds; ++round) {
        for (Timing *timing : timings) {
            timing->prepare();
            const auto start = std::chrono::steady_clock::now();
            timing->run();
            timing->times.push_back(
                std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
        }
    }
    for (Timing *timing : timings)
        std::sort(timing->times.begin(), timing->times.end());
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

void row(const char *what, const Timing &ours, const char *against, const Timing &least, double most)
{
    std::printf("| %s | %.2f | %s | %.2f | %.2f | %.0f |\n", what, ours.median(), against, least.median(),
                ours.median() / least.median(), most);
}

} // namespace

int main()
{
    const QTemporaryDir dir;
    Config config(dir.path(), dir.filePath(QStringLiteral("state")));
    config.setTileItems(manyTiles());
    model::saveSettings(config);
    const QString path = model::settingsFileURL(config);
    const QByteArray bytes = *platform::readWholeFile(path, nullptr);
    Config loaded(dir.path(), dir.filePath(QStringLiteral("state")));
    model::loadSettings(loaded);
    if (loaded.tileItems() != config.tileItems())
        std::abort();

    const QByteArray plainPath = QFile::encodeName(dir.filePath(QStringLiteral("plain.json")));
    const auto nothing = [] {};
    Timing save{nothing, [&] { model::saveSettings(config); }, {}};
    Timing write{nothing, [&] { plainWrite(plainPath, bytes); }, {}};
    measure({&save, &write});
    Timing load{[&] { loaded.setTileItems({}); }, [&] { model::loadSettings(loaded); }, {}};
    Timing parse{nothing, [&] { parseOnly(*platform::readWholeFile(path, nullptr)); }, {}};
    measure({&load, &parse});

    std::printf("%d tiles of %d links, %.2f MB, median of %d rounds\n\n", tiles, linksPerTile,
                double(bytes.size()) / 1e6, rounds);
    std::printf("| operation | ms | beside | ms | ratio | at most |\n|---|---|---|---|---|---|\n");
    row("save with its safety copy", save, "plain write", write, 3);
    row("load", load, "read and parse, build nothing", parse, 2);
    return 0;
}

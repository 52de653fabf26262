// SPDX-License-Identifier: MIT
// From a key in the settings window to the painted letter, with the save and the strip's redraw between, for
// 20 tiles of 1,000 links; and what 10,000 such edits leave in memory. Rows of a Markdown table.
#include "links/openlink.h"
#include "model/config.h"
#include "model/tiles.h"
#include "platform/filepanel.h"
#include "settings/settingsview.h"
#include "strip/contentview.h"
#include "strip/services.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTableView>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <vector>

namespace {

constexpr int linksPerTile = 1000;
constexpr int edits = 10000;

class NoOpener : public links::LinkOpener
{
public:
    void openFile(const QString &) override { }
    void openAddress(const QString &) override { }
};

void fill(Config &config)
{
    QList<TileItem> items(model::maxTileCount);
    for (TileItem &tile : items) {
        tile.tileName = QStringLiteral("What’s for dinner?");
        tile.iconName = QStringLiteral("default");
        for (int i = 0; i < linksPerTile; ++i) {
            TileMenuItem link;
            link.itemString = QStringLiteral("https://www.example.org/folder/page-%1.html?a=b").arg(i);
            link.itemName = QStringLiteral("A page about things, No. %1").arg(i);
            tile.tileMenuItems.append(link);
        }
    }
    config.setTileItems(items);
}

/// What it took: on the wall's clock, and of the processor when others keep the machine busy.
struct Cost
{
    double wall = 0; // milliseconds
    double processor = 0;
};

Cost costOf(const std::function<void()> &action)
{
    const auto start = std::chrono::steady_clock::now();
    const std::clock_t processorStart = std::clock();
    action();
    const double processor = double(std::clock() - processorStart) * 1000 / CLOCKS_PER_SEC;
    return {std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count(),
            processor};
}

void settle()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

/// One letter and its removal, by turns.
Cost typeKey(QWidget &field, int round)
{
    const bool adds = round % 2 == 0;
    QKeyEvent press(QEvent::KeyPress, adds ? Qt::Key_X : Qt::Key_Backspace, {},
                    adds ? QStringLiteral("x") : QString());
    return costOf([&] {
        QCoreApplication::sendEvent(&field, &press);
        settle();
    });
}

void report(const char *what, std::vector<Cost> costs)
{
    const auto print = [&costs](double Cost::*kind) {
        std::sort(costs.begin(), costs.end(),
                  [kind](const Cost &a, const Cost &b) { return a.*kind < b.*kind; });
        std::printf(" %.2f | %.2f |", costs[costs.size() / 2].*kind, costs[costs.size() * 95 / 100].*kind);
    };
    std::printf("| %s |", what);
    print(&Cost::wall);
    print(&Cost::processor);
    std::printf("\n");
    std::fflush(stdout);
}

long residentKilobytes()
{
    std::ifstream statm("/proc/self/statm");
    long size = 0;
    long resident = 0;
    statm >> size >> resident;
    return resident * 4;
}

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QTemporaryDir home;
    Config config(home.path(), home.filePath(QStringLiteral("state")));
    fill(config);
    NoOpener opener;
    const std::unique_ptr<platform::FilePanel> panel = platform::makeFilePanel();
    StripServices services{opener, *panel, [] {}};
    ContentView strip(config, services);
    strip.show();

    std::printf("| ms | wall median | 95 %% | processor median | 95 %% |\n|---|---|---|---|---|\n");
    std::vector<Cost> openings;
    std::unique_ptr<SettingsView> window;
    for (int i = 0; i < 20; ++i) {
        window.reset();
        openings.push_back(costOf([&] {
            window = std::make_unique<SettingsView>(config, *panel);
            window->setCurrentIndex(1);
            window->show();
            settle();
        }));
    }
    report("window with a table of 1,000 links, opened", openings);

    auto *name = window->findChild<QLineEdit *>(QStringLiteral("Tile name"));
    auto *table = window->findChild<QTableView *>(QStringLiteral("LinkTable"));
    std::vector<Cost> times;
    for (int i = 0; i < 200; ++i)
        times.push_back(typeKey(*name, i));
    report("letter in the tile's name", times);
    const long before = residentKilobytes();
    for (int i = 0; i < edits; ++i)
        typeKey(*name, i);
    const long after = residentKilobytes();
    table->setCurrentIndex(table->model()->index(0, 1));
    auto *cell = table->findChild<QLineEdit *>(QStringLiteral("CellField"));
    times.clear();
    for (int i = 0; i < 200; ++i)
        times.push_back(typeKey(*cell, i));
    report("letter in a link's name", times);
    std::printf("\nResident before and after %d edits: %ld and %ld KiB\n", edits, before, after);
    return 0;
}

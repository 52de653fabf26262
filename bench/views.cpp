// SPDX-License-Identifier: MIT
// What the views cost the interface thread for settings of several sizes: a popover, the settings window with
// its table of links, its menu of tiles, a letter typed into a name with the save and the redraw that follow;
// and what many edits leave in memory.
#include "table.h"

#include "links/openlink.h"
#include "model/settingsstore.h"
#include "model/tiles.h"
#include "platform/filepanel.h"
#include "settings/settingsview.h"
#include "strip/contentview.h"
#include "strip/services.h"
#include "strip/tile.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTableView>
#include <QTemporaryDir>

#include <fstream>

namespace {

constexpr int edits = 2000; // for what they leave in memory

class NoOpener : public links::LinkOpener
{
public:
    void openFile(const QString &) override { }
    void openAddress(const QString &) override { }
};

/// A strip on the screen.
struct World
{
    World(int tiles, int linksPerTile)
    {
        QList<TileItem> items(tiles);
        for (TileItem &tile : items) {
            tile.tileName = QStringLiteral("What’s for dinner?");
            tile.iconName = QStringLiteral("default");
            tile.tileDirectory = QStringLiteral("file:///nowhere");
            for (int i = 0; i < linksPerTile; ++i)
                tile.tileMenuItems.append(
                    {.itemString = QStringLiteral("https://www.example.org/folder/page-%1.html?a=b").arg(i),
                     .itemName = QStringLiteral("A page about things, No. %1").arg(i)});
        }
        config.setTileItems(items);
        strip.show();
    }

    QTemporaryDir home;
    Config config{home.path(), home.filePath(QStringLiteral("state"))};
    NoOpener opener;
    std::unique_ptr<platform::FilePanel> panel = platform::makeFilePanel();
    StripServices services{opener, *panel, [] {}};
    ContentView strip{config, services};
};

void settle()
{
    for (int turn = 0; turn < 2; ++turn) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QCoreApplication::processEvents();
}

/// In the time of a processor: what a busy machine does not lengthen.
double costOf(const std::function<void()> &action)
{
    const double start = bench::processorTime();
    action();
    settle();
    return bench::processorTime() - start;
}

QList<double> costsOf(int rounds, const std::function<void()> &action, const std::function<void()> &undo)
{
    QList<double> costs;
    for (int i = 0; i <= rounds; ++i) {
        const double cost = costOf(action);
        if (i > 0) // the first one loads fonts and pictures
            costs.append(cost);
        undo();
        settle();
    }
    return costs;
}

/// A window of the size with nothing in it.
QList<double> bareWindow(int rounds, QSize size)
{
    std::unique_ptr<QWidget> window;
    return costsOf(
        rounds,
        [&] {
            window = std::make_unique<QWidget>();
            window->resize(size);
            window->show();
        },
        [&] { window.reset(); });
}

/// One letter and its removal, by turns.
QList<double> letters(int rounds, QWidget &field)
{
    const auto type = [&field](int key, const QString &text) {
        QKeyEvent press(QEvent::KeyPress, key, {}, text);
        QCoreApplication::sendEvent(&field, &press);
    };
    return costsOf(
        rounds, [&] { type(Qt::Key_X, QStringLiteral("x")); }, [&] { type(Qt::Key_Backspace, {}); });
}

void measure(bench::Table &table, int tiles, int linksPerTile, int rounds)
{
    World world(tiles, linksPerTile);
    settle();
    const auto row = [&](const char *what, QList<double> costs, const char *floor,
                         const QList<double> &least) {
        const double cost = bench::median(costs);
        std::sort(costs.begin(), costs.end());
        table.row({QString::fromLatin1(what), QStringLiteral("%1 × %2").arg(tiles).arg(linksPerTile),
                   bench::number(cost, 2), bench::number(costs.at(costs.size() * 95 / 100), 2),
                   QString::fromLatin1(floor), bench::number(bench::median(least), 2),
                   bench::number(cost - bench::median(least), 2), QStringLiteral("50")});
    };

    auto &tile = *world.strip.findChild<Tile *>();
    QSize size;
    const QList<double> popover = costsOf(
        rounds,
        [&] {
            QContextMenuEvent menu(QContextMenuEvent::Keyboard, {}, tile.mapToGlobal(QPoint()));
            QCoreApplication::sendEvent(&tile, &menu);
        },
        [&] {
            size = tile.findChild<widgets::Popover *>()->size();
            tile.closePopover();
        });
    row("popover", popover, "bare window", bareWindow(rounds, size));

    std::unique_ptr<SettingsView> window;
    const auto open = [&] {
        window = std::make_unique<SettingsView>(world.config, *world.panel);
        window->setCurrentIndex(1);
        window->show();
    };
    const QList<double> opening = costsOf(rounds, open, [&] {
        size = window->size();
        window.reset();
    });
    row("settings window with its table", opening, "bare window", bareWindow(rounds, size));

    open();
    settle();
    auto &tileMenu = *window->findChild<QComboBox *>(QStringLiteral("Tile menu"));
    const QList<double> menu = costsOf(
        rounds, [&] { tileMenu.showPopup(); },
        [&] {
            size = tileMenu.view()->window()->size();
            tileMenu.hidePopup();
        });
    row("menu of tiles", menu, "bare window", bareWindow(rounds, size));
    const QList<double> save = costsOf(
        rounds, [&] { model::saveSettings(world.config); }, [] {});
    auto &name = *window->findChild<QLineEdit *>(QStringLiteral("Tile name"));
    row("letter in a tile's name", letters(rounds, name), "the save", save);
    if (linksPerTile > 0) {
        auto &links = *window->findChild<QTableView *>(QStringLiteral("LinkTable"));
        links.setCurrentIndex(links.model()->index(0, 1));
        auto &cell = *links.findChild<QLineEdit *>(QStringLiteral("CellField"));
        row("letter in a link's name", letters(rounds, cell), "the save", save);
    }
}

double residentMegabytes()
{
    std::ifstream statm("/proc/self/statm");
    long size = 0;
    long resident = 0;
    statm >> size >> resident;
    return double(resident) * 4 / 1024;
}

void measureMemory()
{
    World world(model::maxTileCount, 1000);
    SettingsView window(world.config, *world.panel);
    window.setCurrentIndex(1);
    window.show();
    settle();
    auto &name = *window.findChild<QLineEdit *>(QStringLiteral("Tile name"));
    letters(100, name);
    const double before = residentMegabytes();
    letters(edits / 2, name);
    bench::Table table(QStringLiteral("Memory, MiB"),
                       {QStringLiteral("edits"), QStringLiteral("before"), QStringLiteral("after")});
    table.row({QString::number(edits), bench::number(before, 1), bench::number(residentMegabytes(), 1)});
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The plugin tells at every frame what it cannot do.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QApplication app(argc, argv);
    {
        bench::Table table(QStringLiteral("Views, ms on a processor; an edit saves the whole file"),
                           {QStringLiteral("what"), QStringLiteral("tiles × links"), QStringLiteral("ms"),
                            QStringLiteral("95 %"), QStringLiteral("floor"), QStringLiteral("floor, ms"),
                            QStringLiteral("above it"), QStringLiteral("reach")});
        measure(table, model::maxTileCount, 10, 21);
        measure(table, model::maxTileCount, 1000, 21);
        measure(table, model::maxTileCount, 10'000, 11);
        measure(table, 100'000, 0, 11);
    }
    measureMemory();
    return 0;
}

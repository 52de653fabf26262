// SPDX-License-Identifier: MIT
// The running program on a display of its own: how long a click takes to a popover on the screen and to the
// handler of a link, and what memory is left after everything was used and closed.
//   use [ROUNDS]
#include "table.h"
#include "trial.h"

#include "model/settingsjson.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

#include <algorithm>

#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

using namespace bench;
using support::Window;

namespace {

constexpr int cap = 14; // points: the first element of the strip
constexpr int side = 44; // of each further one
constexpr double frameTime = 1000.0 / 60; // ms
constexpr int patience = 5000; // ms

/// A pointer without a program between.
class Pointer
{
public:
    explicit Pointer(const QString &display)
        : m_connection(xcb_connect(display.toUtf8().constData(), nullptr))
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
    {
    }
    ~Pointer() { xcb_disconnect(m_connection); }
    Q_DISABLE_COPY_MOVE(Pointer)

    void moveTo(QPoint at)
    {
        send(XCB_MOTION_NOTIFY, 0, at);
        // Passing over the strip is not part of a click.
        QTest::qWait(50);
    }
    void click(quint8 button = 1)
    {
        send(XCB_BUTTON_PRESS, button, {});
        send(XCB_BUTTON_RELEASE, button, {});
    }
    /// Whatever is on the screen.
    size_t look(const QRect &area)
    {
        const auto cookie =
            xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_root, qint16(area.x()), qint16(area.y()),
                          quint16(area.width()), quint16(area.height()), ~0u);
        xcb_get_image_reply_t *reply = xcb_get_image_reply(m_connection, cookie, nullptr);
        const size_t hash =
            reply ? qHashBits(xcb_get_image_data(reply), size_t(xcb_get_image_data_length(reply))) : 0;
        std::free(reply);
        return hash;
    }

private:
    void send(quint8 type, quint8 detail, QPoint at)
    {
        xcb_test_fake_input(m_connection, type, detail, XCB_CURRENT_TIME, m_root, qint16(at.x()),
                            qint16(at.y()), 0);
        xcb_flush(m_connection);
    }

    xcb_connection_t *m_connection;
    xcb_window_t m_root;
};

/// The program and what can be clicked of it.
struct World
{
    explicit World(Trial &itsTrial)
        : trial(itsTrial)
        , pointer(trial.desktop().environment().value(QStringLiteral("DISPLAY")))
    {
        trial.write({});
        SettingsData data = settingsOf({});
        data.tileItems[1].tileMenuItems = {
            {.itemString = QStringLiteral("https://www.example.org/"), .itemName = QStringLiteral("One")}};
        platform::writeInPlace(trial.desktop().settingsFile(), model::settingsToJson(data), nullptr);
        process = trial.start(trial.program()).process;
        strip = trial.desktop().waitForWindow({QStringLiteral("--name"), QStringLiteral("^pondWicket$")});
    }

    QPoint element(int index) const { return strip.at(cap + index * side + side / 2, side / 2); } // 0 is home
    double cpu() const { return cpuOf(process->processId()); }

    Trial &trial;
    Pointer pointer;
    std::unique_ptr<QProcess> process;
    Window strip;
};

struct Latency
{
    QList<double> wall; // ms
    QList<double> cpu; // ms of the program
};

template <typename Holds> double msUntil(const QElapsedTimer &since, Holds holds)
{
    while (!holds() && since.elapsed() < patience)
        ::usleep(200);
    return double(since.nsecsElapsed()) / 1e6;
}

/// From the click until the first picture of the popover is on the screen.
Latency clicksToPopover(World &world, int rounds)
{
    Latency latency;
    const QRect above(0, 500, 400, 500); // of the strip
    for (int round = 0; round <= rounds; ++round) {
        world.pointer.moveTo(world.element(1));
        const size_t before = world.pointer.look(above);
        const double cpu = world.cpu();
        QElapsedTimer time;
        time.start();
        world.pointer.click();
        const double wall = msUntil(time, [&] { return world.pointer.look(above) != before; });
        if (round > 0) { // the first one loads fonts
            latency.wall.append(wall);
            latency.cpu.append(world.cpu() - cpu);
        }
        QTest::qWait(600); // or the next click is the second of a double click
        world.trial.desktop().key(QStringLiteral("Escape"));
        msUntil(time, [&] { return world.pointer.look(above) == before; });
    }
    return latency;
}

/// From the click until the link's program has been started and has said so.
Latency clicksToHandler(World &world, int rounds)
{
    Latency latency;
    world.pointer.moveTo(world.element(2));
    for (int round = 0; round <= rounds; ++round) {
        const qsizetype before = world.trial.desktop().opened().size();
        const double cpu = world.cpu();
        QElapsedTimer time;
        time.start();
        world.pointer.click();
        const double wall = msUntil(time, [&] { return world.trial.desktop().opened().size() > before; });
        if (round > 0) { // the first one loads GIO
            latency.wall.append(wall);
            latency.cpu.append(world.cpu() - cpu);
        }
        QTest::qWait(100);
    }
    return latency;
}

/// Every kind of window once.
void useAll(World &world)
{
    support::Desktop &desktop = world.trial.desktop();
    const auto wait = [] { QTest::qWait(300); };
    for (const int element : {0, 1, 5, 20}) {
        for (const int button : {1, 3}) {
            desktop.click(world.element(element), button);
            wait();
            desktop.key(QStringLiteral("Escape"));
            wait();
        }
    }
    desktop.click(world.strip.at(cap / 2, side / 2), 3); // the program's menus
    wait();
    desktop.key(QStringLiteral("Escape"));
    wait();
    // A file panel, from the actions of a popover.
    desktop.click(world.element(3));
    wait();
    for (const char *key : {"shift+Tab", "space", "Down", "Down", "Return"}) {
        desktop.key(QLatin1String(key));
        wait();
    }
    QTest::qWait(1500);
    desktop.key(QStringLiteral("Escape"));
    wait();
    desktop.key(QStringLiteral("Escape"));
    wait();
    desktop.click(world.element(0));
    wait();
    desktop.key(QStringLiteral("Escape"));
    desktop.key(QStringLiteral("ctrl+comma"));
    wait();
    desktop.key(QStringLiteral("ctrl+Tab"));
    wait();
    desktop.key(QStringLiteral("Escape"));
    wait();
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const int rounds = argc > 1 ? std::max(1, QByteArray(argv[1]).toInt()) : 21;
    Trial trial;
    trial.desktop().recordOpened({QStringLiteral("x-scheme-handler/https")});

    const Trial::Shown floorShown = trial.start(trial.floor());
    QTest::qWait(5000);
    const double floor = memoryOf(floorShown.process->processId(), "Pss:");
    trial.end(*floorShown.process);

    World world(trial);
    QTest::qWait(5000);
    const qint64 pid = world.process->processId();
    {
        Table table(QStringLiteral("Memory (PSS), MiB; each use opens and closes every kind of window"),
                    {QStringLiteral("when"), QStringLiteral("MiB"), QStringLiteral("floor"),
                     QStringLiteral("above it"), QStringLiteral("reach"),
                     QStringLiteral("of that without a file behind it")});
        const auto row = [&](const QString &when, const char *reach) {
            const double size = memoryOf(pid, "Pss:");
            table.row({when, number(size, 1), number(floor, 1), number(size - floor, 1),
                       QString::fromLatin1(reach), number(memoryOf(pid, "Anonymous:"), 1)});
        };
        row(QStringLiteral("5 s after the start"), "4");
        for (int use = 1; use <= 4; ++use) {
            useAll(world);
            QTest::qWait(4000);
            row(QStringLiteral("after use %1").arg(use), "14");
        }
    }
    Table table(QStringLiteral("From a click, medians of %1").arg(rounds),
                {QStringLiteral("to"), QStringLiteral("ms"), QStringLiteral("program's CPU, ms"),
                 QStringLiteral("reach: one frame, ms")});
    const auto row = [&](const char *to, const Latency &latency) {
        table.row({QString::fromLatin1(to), number(median(latency.wall), 1), number(median(latency.cpu), 1),
                   number(frameTime, 1)});
    };
    row("the popover on the screen", clicksToPopover(world, rounds));
    row("the link's program started", clicksToHandler(world, rounds));
    trial.end(*world.process);
    return 0;
}

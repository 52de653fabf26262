// SPDX-License-Identifier: MIT
#include "trial.h"

#include "model/settingsjson.h"
#include "platform/files.h"
#include "themes/imagecatalog.h"

#include <QDir>
#include <QElapsedTimer>
#include <QPainter>

#include <cstdlib>
#include <ctime>

#include <unistd.h>
#include <xcb/xcb.h>

namespace bench {

namespace {

constexpr QSize screenSize(1920, 1080);
constexpr int side = 44; // points
constexpr int length = 1024;
constexpr int quiet = 700; // ms without a change that make a picture the finished one
constexpr int patience = 60'000; // ms
constexpr int interval = 2'000; // us between two looks

void need(bool holds, const QString &what)
{
    if (holds)
        return;
    qCritical().noquote() << what;
    std::exit(EXIT_FAILURE);
}

QImage tilePicture(const QString &icon)
{
    QImage picture = themes::drawBuiltInImage(QStringLiteral("2024-tile"), 1);
    QPainter(&picture).drawImage(6, 6, themes::drawBuiltInImage(QStringLiteral("2024-") + icon, 1));
    return picture;
}

} // namespace

SettingsData settingsOf(const Strip &strip)
{
    SettingsData data;
    data.currentTheme = strip.theme;
    data.direction = strip.direction;
    data.showsDate = strip.showsDate;
    const QStringList icons = themes::builtInIconNames(strip.theme);
    for (int i = 0; i < strip.tiles; ++i) {
        TileItem tile;
        tile.iconName = icons.at(i % icons.size());
        tile.tileName = QStringLiteral("Tile %1").arg(i + 1);
        tile.tileDirectory = QStringLiteral("file:///nowhere/Tile-%1").arg(i + 1);
        for (int n = 0; n < strip.linksPerTile; ++n)
            tile.tileMenuItems.append(
                {.itemString = QStringLiteral("https://www.example.org/folder/page-%1.html?a=b").arg(n),
                 .itemName = QStringLiteral("A page about things, No. %1").arg(n)});
        data.tileItems.append(tile);
    }
    return data;
}

Trial::Trial()
    : m_desktop({.screen = screenSize})
{
    need(m_desktop.isUp(), m_desktop.problem());
    const QByteArray display = m_desktop.environment().value(QStringLiteral("DISPLAY")).toUtf8();
    m_connection = xcb_connect(display.constData(), nullptr);
    need(!xcb_connection_has_error(m_connection), QStringLiteral("no connection to the X server"));
    const QStringList icons = themes::builtInIconNames(QStringLiteral("2024"));
    for (int i = 0; i < 22; ++i)
        tilePicture(icons.at(i % icons.size()))
            .save(m_pictures.filePath(QStringLiteral("%1.png").arg(100 + i)));
    m_blank = look();
}

Trial::~Trial()
{
    xcb_disconnect(m_connection);
}

QStringList Trial::program() const
{
    return {QStringLiteral(PW_PROGRAM)};
}

QStringList Trial::floor()
{
    m_vertical = false;
    return {QStringLiteral(PW_FLOOR), m_pictures.path()};
}

void Trial::write(const Strip &strip)
{
    if (!platform::itemExists(m_desktop.settingsFile()))
        end(*start(program()).process);
    m_vertical = strip.direction == QLatin1String("ttb");
    need(platform::writeInPlace(m_desktop.settingsFile(), model::settingsToJson(settingsOf(strip)), nullptr),
         QStringLiteral("no settings"));
}

/// Hashes where the strip stands: at the bottom left, along one of the two edges.
size_t Trial::look() const
{
    const QSize size = m_vertical ? QSize(side, length) : QSize(length, side);
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    const auto cookie = xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0,
                                      qint16(screenSize.height() - size.height()), quint16(size.width()),
                                      quint16(size.height()), ~0u);
    xcb_get_image_reply_t *reply = xcb_get_image_reply(m_connection, cookie, nullptr);
    need(reply, QStringLiteral("no picture of the screen"));
    const size_t hash = qHashBits(xcb_get_image_data(reply), size_t(xcb_get_image_data_length(reply)));
    std::free(reply);
    return hash;
}

Trial::Shown Trial::start(const QStringList &command, std::optional<size_t> expected,
                          const QProcessEnvironment *environment)
{
    const size_t before = look();
    Shown shown;
    shown.process = support::startProcess(command.first(), command.mid(1),
                                          environment ? *environment : m_desktop.environment());
    need(shown.process != nullptr, command.first() + QStringLiteral(" does not start"));
    size_t last = before;
    QElapsedTimer all;
    QElapsedTimer sinceChange;
    all.start();
    while (all.elapsed() < patience && !(shown.picture && sinceChange.elapsed() > quiet)) {
        ::usleep(interval);
        const size_t now = look();
        if (now == last)
            continue;
        last = now;
        shown.picture = now;
        shown.cpu = cpuOf(shown.process->processId());
        sinceChange.start();
        if (now == expected)
            break;
    }
    return shown;
}

void Trial::end(QProcess &process)
{
    support::endProcess(process);
    need(support::waitUntil([this] { return look() == m_blank; }), QStringLiteral("the screen is not empty"));
}

double cpuOf(qint64 pid)
{
    clockid_t clock;
    timespec time;
    if (::clock_getcpuclockid(pid_t(pid), &clock) != 0 || ::clock_gettime(clock, &time) != 0)
        return 0;
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

double memoryOf(qint64 pid, const char *kind)
{
    const auto text = platform::readWholeFile(QStringLiteral("/proc/%1/smaps_rollup").arg(pid), nullptr)
                          .value_or(QByteArray());
    for (const QByteArray &line : text.split('\n')) {
        if (line.startsWith(kind))
            return line.mid(qsizetype(qstrlen(kind))).simplified().split(' ').first().toDouble() / 1024;
    }
    return 0;
}

} // namespace bench

// SPDX-License-Identifier: MIT
#include "support/program.h"

#include <QFile>
#include <QStandardPaths>
#include <QTest>

#include <csignal>
#include <cstdlib>
#include <optional>

using namespace support;

namespace {

// Middles of the elements of a horizontal strip, from its top-left corner.
constexpr QPoint quitButton(7, 22);
constexpr QPoint homeTile(36, 22);
constexpr QPoint firstTile(80, 22);
constexpr QPoint secondTile(124, 22);
constexpr QPoint emptyPart(700, 22);
constexpr QRect home(0, 800 - 44, 1024, 44);

/// The strip on a desktop, above a window that writes down each of its events.
struct World
{
    explicit World(const QString &manager, const QStringList &variables = {}, QSize screen = {1280, 800})
        : desktop({.windowManager = manager, .screen = screen})
    {
        for (const QString &variable : variables)
            desktop.environment().insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
        below.emplace(desktop, u"xev"_qs, u"-geometry 1000x200+50-10 -name Below"_qs.split(u' '));
        belowWindow = desktop.waitForWindow({u"--name"_qs, u"^Below$"_qs});
        program.emplace(desktop, QStringLiteral(PW_PROGRAM));
        strip = program->waitForWindow();
    }

    QRect stripGeometry() const { return desktop.windowNamed(u"pondWicket"_qs).geometry; }
    Window popover() const { return desktop.windowNamed(u"Computer history"_qs); }
    bool has(const QString &property, const QString &value) const
    {
        return desktop.property(strip, property).contains(value);
    }
    bool floats() const
    {
        return has(u"_NET_WM_STATE"_qs, u"_NET_WM_STATE_ABOVE"_qs)
            && has(u"_NET_WM_DESKTOP"_qs, u"4294967295"_qs);
    }
    bool isBelowUnderStrip() const
    {
        return desktop.windowAt(home.topLeft() + firstTile) == desktop.windowAt({640, 100});
    }
    qsizetype clicksBelow(int button = 1)
    {
        return below->lines().filter(u"button %1"_qs.arg(button)).size() / 2; // press and release
    }
    /// True when the strip came along, and the element that was dragged did not act.
    bool drag(QPoint from, QPoint by) const;

    Desktop desktop;
    std::optional<Program> below;
    Window belowWindow;
    std::optional<Program> program;
    Window strip;
};

/// The window follows once the manager holds the pointer, from wherever that is by then, and once it has left
/// the edges that hold it: goes on moving until it does.
bool World::drag(QPoint from, QPoint by) const
{
    const QRect before = stripGeometry();
    desktop.moveTo(from);
    desktop.press();
    QPoint pointer;
    QRect following;
    int step = 0;
    bool follows = waitUntil([&] {
        ++step;
        pointer = from + QPoint((20 + step) * (step % 2), -20 - step);
        desktop.moveTo(pointer);
        following = stripGeometry();
        return following != before;
    });
    desktop.moveTo(from + by);
    const QPoint end = following.topLeft() + from + by - pointer;
    follows = follows && waitUntil([&] { return (stripGeometry().topLeft() - end).manhattanLength() < 60; });
    desktop.release();
    // Each further move of the pointer before the manager held it began a drag of its own after this one.
    desktop.moveTo({1200, 10});
    // Had the element fired, a window would be there and stay, or none would be.
    return follows && waitUntil([&] { return program->windows().size() == 1; });
}

} // namespace

class TestStripWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsUnder_data()
    {
        QTest::addColumn<bool>("yieldsToFullScreen");
        QTest::addRow("openbox") << true;
        QTest::addRow("xfwm4 --compositor=off") << false;
        QTest::addRow("metacity --no-composite") << true;
        QTest::addRow("mutter --x11") << false;
        QTest::addRow("kwin_x11") << true;
    }

    void holdsUnder()
    {
        QFETCH(const bool, yieldsToFullScreen);
        const QString manager = QString::fromLatin1(QTest::currentDataTag());
        if (QStandardPaths::findExecutable(manager.section(u' ', 0, 0)).isEmpty())
            QSKIP(qPrintable(manager.section(u' ', 0, 0) + u" is not installed"_qs));
        World world(manager);
        Desktop &desktop = world.desktop;
        QVERIFY2(desktop.isUp(), qPrintable(desktop.problem()));
        QVERIFY2(!world.strip.isNull(), qPrintable(world.program->errors()));

        QTRY_COMPARE(world.stripGeometry(), home);
        QTRY_VERIFY(world.floats());
        const QString frame = desktop.property(world.strip, u"_NET_FRAME_EXTENTS"_qs);
        QVERIFY2(frame.isEmpty() || frame == u"0, 0, 0, 0", qPrintable(frame));

        // A click on the strip stays there; the one after it shows that the tester has caught up.
        desktop.click(home.topLeft() + emptyPart);
        QTRY_COMPARE(world.clicksBelow(), 1);
        QVERIFY(!world.isBelowUnderStrip()); // and stays above the window that has the focus now
        desktop.click(home.topLeft() + homeTile, 2);
        desktop.click(home.topLeft() + emptyPart);
        QTRY_COMPARE(world.clicksBelow(), 2);
        QCOMPARE(world.clicksBelow(2), 0);

        desktop.activate(world.strip);
        desktop.key(u"ctrl+2"_qs);
        QTRY_COMPARE(world.popover().geometry.bottom() + 1, home.top());
        const QRect place = world.popover().geometry;
        QVERIFY(place.left() < secondTile.x() && place.right() > secondTile.x());
        desktop.key(u"Escape"_qs);
        QTRY_VERIFY(world.popover().isNull());

        // Full-screen and with the focus. A manager may be late to take its state from a window that is
        // unmapped.
        const QString below = world.belowWindow.id;
        QVERIFY(waitUntil([&] {
            desktop.xdotool({u"windowunmap"_qs, u"--sync"_qs, below});
            desktop.run(
                u"xprop"_qs,
                u"-id %1 -f _NET_WM_STATE 32a -set _NET_WM_STATE _NET_WM_STATE_FULLSCREEN"_qs.arg(below)
                    .split(u' '));
            desktop.xdotool({u"windowmap"_qs, u"--sync"_qs, below, u"windowactivate"_qs, below});
            const QRect screen(0, 0, 1280, 800);
            return QTest::qWaitFor([&] { return desktop.windowNamed(u"Below"_qs).geometry == screen; }, 2000);
        }));
        QTRY_COMPARE(world.isBelowUnderStrip(), yieldsToFullScreen);
        world.below.reset();

        QVERIFY(world.drag(home.topLeft() + firstTile, {150, -300}));
        const QRect dragged = world.stripGeometry();
        QVERIFY((dragged.topLeft() - home.topLeft() - QPoint(150, -300)).manhattanLength() < 60);
        QCOMPARE(dragged.size(), home.size());

        desktop.endManager();
        QVERIFY2(desktop.startManager(manager), qPrintable(desktop.problem()));
        QVERIFY2(waitUntil([&] { return world.floats(); }),
                 qPrintable(desktop.property(world.strip, u"_NET_WM_STATE"_qs)
                            + desktop.property(world.strip, u"_NET_WM_DESKTOP"_qs)));
        QTRY_COMPARE(world.stripGeometry(), dragged);
    }

    /// As under sway, whose rules for windows are not those of the desktop that this one runs on.
    void floatsPastTheManager()
    {
        World world(u"openbox"_qs, {u"SWAYSOCK=/none"_qs, u"WAYLAND_DISPLAY=none"_qs});
        const Desktop &desktop = world.desktop;
        QVERIFY2(!world.strip.isNull(), qPrintable(world.program->errors()));
        QCOMPARE(world.stripGeometry(), home);
        QVERIFY(desktop.run(u"xwininfo"_qs, {u"-id"_qs, world.strip.id})
                    .contains("Override Redirect State: yes"));
        QVERIFY(world.has(u"_NET_WM_WINDOW_TYPE"_qs,
                          u"_NET_WM_WINDOW_TYPE_UTILITY"_qs)); // which gets no keyboard

        for (const bool byKey : {true, false}) {
            desktop.click(home.topLeft() + secondTile, 3);
            QTRY_VERIFY(!world.popover().isNull());
            byKey ? desktop.key(u"Escape"_qs) : desktop.click(world.belowWindow.at(900, 20));
            QTRY_VERIFY(world.popover().isNull());
        }
        QVERIFY(world.drag(home.topLeft() + homeTile, {150, -300}));
        QTRY_COMPARE(world.stripGeometry(), home.translated(150, -300));
    }

    /// xfwm4 put the strip on one desktop when it took over from another manager.
    void survivesAnotherManager()
    {
        World world(u"openbox"_qs);
        QTRY_VERIFY(world.floats());
        world.desktop.endManager();
        QVERIFY2(world.desktop.startManager(u"xfwm4 --compositor=off"_qs),
                 qPrintable(world.desktop.problem()));
        QTRY_VERIFY(world.floats());
        QTRY_COMPARE(world.stripGeometry(), home);
    }

    /// At 1.5 the window was a point too small for its list, which then had a scroll bar.
    void popoverShowsAllRowsAtEachScale()
    {
        for (const qreal scale : {1.25, 1.5, 1.75}) {
            World world(u"openbox"_qs, {u"QT_SCALE_FACTOR=%1"_qs.arg(scale)}, {1920, 1200});
            const int below = 1199 - world.stripGeometry().bottom(); // no whole number of points is as high
            QVERIFY2(below == 0 || below == 1, qPrintable(QString::number(below)));
            world.desktop.click(QPoint(0, 1200) + (QPointF(124, -22) * scale).toPoint(), 3);
            QTRY_VERIFY(!world.popover().isNull());
            const Window popover = world.popover();
            const QPoint bar = popover.at(popover.geometry.width(), popover.geometry.height())
                - (QPointF(31, 130) * scale).toPoint();
            const auto isPlain = [&] {
                const QImage line = world.desktop.screenshot(QRect(bar, QSize(1, 90)));
                return line.pixelColor(0, 0).lightness() > 200
                    && line.copy(0, 0, 1, 89) == line.copy(0, 1, 1, 89);
            };
            QTRY_VERIFY2(isPlain(), qPrintable(QString::number(scale)));
        }
    }

    /// A drag was undone by a change of screens, for ever by the return of its own screen, and at a screen's
    /// right end; and cut the strip off on a screen of another scale.
    void staysOnTheScreen()
    {
        World world(u"openbox"_qs);
        const auto xrandr = [&world](const QString &words) {
            world.desktop.run(u"xrandr"_qs, words.split(u' '));
        };
        const QList<QSize> sizes = {{1024, 768}, {800, 600}, {1280, 800}};
        for (const QSize size : sizes.first(2)) {
            const QString mode = u"%1x%2"_qs.arg(size.width()).arg(size.height());
            xrandr(u"--newmode %1 99 %2 1300 1301 1302 %3 900 901 902"_qs.arg(mode)
                       .arg(size.width())
                       .arg(size.height()));
            xrandr(u"--addmode screen "_qs + mode);
        }
        const auto elements = [&world] { return QRect(world.stripGeometry().topLeft(), QSize(204, 44)); };
        for (const bool isDragged : {false, true}) {
            if (isDragged)
                QVERIFY(world.drag(home.topLeft() + quitButton, {1000, -300}));
            const QRect place = world.stripGeometry();
            for (const QSize size : sizes) {
                xrandr(u"--output screen --mode %1x%2"_qs.arg(size.width()).arg(size.height()));
                const QRect screen(QPoint(), size);
                const QSize length(std::min(1024, size.width()), 44);
                QTRY_COMPARE(world.stripGeometry().size(), length);
                QTRY_VERIFY(screen.contains(elements()));
                const QRect strip = world.stripGeometry();
                QVERIFY2(isDragged == (strip.bottom() != screen.bottom()),
                         qPrintable(u"%1 of %2"_qs.arg(strip.bottom()).arg(screen.bottom())));
            }
            QTRY_COMPARE(world.stripGeometry(), place);
        }
        // A second screen takes the right half, where the strip is dragged to, and leaves again.
        xrandr(u"--setmonitor left 640/160x800/200+0+0 screen"_qs);
        xrandr(u"--setmonitor right 640/160x800/200+640+0 none"_qs);
        QTRY_COMPARE(world.stripGeometry().width(), 640);
        world.desktop.environment().insert(u"QT_SCREEN_SCALE_FACTORS"_qs, u"1;2"_qs);
        world.program.reset();
        world.program.emplace(world.desktop, QStringLiteral(PW_PROGRAM));
        QTRY_COMPARE(world.stripGeometry().width(), 640);
        QVERIFY(world.drag(world.stripGeometry().topLeft() + firstTile, {700, -50}));
        QTRY_VERIFY(world.stripGeometry().left() > 500);
        QTRY_COMPARE(world.stripGeometry().size(), QSize(640, 88));
        const QRect place = world.stripGeometry();
        xrandr(u"--delmonitor right"_qs);
        QTRY_VERIFY(QRect(0, 0, 640, 800).contains(elements()));
        xrandr(u"--setmonitor right 640/160x800/200+640+0 none"_qs);
        QTRY_COMPARE(world.stripGeometry(), place);
    }

    void endsWithoutWriting()
    {
        Desktop desktop({.compositor = true});
        for (const QString &way : {u"TERM"_qs, u"INT"_qs, u"quit button"_qs, u"Ctrl+Q"_qs}) {
            Program program(desktop, QStringLiteral(PW_PROGRAM));
            const Window strip = program.waitForWindow();
            QVERIFY2(!strip.isNull(), qPrintable(program.errors()));
            // What was written anew would be the three sample tiles again.
            QVERIFY(QFile::remove(desktop.settingsFile()));
            const qsizetype printed = program.lines().size();

            if (way == u"quit button") {
                desktop.click(strip.geometry.topLeft() + quitButton);
            } else if (way == u"Ctrl+Q") {
                desktop.activate(strip);
                // The shortcuts come a moment after the window.
                QVERIFY(waitUntil([&] {
                    desktop.key(u"ctrl+q"_qs);
                    return !program.isRunning();
                }));
            } else {
                ::kill(pid_t(program.processId()), way == u"TERM" ? SIGTERM : SIGINT);
            }
            QVERIFY2(program.waitForExit() == 0, qPrintable(way + program.errors()));
            QVERIFY2(!QFile::exists(desktop.settingsFile()), qPrintable(way));
            QVERIFY2(program.lines().size() == printed, qPrintable(way));
        }
    }
};

QTEST_GUILESS_MAIN(TestStripWindow)
#include "tst_stripwindow.moc"

// SPDX-License-Identifier: MIT
#include "model/settingsdata.h"
#include "model/settingsjson.h"
#include "support/files.h"
#include "support/program.h"

#include <QTest>

#include <map>
#include <optional>

using namespace support;

namespace {

constexpr int shadow = 12, edge = shadow + 16; // of a popover as it is drawn, in points
constexpr QPoint bareDesktop(1200, 200);

// The strip's elements in their order.
enum Element { Home, One, Many, Empty, Noted };
const QStringList names = u"Home One Many Empty Noted"_qs.split(u' ');

enum Action { Edit, AddFile, Import, ToggleNotes };

QString clickOn(QPoint place, int button = 1)
{
    return u"mousemove %1 %2 click %3"_qs.arg(place.x()).arg(place.y()).arg(button);
}

/// A desktop with the strip on it, in a corner that leaves bare desktop and another program's window free.
struct World
{
    explicit World(const QString &manager, const QString &direction = u"ltr"_qs);

    QByteArray xdotool(const QString &words) const { return desktop.xdotool(words.split(u' ')); }
    QRect stripArea() const { return desktop.windowNamed(u"pondWicket"_qs).geometry; }
    QRect area(Element element) const
    {
        const int along = 14 + 44 * int(element);
        return QRect(stripArea().topLeft() + (isVertical ? QPoint(0, along) : QPoint(along, 0)),
                     QSize(44, 44));
    }
    QString clickOn(Element element, int button = 1) const
    {
        return ::clickOn(area(element).center(), button);
    }
    void choose(Element element, Action action) const;
    Window popover(Element element) const { return desktop.windowNamed(names.at(element)); }
    bool isOpen(Element element) const { return !popover(element).isNull(); }
    bool isActive(Element element) const { return hasFocus(popover(element)); }
    bool hasFocus(const Window &window) const
    {
        return !window.isNull() && xdotool(u"getwindowfocus"_qs).trimmed() == window.id.toLatin1();
    }

    Desktop desktop;
    bool isVertical;
    std::optional<Program> program, other;
    Window strip, otherWindow;
};

World::World(const QString &manager, const QString &direction)
    : desktop({.windowManager = manager})
    , isVertical(direction == u"ttb")
{
    SettingsData settings;
    settings.direction = direction;
    const int linkCounts[] = {0, 1, 3, 0, 1};
    for (const Element element : {One, Many, Empty, Noted}) {
        const QString folder = make(desktop.home() + u'/' + names.at(element) + u'/');
        const TileMenuItem link = {QUuid::createUuid(), u"tel:1"_qs, u"a link"_qs};
        settings.tileItems.append({QUuid::createUuid(),
                                   u"default"_qs,
                                   names.at(element),
                                   u"file://"_qs + folder,
                                   element == Noted,
                                   {},
                                   QList<TileMenuItem>(linkCounts[element], link)});
    }
    make(desktop.settingsFile(), model::settingsToJson(settings));
    other.emplace(desktop, u"xev"_qs, u"-geometry 200x100+1000+400 -name Other"_qs.split(u' '));
    otherWindow = desktop.waitForWindow({u"--name"_qs, u"^Other$"_qs});
    program.emplace(desktop, QStringLiteral(PW_PROGRAM));
    strip = program->waitForWindow();
}

/// From the menu in the header of the popover, which is open or about to be.
void World::choose(Element element, Action action) const
{
    waitUntil([&] { return isActive(element); });
    desktop.click(popover(element).geometry.topRight() + QPoint(-edge - 10, edge + 10));
    waitUntil([&] { return program->windows().size() > 2; });
    xdotool(u"key"_qs + u" Down"_qs.repeated(action + 1) + u" Return"_qs);
}

} // namespace

class TestPopovers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        const char *tag = QTest::currentDataTag(); // not every test has one
        const QString manager = QString::fromLatin1(tag ? tag : "openbox");
        m_world = &m_worlds.try_emplace(manager, manager).first->second;
        QVERIFY2(m_world->desktop.isUp(), qPrintable(m_world->desktop.problem()));
        QVERIFY2(!m_world->strip.isNull(), qPrintable(m_world->program->errors()));
        m_world->desktop.activate(m_world->strip);
    }

    void cleanup()
    {
        m_world->desktop.click(bareDesktop);
        QTRY_COMPARE(m_world->program->windows().size(), 1);
        QCOMPARE(m_world->program->lines(), QStringList());
    }

    /// The focus, about which managers differ, decides what is seen of these. Elsewhere openbox will do.
    void opens_data() const
    {
        QTest::addColumn<QString>("manager");
        for (const char *manager : {"openbox", "xfwm4 --compositor=off"})
            QTest::newRow(manager) << QString::fromLatin1(manager);
    }

    void opens()
    {
        const World &world = *m_world;
        const QString toHome = u"key Left Left Left Left Left Left Left Right "_qs;
        for (const auto &[step, element] :
             {std::pair(world.clickOn(One, 3), One), std::pair(world.clickOn(Noted), Noted),
              std::pair(world.clickOn(Home), Home), std::pair(toHome + u"Down Down Return"_qs, Many),
              std::pair(toHome + u"Right shift+F10"_qs, One),
              std::pair(toHome + u"Tab Tab space"_qs, Many)}) {
            world.xdotool(step);
            // The second time the tile has the focus and the key is its own.
            for (const char *next : {"Menu", "Tab"}) {
                QTRY_VERIFY2(world.isActive(element), qPrintable(step));
                QCOMPARE(world.program->windows().size(), 2);
                world.desktop.key(u"Escape"_qs);
                QTRY_VERIFY2(!world.isOpen(element) && world.hasFocus(world.strip), qPrintable(step));
                world.desktop.key(QLatin1String(next));
            }
        }
    }

    void isDismissed_data() const { opens_data(); }
    void isDismissed()
    {
        const World &world = *m_world;
        for (const QString &step :
             {clickOn(world.otherWindow.at(50, 50)), clickOn(bareDesktop),
              u"windowactivate --sync "_qs + world.otherWindow.id, clickOn(world.stripArea().center()),
              world.clickOn(Empty), world.clickOn(One)}) { // another popover, the only link of another tile
            world.desktop.click(bareDesktop);
            QTRY_COMPARE(world.program->windows().size(), 1);
            world.xdotool(world.clickOn(Many));
            QTRY_VERIFY2(world.isActive(Many), qPrintable(step));
            world.xdotool(step);
            QTRY_VERIFY2(!world.isOpen(Many), qPrintable(step));
        }
    }

    void stays()
    {
        const World &world = *m_world;
        world.xdotool(world.clickOn(Many));
        for (const Action action : {AddFile, Edit, Import}) {
            world.choose(Many, action);
            const auto isPanelActive = [&world] {
                QList<Window> panels = world.program->windows();
                panels.removeOne(world.strip);
                panels.removeOne(world.popover(Many));
                return panels.size() == 1 && world.hasFocus(panels.first());
            };
            QTRY_VERIFY2(isPanelActive(), qPrintable(QString::number(action)));
            QVERIFY(world.isOpen(Many));
            world.desktop.key(u"Escape"_qs);
            QTRY_COMPARE(world.program->windows().size(), 2);
        }
    }

    void openedByKeySurvivesAChangeOfItsTile()
    {
        const World &world = *m_world;
        for (const bool isOpen : {true, false, true}) {
            world.desktop.key(u"ctrl+3"_qs);
            QTRY_COMPARE(world.isActive(Empty), isOpen);
            // The manager gave the keyboard to another program.
            QTRY_VERIFY(isOpen || world.hasFocus(world.strip));
        }
        const Window first = world.popover(Empty);
        world.choose(Empty, ToggleNotes);
        QTRY_VERIFY(world.isOpen(Empty) && world.popover(Empty).id != first.id);
        // The popover that came in place of another one did not notice presses outside the program.
        world.desktop.click(bareDesktop);
        QTRY_VERIFY(!world.isOpen(Empty));
        world.desktop.activate(world.strip);
        world.desktop.key(u"ctrl+3"_qs); // leaves the tile as it was
    }

    void staysOnTheScreenWithItsArrowAtTheTile()
    {
        const World vertical(u"openbox"_qs, u"ttb"_qs);
        // The corners of the strip, whose tiles are near its first end.
        const std::pair<const World *, QList<QPoint>> cases[] = {
            {m_world, {{0, 0}, {1020, 756}, {-30, 300}, {0, 756}}},
            {&vertical, {{0, 0}, {1236, 0}, {0, 560}}},
        };
        for (const auto &[place, corners] : cases) {
            const World &here = *place;
            here.xdotool(here.clickOn(Many));
            QTRY_VERIFY(here.isOpen(Many));
            for (const QPoint corner : corners) {
                here.xdotool(u"windowmove %1 %2 %3"_qs.arg(here.strip.id).arg(corner.x()).arg(corner.y()));
                QTRY_COMPARE(here.stripArea().topLeft(), corner);
                // The popover follows: its tip, and nothing else of it, touches the middle of one of the
                // tile's sides.
                const auto isPopoverAt = [&](QPoint point) {
                    return here.desktop.windowAt(point)
                        == here.desktop.windowAt(here.popover(Many).geometry.center());
                };
                const auto touches = [&](QPoint out) {
                    const QPoint tip = here.area(Many).topLeft() + QPoint(22, 22) + 26 * out;
                    const QPoint beside = 8 * QPoint(out.y(), out.x());
                    return isPopoverAt(tip) && !isPopoverAt(tip + beside) && !isPopoverAt(tip - beside);
                };
                QTRY_VERIFY2(here.isVertical ? touches({1, 0}) || touches({-1, 0})
                                             : touches({0, -1}) || touches({0, 1}),
                             qPrintable(u"%1 %2"_qs.arg(corner.x()).arg(corner.y())));
                // The shadow may leave the screen, the body may not.
                QVERIFY(QRect(-shadow, -shadow, 1280 + 2 * shadow, 800 + 2 * shadow)
                            .contains(here.popover(Many).geometry));
            }
        }
    }

private:
    std::map<QString, World> m_worlds; ///< by window manager
    World *m_world = nullptr;
};

QTEST_GUILESS_MAIN(TestPopovers)
#include "tst_popovers.moc"

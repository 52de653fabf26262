// SPDX-License-Identifier: MIT
#include "model/settingsdata.h"
#include "model/settingsjson.h"
#include "platform/files.h"
#include "support/program.h"

#include <QTest>

#include <functional>
#include <map>
#include <optional>

using namespace support;

namespace {

// A popover as it is drawn, in points.
constexpr int shadow = 12, padding = 16, arrow = 9, rowHeight = 26;
constexpr int edge = shadow + padding;

// The strip's elements in their order; the tiles are those of the settings below.
enum Element { Home, One, Many, Empty, Noted };
const QStringList names = {u"Home"_qs, u"One"_qs, u"Many"_qs, u"Empty"_qs, u"Noted"_qs};
const QString onlyLink = u"https://one.example/a%20b"_qs;
const QStringList links = {u"tel://+1%20555-0100"_qs, u"HTTPS://Example.org/%7Ea"_qs, u"wicket:%7Ea"_qs};

enum Action { Edit, AddFile, Import, ToggleNotes, Remove };

QByteArray contentOf(const QString &path)
{
    return platform::readWholeFile(path, nullptr).value_or("(no file)");
}

/// A desktop with the strip on it, in a corner that leaves bare desktop and another program's window free.
struct World
{
    explicit World(const DesktopOptions &options, const QString &direction = u"ltr"_qs);

    QString folderOf(Element element) const { return desktop.home() + u'/' + names.at(element); }
    QRect stripArea() const { return windowNamed(u"pondWicket"_qs).geometry; }
    QRect area(Element element) const
    {
        const int along = 14 + 44 * int(element);
        return QRect(stripArea().topLeft() + (isVertical ? QPoint(0, along) : QPoint(along, 0)),
                     QSize(44, 44));
    }
    void click(Element element, int button = 1) const { desktop.click(area(element).center(), button); }
    void choose(Element element, Action action) const;
    Window windowNamed(const QString &name) const
    {
        return desktop.windows({u"--name"_qs, u'^' + name + u'$'}).value(0);
    }
    Window popover(Element element) const { return windowNamed(names.at(element)); }
    bool isOpen(Element element) const { return !popover(element).isNull(); }
    bool isActive(Element element) const { return hasFocus(popover(element)); }
    QByteArray xdotool(const QString &words) const { return desktop.xdotool(words.split(u' ')); }
    void moveStrip(QPoint corner) const
    {
        xdotool(u"windowmove %1 %2 %3"_qs.arg(strip.id).arg(corner.x()).arg(corner.y()));
    }
    bool hasFocus(const Window &window) const
    {
        return !window.isNull() && xdotool(u"getwindowfocus"_qs).trimmed() == window.id.toLatin1();
    }
    QByteArray windowAt(QPoint point) const
    {
        desktop.moveTo(point);
        return xdotool(u"getmouselocation --shell"_qs).split('\n').value(3);
    }
    void activate(const Window &window) const { xdotool(u"windowactivate --sync "_qs + window.id); }

    Desktop desktop;
    bool isVertical;
    std::optional<Program> program;
    std::optional<Program> other;
    Window strip;
    Window otherWindow;
};
constexpr QPoint bareDesktop(1200, 200);

World::World(const DesktopOptions &options, const QString &direction)
    : desktop(options)
    , isVertical(direction == u"ttb")
{
    SettingsData settings;
    settings.direction = direction;
    const QStringList targets[] = {{onlyLink}, links, {}, {onlyLink}};
    for (const Element element : {One, Many, Empty, Noted}) {
        platform::makeFolder(folderOf(element), nullptr);
        QList<TileMenuItem> items;
        for (const QString &target : targets[element - One])
            items.append({QUuid::createUuid(), target, u"a link"_qs});
        settings.tileItems.append({QUuid::createUuid(),
                                   u"default"_qs,
                                   names.at(element),
                                   u"file://"_qs + folderOf(element),
                                   element == Noted,
                                   {},
                                   items});
    }
    platform::makeFolder(desktop.applicationFolder(), nullptr);
    platform::writeInPlace(desktop.settingsFile(), model::settingsToJson(settings), nullptr);
    desktop.recordOpened({u"x-scheme-handler/tel"_qs, u"x-scheme-handler/https"_qs});
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
    void init();
    void cleanup();

    void opens_data() const;
    void opens();
    void isDismissed_data() const { opens_data(); }
    void isDismissed();
    void stays();
    void openedByKeySurvivesAChangeOfItsTile();
    void linksReachTheirHandlersUnchanged();
    void notesAreWrittenAndOutliveTheirTile();
    void staysOnTheScreenWithItsArrowAtTheTile();

private:
    World &world() { return *m_world; }

    std::map<QString, World> m_worlds; ///< by window manager
    World *m_world = nullptr;
};

void TestPopovers::init()
{
    const char *tag = QTest::currentDataTag(); // not every test has one
    const QString manager = QString::fromLatin1(tag ? tag : "openbox");
    m_world = &m_worlds.try_emplace(manager, DesktopOptions{.windowManager = manager}).first->second;
    QVERIFY2(m_world->desktop.isUp(), qPrintable(m_world->desktop.problem()));
    QVERIFY2(!m_world->strip.isNull(), qPrintable(m_world->program->errors()));
    m_world->activate(m_world->strip);
}

void TestPopovers::cleanup()
{
    m_world->desktop.click(bareDesktop);
    QTRY_COMPARE(m_world->program->windows().size(), 1);
    QCOMPARE(m_world->program->lines(), QStringList());
}

using Step = std::function<void(const World &)>;

Step clickOn(Element element, int button = 1)
{
    return [=](const World &world) { world.click(element, button); };
}

/// The focus, about which managers differ, decides what is seen of these. Elsewhere openbox will do.
void TestPopovers::opens_data() const
{
    QTest::addColumn<QString>("manager");
    for (const char *manager : {"openbox", "xfwm4 --compositor=off"})
        QTest::newRow(manager) << QString::fromLatin1(manager);
}

void TestPopovers::opens()
{
    const auto keys = [](const char *after) -> Step {
        const QString toHome = u"key Left Left Left Left Left Left Left Right "_qs;
        return [=](const World &world) { world.xdotool(toHome + QLatin1String(after)); };
    };
    const std::tuple<const char *, Step, Element> rows[] = {
        {"right click, one link", clickOn(One, 3), One}, {"click, notes and one link", clickOn(Noted), Noted},
        {"click on the home tile", clickOn(Home), Home}, {"Enter", keys("Down Down Return"), Many},
        {"Shift+F10", keys("Right shift+F10"), One},     {"Space after Tab", keys("Tab Tab space"), Many},
    };
    for (const auto &[name, step, element] : rows) {
        step(world());
        QTRY_VERIFY2(world().isActive(element), name);
        QCOMPARE(world().program->windows().size(), 2);
        world().desktop.key(u"Escape"_qs);
        QTRY_VERIFY2(!world().isOpen(element) && world().hasFocus(world().strip), name);
        // The tile has the focus, so the next key is its own.
        world().desktop.key(u"Menu"_qs);
        QTRY_VERIFY2(world().isActive(element), name);
        world().desktop.key(u"Escape"_qs);
        QTRY_VERIFY2(world().hasFocus(world().strip), name);
    }
}

void TestPopovers::isDismissed()
{
    const std::pair<const char *, Step> steps[] = {
        {"other window", [](const World &world) { world.desktop.click(world.otherWindow.at(50, 50)); }},
        {"bare desktop", [](const World &world) { world.desktop.click(bareDesktop); }},
        {"other program active", [](const World &world) { world.activate(world.otherWindow); }},
        {"beside the tiles", [](const World &world) { world.desktop.click(world.stripArea().center()); }},
        {"another popover", clickOn(Empty)},
        {"only link of another tile", clickOn(One)},
    };
    for (const auto &[name, step] : steps) {
        world().desktop.click(bareDesktop);
        QTRY_COMPARE(world().program->windows().size(), 1);
        world().click(Many);
        QTRY_VERIFY2(world().isActive(Many), name);
        step(world());
        QTRY_VERIFY2(!world().isOpen(Many), name);
    }
}

void TestPopovers::stays()
{
    world().click(Many);
    QTRY_VERIFY(world().isActive(Many));
    for (const Action action : {AddFile, Edit, Import}) {
        world().choose(Many, action);
        const auto isPanelActive = [this] {
            QList<Window> panels = world().program->windows();
            panels.removeOne(world().strip);
            panels.removeOne(world().popover(Many));
            return panels.size() == 1 && world().hasFocus(panels.first());
        };
        QTRY_VERIFY2(isPanelActive(), qPrintable(QString::number(action)));
        QVERIFY(world().isOpen(Many));
        world().desktop.key(u"Escape"_qs);
        QTRY_COMPARE(world().program->windows().size(), 2);
    }
}

void TestPopovers::openedByKeySurvivesAChangeOfItsTile()
{
    for (const bool isOpen : {true, false, true}) {
        if (isOpen)
            world().activate(world().strip);
        world().desktop.key(u"ctrl+3"_qs);
        QTRY_COMPARE(world().isActive(Empty), isOpen);
    }
    const Window first = world().popover(Empty);
    world().choose(Empty, ToggleNotes);
    QTRY_VERIFY(world().isOpen(Empty) && world().popover(Empty).id != first.id);
    world().choose(Empty, ToggleNotes);
    QTRY_COMPARE(world().popover(Empty).geometry.size(), first.geometry.size());
    // The popover that came in place of another one did not notice presses outside the program.
    world().desktop.click(bareDesktop);
    QTRY_VERIFY(!world().isOpen(Empty));
    world().activate(world().strip);
    world().desktop.key(u"ctrl+3"_qs); // leaves the tile as it was
}

void TestPopovers::linksReachTheirHandlersUnchanged()
{
    world().click(Many);
    QTRY_VERIFY(world().isOpen(Many));
    const QByteArray settings = contentOf(world().desktop.settingsFile());
    const QRect area = world().popover(Many).geometry;
    world().desktop.click(area.topLeft() + QPoint(edge + 5, edge + 5)); // the name
    QStringList opened = world().desktop.opened();
    for (int row = int(links.size()) - 1; row >= 0; --row) {
        const int above = arrow + padding + (int(links.size()) - 1 - row) * rowHeight + rowHeight / 2;
        world().desktop.click({area.left() + edge + 40, area.bottom() - above});
        if (row < 2) // nobody handles the last
            opened += links.at(row);
        QTRY_COMPARE(world().desktop.opened(), opened);
    }
    QVERIFY(world().isOpen(Many));
    world().desktop.click(bareDesktop);
    world().click(One);
    QTRY_COMPARE(world().desktop.opened(), opened + QStringList(onlyLink));
    world().desktop.key(u"Return"_qs); // the click has given the tile the focus, too
    QTRY_COMPARE(world().desktop.opened(), opened + QStringList({onlyLink, onlyLink}));
    QCOMPARE(contentOf(world().desktop.settingsFile()), settings);
}

void TestPopovers::notesAreWrittenAndOutliveTheirTile()
{
    const QString file = world().folderOf(Empty) + u"/Notes.txt"_qs;
    platform::writeInPlace(file, "b", nullptr);
    world().click(Empty);
    world().choose(Empty, ToggleNotes);
    QTRY_VERIFY(!world().isOpen(Empty));

    world().click(Empty);
    QTRY_VERIFY(world().isActive(Empty));
    world().desktop.key(u"ctrl+Home"_qs);
    world().desktop.type(u"a "_qs);
    QTRY_COMPARE(contentOf(file), "a b");

    world().choose(Empty, Remove);
    QTRY_VERIFY(!contentOf(world().desktop.settingsFile()).contains("Empty"));
    QCOMPARE(contentOf(file), "a b");
}

void TestPopovers::staysOnTheScreenWithItsArrowAtTheTile()
{
    const World vertical({}, u"ttb"_qs);
    // The corners of the strip, whose tiles are near its first end.
    const std::pair<const World *, QList<QPoint>> cases[] = {
        {&world(), {{0, 756}, {0, 0}, {1020, 756}, {-30, 300}}},
        {&vertical, {{0, 0}, {1236, 0}, {0, 560}}},
    };
    for (const auto &[place, corners] : cases) {
        const World &here = *place;
        here.click(Many);
        QTRY_VERIFY(here.isOpen(Many));
        for (const QPoint corner : corners) {
            here.moveStrip(corner);
            QTRY_COMPARE(here.stripArea().topLeft(), corner);
            const QRect tile = here.area(Many);
            // The popover follows: its tip, and nothing else of it, touches the middle of one of the tile's
            // sides.
            const auto isPopoverAt = [&](QPoint point) {
                return here.windowAt(point) == here.windowAt(here.popover(Many).geometry.center());
            };
            const auto touches = [&](QPoint out) {
                const QPoint tip = tile.topLeft() + QPoint(22, 22) + 26 * out;
                const QPoint beside = 8 * QPoint(out.y(), out.x());
                return isPopoverAt(tip) && !isPopoverAt(tip + beside) && !isPopoverAt(tip - beside);
            };
            QTRY_VERIFY2(here.isVertical ? touches({1, 0}) || touches({-1, 0})
                                         : touches({0, -1}) || touches({0, 1}),
                         qPrintable(u"%1 %2"_qs.arg(corner.x()).arg(corner.y())));
            // The shadow may leave the screen, the body may not.
            const QRect popover = here.popover(Many).geometry;
            QVERIFY(QRect(-shadow, -shadow, 1280 + 2 * shadow, 800 + 2 * shadow).contains(popover));
        }
    }
    world().moveStrip({0, 756});
}

QTEST_GUILESS_MAIN(TestPopovers)
#include "tst_popovers.moc"

// SPDX-License-Identifier: MIT
#include "support/program.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QUrl>

#include <functional>
#include <map>
#include <optional>

using namespace support;

namespace {

// A popover as it is drawn, in points.
constexpr int shadow = 12;
constexpr int padding = 16;
constexpr int arrow = 9;
constexpr int rowHeight = 26;
constexpr int edge = shadow + padding;

// The strip's elements in their order; the tiles are those of the settings below.
enum Element { Home, One, Many, Empty, Noted, Doomed };
const QStringList names = {QStringLiteral("Home"),  QStringLiteral("One"),   QStringLiteral("Many"),
                           QStringLiteral("Empty"), QStringLiteral("Noted"), QStringLiteral("Doomed")};
const QString onlyLink = QStringLiteral("https://one.example/a%20b");
const QStringList links = {QStringLiteral("tel://+1%20555-0100"), QStringLiteral("HTTPS://Example.org/%7Ea"),
                           QStringLiteral("maps://?q=pizza"), QStringLiteral("ssh://pond@example.org:2222"),
                           QStringLiteral("wicket:%7Ea")};

enum Action { Edit, AddFile, Import, ToggleNotes, Remove };

void write(const QString &path, const QString &text)
{
    QFile file(path);
    QVERIFY(QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(no file)");
}

QString tileJson(Element tile, const QStringList &targets, const QString &showsNotes, const QString &folder)
{
    QStringList items;
    for (const QString &target : targets) {
        items +=
            QStringLiteral(R"({"id":"00000000-0000-0000-0001-%1","itemString":"%2","itemName":"a link"})")
                .arg(items.size(), 12, 10, QLatin1Char('0'))
                .arg(target);
    }
    return QStringLiteral(R"({"id":"00000000-0000-0000-0000-%1","iconName":"default","tileName":"%2",
        "tileDirectory":"%3","showsScratchpad":%4,"scratchpadText":"","tileMenuItems":[%5]})")
        .arg(int(tile), 12, 10, QLatin1Char('0'))
        .arg(names.at(tile), QString::fromLatin1(QUrl::fromLocalFile(folder + names.at(tile)).toEncoded()),
             showsNotes, items.join(u','));
}

/// A desktop with the strip on it, in a corner that leaves bare desktop and another program's window free.
struct World
{
    explicit World(const DesktopOptions &options, const QString &direction = QStringLiteral("ltr"));

    QString notesFile(Element tile) const { return tileFolder() + names.at(tile) + u"/Notes.txt"_qs; }
    QString tileFolder() const { return desktop.applicationFolder() + u"/Tiles/"_qs; }
    QRect stripArea() const
    {
        return desktop.windows({QStringLiteral("--name"), u"^pondWicket$"_qs}).value(0).geometry;
    }
    QRect area(Element element) const
    {
        const int along = 14 + 44 * int(element);
        return QRect(stripArea().topLeft() + (isVertical ? QPoint(0, along) : QPoint(along, 0)),
                     QSize(44, 44));
    }
    void click(Element element, int button = 1) const { desktop.click(area(element).center(), button); }
    void clickRow(int row) const;
    void choose(Action action) const;
    Window popover(Element element) const
    {
        return desktop.windows({QStringLiteral("--name"), u'^' + names.at(element) + u'$'}).value(0);
    }
    bool isOpen(Element element) const
    {
        return !desktop
                    .run(u"xdotool"_qs,
                         {u"search"_qs, u"--onlyvisible"_qs, u"--name"_qs, u'^' + names.at(element) + u'$'})
                    .isEmpty();
    }
    bool hasFocus(const Window &window) const
    {
        return !window.isNull()
            && desktop.run(u"xdotool"_qs, {u"getwindowfocus"_qs}).trimmed() == window.id.toLatin1();
    }
    QByteArray windowAt(QPoint point) const
    {
        desktop.moveTo(point);
        return desktop.run(u"xdotool"_qs, {u"getmouselocation"_qs, u"--shell"_qs}).split('\n').value(3);
    }
    void activate(const Window &window) const
    {
        desktop.run(u"xdotool"_qs, {u"windowactivate"_qs, u"--sync"_qs, window.id});
    }
    bool settingsHave(const QString &text) const
    {
        return contentOf(desktop.settingsFile()).contains(text.toUtf8());
    }

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
    , isVertical(direction == QLatin1String("ttb"))
{
    const QString folder = tileFolder();
    for (const QString &name : names)
        QDir().mkpath(folder + name);
    const QString no = QStringLiteral("false");
    const QStringList tiles = {tileJson(One, {onlyLink}, no, folder), tileJson(Many, links, no, folder),
                               tileJson(Empty, {}, no, folder),
                               tileJson(Noted, {onlyLink}, QStringLiteral("true"), folder),
                               tileJson(Doomed, {}, no, folder)};
    write(desktop.settingsFile(),
          QStringLiteral(R"({"currentTheme":"2024","availableThemes":["2024"],"showsDate":false,
              "direction":"%1","appIcon":"Default","tileItems":[%2]})")
              .arg(direction, tiles.join(u',')));

    desktop.recordOpened(
        {u"x-scheme-handler/tel"_qs, u"x-scheme-handler/https"_qs, u"x-scheme-handler/geo"_qs});
    // The terminal that ssh addresses go to.
    const QString bin = desktop.home() + u"/bin/"_qs;
    QDir().mkpath(bin);
    QFile::link(desktop.home() + u"/../recorder"_qs, bin + u"xdg-terminal-exec"_qs);
    // Only what this desktop has itself is a handler.
    desktop.environment().insert(u"XDG_DATA_DIRS"_qs, bin);
    desktop.environment().insert(u"PATH"_qs, bin + u':' + desktop.environment().value(u"PATH"_qs));

    other.emplace(desktop, u"xev"_qs,
                  QStringList{u"-geometry"_qs, u"200x100+1000+400"_qs, u"-name"_qs, u"Other"_qs});
    otherWindow = desktop.waitForWindow({u"--name"_qs, u"^Other$"_qs});
    program.emplace(desktop, QStringLiteral(PW_PROGRAM));
    strip = program->waitForWindow();
}

/// In the popover of Many, whose rows are the last of its content.
void World::clickRow(int row) const
{
    const QRect area = popover(Many).geometry;
    desktop.click(
        {area.left() + edge + 40,
         area.bottom() - arrow - padding - (int(links.size()) - 1 - row) * rowHeight - rowHeight / 2});
}

/// From the menu in the header of the popover that is open.
void World::choose(Action action) const
{
    for (int element = One; element <= Doomed; ++element) {
        const Window window = popover(Element(element));
        if (window.isNull())
            continue;
        waitUntil([&] { return hasFocus(window); });
        desktop.click(window.geometry.topRight() + QPoint(-edge - 10, edge + 10));
        waitUntil([&] { return program->windows().size() > 2; });
        for (int step = 0; step <= action; ++step)
            desktop.key(u"Down"_qs);
        desktop.key(u"Return"_qs);
        return;
    }
}

} // namespace

class TestPopovers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void init();
    void cleanup();

    void opens_data();
    void opens();
    void isDismissed_data();
    void isDismissed();
    void stays_data();
    void stays();
    void openedByKeyAndDismissedNeedsTwoPresses();
    void openedByKeySurvivesAChangeOfItsTile();
    void linksReachTheirHandlersUnchanged();
    void notesAreShownAndWritten();
    void tileRemovesItself();
    void staysOnTheScreenWithItsArrowAtTheTile_data();
    void staysOnTheScreenWithItsArrowAtTheTile();

private:
    World &world() { return *m_world; }

    std::map<QString, World> m_worlds; ///< by window manager
    World *m_world = nullptr;
};

void TestPopovers::initTestCase_data()
{
    QTest::addColumn<QString>("manager");
    QTest::addRow("openbox") << QStringLiteral("openbox");
    QTest::addRow("xfwm4") << QStringLiteral("xfwm4 --compositor=off");
}

void TestPopovers::init()
{
    QFETCH_GLOBAL(QString, manager);
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

Step keys(const QString &keys)
{
    return [=](const World &world) { world.desktop.run(u"xdotool"_qs, (u"key "_qs + keys).split(u' ')); };
}

void TestPopovers::opens_data()
{
    QTest::addColumn<Step>("step");
    QTest::addColumn<Element>("element");
    const QString toHome = QStringLiteral("Left Left Left Left Left Left Left Right ");
    QTest::addRow("click on a tile with links") << clickOn(Many) << Many;
    QTest::addRow("right click on a tile with one link") << clickOn(One, 3) << One;
    QTest::addRow("Enter on a tile") << keys(toHome + u"Down Down Return"_qs) << Many;
    QTest::addRow("click on the home tile") << clickOn(Home) << Home;
    QTest::addRow("click on a tile without links") << clickOn(Empty) << Empty;
    QTest::addRow("click on a tile with notes and one link") << clickOn(Noted) << Noted;
    QTest::addRow("menu key") << keys(toHome + u"Right Menu"_qs) << One;
    QTest::addRow("Shift+F10") << keys(toHome + u"Right shift+F10"_qs) << One;
    QTest::addRow("Space after Tab") << keys(toHome + u"Tab Tab space"_qs) << Many;
}

void TestPopovers::opens()
{
    QFETCH(Step, step);
    QFETCH(Element, element);
    step(world());
    QTRY_VERIFY(world().isOpen(element));
    QTRY_VERIFY(world().hasFocus(world().popover(element)));
    QCOMPARE(world().program->windows().size(), 2);
    world().desktop.key(u"Escape"_qs);
    QTRY_VERIFY(!world().isOpen(element));
    QTRY_VERIFY(world().hasFocus(world().strip));
    // The tile has the focus, so the next key is its own.
    world().desktop.key(u"Menu"_qs);
    QTRY_VERIFY(world().isOpen(element));
}

void TestPopovers::isDismissed_data()
{
    QTest::addColumn<Step>("step");
    QTest::addRow("press on another program's window")
        << Step([](const World &world) { world.desktop.click(world.otherWindow.at(50, 50)); });
    QTest::addRow("press on the bare desktop")
        << Step([](const World &world) { world.desktop.click(bareDesktop); });
    QTest::addRow("another program becoming active")
        << Step([](const World &world) { world.activate(world.otherWindow); });
    QTest::addRow("press beside the strip's elements")
        << Step([](const World &world) { world.desktop.click(world.stripArea().center()); });
    QTest::addRow("another tile's popover") << clickOn(Empty);
    QTest::addRow("home menu") << clickOn(Home);
    QTest::addRow("the only link of another tile") << clickOn(One);
}

void TestPopovers::isDismissed()
{
    QFETCH(Step, step);
    world().click(Many);
    QTRY_VERIFY(world().hasFocus(world().popover(Many)));
    step(world());
    QTRY_VERIFY(!world().isOpen(Many));
}

void TestPopovers::stays_data()
{
    QTest::addColumn<Step>("step");
    QTest::addColumn<int>("windows");
    QTest::addRow("file panel") << Step([](const World &world) { world.choose(AddFile); }) << 3;
    QTest::addRow("click on the tile") << clickOn(Many) << 2;
    QTest::addRow("press on the name")
        << Step([](const World &world) { world.desktop.click(world.popover(Many).at(edge + 5, edge + 5)); })
        << 2;
    QTest::addRow("settings window") << Step([](const World &world) { world.choose(Edit); }) << 3;
    QTest::addRow("import panel") << Step([](const World &world) { world.choose(Import); }) << 3;
}

void TestPopovers::stays()
{
    QFETCH(Step, step);
    QFETCH(int, windows);
    world().click(Many);
    QTRY_VERIFY(world().hasFocus(world().popover(Many)));
    step(world());
    if (windows > 2) {
        const auto isPanelActive = [this] {
            QList<Window> panels = world().program->windows();
            panels.removeOne(world().strip);
            panels.removeOne(world().popover(Many));
            return panels.size() == 1 && world().hasFocus(panels.first());
        };
        QTRY_VERIFY(isPanelActive());
        QVERIFY(world().isOpen(Many));
        world().desktop.key(u"Escape"_qs);
    }
    QTRY_COMPARE(world().program->windows().size(), 2);
    // Its links can still be clicked, which does not dismiss it either.
    const qsizetype opened = world().desktop.opened().size();
    world().clickRow(0);
    QTRY_COMPARE(world().desktop.opened().size(), opened + 1);
    QVERIFY(world().isOpen(Many));
}

void TestPopovers::openedByKeyAndDismissedNeedsTwoPresses()
{
    const QString toggle = QStringLiteral("ctrl+2");
    world().desktop.key(toggle);
    QTRY_VERIFY(world().hasFocus(world().popover(Many)));
    world().desktop.key(u"Escape"_qs);
    QTRY_VERIFY(world().hasFocus(world().strip));
    const qsizetype opened = world().desktop.opened().size();
    world().desktop.key(toggle);
    world().desktop.key(u"ctrl+question"_qs); // help, whose page arrives when the first key has been served
    QTRY_COMPARE(world().desktop.opened().size(), opened + 1);
    QVERIFY(!world().isOpen(Many));
    world().activate(world().strip);
    world().desktop.key(toggle);
    QTRY_VERIFY(world().hasFocus(world().popover(Many)));
    world().desktop.key(toggle);
    QTRY_VERIFY(!world().isOpen(Many));
}

void TestPopovers::openedByKeySurvivesAChangeOfItsTile()
{
    world().desktop.key(u"ctrl+3"_qs);
    QTRY_VERIFY(world().hasFocus(world().popover(Empty)));
    const Window first = world().popover(Empty);
    world().choose(ToggleNotes);
    QTRY_VERIFY(world().isOpen(Empty) && world().popover(Empty).id != first.id);
    world().choose(ToggleNotes);
    QTRY_COMPARE(world().popover(Empty).geometry.size(), first.geometry.size());
    // The popover that came in place of another one did not notice presses outside the program.
    world().desktop.click(bareDesktop);
    QTRY_VERIFY(!world().isOpen(Empty));
    world().activate(world().strip);
    world().desktop.key(u"ctrl+3"_qs); // leaves the tile as it was
}

void TestPopovers::linksReachTheirHandlersUnchanged()
{
    const QList<QStringList> expected = {
        {links.at(0)},
        {links.at(1)},
        {u"geo:0,0?q=pizza"_qs},
        {u"ssh"_qs, u"-l"_qs, u"pond"_qs, u"-p"_qs, u"2222"_qs, u"--"_qs, u"example.org"_qs},
        {}};
    world().click(Many);
    QTRY_VERIFY(world().isOpen(Many));
    QStringList opened = world().desktop.opened();
    for (int row = int(links.size()) - 1; row >= 0; --row) {
        world().clickRow(row);
        opened += expected.at(row);
        QTRY_COMPARE(world().desktop.opened(), opened);
    }
    world().desktop.click(bareDesktop);
    world().click(One);
    QTRY_COMPARE(world().desktop.opened(), opened + QStringList(onlyLink));
    world().desktop.key(u"Return"_qs); // the click has given the tile the focus, too
    QTRY_COMPARE(world().desktop.opened(), opened + QStringList({onlyLink, onlyLink}));
}

void TestPopovers::notesAreShownAndWritten()
{
    const QString file = world().notesFile(Empty);
    QFile::remove(file); // of a test that showed the notes before
    world().click(Empty);
    QTRY_VERIFY(world().isOpen(Empty));
    world().choose(ToggleNotes);
    QTRY_VERIFY(!world().isOpen(Empty));
    QVERIFY(!QFile::exists(file));

    world().click(Empty);
    QTRY_VERIFY(world().hasFocus(world().popover(Empty)));
    QTRY_COMPARE(contentOf(file), QByteArray("Notes"));
    QByteArray written;
    for (const char *letter : {"a", " ", "c"}) {
        world().desktop.type(QString::fromLatin1(letter));
        written += letter;
        QTRY_COMPARE(contentOf(file), written);
    }
    world().desktop.key(u"ctrl+a"_qs);
    world().desktop.key(u"Delete"_qs);
    QTRY_COMPARE(contentOf(file), QByteArray());
    QVERIFY(!world().settingsHave(u"a c"_qs));

    world().choose(ToggleNotes);
    QTRY_VERIFY(!world().isOpen(Empty));
    QVERIFY(QFile::exists(file));
}

void TestPopovers::tileRemovesItself()
{
    QVERIFY(world().settingsHave(u"Doomed"_qs));
    world().click(Doomed);
    QTRY_VERIFY(world().isOpen(Doomed));
    world().choose(Remove);
    QTRY_VERIFY(!world().isOpen(Doomed));
    QTRY_VERIFY(!world().settingsHave(u"Doomed"_qs));
    QVERIFY(QFile::exists(world().tileFolder() + names.at(Doomed)));
}

void TestPopovers::staysOnTheScreenWithItsArrowAtTheTile_data()
{
    QTest::addColumn<QString>("direction");
    QTest::addColumn<QList<QPoint>>("corners"); ///< of the strip, whose tiles are near its first end
    QTest::addRow("horizontal") << u"ltr"_qs << QList<QPoint>{{0, 756}, {0, 0}, {1020, 756}, {-30, 300}};
    QTest::addRow("vertical") << u"ttb"_qs << QList<QPoint>{{0, 0}, {1236, 0}, {0, 560}};
}

void TestPopovers::staysOnTheScreenWithItsArrowAtTheTile()
{
    QFETCH_GLOBAL(QString, manager);
    QFETCH(QString, direction);
    QFETCH(QList<QPoint>, corners);
    std::optional<World> vertical;
    if (direction == QLatin1String("ttb"))
        vertical.emplace(DesktopOptions{.windowManager = manager}, direction);
    const World &here = vertical ? *vertical : world();
    here.click(Many);
    QTRY_VERIFY(here.isOpen(Many));
    for (const QPoint corner : corners) {
        here.desktop.run(
            u"xdotool"_qs,
            {u"windowmove"_qs, here.strip.id, QString::number(corner.x()), QString::number(corner.y())});
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
                     qPrintable(QStringLiteral("%1 %2").arg(corner.x()).arg(corner.y())));
        // The shadow may leave the screen, the body may not.
        const QRect popover = here.popover(Many).geometry;
        QVERIFY(QRect(-shadow, -shadow, 1280 + 2 * shadow, 800 + 2 * shadow).contains(popover));
    }
    here.desktop.run(u"xdotool"_qs, {u"windowmove"_qs, here.strip.id, u"0"_qs, u"756"_qs});
}

QTEST_GUILESS_MAIN(TestPopovers)
#include "tst_popovers.moc"

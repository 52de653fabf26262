// SPDX-License-Identifier: MIT
#include "support/program.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <csignal>
#include <optional>

using namespace support;

namespace {

// Middles of the elements of a horizontal strip, from its top-left corner.
constexpr QPoint quitButton(7, 22);
constexpr QPoint homeTile(36, 22);
constexpr QPoint firstTile(80, 22);
constexpr QPoint emptyPart(700, 22);

QByteArray settingsOf(const Desktop &desktop)
{
    QFile file(desktop.settingsFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A window below the strip's empty part that writes down each event.
std::unique_ptr<Program> startEventTester(const Desktop &desktop)
{
    auto tester =
        std::make_unique<Program>(desktop, QStringLiteral("xev"),
                                  QStringList{QStringLiteral("-geometry"), QStringLiteral("1000x200+50-10")});
    const Window window = desktop.waitForWindow({QStringLiteral("--name"), QStringLiteral("Event Tester")});
    return window.isNull() ? nullptr : std::move(tester);
}

} // namespace

class TestStripWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void floatsAtTheBottomLeft_data();
    void floatsAtTheBottomLeft();
    void emptyPartPassesClicks();
    void endsWithoutWriting_data();
    void endsWithoutWriting();
    void dragMovesAndFiresNothing_data();
    void dragMovesAndFiresNothing();
    void clickOpensTheOnlyLink();

private:
    bool startStrip();
    QRect stripGeometry() const;

    std::optional<Desktop> m_desktop;
    std::optional<Program> m_program;
    Window m_strip;
};

void TestStripWindow::init()
{
    m_desktop.emplace();
    QVERIFY2(m_desktop->isUp(), qPrintable(m_desktop->problem()));
}

void TestStripWindow::cleanup()
{
    m_program.reset();
    m_desktop.reset();
}

bool TestStripWindow::startStrip()
{
    m_program.emplace(*m_desktop, QStringLiteral(PW_PROGRAM));
    m_strip = m_program->waitForWindow();
    return !m_strip.isNull();
}

QRect TestStripWindow::stripGeometry() const
{
    return m_program->windows().value(0).geometry;
}

void TestStripWindow::floatsAtTheBottomLeft_data()
{
    QTest::addColumn<QString>("manager");
    QTest::addColumn<bool>("compositor");
    QTest::addRow("openbox") << QStringLiteral("openbox") << false;
    QTest::addRow("openbox, compositor") << QStringLiteral("openbox") << true;
}

void TestStripWindow::floatsAtTheBottomLeft()
{
    QFETCH(QString, manager);
    QFETCH(bool, compositor);
    m_desktop.emplace(DesktopOptions{.windowManager = manager, .compositor = compositor});
    QVERIFY2(m_desktop->isUp(), qPrintable(m_desktop->problem()));
    QVERIFY2(startStrip(), qPrintable(m_program->errors()));

    QTRY_COMPARE(stripGeometry(), QRect(0, 800 - 44, 1024, 44));
    QTRY_VERIFY(m_desktop->property(m_strip, QStringLiteral("_NET_WM_STATE"))
                    .contains(QLatin1String("_NET_WM_STATE_ABOVE")));
    QTRY_COMPARE(m_desktop->property(m_strip, QStringLiteral("_NET_WM_DESKTOP")),
                 QStringLiteral("4294967295"));
    QCOMPARE(m_desktop->property(m_strip, QStringLiteral("_NET_FRAME_EXTENTS")),
             QStringLiteral("0, 0, 0, 0"));
}

void TestStripWindow::emptyPartPassesClicks()
{
    const std::unique_ptr<Program> below = startEventTester(*m_desktop);
    QVERIFY(below);
    QVERIFY2(startStrip(), qPrintable(m_program->errors()));
    const auto clicks = [&below](int button) {
        return below->lines().filter(QStringLiteral("button %1").arg(button)).size() / 2; // press and release
    };

    m_desktop->click(m_strip.geometry.topLeft() + emptyPart);
    QTRY_COMPARE(clicks(1), 1);
    // A click on the strip stays there; the one after it shows that the tester has caught up.
    m_desktop->click(m_strip.geometry.topLeft() + homeTile, 2);
    m_desktop->click(m_strip.geometry.topLeft() + emptyPart);
    QTRY_COMPARE(clicks(1), 2);
    QCOMPARE(clicks(2), 0);
}

void TestStripWindow::endsWithoutWriting_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<bool>("quitKeys");
    QTest::addRow("SIGTERM") << SIGTERM << false;
    QTest::addRow("SIGINT") << SIGINT << false;
    QTest::addRow("quit button") << 0 << false;
    QTest::addRow("Ctrl+Q") << 0 << true;
}

void TestStripWindow::endsWithoutWriting()
{
    QFETCH(int, signal);
    QFETCH(bool, quitKeys);
    QVERIFY2(startStrip(), qPrintable(m_program->errors()));
    // What was written anew would be the three sample tiles again.
    QVERIFY(QFile::remove(m_desktop->settingsFile()));
    const int printed = int(m_program->lines().size());

    if (signal) {
        ::kill(pid_t(m_program->processId()), signal);
    } else if (quitKeys) {
        m_desktop->run(QStringLiteral("xdotool"),
                       {QStringLiteral("windowactivate"), QStringLiteral("--sync"), m_strip.id});
        // The shortcuts come a moment after the window.
        QVERIFY(waitUntil([this] {
            m_desktop->key(QStringLiteral("ctrl+q"));
            return !m_program->isRunning();
        }));
    } else {
        m_desktop->click(m_strip.geometry.topLeft() + quitButton);
    }
    QVERIFY2(m_program->waitForExit() == 0, qPrintable(m_program->errors()));
    QVERIFY(!QFile::exists(m_desktop->settingsFile()));
    QCOMPARE(m_program->lines().size(), printed);
}

void TestStripWindow::dragMovesAndFiresNothing_data()
{
    QTest::addColumn<QPoint>("start");
    QTest::addRow("from the quit button") << quitButton;
    QTest::addRow("from the home tile") << homeTile;
    QTest::addRow("from a tile") << firstTile;
}

void TestStripWindow::dragMovesAndFiresNothing()
{
    QFETCH(QPoint, start);
    QVERIFY2(startStrip(), qPrintable(m_program->errors()));
    const QPoint from = m_strip.geometry.topLeft() + start;

    m_desktop->moveTo(from);
    m_desktop->press();
    // The window follows once the manager holds the pointer, from wherever that is by then: go on moving
    // until it does.
    int step = 0;
    QTRY_VERIFY(
        (m_desktop->moveTo(from + QPoint(100 * (++step % 2), -200)), stripGeometry() != m_strip.geometry));
    m_desktop->moveTo(from + QPoint(100, -600));
    QTRY_VERIFY(stripGeometry().bottom() < m_strip.geometry.bottom() - 300);
    QCOMPARE(stripGeometry().size(), m_strip.geometry.size());
    m_desktop->release();

    // A click elsewhere goes through the same queue: had a button fired, its window would be there by now.
    m_desktop->click(QPoint(1200, 100), 2);
    QCOMPARE(m_program->windows().size(), 1);
    m_program->terminate();
    QCOMPARE(m_program->waitForExit(), 0);
}

void TestStripWindow::clickOpensTheOnlyLink()
{
    const QString address = QStringLiteral("https://pond.example/a%20b?q=1");
    QVERIFY(QDir().mkpath(m_desktop->applicationFolder()));
    QFile file(m_desktop->settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QStringLiteral(R"({"currentTheme":"2024","availableThemes":["2024"],"showsDate":false,
        "direction":"ltr","appIcon":"Default","tileItems":[{"id":"00000000-0000-0000-0000-000000000001",
        "iconName":"default","tileName":"One","tileDirectory":"/nowhere","showsScratchpad":false,
        "scratchpadText":"","tileMenuItems":[{"id":"00000000-0000-0000-0000-000000000002",
        "itemString":"%1","itemName":"Pond"}]}]})")
                   .arg(address)
                   .toUtf8());
    file.close();
    const QByteArray written = settingsOf(*m_desktop);
    m_desktop->recordOpened({QStringLiteral("x-scheme-handler/https")});
    QVERIFY2(startStrip(), qPrintable(m_program->errors()));

    m_desktop->click(m_strip.geometry.topLeft() + firstTile);
    QTRY_COMPARE(m_desktop->opened(), QStringList(address));
    QCOMPARE(m_program->lines(), QStringList());
    QCOMPARE(settingsOf(*m_desktop), written);
}

QTEST_GUILESS_MAIN(TestStripWindow)
#include "tst_stripwindow.moc"

// SPDX-License-Identifier: MIT
#include "support/program.h"

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

} // namespace

class TestStripWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void floatsAtTheBottomLeft();
    void emptyPartPassesClicks();
    void endsWithoutWriting();
    void dragMovesAndFiresNothing();

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

void TestStripWindow::floatsAtTheBottomLeft()
{
    for (const bool compositor : {false, true}) {
        m_program.reset();
        m_desktop.emplace(DesktopOptions{.compositor = compositor});
        QVERIFY2(m_desktop->isUp(), qPrintable(m_desktop->problem()));
        QVERIFY2(startStrip(), qPrintable(m_program->errors()));

        QTRY_COMPARE(stripGeometry(), QRect(0, 800 - 44, 1024, 44));
        const auto property = [this](const QString &name) { return m_desktop->property(m_strip, name); };
        QTRY_VERIFY(property(u"_NET_WM_STATE"_qs).contains(u"_NET_WM_STATE_ABOVE"));
        QTRY_COMPARE(property(u"_NET_WM_DESKTOP"_qs), u"4294967295"_qs);
        QCOMPARE(property(u"_NET_FRAME_EXTENTS"_qs), u"0, 0, 0, 0"_qs);
    }
}

void TestStripWindow::emptyPartPassesClicks()
{
    // A window below the strip's empty part that writes down each event.
    Program below(*m_desktop, u"xev"_qs, {u"-geometry"_qs, u"1000x200+50-10"_qs});
    QVERIFY(!m_desktop->waitForWindow({u"--name"_qs, u"Event Tester"_qs}).isNull());
    QVERIFY2(startStrip(), qPrintable(m_program->errors()));
    const auto clicks = [&below](int button) {
        return below.lines().filter(u"button %1"_qs.arg(button)).size() / 2; // press and release
    };

    m_desktop->click(m_strip.geometry.topLeft() + emptyPart);
    QTRY_COMPARE(clicks(1), 1);
    // A click on the strip stays there; the one after it shows that the tester has caught up.
    m_desktop->click(m_strip.geometry.topLeft() + homeTile, 2);
    m_desktop->click(m_strip.geometry.topLeft() + emptyPart);
    QTRY_COMPARE(clicks(1), 2);
    QCOMPARE(clicks(2), 0);
}

void TestStripWindow::endsWithoutWriting()
{
    for (const QString &way : {u"TERM"_qs, u"INT"_qs, u"quit button"_qs, u"Ctrl+Q"_qs}) {
        QVERIFY2(startStrip(), qPrintable(m_program->errors()));
        // What was written anew would be the three sample tiles again.
        QVERIFY(QFile::remove(m_desktop->settingsFile()));
        const qsizetype printed = m_program->lines().size();

        if (way == u"quit button") {
            m_desktop->click(m_strip.geometry.topLeft() + quitButton);
        } else if (way == u"Ctrl+Q") {
            m_desktop->xdotool({u"windowactivate"_qs, u"--sync"_qs, m_strip.id});
            // The shortcuts come a moment after the window.
            QVERIFY(waitUntil([this] {
                m_desktop->key(u"ctrl+q"_qs);
                return !m_program->isRunning();
            }));
        } else {
            ::kill(pid_t(m_program->processId()), way == u"TERM" ? SIGTERM : SIGINT);
        }
        QVERIFY2(m_program->waitForExit() == 0, qPrintable(way + m_program->errors()));
        QVERIFY2(!QFile::exists(m_desktop->settingsFile()), qPrintable(way));
        QVERIFY2(m_program->lines().size() == printed, qPrintable(way));
    }
}

void TestStripWindow::dragMovesAndFiresNothing()
{
    for (const QPoint start : {quitButton, homeTile, firstTile}) {
        QVERIFY2(startStrip(), qPrintable(m_program->errors()));
        const QPoint from = m_strip.geometry.topLeft() + start;
        m_desktop->moveTo(from);
        m_desktop->press();
        // The window follows once the manager holds the pointer, from wherever that is by then: go on moving
        // until it does.
        int step = 0;
        QTRY_VERIFY2(
            (m_desktop->moveTo(from + QPoint(100 * (++step % 2), -200)), stripGeometry() != m_strip.geometry),
            qPrintable(QString::number(start.x())));
        m_desktop->moveTo(from + QPoint(100, -600));
        QTRY_VERIFY(stripGeometry().bottom() < m_strip.geometry.bottom() - 300);
        QCOMPARE(stripGeometry().size(), m_strip.geometry.size());
        m_desktop->release();

        // A click elsewhere goes through the same queue: had a button fired, its window would be there by
        // now.
        m_desktop->click(QPoint(1200, 100), 2);
        QCOMPARE(m_program->windows().size(), 1);
        m_program->terminate();
        QCOMPARE(m_program->waitForExit(), 0);
    }
}

QTEST_GUILESS_MAIN(TestStripWindow)
#include "tst_stripwindow.moc"

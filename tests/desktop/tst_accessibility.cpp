// SPDX-License-Identifier: MIT
#include "support/program.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <optional>

using namespace support;

namespace {

const QString reader = QStringLiteral(PW_TEST_DATA "/../support/accessibles.py");
const QString address = QStringLiteral("https://pond.example/a%20b");

} // namespace

/// What screen readers are told of the running program.
class TestAccessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void whatActsHasANameAndADefaultAction_data();
    void whatActsHasANameAndADefaultAction();
    void defaultActionOfALinkOpensIt();

private:
    QStringList read(const QStringList &arguments = {}) const
    {
        const QStringList process = {QString::number(m_program->processId())};
        return QString::fromUtf8(m_desktop.run(reader, process + arguments)).split(u'\n', Qt::SkipEmptyParts);
    }

    Desktop m_desktop;
    std::optional<Program> m_program;
    Window m_strip;
};

void TestAccessibility::initTestCase()
{
    QVERIFY2(m_desktop.isUp(), qPrintable(m_desktop.problem()));
    QVERIFY(QDir().mkpath(m_desktop.applicationFolder()));
    QFile file(m_desktop.settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QStringLiteral(R"({"currentTheme":"2024","availableThemes":["2024"],"showsDate":false,
        "direction":"ltr","appIcon":"Default","tileItems":[{"id":"00000000-0000-0000-0000-000000000001",
        "iconName":"default","tileName":"Pond","tileDirectory":"file://%2/","showsScratchpad":true,
        "scratchpadText":"","tileMenuItems":[{"id":"00000000-0000-0000-0000-000000000002",
        "itemString":"%1","itemName":"Frogs"},{"id":"00000000-0000-0000-0000-000000000003",
        "itemString":"%1","itemName":"Toads"}]}]})")
                   .arg(address, m_desktop.home())
                   .toUtf8());
    file.close();
    m_desktop.recordOpened({QStringLiteral("x-scheme-handler/https")});
    m_desktop.environment().insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
    m_program.emplace(m_desktop, QStringLiteral(PW_PROGRAM));
    m_strip = m_program->waitForWindow();
    QVERIFY2(!m_strip.isNull(), qPrintable(m_program->errors()));
    if (!waitUntil([this] { return !read().isEmpty(); }))
        QSKIP("this machine has no accessibility bus or no reader for it");
}

void TestAccessibility::whatActsHasANameAndADefaultAction_data()
{
    QTest::addColumn<int>("element"); ///< of the strip, pressed with the right button; 0 for none
    QTest::addColumn<QStringList>("expected");
    const QStringList strip = {
        QStringLiteral("frame|pondWicket|"), QStringLiteral("push button|Quit|Press SetFocus"),
        QStringLiteral("push button|Home|Press SetFocus"), QStringLiteral("push button|Pond|Press SetFocus"),
        QStringLiteral("push button|Hide or show tiles|Press SetFocus")};
    QTest::addRow("strip") << 0 << strip;
    QTest::addRow("home menu") << 1
                               << strip
            + QStringList{QStringLiteral("frame|Home|"),
                          QStringLiteral("push button|Add tile|Press SetFocus"),
                          QStringLiteral("push button|Settings|Press SetFocus"),
                          QStringLiteral("push button|Support|Press SetFocus"),
                          QStringLiteral("push button|Open Settings Folder|Press SetFocus"),
                          QStringLiteral("push button|Open Theme Folder|Press SetFocus")};
    QTest::addRow("popover") << 2
                             << strip
            + QStringList{QStringLiteral("frame|Pond|"),
                          QStringLiteral("label|Pond|"),
                          QStringLiteral("push button|Actions|ShowMenu"),
                          QStringLiteral("list|Pond|SetFocus"),
                          QStringLiteral("list item|Frogs|Press SetFocus"),
                          QStringLiteral("list item|Toads|Press SetFocus"),
                          QStringLiteral("text|Notes|SetFocus")};
}

void TestAccessibility::whatActsHasANameAndADefaultAction()
{
    QFETCH(int, element);
    QFETCH(QStringList, expected);
    if (element > 0)
        m_desktop.click(m_strip.at(14 - 22 + 44 * element, 22), 3);
    // Fillers do nothing and have no name of their own.
    QTRY_COMPARE(read().filter(QRegularExpression(QStringLiteral("^(?!application|filler\\|)"))), expected);
    if (element > 0)
        m_desktop.key(QStringLiteral("Escape"));
    QTRY_COMPARE(m_program->windows().size(), 1);
}

void TestAccessibility::defaultActionOfALinkOpensIt()
{
    m_desktop.click(m_strip.at(80, 22));
    QTRY_COMPARE(m_program->windows().size(), 2);
    read({QStringLiteral("Toads")});
    QTRY_COMPARE(m_desktop.opened(), QStringList(address));
}

QTEST_GUILESS_MAIN(TestAccessibility)
#include "tst_accessibility.moc"

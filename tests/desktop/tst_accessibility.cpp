// SPDX-License-Identifier: MIT
#include "model/settingsdata.h"
#include "model/settingsjson.h"
#include "support/files.h"
#include "support/program.h"

#include <QRegularExpression>
#include <QTest>

#include <optional>

using namespace support;

namespace {

const QString reader = QStringLiteral(PW_TEST_DATA "/../support/accessibles.py");
const QString address = u"https://pond.example/a%20b"_qs;

} // namespace

/// What screen readers are told of the running program.
class TestAccessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
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
    const QList<TileMenuItem> links = {{QUuid::createUuid(), address, u"Frogs"_qs},
                                       {QUuid::createUuid(), address, u"Toads"_qs}};
    SettingsData settings;
    settings.tileItems.append(
        {QUuid::createUuid(), u"default"_qs, u"Pond"_qs, u"file://"_qs + m_desktop.home(), true, {}, links});
    make(m_desktop.settingsFile(), model::settingsToJson(settings));
    m_desktop.recordOpened({u"x-scheme-handler/https"_qs});
    m_desktop.environment().insert(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_qs, u"1"_qs);
    m_program.emplace(m_desktop, QStringLiteral(PW_PROGRAM));
    m_strip = m_program->waitForWindow();
    QVERIFY2(!m_strip.isNull(), qPrintable(m_program->errors()));
    if (!waitUntil([this] { return !read().isEmpty(); }))
        QSKIP("this machine has no accessibility bus or no reader for it");
}

void TestAccessibility::whatActsHasANameAndADefaultAction()
{
    const QString strip =
        u"frame|pondWicket|\npush button|Quit|Press SetFocus\npush button|Home|Press SetFocus\n"
        "push button|Pond|Press SetFocus\npush button|Hide or show tiles|Press SetFocus"_qs;
    // By the strip's element that is pressed with the right button; 0 for none.
    const QStringList expected = {
        strip,
        strip
            + u"\nframe|Home|\npush button|Add tile|Press SetFocus\npush button|Settings|Press SetFocus\n"
              "push button|Support|Press SetFocus\npush button|Open Settings Folder|Press SetFocus\n"
              "push button|Open Theme Folder|Press SetFocus"_qs,
        strip
            + u"\nframe|Pond|\nlabel|Pond|\npush button|Actions|ShowMenu\nlist|Pond|SetFocus\n"
              "list item|Frogs|Press SetFocus\nlist item|Toads|Press SetFocus\ntext|Notes|SetFocus"_qs};
    for (int element = 0; element < expected.size(); ++element) {
        if (element > 0)
            m_desktop.click(m_strip.at(14 - 22 + 44 * element, 22), 3);
        // Fillers do nothing and have no name of their own.
        QTRY_COMPARE(read().filter(QRegularExpression(u"^(?!application|filler\\|)"_qs)).join(u'\n'),
                     expected.at(element));
        if (element > 0)
            m_desktop.key(u"Escape"_qs);
        QTRY_COMPARE(m_program->windows().size(), 1);
    }
}

void TestAccessibility::defaultActionOfALinkOpensIt()
{
    m_desktop.click(m_strip.at(80, 22));
    QTRY_COMPARE(m_program->windows().size(), 2);
    read({u"Toads"_qs});
    QTRY_COMPARE(m_desktop.opened(), QStringList(address));
}

QTEST_GUILESS_MAIN(TestAccessibility)
#include "tst_accessibility.moc"

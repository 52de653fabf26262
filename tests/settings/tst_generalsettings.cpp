// SPDX-License-Identifier: MIT
#include "settingsfixture.h"

#include "support/stdoutcapture.h"
#include "themes/themestore.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QListView>
#include <QRadioButton>

namespace {

QAbstractButton &segment(const SettingsFixture &fixture, int index)
{
    return *fixture.find("Position").findChildren<QRadioButton *>().at(index);
}

} // namespace

class TestGeneralSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachActionSavesOnce()
    {
        SettingsFixture fixture(0);
        QTest::keyClick(&fixture.find("Show calendar"), Qt::Key_Space);
        QCOMPARE(fixture.saves(), 1);
        segment(fixture, 0).setFocus();
        QTest::keyClick(&segment(fixture, 0), Qt::Key_Right);
        QCOMPARE(fixture.saves(), 1);
        QTest::keyClick(&fixture.find("Theme"), Qt::Key_Home);
        QCOMPARE(fixture.saves(), 1);
        QTest::keyClick(&fixture.find("Application icon"), Qt::Key_Space);
        auto *icons = QApplication::activePopupWidget()->findChild<QListView *>();
        while (icons->currentIndex().data() != u"2000"_qs)
            QTest::keyClick(icons, Qt::Key_Right);
        QTest::keyClick(icons, Qt::Key_Return);
        QCOMPARE(fixture.saves(), 1);
        const auto stored = model::readSettingsFile(model::settingsFileURL(fixture.config), nullptr);
        QVERIFY(stored && stored->showsDate);
        QCOMPARE(stored->direction, u"ttb"_qs);
        QCOMPARE(stored->currentTheme, u"1984"_qs);
        QCOMPARE(stored->appIcon, u"2000"_qs);
    }

    void onlyChangesAreSaved()
    {
        SettingsFixture fixture(5);
        fixture.open();
        fixture.window->setCurrentIndex(0);
        fixture.click("Application icon");
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
        QCOMPARE(fixture.saves(), 0);
        fixture.config.setShowsDate(true); // by another
        QCOMPARE(fixture.saves(), 1);
        QVERIFY(fixture.find<QAbstractButton>("Show calendar").isChecked());
        fixture.window.reset();
        fixture.config.setShowsDate(false);
        QCOMPARE(fixture.saves(), 0);
    }

    void unknownWordsShowNoChoice()
    {
        SettingsFixture fixture(0);
        const auto &picker = fixture.find<QComboBox>("Theme");
        fixture.config.setDirection(u"sideways"_qs);
        fixture.config.setCurrentTheme(u"2099"_qs);
        // The list goes down to nothing and comes back as it is stored: no row may be taken by itself.
        for (const auto &themes : QList<QStringList>{{}, {u"no folder"_qs, u"1984"_qs, u"1984"_qs}}) {
            fixture.config.setAvailableThemes(themes);
            fixture.saves();
            QCOMPARE(picker.currentIndex(), -1);
            QCOMPARE(picker.count(), themes.size());
        }
        QVERIFY(!segment(fixture, 0).isChecked() && !segment(fixture, 1).isChecked());
        QCOMPARE(fixture.config.currentTheme(), u"2099"_qs);
        QTest::mouseClick(&segment(fixture, 0), Qt::LeftButton);
        QCOMPARE(fixture.config.direction(), u"ltr"_qs);
    }

    void reloadKeepsTilesAndThemes()
    {
        SettingsFixture fixture(2);
        themes::installBuiltInThemes(fixture.config);
        const QString folder = model::applicationFolder(fixture.config) + u"/Themes"_qs;
        QVERIFY(QDir(folder + u"/2010"_qs).removeRecursively());
        StdoutCapture output;
        fixture.click("Reload");
        QCOMPARE(fixture.saves(), 1);
        const QStringList lines = output.lines();
        QCOMPARE(lines, QStringList());
        QVERIFY(!QFile::exists(folder + u"/2010"_qs)); // the folder is there, so it is the user's
        const auto stored = model::readSettingsFile(model::settingsFileURL(fixture.config), nullptr);
        QCOMPARE(stored->tileItems, fixture.config.tileItems());

        QVERIFY(QDir(folder).removeRecursively());
        fixture.click("Reload");
        QVERIFY(QFile::exists(folder + u"/2010"_qs));
    }

    void keysCloseTheWindow()
    {
        for (const char *keys : {"Esc", "Ctrl+W"}) {
            SettingsFixture fixture(1);
            fixture.window->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
            QTest::keySequence(fixture.window->windowHandle(), QKeySequence(QLatin1String(keys)));
            QVERIFY2(!fixture.window->isVisible(), keys);
        }
    }
};

QTEST_MAIN(TestGeneralSettings)
#include "tst_generalsettings.moc"

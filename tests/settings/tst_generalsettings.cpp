// SPDX-License-Identifier: MIT
#include "settingsfixture.h"

#include "support/stdoutcapture.h"
#include "themes/themestore.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QListView>
#include <QRadioButton>

namespace {

using Action = std::function<void(SettingsFixture &)>;
using Outcome = std::function<QString(const Config &)>;

QAbstractButton &segment(SettingsFixture &fixture, int index)
{
    return *fixture.find<QWidget>("Position").findChildren<QRadioButton *>().at(index);
}

void clickOn(QWidget &widget)
{
    QTest::mouseClick(&widget, Qt::LeftButton);
}

void pickFromMenu(const QString &name, bool withKeyboard)
{
    QWidget *menu = QApplication::activePopupWidget();
    auto *list = menu->findChild<QListView *>();
    const QModelIndex item = list->model()->match(list->model()->index(0, 0), Qt::DisplayRole, name).first();
    if (withKeyboard) {
        while (list->currentIndex() != item)
            QTest::keyClick(list, Qt::Key_Right);
        QTest::keyClick(list, Qt::Key_Return);
    } else {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(item).center());
    }
}

} // namespace

Q_DECLARE_METATYPE(Action)
Q_DECLARE_METATYPE(Outcome)

class TestGeneralSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachActionSavesOnce_data()
    {
        QTest::addColumn<Action>("action");
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const Action &action, const Outcome &outcome,
                            const char *expected) {
            QTest::newRow(name) << action << outcome << QString::fromLatin1(expected);
        };
        const Outcome showsDate = [](const Config &config) {
            return config.showsDate() ? QStringLiteral("on") : QStringLiteral("off");
        };
        const Outcome direction = [](const Config &config) { return config.direction(); };
        const Outcome theme = [](const Config &config) { return config.currentTheme(); };
        const Outcome appIcon = [](const Config &config) { return config.appIcon(); };
        row(
            "calendar by key",
            [](SettingsFixture &f) { QTest::keyClick(&f.find<QWidget>("Show calendar"), Qt::Key_Space); },
            showsDate, "on");
        row(
            "position by key",
            [](SettingsFixture &f) {
                segment(f, 0).setFocus();
                QTest::keyClick(&segment(f, 0), Qt::Key_Right);
            },
            direction, "ttb");
        row(
            "theme by key",
            [](SettingsFixture &f) { QTest::keyClick(&f.find<QWidget>("Theme"), Qt::Key_Home); }, theme,
            "1984");
        row(
            "icon by mouse",
            [](SettingsFixture &f) {
                clickOn(f.find<QWidget>("Application icon"));
                pickFromMenu(QStringLiteral("1995"), false);
            },
            appIcon, "1995");
        row(
            "icon by key",
            [](SettingsFixture &f) {
                QTest::keyClick(&f.find<QWidget>("Application icon"), Qt::Key_Space);
                pickFromMenu(QStringLiteral("2000"), true);
            },
            appIcon, "2000");
    }

    void eachActionSavesOnce()
    {
        QFETCH(Action, action);
        QFETCH(Outcome, outcome);
        SettingsFixture fixture(1);
        fixture.window->setCurrentIndex(0);
        fixture.saves();
        action(fixture);
        QCOMPARE(fixture.saves(), 1);
        QTEST(outcome(fixture.config), "expected");
        const auto stored = model::readSettingsFile(model::settingsFileURL(fixture.config), nullptr);
        QCOMPARE(stored->direction, fixture.config.direction());
    }

    void changesOfOthersAreSavedToo()
    {
        SettingsFixture fixture(0);
        fixture.saves();
        fixture.config.setShowsDate(true);
        QCOMPARE(fixture.saves(), 1);
        QVERIFY(fixture.find<QAbstractButton>("Show calendar").isChecked());
        fixture.window.reset();
        fixture.config.setShowsDate(false);
        QCOMPARE(fixture.saves(), 0);
    }

    void lookingAroundSavesNothing()
    {
        SettingsFixture fixture(5);
        fixture.saves();
        fixture.window.reset();
        fixture.open();
        fixture.window->setCurrentIndex(0);
        QFont font = fixture.window->font();
        font.setPointSize(font.pointSize() + 10);
        fixture.window->setFont(font);
        clickOn(fixture.find<QWidget>("Application icon"));
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
        fixture.window->close();
        QCOMPARE(fixture.saves(), 0);
    }

    void unknownWordsShowNoChoice()
    {
        SettingsFixture fixture(0);
        fixture.config.setDirection(QStringLiteral("sideways"));
        fixture.config.setCurrentTheme(QStringLiteral("2099"));
        fixture.redraw();
        QVERIFY(!segment(fixture, 0).isChecked() && !segment(fixture, 1).isChecked());
        QCOMPARE(fixture.find<QComboBox>("Theme").currentIndex(), -1);
        // The list goes down to nothing and comes back: no row may be taken by itself.
        fixture.config.setAvailableThemes({});
        fixture.redraw();
        fixture.config.setAvailableThemes({QStringLiteral("1984")});
        fixture.redraw();
        QCOMPARE(fixture.find<QComboBox>("Theme").currentIndex(), -1);
        QCOMPARE(fixture.config.currentTheme(), QStringLiteral("2099"));
        clickOn(segment(fixture, 0));
        QCOMPARE(fixture.config.direction(), QStringLiteral("ltr"));
    }

    void reloadKeepsTilesAndThemes()
    {
        SettingsFixture fixture(2);
        themes::installBuiltInThemes(fixture.config);
        const QString picture = themes::chromeFolderURL(fixture.config, fixture.config.currentTheme())
            + QStringLiteral("/tile.png");
        QVERIFY(QFile::remove(picture));
        fixture.saves();
        StdoutCapture output;
        clickOn(fixture.find<QWidget>("Reload"));
        QCOMPARE(fixture.saves(), 1);
        QCOMPARE(output.lines(), QStringList());
        QVERIFY(!QFile::exists(picture)); // the folder is there, so it is the user's
        const auto stored = model::readSettingsFile(model::settingsFileURL(fixture.config), nullptr);
        QCOMPARE(stored->tileItems, fixture.config.tileItems());

        QVERIFY(
            QDir(model::applicationFolder(fixture.config) + QStringLiteral("/Themes")).removeRecursively());
        clickOn(fixture.find<QWidget>("Reload"));
        QVERIFY(QFile::exists(picture));
    }

    void positionIsARadioGroup()
    {
        SettingsFixture fixture(0);
        QAccessibleInterface *group =
            QAccessible::queryAccessibleInterface(&fixture.find<QWidget>("Position"));
        QCOMPARE(group->role(), QAccessible::Grouping);
        QCOMPARE(group->text(QAccessible::Name), QStringLiteral("Position"));
        QCOMPARE(group->childCount(), 2);
        QCOMPARE(group->child(1)->role(), QAccessible::RadioButton);
        QCOMPARE(group->child(1)->text(QAccessible::Name), QStringLiteral("Vertical"));
        QVERIFY(group->child(0)->state().checked);
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

// SPDX-License-Identifier: MIT
#include "settingsfixture.h"

#include "settings/collectionview.h"
#include "settings/linktablemodel.h"
#include "support/stdoutcapture.h"
#include "themes/themestore.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QMimeData>
#include <QRadioButton>
#include <QTableView>

namespace {

QTableView &table(SettingsFixture &fixture)
{
    return fixture.find<QTableView>("LinkTable");
}

QModelIndex cell(SettingsFixture &fixture, int row, int column)
{
    return table(fixture).model()->index(row, column);
}

void clickCell(SettingsFixture &fixture, int row, int column)
{
    const QRect area = table(fixture).visualRect(cell(fixture, row, column));
    QTest::mouseClick(table(fixture).viewport(), Qt::LeftButton, {}, area.center());
}

QLineEdit *cellField(SettingsFixture &fixture)
{
    for (QLineEdit *field : table(fixture).findChildren<QLineEdit *>(QStringLiteral("CellField"))) {
        if (field->isVisible())
            return field;
    }
    return nullptr;
}

void clickOn(QWidget &widget)
{
    QTest::mouseClick(&widget, Qt::LeftButton);
}

} // namespace

class TestTileSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The Trash of the desktop is none of the tests'.
        static QTemporaryDir data(QDir::homePath() + QStringLiteral("/.settings-test-data-XXXXXX"));
        qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
    }

    void pickerFollowsTheNumberOfTiles_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("isMenu");
        QTest::addColumn<bool>("hasPlus");
        QTest::newRow("most segments") << 4 << false << true;
        QTest::newRow("menu") << 5 << true << true;
        QTest::newRow("full") << 20 << true << false;
    }

    void pickerFollowsTheNumberOfTiles()
    {
        QFETCH(int, count);
        SettingsFixture fixture(count - 1);
        fixture.window->setCurrentIndex(0);
        model::addTile(fixture.config);
        fixture.redraw();
        fixture.window->setCurrentIndex(1);
        QTEST(fixture.find<QWidget>("Tile menu").isVisible(), "isMenu");
        QCOMPARE(fixture.find<QWidget>("Tile segments").isVisible(),
                 !fixture.find<QWidget>("Tile menu").isVisible());
        QTEST(fixture.find<QWidget>("Add tile").isVisible(), "hasPlus");
        fixture.saves();
        if (fixture.find<QWidget>("Add tile").isVisible()) {
            clickOn(fixture.find<QWidget>("Add tile"));
            QCOMPARE(fixture.saves(), 1);
            QCOMPARE(fixture.config.tileItems().size(), count + 1);
        }
    }

    void pickedTileIsEdited()
    {
        SettingsFixture fixture(5);
        auto &name = fixture.find<QLineEdit>("Tile name");
        QCOMPARE(name.text(), fixture.tile(0).tileName);
        fixture.saves();
        QTest::keyClick(&fixture.find<QComboBox>("Tile menu"), Qt::Key_Down);
        QCOMPARE(name.text(), fixture.tile(1).tileName);
        QCOMPARE(fixture.saves(), 0);
        QTest::keyClicks(&name, QStringLiteral("!"));
        QVERIFY(fixture.tile(1).tileName.contains(u'!'));
        QVERIFY(!fixture.tile(0).tileName.contains(u'!'));
    }

    void selectionThatHasGoneShowsNothing()
    {
        SettingsFixture fixture(6);
        model::removeTile(fixture.config, fixture.tile(0).id);
        fixture.redraw();
        auto &picker = fixture.find<QComboBox>("Tile menu");
        QCOMPARE(picker.currentIndex(), -1);
        QVERIFY(!fixture.find<QWidget>("TileEditor").isVisible());
        model::removeTile(fixture.config, fixture.tile(0).id);
        fixture.redraw();
        const auto segments = fixture.find<QWidget>("Tile segments").findChildren<QRadioButton *>();
        for (const QRadioButton *segment : segments)
            QVERIFY(!segment->isChecked());
        clickOn(*segments.at(2));
        QVERIFY(fixture.find<QWidget>("TileEditor").isVisible());
        QCOMPARE(fixture.find<QLineEdit>("Tile name").text(), fixture.tile(2).tileName);
    }

    void nameIsCutToCharacters_data()
    {
        QTest::addColumn<QString>("character");
        QTest::newRow("letters") << QStringLiteral("x");
        QTest::newRow("joined family") << QString::fromUcs4(U"\U0001F469\u200D\U0001F467");
    }

    void nameIsCutToCharacters()
    {
        QFETCH(QString, character);
        SettingsFixture fixture(1);
        auto &name = fixture.find<QLineEdit>("Tile name");
        name.clear();
        QApplication::clipboard()->setText(character.repeated(40));
        name.paste();
        QCOMPARE(fixture.tile().tileName, character.repeated(32));
        QCOMPARE(name.text(), character.repeated(32));
    }

    void typingSavesOnceALetterAndKeepsTheCursor()
    {
        SettingsFixture fixture(2);
        auto &name = fixture.find<QLineEdit>("Tile name");
        name.setFocus();
        name.setCursorPosition(3);
        fixture.saves();
        for (const QChar letter : QStringLiteral("abc")) {
            QTest::keyClicks(&name, letter);
            QCOMPARE(fixture.saves(), 1);
        }
        QCOMPARE(name.cursorPosition(), 6);
        QCOMPARE(fixture.tile().tileName, QStringLiteral("Welabccome to pondWicket"));
        // Text that an input method has not settled yet is neither saved nor lost.
        QInputMethodEvent pending(QStringLiteral("ni"), {});
        QApplication::sendEvent(&name, &pending);
        fixture.config.setShowsDate(true);
        fixture.redraw();
        QInputMethodEvent settled;
        settled.setCommitString(QStringLiteral("你"));
        QApplication::sendEvent(&name, &settled);
        QCOMPARE(fixture.tile().tileName, QStringLiteral("Welabc你come to pondWicket"));
    }

    void cellsAreEditedAtAClick()
    {
        SettingsFixture fixture(1);
        fixture.setLinks(
            {fixture.link(QStringLiteral("https://a")), fixture.link(QStringLiteral("https://b"))});
        fixture.saves();
        clickCell(fixture, 1, LinkTableModel::AddressColumn);
        QVERIFY(cellField(fixture));
        QVERIFY(!cellField(fixture)->hasSelectedText());
        QTest::keyClick(cellField(fixture), Qt::Key_End);
        for (const QChar letter : QStringLiteral("/x")) {
            QTest::keyClicks(cellField(fixture), letter);
            QCOMPARE(fixture.saves(), 1);
        }
        clickCell(fixture, 0, LinkTableModel::NameColumn);
        QCOMPARE(fixture.saves(), 0); // leaving a cell is no edit
        // A click into the cell that was left by a key found it the current one already, and did nothing.
        QTest::keyClick(cellField(fixture), Qt::Key_Escape);
        fixture.redraw();
        QVERIFY(!cellField(fixture));
        clickCell(fixture, 0, LinkTableModel::NameColumn);
        QTest::keyClick(cellField(fixture), Qt::Key_Home);
        QTest::keyClicks(cellField(fixture), QStringLiteral("N"));
        QCOMPARE(fixture.tile().tileMenuItems.at(0).itemName, QStringLiteral("Nname"));
        QCOMPARE(fixture.tile().tileMenuItems.at(1).itemString, QStringLiteral("https://b/x"));
    }

    void keysWalkTheTable()
    {
        SettingsFixture fixture(1);
        fixture.setLinks({fixture.link(QStringLiteral("https://a")), fixture.link(QDir::homePath())});
        fixture.window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
        fixture.find<QWidget>("Tile name").setFocus();
        const auto press = [](int key, Qt::KeyboardModifiers modifiers = {}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key(key), modifiers);
            QCoreApplication::processEvents();
        };
        const auto current = [&fixture] { return table(fixture).currentIndex(); };
        press(Qt::Key_Tab);
        QCOMPARE(current(), cell(fixture, 0, LinkTableModel::NameColumn));
        press(Qt::Key_Tab);
        QCOMPARE(current(), cell(fixture, 0, LinkTableModel::AddressColumn));
        QCOMPARE(QApplication::focusWidget(), cellField(fixture));
        press(Qt::Key_Down);
        QCOMPARE(current(), cell(fixture, 1, LinkTableModel::AddressColumn));
        QVERIFY(!cellField(fixture)); // an alias
        press(Qt::Key_Tab);
        QCOMPARE(current(), cell(fixture, 1, LinkTableModel::RemoveColumn));
        press(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(current(), cell(fixture, 1, LinkTableModel::NameColumn));
        press(Qt::Key_Tab);
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), &fixture.find<QWidget>("Show scratchpad"));
        press(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(current(), cell(fixture, 1, LinkTableModel::RemoveColumn));
        fixture.saves();
        press(Qt::Key_Delete);
        QCOMPARE(fixture.saves(), 1);
        QCOMPARE(fixture.tile().tileMenuItems.size(), 1);
        press(Qt::Key_Escape); // ends an editor, if one is open
        QVERIFY(fixture.window->isVisible() || !cellField(fixture));
    }

    /// "/" is for a moment a folder that exists. The field went with the first letter of a path.
    void addressCellOutlivesAPathTypedInIt()
    {
        SettingsFixture fixture(1);
        fixture.setLinks(
            {fixture.link(QStringLiteral("https://a")), fixture.link(QStringLiteral("https://b"))});
        clickCell(fixture, 0, LinkTableModel::AddressColumn);
        cellField(fixture)->selectAll();
        QTest::keyClicks(cellField(fixture), QStringLiteral("/"));
        fixture.redraw();
        QVERIFY(cellField(fixture));
        QTest::keyClicks(cellField(fixture), QStringLiteral("tmp"));
        fixture.redraw();
        QCOMPARE(fixture.tile().tileMenuItems.first().itemString, QStringLiteral("/tmp"));
        clickCell(fixture, 1, LinkTableModel::NameColumn);
        QVERIFY(!(cell(fixture, 0, LinkTableModel::AddressColumn).flags() & Qt::ItemIsEditable));
        QCOMPARE(cell(fixture, 0, LinkTableModel::AddressColumn).data().toString(), QString());
    }

    void brokenAddressIsReported()
    {
        SettingsFixture fixture(1);
        StdoutCapture output;
        fixture.setLinks(
            {fixture.link(QStringLiteral("example.org/x")), fixture.link(QStringLiteral("tel://"))});
        table(fixture).grab();
        QCOMPARE(output.lines().size(), 1); // one for each redraw of the row that leads nowhere
    }

    void removedLinkTakesItsAliasFileAlong()
    {
        SettingsFixture fixture(1);
        fixture.setLinks({});
        fixture.panel.answer = QDir::homePath();
        clickOn(fixture.find<QWidget>("Add item"));
        clickOn(fixture.find<QWidget>("App, file or folder"));
        fixture.redraw();
        QCOMPARE(fixture.tile().tileMenuItems.size(), 1);
        const QString file = fixture.tile().tileMenuItems.first().itemString;
        QVERIFY(QFile::exists(file));
        QCOMPARE(cell(fixture, 0, LinkTableModel::AddressColumn).data().toString(), QString());
        QVERIFY(cell(fixture, 0, LinkTableModel::AddressColumn)
                    .data(Qt::ToolTipRole)
                    .toString()
                    .contains(QDir::homePath()));
        fixture.saves();
        clickCell(fixture, 0, LinkTableModel::RemoveColumn);
        QCOMPARE(fixture.saves(), 1);
        QCOMPARE(fixture.tile().tileMenuItems.size(), 0);
        QTRY_VERIFY(!QFile::exists(file));
    }

    void rowUnderAnEditorStays()
    {
        SettingsFixture fixture(1);
        QList<TileMenuItem> links;
        for (const char *address : {"https://a", "https://b", "https://c"})
            links += fixture.link(QLatin1String(address));
        fixture.setLinks(links);
        clickCell(fixture, 1, LinkTableModel::NameColumn);
        const QPointer<QLineEdit> field = cellField(fixture);
        fixture.setLinks({fixture.link(QStringLiteral("https://new")), links.at(1), links.at(2)});
        QVERIFY(field && field->isVisible());
        QTest::keyClicks(field, QStringLiteral("!"));
        QVERIFY(fixture.tile().tileMenuItems.at(1).itemName.contains(u'!'));
        QCOMPARE(cell(fixture, 0, LinkTableModel::AddressColumn).data().toString(),
                 QStringLiteral("https://new"));
        fixture.setLinks({links.at(0), links.at(2)}); // and goes with its link
        QVERIFY(!field || !field->isVisible());
    }

    void tileGoesWhileItsLinkIsEdited()
    {
        SettingsFixture fixture(1);
        clickCell(fixture, 0, LinkTableModel::NameColumn);
        model::removeTile(fixture.config, fixture.tile().id);
        QTest::keyClicks(cellField(fixture), QStringLiteral("x")); // before the redraw
        fixture.redraw();
        QCOMPARE(fixture.window->count(), 1);
        QVERIFY(fixture.config.tileItems().isEmpty());
    }

    void scratchpadIsSwitched()
    {
        SettingsFixture fixture(1);
        fixture.saves();
        auto &box = fixture.find<QAbstractButton>("Show scratchpad");
        QTest::keyClick(&box, Qt::Key_Space);
        QVERIFY(fixture.tile().showsScratchpad);
        QCOMPARE(fixture.saves(), 1);
    }

    void iconMenuIsSorted()
    {
        SettingsFixture fixture(1);
        const QString folder = themes::iconsFolderURL(fixture.config, fixture.config.currentTheme());
        QVERIFY(QDir().mkpath(folder));
        for (const char *name : {"b", "A", "a.b"}) {
            QFile file(folder + u'/' + QLatin1String(name) + QStringLiteral(".png"));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        fixture.saves();
        clickOn(fixture.find<QWidget>("Tile icon"));
        auto *list = QApplication::activePopupWidget()->findChild<QListView *>();
        QStringList names;
        for (int row = 0; row < list->model()->rowCount(); ++row)
            names += list->model()->index(row, 0).data().toString();
        QCOMPARE(names, QStringList({QStringLiteral("A"), QStringLiteral("a.b"), QStringLiteral("b")}));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualRect(list->model()->index(2, 0)).center());
        QCOMPARE(fixture.tile().iconName, QStringLiteral("b"));
        QCOMPARE(fixture.saves(), 1);
    }

    void templatesGoToTheTileOfTheOpening()
    {
        SettingsFixture fixture(2);
        fixture.setLinks({}, 0);
        fixture.setLinks({}, 1);
        clickOn(fixture.find<QWidget>("Add item"));
        fixture.saves();
        clickOn(fixture.find<QWidget>("Mail link"));
        QCOMPARE(fixture.saves(), 1);
        fixture.find<QWidget>("Tile segments").findChildren<QRadioButton *>().at(1)->click();
        clickOn(fixture.find<QWidget>("Shortcuts bookmark"));
        QCOMPARE(fixture.tile(0).tileMenuItems.size(), 2);
        QCOMPARE(fixture.tile(0).tileMenuItems.at(0).itemString, QStringLiteral("mailto:"));
        QCOMPARE(fixture.tile(0).tileMenuItems.at(1).itemString,
                 QStringLiteral("shortcuts://run-shortcut?name="));
        clickOn(fixture.find<QWidget>("Add item"));
        fixture.redraw();
        QVERIFY(!fixture.window->findChild<CollectionView *>()
                || !fixture.window->findChild<CollectionView *>()->isVisible());
        clickOn(fixture.find<QWidget>("Add item"));
        QTest::mouseClick(fixture.window->findChildren<QAbstractButton *>(QStringLiteral("Map link")).last(),
                          Qt::LeftButton);
        QCOMPARE(fixture.tile(1).tileMenuItems.size(), 1);
    }

    void panelMayOutliveTheTile()
    {
        SettingsFixture fixture(1);
        fixture.panel.answer = QDir::homePath();
        fixture.panel.meanwhile = [&fixture] {
            model::removeTile(fixture.config, fixture.tile().id);
            fixture.redraw();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        };
        clickOn(fixture.find<QWidget>("Add item"));
        clickOn(fixture.find<QWidget>("App, file or folder"));
        QVERIFY(fixture.config.tileItems().isEmpty());
        QCOMPARE(fixture.window->count(), 1);
    }

    void dropsLandOnTheTile_data()
    {
        QTest::addColumn<QString>("place");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<int>("added");
        for (const char *place : {"Tile name", "LinkTable", "CellField", "TileEditor"}) {
            const QString name = QLatin1String(place);
            QTest::addRow("text on %s", place) << name << QStringList() << 2;
            QTest::addRow("files on %s", place)
                << name << QStringList{QStringLiteral("/tmp"), QStringLiteral("/usr"), QStringLiteral("/etc")}
                << 1;
        }
    }

    void dropsLandOnTheTile()
    {
        QFETCH(QString, place);
        QFETCH(QStringList, files);
        SettingsFixture fixture(2);
        const qsizetype before = fixture.tile().tileMenuItems.size();
        const QString name = fixture.tile().tileName;
        if (place == QLatin1String("CellField"))
            clickCell(fixture, 0, LinkTableModel::NameColumn);
        const auto &target = fixture.find<QWidget>(qPrintable(place));
        QMimeData data;
        QList<QUrl> urls;
        for (const QString &file : files)
            urls += QUrl::fromLocalFile(file);
        if (urls.isEmpty())
            data.setText(QStringLiteral("see https://example.org and mail a@example.org"));
        else
            data.setUrls(urls);
        fixture.saves();

        // As the toolkit does: the innermost widget under the pointer that takes drops gets them.
        QWidget *window = target.window();
        const QPoint position = target.mapTo(window, target.rect().center());
        QDragEnterEvent enter(position, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(window->windowHandle(), &enter);
        QDropEvent drop(position, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(window->windowHandle(), &drop);
        QVERIFY(drop.isAccepted());
        QCOMPARE(drop.dropAction(), Qt::CopyAction);
        QCOMPARE(fixture.saves(), 1);
        QTEST(int(fixture.tile().tileMenuItems.size() - before), "added");
        QCOMPARE(fixture.tile().tileName, name);
    }
};

QTEST_MAIN(TestTileSettings)
#include "tst_tilesettings.moc"

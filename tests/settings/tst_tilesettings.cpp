// SPDX-License-Identifier: MIT
#include "settingsfixture.h"

#include "settings/linktablemodel.h"

#include <QClipboard>
#include <QLineEdit>
#include <QMimeData>
#include <QRadioButton>
#include <QTableView>

using Links = LinkTableModel;

namespace {

QTableView &table(const SettingsFixture &fixture)
{
    return fixture.find<QTableView>("LinkTable");
}

QModelIndex cell(const SettingsFixture &fixture, int row, int column)
{
    return table(fixture).model()->index(row, column);
}

void clickCell(const SettingsFixture &fixture, int row, int column)
{
    const QPoint centre = table(fixture).visualRect(cell(fixture, row, column)).center();
    QTest::mouseClick(table(fixture).viewport(), Qt::LeftButton, {}, centre);
}

/// The one that is open.
QLineEdit *cellField(const SettingsFixture &fixture)
{
    return qobject_cast<QLineEdit *>(table(fixture).indexWidget(table(fixture).currentIndex()));
}

} // namespace

class TestTileSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The Trash of the desktop is none of the tests'.
        static QTemporaryDir data(QDir::homePath() + u"/.settings-test-data-XXXXXX"_qs);
        qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
    }

    void pickedTileIsEdited()
    {
        SettingsFixture fixture(4);
        auto &name = fixture.find<QLineEdit>("Tile name");
        fixture.click("Add tile");
        QCOMPARE(fixture.saves(), 1);
        QVERIFY(!fixture.find("Tile segments").isVisible() && fixture.find("Tile menu").isVisible());
        QTest::keyClick(&fixture.find("Tile menu"), Qt::Key_Down);
        QCOMPARE(name.text(), fixture.tile(1).tileName);
        QCOMPARE(fixture.saves(), 0);
        QTest::keyClicks(&name, u"!"_qs);
        QTest::keyClick(&fixture.find("Show scratchpad"), Qt::Key_Space);
        QCOMPARE(fixture.saves(), 2);
        QVERIFY(fixture.tile(1).tileName.contains(u'!') && fixture.tile(1).showsScratchpad);
        QVERIFY(!fixture.tile(0).tileName.contains(u'!') && !fixture.tile(0).showsScratchpad);
        // A selection that has gone shows nothing.
        model::removeTile(fixture.config, fixture.tile(1).id);
        fixture.saves();
        QVERIFY(!fixture.find("TileEditor").isVisible());
    }

    void nameIsCutToCharacters()
    {
        SettingsFixture fixture(1);
        auto &name = fixture.find<QLineEdit>("Tile name");
        for (const QString &character : {u"x"_qs, QString::fromUcs4(U"\U0001F469\u200D\U0001F467")}) {
            QApplication::clipboard()->setText(character.repeated(40));
            name.clear();
            name.paste();
            QCOMPARE(fixture.tile().tileName, character.repeated(32));
            QCOMPARE(name.text(), character.repeated(32));
        }
    }

    void typingSavesOnceALetterAndKeepsTheCursor()
    {
        SettingsFixture fixture(1);
        auto &name = fixture.find<QLineEdit>("Tile name");
        name.setFocus();
        name.setCursorPosition(3);
        QTest::keyClicks(&name, u"abc"_qs);
        QCOMPARE(fixture.saves(), 3);
        // Text that an input method has not settled yet is neither saved nor lost.
        QInputMethodEvent pending(u"ni"_qs, {});
        QApplication::sendEvent(&name, &pending);
        fixture.config.setShowsDate(true);
        fixture.saves();
        QInputMethodEvent settled;
        settled.setCommitString(u"你"_qs);
        QApplication::sendEvent(&name, &settled);
        QCOMPARE(fixture.tile().tileName, u"Welabc你come to pondWicket"_qs);
    }

    void cellsAreEditedAtAClick()
    {
        SettingsFixture fixture(1);
        fixture.setLinks({u"https://a"_qs, u"https://b"_qs});
        clickCell(fixture, 1, Links::AddressColumn);
        QVERIFY(cellField(fixture) && !cellField(fixture)->hasSelectedText());
        QTest::keyClick(cellField(fixture), Qt::Key_End);
        QTest::keyClicks(cellField(fixture), u"/x"_qs);
        QCOMPARE(fixture.saves(), 2);
        clickCell(fixture, 0, Links::NameColumn);
        QCOMPARE(fixture.saves(), 0); // leaving a cell is no edit
        // A click into the cell that was left by a key found it the current one already, and did nothing.
        QTest::keyClick(cellField(fixture), Qt::Key_Escape);
        fixture.saves();
        clickCell(fixture, 0, Links::NameColumn);
        QTest::keyClick(cellField(fixture), Qt::Key_Home);
        QTest::keyClicks(cellField(fixture), u"N"_qs);
        QCOMPARE(fixture.link(0).itemName, u"Nname"_qs);
        QCOMPARE(fixture.link(1).itemString, u"https://b/x"_qs);
    }

    void keysWalkTheTable()
    {
        SettingsFixture fixture(1);
        fixture.setLinks({u"https://a"_qs, QDir::homePath()}); // the second one is an alias
        fixture.window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
        const auto press = [](Qt::Key key) {
            QTest::keyClick(QApplication::focusWidget(), key);
            QCoreApplication::processEvents();
        };
        // The segments came after everything else.
        fixture.find("Add tile").setFocus();
        press(Qt::Key_Backtab);
        QCOMPARE(QApplication::focusWidget()->parentWidget(), &fixture.find("Tile segments"));
        fixture.find("Tile name").setFocus();
        using Step = std::tuple<Qt::Key, int, int, bool>; // to a row and column, which is edited or not
        for (const auto &[key, row, column, isEdited] :
             {Step{Qt::Key_Tab, 0, Links::NameColumn, true}, Step{Qt::Key_Tab, 0, Links::AddressColumn, true},
              Step{Qt::Key_Down, 1, Links::AddressColumn, false},
              Step{Qt::Key_Backtab, 1, Links::NameColumn, true},
              Step{Qt::Key_Tab, 1, Links::RemoveColumn, false}}) {
            press(key);
            QCOMPARE(table(fixture).currentIndex(), cell(fixture, row, column));
            QCOMPARE(cellField(fixture) == QApplication::focusWidget(), isEdited);
        }
        press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), &fixture.find("Show scratchpad"));
        press(Qt::Key_Backtab);
        press(Qt::Key_Delete);
        QCOMPARE(fixture.saves(), 1);
        QCOMPARE(fixture.tile().tileMenuItems.size(), 1);
    }

    /// "/" is for a moment a folder that exists. The field went with the first letter of a path.
    void addressCellOutlivesAPathTypedInIt()
    {
        SettingsFixture fixture(1);
        fixture.setLinks({u"https://a"_qs, u"https://b"_qs});
        clickCell(fixture, 0, Links::AddressColumn);
        cellField(fixture)->selectAll();
        QTest::keyClicks(cellField(fixture), u"/"_qs);
        fixture.saves();
        QVERIFY(cellField(fixture));
        QTest::keyClicks(cellField(fixture), u"tmp"_qs);
        QCOMPARE(fixture.link(0).itemString, u"/tmp"_qs);
        clickCell(fixture, 1, Links::NameColumn);
        QVERIFY(!(cell(fixture, 0, Links::AddressColumn).flags() & Qt::ItemIsEditable));
    }

    void removedLinkTakesItsAliasFileAlong()
    {
        SettingsFixture fixture(1);
        fixture.setLinks({});
        fixture.panel.answer = QDir::homePath();
        fixture.click("Add item");
        fixture.click("App, file or folder");
        fixture.saves();
        const QString file = fixture.link(0).itemString;
        QVERIFY(QFile::exists(file));
        clickCell(fixture, 0, Links::RemoveColumn);
        QCOMPARE(fixture.saves(), 1);
        QCOMPARE(fixture.tile().tileMenuItems.size(), 0);
        QTRY_VERIFY(!QFile::exists(file));
    }

    /// The second press of a double click removed the link that had moved up.
    void oneLinkGoesAtATime()
    {
        SettingsFixture fixture(1);
        fixture.setLinks({u"https://a"_qs, u"https://b"_qs});
        QWidget *viewport = table(fixture).viewport();
        const QPoint trash = table(fixture).visualRect(cell(fixture, 0, Links::RemoveColumn)).center();
        clickCell(fixture, 0, Links::RemoveColumn);
        QCOMPARE(fixture.saves(), 1);
        QTest::mouseDClick(viewport, Qt::LeftButton, {}, trash);
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, trash);
        QCOMPARE(fixture.tile().tileMenuItems.size(), 1);
    }

    void rowUnderAnEditorStays()
    {
        SettingsFixture fixture(1);
        fixture.setLinks({u"https://a"_qs, u"https://b"_qs});
        clickCell(fixture, 1, Links::NameColumn);
        const QPointer<QLineEdit> field = cellField(fixture);
        for (const bool stays : {true, false}) { // goes with its own link
            fixture.config.editTile(fixture.tile().id,
                                    [](TileItem &tile) { tile.tileMenuItems.removeFirst(); });
            fixture.saves();
            QCOMPARE(field && field->isVisible(), stays);
            if (stays)
                QTest::keyClicks(field, u"!"_qs);
            QCOMPARE(fixture.link(0).itemName, stays ? u"name!"_qs : QString());
        }
    }

    void tileGoesWhileItIsEdited()
    {
        SettingsFixture fixture(2);
        clickCell(fixture, 0, Links::NameColumn);
        fixture.removeTile();
        QTest::keyClicks(cellField(fixture), u"x"_qs); // before the redraw
        fixture.saves();
        QCOMPARE(fixture.config.tileItems().size(), 1);
        // The file panel runs in a loop of its own.
        fixture.open();
        fixture.panel.answer = QDir::homePath();
        fixture.panel.meanwhile = [&fixture] {
            fixture.removeTile();
            fixture.saves();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        };
        fixture.click("Add item");
        fixture.click("App, file or folder");
        QVERIFY(fixture.config.tileItems().isEmpty());
        QCOMPARE(fixture.window->count(), 1);
    }

    void templatesGoToTheTileOfTheOpening()
    {
        SettingsFixture fixture(2);
        fixture.setLinks({});
        fixture.click("Add item");
        auto &grid = fixture.find("CollectionView");
        QVERIFY(QTest::qWaitForWindowActive(grid.window()));
        for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Right, Qt::Key_Return})
            QTest::keyClick(grid.window()->focusWidget(), key);
        QCOMPARE(fixture.saves(), 1);
        fixture.find("Tile segments").findChildren<QRadioButton *>().at(1)->click();
        fixture.click("Mail link");
        QCOMPARE(fixture.link(0).itemString, u"shortcuts://run-shortcut?name="_qs);
        QCOMPARE(fixture.link(1).itemString, u"mailto:"_qs);
        QTest::keyClick(&grid, Qt::Key_Escape);
        QVERIFY(fixture.window->isVisible() && !grid.isVisible());
    }

    void dropsLandOnTheTile()
    {
        for (const char *place : {"Tile name", "LinkTable", "CellField", "TileEditor"}) {
            SettingsFixture fixture(2);
            fixture.setLinks({u"https://a"_qs});
            clickCell(fixture, 0, Links::NameColumn); // makes the field
            QMimeData data;
            data.setText(u"see https://example.org and mail a@example.org"_qs);

            // As the toolkit does: the innermost widget under the pointer that takes drops gets them.
            const QWidget &target = fixture.find(place);
            QWindow *window = target.window()->windowHandle();
            const QPoint position = target.mapTo(target.window(), target.rect().center());
            QDragEnterEvent enter(position, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
            QApplication::sendEvent(window, &enter);
            QDropEvent drop(position, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
            QApplication::sendEvent(window, &drop);
            QVERIFY2(drop.isAccepted() && drop.dropAction() == Qt::CopyAction, place);
            QVERIFY2(fixture.saves() == 1 && fixture.tile().tileMenuItems.size() == 3, place);
        }
    }
};

QTEST_MAIN(TestTileSettings)
#include "tst_tilesettings.moc"

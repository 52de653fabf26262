// SPDX-License-Identifier: MIT
#include "stripfixture.h"

#include "strip/tilemenu.h"
#include "support/stdoutcapture.h"

#include <QLabel>
#include <QMenu>
#include <QToolButton>

namespace {

QAction *action(const StripFixture &fixture, const QString &text)
{
    QMenu *menu = fixture.popover()->findChild<QToolButton *>(u"Actions"_qs)->menu();
    Q_EMIT menu->aboutToShow();
    for (QAction *action : menu->actions()) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

} // namespace

class TestTile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void clickOpensTheLinkOrTheMenu()
    {
        const QStringList one = {u"HTTPS://Example.org/%7Ea"_qs};
        using Case = std::tuple<QStringList, Qt::KeyboardModifier, QStringList>;
        for (const auto &[links, modifier, opened] :
             {Case{one, Qt::NoModifier, one}, Case{one, Qt::AltModifier, {}},
              Case{QStringList(), Qt::NoModifier, {}}, Case{one + one, Qt::NoModifier, {}}}) {
            StripFixture fixture;
            fixture.addTile(u"a"_qs, links);
            fixture.show();
            QTest::mouseClick(fixture.tile(), Qt::LeftButton, modifier);
            QCOMPARE(fixture.opener.addresses, opened);
            QCOMPARE(fixture.popover() != nullptr, opened.isEmpty());
        }
    }

    /// Whether the popover is open is the view's own flag. The one in Config only starts a new view's, so a
    /// change of the tile closes a popover opened by click, and one opened by key and sent away takes two
    /// presses to come back.
    void popoverFollowsTheTwoFlags()
    {
        StripFixture fixture(1);
        fixture.show();
        const auto isOpenAfter = [&fixture](const std::function<void(TileItem &)> &change) {
            fixture.config.editTile(fixture.config.tileItems().first().id, change);
            QCoreApplication::processEvents();
            return fixture.popover() != nullptr;
        };
        const auto press = [](TileItem &tile) { tile.tileMenuVisible = !tile.tileMenuVisible; };
        const auto rename = [](TileItem &tile) { tile.tileName += u'x'; };

        QTest::mouseClick(fixture.tile(), Qt::LeftButton);
        QVERIFY(fixture.popover());
        QVERIFY(!isOpenAfter(rename));
        QVERIFY(isOpenAfter(press));
        QVERIFY(isOpenAfter(rename));
        fixture.popover()->dismiss();
        QVERIFY(!isOpenAfter(press));
        QVERIFY(isOpenAfter(press));
    }

    void rowsOpenTheirLinks()
    {
        StripFixture fixture;
        fixture.addTile(u"a"_qs, {u"tel:1"_qs, QString(), u"example.org/x"_qs, fixture.folder.path()});
        fixture.show();
        QTest::mouseClick(fixture.tile(), Qt::LeftButton);
        auto *menu = fixture.popover()->findChild<TileMenu *>();
        const auto place = [menu](int i) { return menu->visualRect(menu->model()->index(i, 0)).center(); };
        StdoutCapture output;
        for (int row = 0; row < 4; ++row)
            QTest::mouseClick(menu->viewport(), Qt::LeftButton, {}, place(row));
        QCOMPARE(output.lines().filter(u"Invalid URL"_qs).size(), 1);
        QVERIFY(fixture.popover()); // opening closes nothing
        QTest::mouseMove(menu->viewport(), place(2));
        QTRY_COMPARE(menu->hoveredIndex().value_or(QString()), u"example.org/x"_qs);
        menu->setCurrentIndex(menu->model()->index(0, 0));
        QTest::keyClick(menu, Qt::Key_Return);
        QCOMPARE(fixture.opener.addresses, QStringList({u"tel:1"_qs, u"example.org/x"_qs, u"tel:1"_qs}));
        QCOMPARE(fixture.opener.files, QStringList{fixture.folder.path()});
    }

    void actionsOfTheMenu()
    {
        StripFixture fixture;
        const TileItem item = fixture.addTile(u"a"_qs, {u"tel:1"_qs});
        fixture.show();
        QContextMenuEvent rightButton(QContextMenuEvent::Mouse, QPoint(22, 22), QPoint(22, 22));
        QCoreApplication::sendEvent(fixture.tile(), &rightButton);
        action(fixture, u"Edit…"_qs)->trigger();
        QCOMPARE(fixture.settingsOpened, 1);
        StdoutCapture output; // the notes of a tile without a folder say so
        action(fixture, u"Show notes"_qs)->trigger();
        QVERIFY(fixture.config.tile(item.id)->showsScratchpad);
        QTRY_VERIFY(!fixture.popover());
        QTest::mouseClick(fixture.tile(), Qt::LeftButton); // with notes the only link is no button
        QVERIFY(action(fixture, u"Hide notes"_qs));
        action(fixture, u"Remove tile"_qs)->trigger(); // from inside the view that goes
        QVERIFY(fixture.config.tileItems().isEmpty() && fixture.opener.addresses.isEmpty());
        QTRY_VERIFY(!fixture.tile());
    }

    /// The panel runs in a loop of its own: the tile was removed in the settings window while it was open,
    /// and the view that had asked was used after its end.
    void panelsOutliveTheTile()
    {
        StripFixture fixture;
        fixture.addTile(u"<img src=x>"_qs, {});
        fixture.show();
        QVERIFY(!fixture.tile()->toolTip().contains(u"<img"_qs)); // a name is text, not markup
        QTest::mouseClick(fixture.tile(), Qt::LeftButton);
        QCOMPARE(fixture.popover()->findChild<QLabel *>()->text(), u"Nothing to see here!"_qs);
        fixture.filePanel.answer = fixture.folder.path();
        fixture.filePanel.meanwhile = [&fixture] {
            fixture.config.setTileItems({});
            QCoreApplication::sendPostedEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        };
        action(fixture, u"Add application or file…"_qs)->trigger();
        QTRY_COMPARE(fixture.filePanel.titles, QStringList{u"Link application or file"_qs});
        QVERIFY(fixture.config.tileItems().isEmpty() && !fixture.tile());
    }
};

QTEST_MAIN(TestTile)
#include "tst_tile.moc"

// SPDX-License-Identifier: MIT
#include "strip/contentview.h"
#include "strip/tile.h"
#include "strip/tilemenu.h"
#include "support/stdoutcapture.h"
#include "support/stripworld.h"

#include <QDropEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QTest>
#include <QToolButton>

using namespace support;
using widgets::Popover;

class TestTile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_world.emplace(); }

    void cleanup()
    {
        m_strip.reset();
        m_world.reset();
    }

    void clickOpensTheLinkOrTheMenu_data()
    {
        QTest::addColumn<QStringList>("links");
        QTest::addColumn<bool>("notes");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QString>("opened"); // the address; empty when the popover opens
        const Qt::KeyboardModifiers none = Qt::NoModifier;
        const Qt::KeyboardModifiers alt = Qt::AltModifier;
        const QStringList one = {QStringLiteral("HTTPS://Example.org/%7Ea")};
        QTest::newRow("one link") << one << false << none << one.first();
        QTest::newRow("one link, Alt held") << one << false << alt << QString();
        QTest::newRow("one link and notes") << one << true << none << QString();
        QTest::newRow("no links") << QStringList() << false << none << QString();
        QTest::newRow("two links") << QStringList{QStringLiteral("tel:1"), QStringLiteral("tel:2")} << false
                                   << none << QString();
    }

    void clickOpensTheLinkOrTheMenu()
    {
        QFETCH(QStringList, links);
        QFETCH(bool, notes);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QString, opened);
        const TileItem item = m_world->addTile(QStringLiteral("a"), links);
        m_world->config.editTile(item.id, [notes](TileItem &tile) { tile.showsScratchpad = notes; });
        showStrip();
        StdoutCapture output; // the notes of a tile without a folder say so
        QTest::mouseClick(tile(), Qt::LeftButton, modifiers);
        QCOMPARE(m_world->opener.addresses, opened.isEmpty() ? QStringList() : QStringList{opened});
        QCOMPARE(popover() != nullptr, opened.isEmpty());
    }

    void rightButtonAndMenuKeyOpenTheMenu()
    {
        m_world->addTile(QStringLiteral("a"), {QStringLiteral("tel:1")});
        showStrip();
        for (const auto reason : {QContextMenuEvent::Mouse, QContextMenuEvent::Keyboard}) {
            QContextMenuEvent event(reason, QPoint(22, 22), QPoint(22, 22));
            QCoreApplication::sendEvent(tile(), &event);
            QVERIFY(popover());
            popover()->dismiss();
            QVERIFY(!popover());
        }
        QVERIFY(m_world->opener.addresses.isEmpty());
    }

    /// Whether the popover is open is the view's own flag. The one in Config only starts a new view's, so a
    /// change of the tile closes a popover opened by click, and one opened by key and sent away takes two
    /// presses to come back.
    void popoverFollowsTheTwoFlags()
    {
        const TileItem item =
            m_world->addTile(QStringLiteral("a"), {QStringLiteral("tel:1"), QStringLiteral("tel:2")});
        showStrip();
        const auto press = [&] {
            m_world->config.editTile(item.id,
                                     [](TileItem &tile) { tile.tileMenuVisible = !tile.tileMenuVisible; });
            QCoreApplication::processEvents();
        };
        const auto rename = [&](const QString &name) {
            m_world->config.editTile(item.id, [&name](TileItem &tile) { tile.tileName = name; });
            QCoreApplication::processEvents();
        };

        QTest::mouseClick(tile(), Qt::LeftButton);
        QVERIFY(popover());
        rename(QStringLiteral("b"));
        QVERIFY(!popover());

        press();
        QVERIFY(popover());
        rename(QStringLiteral("c"));
        QVERIFY(popover());
        popover()->dismiss();
        press();
        QVERIFY(!popover());
        press();
        QVERIFY(popover());
    }

    void rowsOpenTheirLinks()
    {
        m_world->addTile(
            QStringLiteral("a"),
            {QStringLiteral("tel:1"), QString(), QStringLiteral("example.org/x"), m_world->folder.path()});
        showStrip();
        QTest::mouseClick(tile(), Qt::LeftButton);
        auto *menu = popover()->findChild<TileMenu *>();
        StdoutCapture output;
        const auto click = [menu](int row) {
            QTest::mouseClick(menu->viewport(), Qt::LeftButton, {},
                              menu->visualRect(menu->model()->index(row, 0)).center());
        };
        for (int row = 0; row < 4; ++row)
            click(row);
        const qsizetype invalid = output.lines().filter(QStringLiteral("Invalid URL")).size();
        QCOMPARE(m_world->opener.addresses,
                 QStringList({QStringLiteral("tel:1"), QStringLiteral("example.org/x")}));
        QCOMPARE(m_world->opener.files, QStringList{m_world->folder.path()});
        QCOMPARE(invalid, 1);
        QVERIFY(popover()); // opening closes nothing

        menu->setCurrentIndex(menu->model()->index(0, 0));
        QTest::keyClick(menu, Qt::Key_Return);
        QCOMPARE(m_world->opener.addresses.size(), 3);
    }

    void actionsOfTheMenu()
    {
        const TileItem item = m_world->addTile(QStringLiteral("a"), {QStringLiteral("tel:1")});
        showStrip();
        const auto open = [this] {
            QTest::mouseClick(tile(), Qt::LeftButton, Qt::AltModifier);
            QVERIFY(popover());
        };
        open();
        action(QStringLiteral("Edit…"))->trigger();
        QCOMPARE(m_world->settingsOpened, 1);
        StdoutCapture output;
        action(QStringLiteral("Show notes"))->trigger();
        QVERIFY(m_world->config.tile(item.id)->showsScratchpad);
        QTRY_VERIFY(!popover());
        open();
        QVERIFY(!action(QStringLiteral("Show notes")));
        action(QStringLiteral("Hide notes"))->trigger();
        QTRY_VERIFY(!popover());
        open();
        action(QStringLiteral("Remove tile"))->trigger(); // from inside the view that goes
        QVERIFY(m_world->config.tileItems().isEmpty());
        QTRY_VERIFY(!tile());
    }

    /// The panel runs in a loop of its own: the tile was removed in the settings window while it was open,
    /// and the view that had asked was used after its end.
    void panelsOutliveTheTile()
    {
        const TileItem item = m_world->addTile(QStringLiteral("a"), {});
        showStrip();
        QTest::mouseClick(tile(), Qt::LeftButton);
        m_world->filePanel.answer = m_world->folder.path();
        m_world->filePanel.meanwhile = [this] {
            m_world->config.setTileItems({});
            QCoreApplication::sendPostedEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        };
        action(QStringLiteral("Add application or file…"))->trigger();
        QTRY_COMPARE(m_world->filePanel.titles, QStringList{QStringLiteral("Link application or file")});
        QVERIFY(m_world->config.tileItems().isEmpty());
        QVERIFY(!tile());
    }

    void takesWhatIsDropped()
    {
        const TileItem item = m_world->addTile(QStringLiteral("a"), {});
        showStrip();
        QMimeData data;
        data.setText(QStringLiteral("see https://example.org/x"));
        QDropEvent drop(QPointF(22, 22), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                        Qt::NoModifier);
        QDragEnterEvent enter(QPoint(22, 22), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        QCoreApplication::sendEvent(tile(), &enter);
        QVERIFY(enter.isAccepted());
        QCoreApplication::sendEvent(tile(), &drop);
        QCOMPARE(drop.dropAction(), Qt::CopyAction);
        QTRY_COMPARE(m_world->config.tile(item.id)->tileMenuItems.size(), 1);
    }

    void emptyTileSaysSo()
    {
        m_world->addTile(QStringLiteral("<img src=x>"), {});
        showStrip();
        QVERIFY(!tile()->toolTip().contains(QLatin1String("<img"))); // a name is text, not markup
        QTest::mouseClick(tile(), Qt::LeftButton);
        QCOMPARE(popover()->findChild<QLabel *>()->text(), QStringLiteral("Nothing to see here!"));
    }

private:
    void showStrip()
    {
        m_strip.emplace(m_world->config, m_world->services);
        m_strip->resize(m_strip->sizeHint());
        m_strip->show();
        QVERIFY(QTest::qWaitForWindowExposed(&*m_strip));
    }

    Tile *tile() const
    {
        for (Tile *tile : m_strip->findChildren<Tile *>()) {
            if (!tile->isHidden())
                return tile;
        }
        return nullptr;
    }

    Popover *popover() const
    {
        for (Popover *popover : m_strip->findChildren<Popover *>()) {
            if (popover->isVisible())
                return popover;
        }
        return nullptr;
    }

    QAction *action(const QString &text) const
    {
        QMenu *menu = popover()->findChild<QToolButton *>(QStringLiteral("Actions"))->menu();
        Q_EMIT menu->aboutToShow();
        for (QAction *action : menu->actions()) {
            if (action->text() == text)
                return action;
        }
        return nullptr;
    }

    std::optional<StripWorld> m_world;
    std::optional<ContentView> m_strip;
};

QTEST_MAIN(TestTile)
#include "tst_tile.moc"

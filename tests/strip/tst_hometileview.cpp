// SPDX-License-Identifier: MIT
#include "strip/hometileview.h"
#include "support/stripworld.h"

#include <QTest>

using namespace support;
using widgets::Popover;

namespace {

QStringList itemsOf(const HomeTileView &home)
{
    QStringList items;
    const auto *menu = home.findChild<Popover *>();
    if (!menu || !menu->isVisible())
        return items;
    for (const QAbstractButton *button : menu->findChildren<QAbstractButton *>())
        items.append(button->text());
    return items;
}

const QStringList usual = {QStringLiteral("Add tile"), QStringLiteral("Settings"), QStringLiteral("Support")};
const QStringList folders = {QStringLiteral("Open Settings Folder"), QStringLiteral("Open Theme Folder")};

} // namespace

class TestHomeTileView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void offersWhatHolds_data()
    {
        QTest::addColumn<int>("tileCount");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QStringList>("items");
        QTest::newRow("room left") << 19 << Qt::KeyboardModifiers() << usual;
        QTest::newRow("full") << 20 << Qt::KeyboardModifiers() << usual.mid(1);
        QTest::newRow("Alt held") << 0 << Qt::KeyboardModifiers(Qt::AltModifier) << usual + folders;
    }

    void offersWhatHolds()
    {
        QFETCH(int, tileCount);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QStringList, items);
        StripWorld world;
        for (int i = 0; i < tileCount; ++i)
            world.addTile(QString::number(i), {});
        HomeTileView home(world.config, world.services, nullptr);
        home.show();
        QTest::mouseClick(&home, Qt::LeftButton, modifiers);
        QCOMPARE(itemsOf(home), items);
        QTest::mouseClick(&home, Qt::LeftButton);
        QCOMPARE(itemsOf(home), QStringList());
    }

    void itemsAct()
    {
        StripWorld world;
        HomeTileView home(world.config, world.services, nullptr);
        home.show();
        const auto press = [&home](const QString &item) {
            home.findChild<Popover *>()->findChild<QAbstractButton *>(item)->click();
        };
        QContextMenuEvent rightButton(QContextMenuEvent::Mouse, QPoint(1, 1), QPoint(1, 1));
        QCoreApplication::sendEvent(&home, &rightButton);
        QCOMPARE(itemsOf(home), usual + folders);
        press(folders.at(0));
        press(folders.at(1));
        const QString folder = world.config.documentDirectory() + QStringLiteral("/pondWicket ƒ");
        QCOMPARE(world.opener.files, QStringList({folder, folder}));
        press(QStringLiteral("Settings"));
        QCOMPARE(world.settingsOpened, 1);
        QVERIFY(!itemsOf(home).isEmpty()); // none of these closes the menu
        press(QStringLiteral("Add tile"));
        QCOMPARE(world.config.tileItems().size(), 1);
        QCOMPARE(itemsOf(home), QStringList());

        QTest::mouseClick(&home, Qt::LeftButton);
        press(QStringLiteral("Support"));
        QCOMPARE(world.opener.addresses.size(), 1);
        QCOMPARE(QUrl(world.opener.addresses.first()).path(), QStringLiteral("/pondWicket"));
        QCOMPARE(itemsOf(home), QStringList());
    }

    void showsTheDay()
    {
        StripWorld world;
        int today = 9;
        HomeTileView home(world.config, world.services, nullptr, [&today] { return today; });
        QVERIFY(home.look().overlay.isNull());
        world.config.setShowsDate(true);
        home.refresh();
        const QImage ninth = home.look().overlay;
        QVERIFY(!ninth.isNull());
        today = 10; // midnight passes while the tile is away from the screen
        home.show();
        QCOMPARE(home.currentDay(), 10);
        QVERIFY(home.look().overlay != ninth);
    }
};

QTEST_MAIN(TestHomeTileView)
#include "tst_hometileview.moc"

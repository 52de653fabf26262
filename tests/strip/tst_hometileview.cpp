// SPDX-License-Identifier: MIT
#include "stripfixture.h"

#include "strip/hometileview.h"

namespace {

QStringList itemsOf(const HomeTileView &home)
{
    QStringList items;
    for (const QAbstractButton *button : visibleIn<QAbstractButton>(home))
        items.append(button->text());
    return items;
}

const QStringList all = u"Add tile|Settings|Support|Open Settings Folder|Open Theme Folder"_qs.split(u'|');

} // namespace

class TestHomeTileView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemsAct()
    {
        StripFixture fixture(19);
        HomeTileView home(fixture.config, fixture.services, nullptr);
        home.show();
        const auto pick = [&home](const QString &item) { home.findChild<QAbstractButton *>(item)->click(); };
        QTest::mouseClick(&home, Qt::LeftButton);
        QCOMPARE(itemsOf(home), all.first(3));
        QTest::mouseClick(&home, Qt::LeftButton);
        QCOMPARE(itemsOf(home), QStringList());
        QContextMenuEvent rightButton(QContextMenuEvent::Mouse, QPoint(1, 1), QPoint(1, 1));
        QCoreApplication::sendEvent(&home, &rightButton);
        pick(all.at(3));
        pick(all.at(4));
        const QString folder = fixture.config.documentDirectory() + u"/pondWicket ƒ"_qs;
        QCOMPARE(fixture.opener.files, QStringList({folder, folder}));
        pick(u"Settings"_qs);
        QCOMPARE(fixture.settingsOpened, 1);
        QCOMPARE(itemsOf(home), all); // none of these closes the menu
        pick(u"Add tile"_qs);
        QCOMPARE(fixture.config.tileItems().size(), 20);
        QCOMPARE(itemsOf(home), QStringList());
        QTest::mouseClick(&home, Qt::LeftButton, Qt::AltModifier);
        QCOMPARE(itemsOf(home), all.mid(1));
        pick(u"Support"_qs);
        QCOMPARE(QUrl(fixture.opener.addresses.value(0)).path(), u"/pondWicket"_qs);
    }

    void showsTheDay()
    {
        StripFixture fixture;
        int today = 9;
        HomeTileView home(fixture.config, fixture.services, nullptr, [&today] { return today; });
        QVERIFY(home.look().overlay.isNull());
        fixture.config.setShowsDate(true);
        home.refresh();
        const QImage ninth = home.look().overlay;
        today = 10; // midnight passes while the tile is away from the screen
        home.show();
        QVERIFY(!ninth.isNull() && !home.look().overlay.isNull() && home.look().overlay != ninth);
    }
};

QTEST_MAIN(TestHomeTileView)
#include "tst_hometileview.moc"

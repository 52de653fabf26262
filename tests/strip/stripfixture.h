// SPDX-License-Identifier: MIT
#pragma once

#include "strip/contentview.h"
#include "strip/tile.h"
#include "support/stripworld.h"

#include <QAbstractButton>
#include <QtTest>

template <typename T> QList<T *> visibleIn(const QWidget &parent)
{
    QList<T *> children = parent.findChildren<T *>();
    children.removeIf([](const T *child) { return !child->isVisible(); });
    return children;
}

/// A strip with some empty tiles, shown when a test has made the rest.
class StripFixture : public support::StripWorld
{
public:
    explicit StripFixture(int tileCount = 0)
    {
        for (int i = 0; i < tileCount; ++i)
            addTile(QString::number(i), {});
    }

    void show(QSize size = {})
    {
        strip.emplace(config, services);
        strip->resize(size.isValid() ? size : strip->sizeHint());
        strip->show();
        strip->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&*strip));
    }
    QList<Tile *> tiles() const { return visibleIn<Tile>(*strip); }
    Tile *tile() const { return tiles().value(0); }
    widgets::Popover *popover() const { return visibleIn<widgets::Popover>(*strip).value(0); }
    QAbstractButton *cap() const { return strip->findChild<QAbstractButton *>(u"Hide or show tiles"_qs); }
    QRect placeOf(const QWidget *child) const { return {child->mapTo(&*strip, QPoint()), child->size()}; }

    std::optional<ContentView> strip;
};

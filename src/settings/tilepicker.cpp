// SPDX-License-Identifier: MIT
#include "settings/tilepicker.h"

#include "model/tileitem.h"
#include "platform/localized.h"
#include "settings/settingsmetrics.h"
#include "widgets/popuppicker.h"
#include "widgets/segmentedpicker.h"

#include <QHBoxLayout>

namespace {

constexpr qsizetype mostSegments = 4;

} // namespace

TilePicker::TilePicker(QWidget *parent)
    : QWidget(parent)
    , m_segments(new widgets::SegmentedPicker(this))
    , m_menu(new widgets::PopupPicker(this))
{
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    setMaximumWidth(settings::widestPicker);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_segments);
    row->addWidget(m_menu);
    for (QWidget *picker : {static_cast<QWidget *>(m_segments), static_cast<QWidget *>(m_menu)}) {
        picker->setAccessibleName(platform::localized("Tile"));
        picker->hide();
    }
    m_segments->setObjectName(QStringLiteral("Tile segments"));
    m_menu->setObjectName(QStringLiteral("Tile menu"));
    const auto announce = [this](int index) { Q_EMIT activated(QUuid(m_ids.at(index))); };
    connect(m_segments, &widgets::SegmentedPicker::activated, this, announce);
    connect(m_menu, &QComboBox::activated, this, announce);
}

void TilePicker::setTiles(const QList<TileItem> &tiles, const TileItem *chosen)
{
    const int index = chosen ? int(chosen - tiles.constData()) : -1;
    m_ids.clear();
    QStringList names;
    for (const TileItem &tile : tiles) {
        m_ids += tile.id;
        names += tile.tileName;
    }
    const bool few = tiles.size() <= mostSegments;
    // The one that is not seen keeps nothing.
    m_segments->setOptions(few ? names : QStringList());
    m_segments->setCurrentIndex(few ? index : -1);
    m_menu->setOptions(few ? QStringList() : names);
    m_menu->setCurrentIndex(few ? -1 : index);
    m_segments->setVisible(few);
    m_menu->setVisible(!few);
}

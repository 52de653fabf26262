// SPDX-License-Identifier: MIT
#include "strip/tilemenu.h"

#include "links/openlink.h"
#include "model/config.h"
#include "strip/linklistmodel.h"
#include "strip/services.h"
#include "themes/symbolimage.h"
#include "widgets/focusring.h"
#include "widgets/metrics.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>

namespace {

constexpr int rowHeight = 26; // points
constexpr int symbolSize = 18;
constexpr int minimumRowWidth = 100;
constexpr int maximumRowWidth = 360;
constexpr int measuredRows = 200; // names looked at to find the list's width
constexpr qreal hoveredOpacity = 0.5;

class LinkDelegate : public QStyledItemDelegate
{
public:
    explicit LinkDelegate(const TileMenu &menu)
        : QStyledItemDelegate(nullptr)
        , m_menu(menu)
    {
    }

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        return {minimumRowWidth, rowHeight};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        painter->save();
        const auto address = index.data(LinkListModel::AddressRole).toString();
        if (m_menu.hoveredIndex() == address)
            painter->setOpacity(hoveredOpacity);

        const QImage symbol = themes::symbolImage(index.data(LinkListModel::SymbolRole).toString(),
                                                  index.data(LinkListModel::TintRole).value<QColor>(),
                                                  symbolSize, painter->device()->devicePixelRatioF());
        const QRect row = option.rect.adjusted(widgets::rowInset, 0, -widgets::rowInset, 0);
        const QRect place(row.left(), row.top() + (row.height() - symbolSize) / 2, symbolSize, symbolSize);
        painter->drawImage(QStyle::visualRect(option.direction, row, place).topLeft(), symbol);

        const QRect text = QStyle::visualRect(option.direction, row,
                                              row.adjusted(symbolSize + widgets::stackSpacing, 0, 0, 0));
        const QString name = index.data(Qt::DisplayRole).toString();
        painter->setPen(option.palette.color(QPalette::WindowText));
        painter->setFont(option.font);
        painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                          option.fontMetrics.elidedText(name, Qt::ElideRight, text.width()));
        if (index == m_menu.currentIndex() && widgets::showsFocus(m_menu)) {
            painter->setOpacity(1);
            widgets::drawFocusRing(*painter, option.rect, option.palette.color(QPalette::Highlight));
        }
        painter->restore();
    }

private:
    const TileMenu &m_menu;
};

} // namespace

TileMenu::TileMenu(Config &config, const TileItem &tileItem, StripServices &services, QWidget *parent)
    : QListView(parent)
    , m_services(services)
    , m_links(tileItem.tileMenuItems)
{
    setObjectName(QStringLiteral("TileMenu"));
    setAccessibleName(tileItem.tileName);
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(true);
    setMouseTracking(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::NoSelection);
    viewport()->setAutoFillBackground(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    QFont font = this->font();
    font.setPixelSize(widgets::bodyFontSize);
    setFont(font);
    auto *delegate = new LinkDelegate(*this);
    delegate->setParent(this);
    setItemDelegate(delegate);
    auto *model = new LinkListModel(m_links, this);
    setModel(model);
    connect(this, &QListView::clicked, this, &TileMenu::open);
    connect(this, &QListView::entered, this, [this](const QModelIndex &row) {
        setHoveredIndex(row.data(LinkListModel::AddressRole).toString());
    });
    connect(this, &QListView::viewportEntered, this, [this] { setHoveredIndex(std::nullopt); });
    connect(&config, &Config::redrawNeeded, model, &LinkListModel::reclassify);
}

QSize TileMenu::sizeHint() const
{
    int textWidth = 0;
    for (const TileMenuItem &link : m_links.first(std::min<qsizetype>(m_links.size(), measuredRows)))
        textWidth = std::max(textWidth, fontMetrics().horizontalAdvance(link.itemName));
    const int width =
        symbolSize + widgets::stackSpacing + textWidth + 2 * (widgets::stackSpacing + widgets::rowInset);
    return {std::clamp(width, minimumRowWidth, maximumRowWidth), int(m_links.size()) * rowHeight};
}

QSize TileMenu::minimumSizeHint() const
{
    return {minimumRowWidth, rowHeight};
}

void TileMenu::open(const QModelIndex &row)
{
    if (row.isValid())
        links::openLink(m_links.at(row.row()), m_services.opener);
}

void TileMenu::setHoveredIndex(const std::optional<QString> &address)
{
    if (m_hoveredIndex == address)
        return;
    m_hoveredIndex = address;
    viewport()->update();
}

void TileMenu::keyPressEvent(QKeyEvent *event)
{
    window()->setAttribute(Qt::WA_KeyboardFocusChange);
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space)
        open(currentIndex());
    else
        QListView::keyPressEvent(event);
}

bool TileMenu::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::Leave)
        setHoveredIndex(std::nullopt);
    return QListView::viewportEvent(event);
}

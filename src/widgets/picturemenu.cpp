// SPDX-License-Identifier: MIT
#include "widgets/picturemenu.h"

#include "widgets/focusring.h"
#include "widgets/metrics.h"
#include "widgets/plaintext.h"

#include <QKeyEvent>
#include <QListView>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QScrollBar>
#include <QStringListModel>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <algorithm>

namespace widgets {

namespace {

constexpr int cellPadding = 6; // points around a picture
constexpr int columnCount = 8;
constexpr qreal cornerRadius = 4;
constexpr qreal screenShare = 0.5;

class NamesModel : public QStringListModel
{
public:
    using QStringListModel::QStringListModel;

    QVariant data(const QModelIndex &index, int role) const override
    {
        const QVariant name = QStringListModel::data(index, Qt::DisplayRole);
        switch (role) {
        case Qt::DisplayRole:
        case Qt::AccessibleTextRole:
            return name;
        case Qt::ToolTipRole:
            return plainToolTip(name.toString());
        default:
            return {};
        }
    }
    Qt::ItemFlags flags(const QModelIndex &) const override
    {
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    }
};

class PictureDelegate : public QStyledItemDelegate
{
public:
    PictureDelegate(const PictureOf &pictureOf, int pictureSize, QObject *parent)
        : QStyledItemDelegate(parent)
        , m_pictureOf(pictureOf)
        , m_pictureSize(pictureSize)
    {
    }

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        const int side = m_pictureSize + 2 * cellPadding;
        return {side, side};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        painter->save();
        painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        QRectF cell(0, 0, m_pictureSize, m_pictureSize);
        cell.moveCenter(QRectF(option.rect).center());
        const QColor highlight = option.palette.color(QPalette::Active, QPalette::Highlight);
        if (option.state & QStyle::State_Selected) {
            QColor mark = highlight;
            mark.setAlphaF(0.35F);
            painter->setPen(Qt::NoPen);
            painter->setBrush(mark);
            painter->drawRoundedRect(cell.adjusted(-4, -4, 4, 4), 6, 6);
            drawFocusRing(*painter, cell.adjusted(-5, -5, 5, 5), highlight);
        }
        QPainterPath shape;
        shape.addRoundedRect(cell, cornerRadius, cornerRadius);
        const QImage picture = m_pictureOf(index.data().toString());
        QRectF place(QPointF(), picture.deviceIndependentSize().boundedTo(cell.size()));
        place.moveCenter(cell.center());
        painter->setClipPath(shape);
        painter->drawImage(place, picture);
        painter->setClipping(false);
        painter->setBrush(Qt::NoBrush);
        painter->setPen(QPen(Qt::white, 1));
        painter->drawPath(shape);
        painter->restore();
    }

private:
    PictureOf m_pictureOf;
    int m_pictureSize;
};

} // namespace

PictureMenu::PictureMenu(const QStringList &names, const PictureOf &pictureOf, int pictureSize,
                         QWidget *anchor)
    : QWidget(anchor, Qt::Popup)
    , m_list(new QListView(this))
{
    setObjectName(QStringLiteral("PictureMenu"));
    setAttribute(Qt::WA_DeleteOnClose);
    setAccessibleName(anchor->accessibleName());
    m_list->setAccessibleName(anchor->accessibleName());
    m_list->setModel(new NamesModel(names, m_list));
    m_list->setItemDelegate(new PictureDelegate(pictureOf, pictureSize, m_list));
    m_list->setViewMode(QListView::IconMode);
    m_list->setMovement(QListView::Static);
    m_list->setResizeMode(QListView::Adjust);
    m_list->setUniformItemSizes(true);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setMouseTracking(true);
    m_list->viewport()->setAutoFillBackground(false);
    setFocusProxy(m_list);
    m_list->installEventFilter(this);
    connect(m_list, &QListView::entered, m_list, &QListView::setCurrentIndex);
    connect(m_list, &QListView::clicked, this, &PictureMenu::pick);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(stackSpacing, stackSpacing, stackSpacing, stackSpacing);
    column->addWidget(m_list);
}

void PictureMenu::popup(const QString &current)
{
    const QWidget &anchor = *parentWidget();
    const QRect room = anchor.screen()->availableGeometry();
    const QRect from(anchor.mapToGlobal(QPoint(0, 0)), anchor.size());
    const QSize size = wantedSize(room.size());
    QPoint corner = from.bottomLeft() + QPoint(0, 1);
    if (corner.y() + size.height() > room.bottom() && from.top() - size.height() >= room.top())
        corner.setY(from.top() - size.height());
    corner.setX(std::clamp(corner.x(), room.left(), std::max(room.left(), room.right() + 1 - size.width())));
    setGeometry(QRect(corner, size));
    show();
    const QAbstractItemModel &names = *m_list->model();
    const QModelIndexList found = names.match(names.index(0, 0), Qt::DisplayRole, current, 1,
                                              Qt::MatchExactly | Qt::MatchCaseSensitive);
    m_list->setCurrentIndex(found.isEmpty() ? names.index(0, 0) : found.first());
    m_list->scrollTo(m_list->currentIndex(), QAbstractItemView::PositionAtCenter);
    m_list->setFocus(Qt::PopupFocusReason);
}

QSize PictureMenu::wantedSize(const QSize &room) const
{
    const int side = m_list->sizeHintForIndex(m_list->model()->index(0, 0)).width();
    const int count = m_list->model()->rowCount();
    const int columns = std::clamp(count, 1, columnCount);
    const int rows = (count + columns - 1) / columns;
    const int around = 2 * stackSpacing;
    QSize size(columns * side + around + 1, rows * side + around + 1);
    const int highest = int(room.height() * screenShare);
    const bool scrolls = size.height() > highest;
    if (scrolls) {
        size.setHeight(highest);
        size.rwidth() += m_list->verticalScrollBar()->sizeHint().width();
    }
    // Else the list would keep room for a bar that is not there.
    m_list->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    return size;
}

void PictureMenu::pick(const QModelIndex &index)
{
    if (!index.isValid())
        return;
    const QString name = index.data().toString();
    close();
    Q_EMIT picked(name);
}

void PictureMenu::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QColor line = palette().color(QPalette::WindowText);
    line.setAlpha(70);
    painter.setPen(line);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

bool PictureMenu::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
            pick(m_list->currentIndex());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace widgets

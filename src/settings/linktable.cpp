// SPDX-License-Identifier: MIT
#include "settings/linktable.h"

#include "settings/linkdelegate.h"
#include "settings/linktablemodel.h"
#include "settings/settingsmetrics.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

constexpr int narrowColumn = 24; // points
constexpr int rowPadding = 10;
constexpr int fewestRows = 3; // that are seen
constexpr qreal cornerRadius = 4;

/// Rounds a table off: covers its corners with the window's colour and draws the line around it.
class RoundCorners : public QWidget
{
public:
    explicit RoundCorners(QWidget *table)
        : QWidget(table)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath inside;
        inside.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
        QPainterPath corners;
        corners.addRect(rect());
        const QPalette &colors = window()->palette();
        painter.fillPath(corners - inside, colors.color(QPalette::Window));
        QColor line = colors.color(QPalette::WindowText);
        line.setAlpha(70);
        painter.strokePath(inside, QPen(line, 1));
    }
};

} // namespace

LinkTable::LinkTable(LinkTableModel &links, QWidget *parent)
    : QTableView(parent)
    , m_links(links)
    , m_corners(new RoundCorners(this))
{
    setObjectName(QStringLiteral("LinkTable"));
    setModel(&links);
    setItemDelegate(new LinkDelegate(this));
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::CurrentChanged | QAbstractItemView::SelectedClicked
                    | QAbstractItemView::AnyKeyPressed | QAbstractItemView::EditKeyPressed);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    viewport()->setAttribute(Qt::WA_Hover);
    setAcceptDrops(false);

    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    QHeaderView &header = *horizontalHeader();
    header.setMinimumSectionSize(narrowColumn);
    header.setSectionsClickable(false);
    header.setHighlightSections(false);
    header.setSectionResizeMode(QHeaderView::Fixed);
    header.setSectionResizeMode(LinkTableModel::NameColumn, QHeaderView::Stretch);
    header.setSectionResizeMode(LinkTableModel::AddressColumn, QHeaderView::Stretch);
    header.resizeSection(LinkTableModel::KindColumn, narrowColumn + 4);
    header.resizeSection(LinkTableModel::RemoveColumn, narrowColumn);
    fitRows();

    connect(this, &QTableView::clicked, this, [this](const QModelIndex &cell) {
        if (cell.column() == LinkTableModel::RemoveColumn)
            requestRemoval(cell);
    });
}

QSize LinkTable::sizeHint() const
{
    return {settings::widestPicker, heightOfRows(fewestRows)};
}

QSize LinkTable::minimumSizeHint() const
{
    return {4 * narrowColumn, heightOfRows(fewestRows)};
}

int LinkTable::heightOfRows(int count) const
{
    return horizontalHeader()->sizeHint().height() + count * verticalHeader()->defaultSectionSize();
}

void LinkTable::fitRows()
{
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(std::max(settings::symbolSize, fontMetrics().height())
                                            + rowPadding);
    updateGeometry();
}

void LinkTable::changeEvent(QEvent *event)
{
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        fitRows();
}

void LinkTable::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    m_corners->setGeometry(rect());
    m_corners->raise();
}

void LinkTable::requestRemoval(const QModelIndex &cell)
{
    Q_EMIT removeRequested(m_links.linkID(cell));
}

/// Makes a cell the current one, and edits it if it is a text.
void LinkTable::enter(const QModelIndex &cell)
{
    if (cell != currentIndex())
        setCurrentIndex(cell);
    else if (cell.flags() & Qt::ItemIsEditable)
        edit(cell);
}

/// Goes to the next place of the row where something can be done. False at the row's ends.
bool LinkTable::step(bool forward)
{
    QModelIndex cell = currentIndex();
    do {
        cell = cell.siblingAtColumn(cell.column() + (forward ? 1 : -1));
    } while (cell.column() == LinkTableModel::AddressColumn && !(cell.flags() & Qt::ItemIsEditable));
    if (!cell.isValid() || cell.column() == LinkTableModel::KindColumn)
        return false;
    enter(cell);
    return true;
}

void LinkTable::closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint)
{
    const bool next = hint == QAbstractItemDelegate::EditNextItem;
    const bool walks = next || hint == QAbstractItemDelegate::EditPreviousItem;
    QTableView::closeEditor(editor, walks ? QAbstractItemDelegate::NoHint : hint);
    if (walks)
        focusNextPrevChild(next);
}

bool LinkTable::focusNextPrevChild(bool next)
{
    return (currentIndex().isValid() && step(next)) || QTableView::focusNextPrevChild(next);
}

void LinkTable::focusInEvent(QFocusEvent *event)
{
    QTableView::focusInEvent(event);
    const bool back = event->reason() == Qt::BacktabFocusReason;
    if (m_links.rowCount() > 0 && (back || event->reason() == Qt::TabFocusReason)) {
        const int row = std::max(0, currentIndex().row());
        enter(m_links.index(row, back ? LinkTableModel::RemoveColumn : LinkTableModel::NameColumn));
    }
}

void LinkTable::keyPressEvent(QKeyEvent *event)
{
    if (currentIndex().column() == LinkTableModel::RemoveColumn) {
        switch (event->key()) {
        case Qt::Key_Delete:
        case Qt::Key_Space:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            requestRemoval(currentIndex());
            return;
        default:
            break;
        }
    }
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && state() != EditingState) { // the field passes on the one that ends it
        enter(currentIndex());
        return;
    }
    QTableView::keyPressEvent(event);
}

void LinkTable::mousePressEvent(QMouseEvent *event)
{
    QTableView::mousePressEvent(event);
    m_pressedField.clear();
    const QModelIndex cell = indexAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || !(cell.flags() & Qt::ItemIsEditable))
        return;
    if (!indexWidget(cell))
        edit(cell); // it was the current cell already
    // The editor opens with all of its text selected. The press goes on to it, so that the cursor stands
    // where it was aimed, and so does what follows while the button is held.
    m_pressedField = qobject_cast<QLineEdit *>(indexWidget(cell));
    if (!m_pressedField)
        return;
    m_pressedPosition =
        m_pressedField->cursorPositionAt(m_pressedField->mapFrom(viewport(), event->position().toPoint()));
    m_pressedField->setCursorPosition(m_pressedPosition);
}

/// On a trash the second press would meet the link that has just moved up.
void LinkTable::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (indexAt(event->position().toPoint()).column() != LinkTableModel::RemoveColumn)
        QTableView::mouseDoubleClickEvent(event);
}

void LinkTable::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_pressedField || !(event->buttons() & Qt::LeftButton)) {
        QTableView::mouseMoveEvent(event);
        return;
    }
    const int position =
        m_pressedField->cursorPositionAt(m_pressedField->mapFrom(viewport(), event->position().toPoint()));
    m_pressedField->setSelection(m_pressedPosition, position - m_pressedPosition);
}

// SPDX-License-Identifier: MIT
#include "settings/linkdelegate.h"

#include "links/linkkind.h"
#include "settings/linktablemodel.h"
#include "settings/plainfield.h"
#include "settings/settingsmetrics.h"
#include "themes/palette.h"
#include "themes/symbolimage.h"
#include "widgets/focusring.h"

#include <QPainter>

namespace {

constexpr int textMargin = 4; // points, the same painted and edited

/// Red that can be read on the palette's background.
QColor red(const QPalette &palette)
{
    const bool onDark = palette.color(QPalette::Base).lightness() < 128;
    return onDark ? QColor(255, 105, 97) : themes::paletteColor(u"red");
}

QColor textColor(const QPalette &palette, const QModelIndex &index)
{
    const bool isWrong = index.column() == LinkTableModel::AddressColumn
        && index.data(LinkTableModel::KindRole).toString() == QLatin1String("unknown");
    return isWrong ? red(palette) : palette.color(QPalette::Text);
}

void drawSymbol(QPainter &painter, const QRect &cell, const QString &symbol, const QColor &tint)
{
    const QImage image = themes::symbolImage(symbol, tint, settings::symbolSize);
    const QPoint corner(cell.left() + (cell.width() - settings::symbolSize) / 2,
                        cell.top() + (cell.height() - settings::symbolSize) / 2);
    painter.drawImage(QRect(corner, QSize(settings::symbolSize, settings::symbolSize)), image);
}

} // namespace

void LinkDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    if (option.features & QStyleOptionViewItem::Alternate)
        painter->fillRect(option.rect, option.palette.brush(QPalette::AlternateBase));
    switch (index.column()) {
    case LinkTableModel::KindColumn: {
        const QString kind = index.data(LinkTableModel::KindRole).toString();
        drawSymbol(*painter, option.rect, links::symbolOfKind(kind), links::tintOfKind(kind));
        break;
    }
    case LinkTableModel::RemoveColumn: {
        const bool hovered = option.state & QStyle::State_MouseOver;
        drawSymbol(*painter, option.rect, QStringLiteral("trash.fill"),
                   hovered ? red(option.palette)
                           : option.palette.color(QPalette::Disabled, QPalette::WindowText));
        break;
    }
    default: {
        const QRect text = option.rect.adjusted(textMargin, 0, -textMargin, 0);
        painter->setFont(option.font);
        painter->setPen(textColor(option.palette, index));
        painter->setLayoutDirection(
            index.column() == LinkTableModel::AddressColumn ? Qt::LeftToRight : Qt::LayoutDirectionAuto);
        painter->drawText(
            text,
            QStyle::visualAlignment(option.direction, Qt::AlignLeading | Qt::AlignVCenter)
                | Qt::TextSingleLine,
            option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, text.width()));
    }
    }
    if (option.state & QStyle::State_HasFocus)
        widgets::drawFocusRing(*painter, option.rect, option.palette.color(QPalette::Highlight));
    painter->restore();
}

QWidget *LinkDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                    const QModelIndex &index) const
{
    auto *field = new PlainField(parent);
    field->setObjectName(QStringLiteral("CellField"));
    // The field's own text starts 2 points further in.
    field->setTextMargins(textMargin - 2, 0, textMargin - 2, 0);
    if (index.column() == LinkTableModel::AddressColumn)
        field->setLayoutDirection(Qt::LeftToRight);
    field->setAccessibleName(
        index.model()->headerData(index.column(), Qt::Horizontal, Qt::AccessibleTextRole).toString());
    connect(field, &QLineEdit::textEdited, this,
            [this, field] { Q_EMIT const_cast<LinkDelegate *>(this)->commitData(field); });
    return field;
}

/// Touches the text only when it differs: the cursor, and what an input method has pending, stay.
void LinkDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *field = qobject_cast<QLineEdit *>(editor);
    const QString text = index.data(Qt::EditRole).toString();
    if (field->text() != text)
        field->setText(text);
    QPalette palette = field->parentWidget()->palette();
    palette.setColor(QPalette::Text, textColor(palette, index));
    if (field->palette() != palette)
        field->setPalette(palette);
}

void LinkDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    model->setData(index, qobject_cast<QLineEdit *>(editor)->text(), Qt::EditRole);
}

void LinkDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                        const QModelIndex &) const
{
    editor->setGeometry(option.rect);
}

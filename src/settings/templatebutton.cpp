// SPDX-License-Identifier: MIT
#include "settings/templatebutton.h"

#include "links/linktemplates.h"
#include "platform/localized.h"
#include "themes/palette.h"
#include "themes/symbolimage.h"
#include "widgets/focusring.h"
#include "widgets/metrics.h"

#include <QKeyEvent>
#include <QPainter>
#include <QTextLayout>

namespace {

constexpr int symbolSize = 20; // points
constexpr int mostLines = 3;
constexpr int margin = 3;
constexpr qreal cornerRadius = 8;

/// The text in as many lines as are needed, the last that there is room for elided.
QStringList wrapped(const QString &text, const QFont &font, int width)
{
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    while (lines.size() < mostLines) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(width);
        const bool isLast = lines.size() + 1 == mostLines;
        lines += isLast ? QFontMetrics(font).elidedText(text.mid(line.textStart()), Qt::ElideRight, width)
                        : text.mid(line.textStart(), line.textLength()).trimmed();
    }
    layout.endLayout();
    return lines;
}

} // namespace

TemplateButton::TemplateButton(const links::LinkTemplate &source, QWidget *parent)
    : QAbstractButton(parent)
    , m_label(platform::localized(source.label))
    , m_symbol(QLatin1String(source.symbol))
    , m_color(themes::paletteColor(QString::fromLatin1(source.color)))
{
    setObjectName(QLatin1String(source.label));
    setAccessibleName(m_label);
    setToolTip(m_label);
    setFixedSize(side, side);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    QFont font = this->font();
    font.setPixelSize(widgets::captionFontSize);
    font.setBold(true);
    setFont(font);
}

void TemplateButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isDown() ? m_color.darker(130) : underMouse() ? m_color.lighter(112) : m_color);
    painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);

    const QStringList lines = wrapped(m_label, font(), width() - 2 * margin);
    const int lineHeight = fontMetrics().height();
    int y = (height() - symbolSize - 2 - int(lines.size()) * lineHeight) / 2;
    const QImage symbol = themes::symbolImage(m_symbol, Qt::white, symbolSize);
    painter.drawImage(QRect((width() - symbolSize) / 2, y, symbolSize, symbolSize), symbol);
    y += symbolSize + 2;
    painter.setPen(Qt::white);
    for (const QString &line : lines) {
        painter.drawText(QRect(0, y, width(), lineHeight), Qt::AlignCenter | Qt::TextSingleLine, line);
        y += lineHeight;
    }
    if (widgets::showsFocus(*this))
        widgets::drawFocusRing(painter, QRectF(rect()).adjusted(2, 2, -2, -2), Qt::white);
}

void TemplateButton::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

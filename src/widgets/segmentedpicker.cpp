// SPDX-License-Identifier: MIT
#include "widgets/segmentedpicker.h"

#include "widgets/focusring.h"
#include "widgets/plaintext.h"

#include <QAccessibleWidget>
#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QRadioButton>

namespace widgets {

namespace {

constexpr int textMargin = 12; // points, on each side
constexpr int textPadding = 5; // above and below
constexpr int narrowest = 20;
constexpr qreal cornerRadius = 5;

QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    auto *picker = qobject_cast<SegmentedPicker *>(object);
    return picker ? new QAccessibleWidget(picker, QAccessible::Grouping) : nullptr;
}

} // namespace

/// One choice. Paints its part of the row's frame.
class Segment : public QRadioButton
{
public:
    explicit Segment(QWidget *row)
        : QRadioButton(row)
    {
        setAttribute(Qt::WA_Hover);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    }

    // Not the button's own text: an ampersand in it would become a shortcut.
    void setLabel(const QString &text)
    {
        if (text == m_text)
            return;
        m_text = text;
        setAccessibleName(text);
        updateToolTip();
        updateGeometry();
        update();
    }

    QSize sizeHint() const override
    {
        return {fontMetrics().horizontalAdvance(m_text) + 1 + 2 * textMargin,
                fontMetrics().height() + 2 * textPadding};
    }
    QSize minimumSizeHint() const override { return {narrowest, sizeHint().height()}; }

protected:
    bool hitButton(const QPoint &position) const override { return rect().contains(position); }
    void resizeEvent(QResizeEvent *) override { updateToolTip(); }
    void paintEvent(QPaintEvent *) override;

private:
    void updateToolTip() { setToolTip(sizeHint().width() > width() ? plainToolTip(m_text) : QString()); }

    QString m_text;
};

void Segment::paintEvent(QPaintEvent *)
{
    const QPalette &colors = palette();
    const bool chosen = isChecked();
    QColor fill = colors.color(chosen ? QPalette::Highlight : QPalette::Button);
    if (isDown())
        fill = fill.darker(115);
    else if (underMouse() && !chosen)
        fill = fill.lighter(108);
    QColor line = colors.color(QPalette::WindowText);
    line.setAlpha(70);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.save();
    painter.translate(-pos()); // the frame is the row's, drawn through this segment's window
    painter.setPen(QPen(line, 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(parentWidget()->rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius,
                            cornerRadius);
    painter.restore();
    if (x() > 0)
        painter.fillRect(QRectF(0, 1, 1, height() - 2), line);

    const QColor ink = colors.color(chosen ? QPalette::HighlightedText : QPalette::ButtonText);
    const int margin = qMin(textMargin, qMax(2, (width() - fontMetrics().horizontalAdvance(m_text)) / 2));
    const QRect text = rect().adjusted(margin, 0, -margin, 0);
    painter.setPen(ink);
    painter.drawText(text, Qt::AlignCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_text, Qt::ElideRight, text.width()));
    if (showsFocus(*this))
        drawFocusRing(painter, QRectF(rect()).adjusted(2, 2, -2, -2),
                      chosen ? ink : colors.color(QPalette::Highlight));
}

SegmentedPicker::SegmentedPicker(QWidget *parent)
    : QWidget(parent)
{
    [[maybe_unused]] static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus); // for the label that names it; the segments take the focus
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
}

void SegmentedPicker::setOptions(const QStringList &texts)
{
    while (m_segments.size() > texts.size())
        delete m_segments.takeLast();
    while (m_segments.size() < texts.size()) {
        auto *segment = new Segment(this);
        connect(segment, &QAbstractButton::clicked, this, [this, segment] {
            syncFocus();
            Q_EMIT activated(int(m_segments.indexOf(segment)));
        });
        layout()->addWidget(segment);
        // The Tab key would come to it last, after all that was made before it.
        QWidget *before = m_segments.isEmpty() ? this : static_cast<QWidget *>(m_segments.last());
        setTabOrder(before, segment);
        m_segments.append(segment);
    }
    for (qsizetype i = 0; i < texts.size(); ++i)
        m_segments.at(i)->setLabel(texts.at(i));
    syncFocus();
}

int SegmentedPicker::currentIndex() const
{
    for (int i = 0; i < count(); ++i) {
        if (m_segments.at(i)->isChecked())
            return i;
    }
    return -1;
}

void SegmentedPicker::setCurrentIndex(int index)
{
    if (index == currentIndex())
        return;
    for (Segment *segment : std::as_const(m_segments)) {
        // A radio button cannot be switched off while it minds the others.
        segment->setAutoExclusive(false);
        segment->setChecked(false);
        segment->setAutoExclusive(true);
    }
    if (index >= 0 && index < count())
        m_segments.at(index)->setChecked(true);
    syncFocus();
}

/// The row is one stop of the Tab key: its chosen segment, or the first when none is.
void SegmentedPicker::syncFocus()
{
    const int stop = qMax(0, currentIndex());
    for (int i = 0; i < count(); ++i)
        m_segments.at(i)->setFocusPolicy(i == stop ? Qt::StrongFocus : Qt::ClickFocus);
    setFocusProxy(m_segments.value(stop));
}

} // namespace widgets

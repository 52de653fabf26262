// SPDX-License-Identifier: MIT
#include "widgets/popover.h"

#include "platform/floatingwindow.h"
#include "widgets/metrics.h"
#include "widgets/popoverbackdrop.h"

#include <QApplication>
#include <QBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace widgets {

namespace {

constexpr int cornerRadius = 10;
constexpr int arrowHeight = 9;
constexpr int arrowHalfWidth = 10;
constexpr int shadowWidth = 12;
constexpr int shadowAlpha = 5; // of each of the shadow's rings
constexpr qreal screenShare = 0.6;

/// The one that is open; opening another sends it away.
QPointer<Popover> &openPopover()
{
    static QPointer<Popover> popover;
    return popover;
}

} // namespace

Popover::Popover(QWidget &anchor, Side side)
    : QWidget(&anchor,
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint)
    , m_anchor(anchor)
    , m_side(side)
{
    if (platform::mustBypassManager()) // which has no keyboard for tools
        setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
    setAttribute(Qt::WA_TranslucentBackground);
    auto *layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetNoConstraint);
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state != Qt::ApplicationActive && !m_backdrop)
            dismiss();
    });
}

Popover::~Popover() = default;

void Popover::setContent(QWidget *content)
{
    delete m_content;
    m_content = content;
    layout()->addWidget(content);
}

void Popover::open(Activation activation)
{
    if (openPopover() && openPopover() != this)
        openPopover()->dismiss();
    openPopover() = this;
    setAttribute(Qt::WA_ShowWithoutActivating, activation == Activation::LeaveFocus);
    setAttribute(Qt::WA_KeyboardFocusChange, m_anchor.window()->testAttribute(Qt::WA_KeyboardFocusChange));
    place();
    qApp->installEventFilter(this);
    if (platform::mustBypassManager()) {
        m_backdrop = new PopoverBackdrop(*this, m_anchor.screen()->virtualGeometry());
        connect(m_backdrop, &PopoverBackdrop::left, this, &Popover::dismiss);
    } else {
        m_pressWatcher.emplace([this] {
            if (!QApplication::widgetAt(QCursor::pos()))
                QMetaObject::invokeMethod(this, &Popover::dismiss, Qt::QueuedConnection);
        });
    }
    show();
    if (activation == Activation::TakeFocus) {
        raise();
        if (m_backdrop)
            m_backdrop->takeKeyboard();
        else
            activateWindow();
        if (m_content->focusProxy())
            m_content->setFocus(Qt::PopupFocusReason);
    }
}

void Popover::dismiss()
{
    if (!isVisible())
        return;
    hide();
    Q_EMIT dismissed();
}

/// A popover that was hidden lives on until the event loop deletes it. By then another one may listen, and
/// ending this one's watch would make that one deaf.
void Popover::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous()) {
        qApp->removeEventFilter(this);
        m_pressWatcher.reset();
        if (m_backdrop) { // by a press on it, perhaps
            m_backdrop->hide();
            m_backdrop->deleteLater();
            m_backdrop = nullptr;
        }
    }
}

bool Popover::isInside(const QWidget *widget) const
{
    for (; widget; widget = widget->parentWidget()) {
        if (widget == this || widget == &m_anchor)
            return true;
    }
    return false;
}

bool Popover::eventFilter(QObject *watched, QEvent *event)
{
    const auto *widget = qobject_cast<QWidget *>(watched);
    if (!widget)
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        // Panels and the settings window are windows of their own and leave it open.
        if (widget->window() == m_anchor.window() && !isInside(widget))
            dismiss();
        break;
    case QEvent::Move:
    case QEvent::Resize:
        if (widget == m_anchor.window() || widget == &m_anchor)
            place();
        break;
    default:
        break;
    }
    return false;
}

bool Popover::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest && isVisible())
        place();
    return QWidget::event(event);
}

void Popover::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Escape) {
        QWidget::keyPressEvent(event);
        return;
    }
    m_anchor.window()->activateWindow();
    m_anchor.setFocus(Qt::PopupFocusReason);
    dismiss();
}

QMargins Popover::frameMargins(Edge arrow) const
{
    // Towards the anchor the window ends at the arrow's tip: a shadow that reached over the anchor's window
    // would take its clicks.
    QMargins margins(shadowWidth, shadowWidth, shadowWidth, shadowWidth);
    switch (arrow) {
    case Edge::Top:
        margins.setTop(arrowHeight);
        break;
    case Edge::Bottom:
        margins.setBottom(arrowHeight);
        break;
    case Edge::Left:
        margins.setLeft(arrowHeight);
        break;
    case Edge::Right:
        margins.setRight(arrowHeight);
        break;
    }
    return margins;
}

void Popover::place()
{
    const QRect anchor(m_anchor.mapToGlobal(QPoint(0, 0)), m_anchor.size());
    const QScreen *screen = m_anchor.screen();
    if (!screen || !m_content)
        return;
    const QRect room = screen->geometry();
    const QMargins padding(defaultPadding - rowInset, defaultPadding, defaultPadding - rowInset,
                           defaultPadding);

    QSize body = m_content->sizeHint().expandedTo(m_content->minimumSizeHint()).grownBy(padding);
    body.setHeight(std::min(body.height(), int(room.height() * screenShare)));
    body.setWidth(std::min(body.width(), room.width() - 2 * shadowWidth));

    const int above = anchor.top() - room.top();
    const int below = room.bottom() - anchor.bottom();
    const int needed = body.height() + arrowHeight;
    if (m_side == Side::Above) {
        m_arrowEdge = above >= needed || above >= below ? Edge::Bottom : Edge::Top;
    } else if (m_side == Side::Below) {
        m_arrowEdge = below >= needed || below >= above ? Edge::Top : Edge::Bottom;
    } else {
        const bool fits = room.right() - anchor.right() >= body.width() + arrowHeight;
        const bool opposite = anchor.left() - room.left() > room.right() - anchor.right();
        m_arrowEdge = fits || !opposite ? Edge::Left : Edge::Right;
    }

    const QMargins margins = frameMargins(m_arrowEdge);
    QSize whole = body.grownBy(margins);
    const qreal scale = m_anchor.devicePixelRatioF();
    if (scale != std::floor(scale)) // one that is rounded down cuts the last row
        whole = {(whole.width() + 3) & ~3, (whole.height() + 3) & ~3}; // whole pixels at quarters, too
    const QPoint middle = anchor.center() + QPoint(anchor.width() % 2 ? 0 : 1, anchor.height() % 2 ? 0 : 1);
    QPoint corner;
    const auto within = [](int wanted, int low, int high) { return std::max(low, std::min(wanted, high)); };
    if (m_arrowEdge == Edge::Bottom || m_arrowEdge == Edge::Top) {
        corner.setX(within(middle.x() - whole.width() / 2, room.left() - shadowWidth / 2,
                           room.right() + 1 - whole.width() + shadowWidth / 2));
        corner.setY(m_arrowEdge == Edge::Bottom ? anchor.top() - whole.height() : anchor.bottom() + 1);
        const int inset = shadowWidth + cornerRadius + arrowHalfWidth;
        m_arrowPosition = within(middle.x() - corner.x(), inset, whole.width() - inset);
    } else {
        corner.setY(within(middle.y() - whole.height() / 2, room.top() - shadowWidth / 2,
                           room.bottom() + 1 - whole.height() + shadowWidth / 2));
        corner.setX(m_arrowEdge == Edge::Left ? anchor.right() + 1 : anchor.left() - whole.width());
        const int inset = shadowWidth + cornerRadius + arrowHalfWidth;
        m_arrowPosition = within(middle.y() - corner.y(), inset, whole.height() - inset);
    }

    layout()->setContentsMargins(margins + padding);
    m_picture = QImage();
    setGeometry(QRect(corner, whole));
    if (platform::isCompositing())
        clearMask();
    else // what is left transparent would be black
        setMask(QRegion(outline().toFillPolygon().toPolygon()));
    update();
}

QPainterPath Popover::outline() const
{
    const QRectF body = QRectF(rect()).marginsRemoved(frameMargins(m_arrowEdge));
    QPainterPath path;
    path.addRoundedRect(body, cornerRadius, cornerRadius);

    QPolygonF arrow;
    const qreal at = m_arrowPosition;
    switch (m_arrowEdge) {
    case Edge::Bottom:
        arrow << QPointF(at - arrowHalfWidth, body.bottom() - 1) << QPointF(at, height())
              << QPointF(at + arrowHalfWidth, body.bottom() - 1);
        break;
    case Edge::Top:
        arrow << QPointF(at - arrowHalfWidth, body.top() + 1) << QPointF(at, 0)
              << QPointF(at + arrowHalfWidth, body.top() + 1);
        break;
    case Edge::Left:
        arrow << QPointF(body.left() + 1, at - arrowHalfWidth) << QPointF(0, at)
              << QPointF(body.left() + 1, at + arrowHalfWidth);
        break;
    case Edge::Right:
        arrow << QPointF(body.right() - 1, at - arrowHalfWidth) << QPointF(width(), at)
              << QPointF(body.right() - 1, at + arrowHalfWidth);
        break;
    }
    QPainterPath tip;
    tip.addPolygon(arrow);
    tip.closeSubpath();
    return path.united(tip);
}

void Popover::paintEvent(QPaintEvent *)
{
    const qreal scale = devicePixelRatioF();
    if (m_picture.isNull() || m_picture.devicePixelRatio() != scale) {
        m_picture = QImage(size() * scale, QImage::Format_ARGB32_Premultiplied);
        m_picture.setDevicePixelRatio(scale);
        m_picture.fill(Qt::transparent);
        QPainter painter(&m_picture);
        painter.setRenderHint(QPainter::Antialiasing);
        const QPainterPath path = outline();
        for (int ring = shadowWidth; ring >= 1; --ring) {
            painter.setPen(
                QPen(QColor(0, 0, 0, shadowAlpha), 2 * ring, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            painter.drawPath(path);
        }
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(QPalette::Window));
        painter.drawPath(path);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        QColor rim = palette().color(QPalette::WindowText);
        rim.setAlpha(48);
        painter.setPen(QPen(rim, 1));
        painter.setBrush(Qt::NoBrush);
        painter.setClipPath(path);
        painter.drawPath(path);
    }
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(0, 0, m_picture);
}

} // namespace widgets

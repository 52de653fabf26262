// SPDX-License-Identifier: MIT
#include "platform/windowshadow.h"

#include "platform/x11.h"

#include <QImage>
#include <QPainter>

#include <algorithm>

namespace platform {

using namespace x11;

namespace {

constexpr int reach = 14; // pixels from the window's edge outwards
constexpr int ringAlpha = 5; // of each of the rings that make it up
constexpr int corner = 2 * reach; // the inner half lies below the window, whose corners may be round

bool isSupported(xcb_connection_t *x, xcb_atom_t supported, xcb_atom_t property)
{
    constexpr uint32_t longest = 1024; // atoms
    const auto reply = rootProperty(x, supported, XCB_ATOM_ATOM, longest);
    if (!reply)
        return false;
    const auto *first = static_cast<const xcb_atom_t *>(xcb_get_property_value(reply.get()));
    const auto *last = first + xcb_get_property_value_length(reply.get()) / int(sizeof(xcb_atom_t));
    return std::find(first, last, property) != last;
}

/// The whole shadow of the smallest window that has one, one pixel larger than its four corners.
QImage drawShadow()
{
    QImage image(2 * corner + 1, 2 * corner + 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF window = QRectF(image.rect()).adjusted(reach, reach, -reach, -reach);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, ringAlpha));
    for (int ring = reach; ring >= 1; --ring)
        painter.drawRoundedRect(window.adjusted(-ring, -ring, ring, ring), ring + 8, ring + 8);
    return image;
}

xcb_pixmap_t upload(xcb_connection_t *x, const QImage &image)
{
    constexpr uint8_t depth = 32;
    const xcb_pixmap_t pixmap = xcb_generate_id(x);
    xcb_create_pixmap(x, depth, pixmap, rootWindow(x), uint16_t(image.width()), uint16_t(image.height()));
    const xcb_gcontext_t context = xcb_generate_id(x);
    xcb_create_gc(x, context, pixmap, 0, nullptr);
    xcb_put_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context, uint16_t(image.width()),
                  uint16_t(image.height()), 0, 0, 0, depth, uint32_t(image.sizeInBytes()), image.constBits());
    xcb_free_gc(x, context);
    return pixmap;
}

} // namespace

WindowShadow::~WindowShadow()
{
    xcb_connection_t *x = m_state == State::Supported ? connection() : nullptr;
    for (const uint32_t pixmap : m_pictures) {
        if (x)
            xcb_free_pixmap(x, pixmap);
    }
}

void WindowShadow::prepare()
{
    m_state = State::Unsupported;
    xcb_connection_t *x = connection();
    if (!x)
        return;
    const auto [supported, property] = atoms<2>(x, {"_NET_SUPPORTED", "_KDE_NET_WM_SHADOW"});
    m_property = property;
    if (!isSupported(x, supported, property))
        return;
    m_state = State::Supported;
    const QImage whole = drawShadow();
    constexpr int far = corner + 1;
    const std::array<QRect, 8> parts = {QRect(corner, 0, 1, corner),   QRect(far, 0, corner, corner),
                                        QRect(far, corner, corner, 1), QRect(far, far, corner, corner),
                                        QRect(corner, far, 1, corner), QRect(0, far, corner, corner),
                                        QRect(0, corner, corner, 1),   QRect(0, 0, corner, corner)};
    std::transform(parts.begin(), parts.end(), m_pictures.begin(),
                   [&](const QRect &part) { return upload(x, whole.copy(part)); });
}

void WindowShadow::apply(quintptr window, const QMargins &margins)
{
    if (m_state == State::Unknown)
        prepare();
    if (m_state != State::Supported)
        return;
    std::array<uint32_t, 12> value;
    std::copy(m_pictures.begin(), m_pictures.end(), value.begin());
    value[8] = uint32_t(reach - margins.top());
    value[9] = uint32_t(reach - margins.right()); // below zero: inside the window
    value[10] = uint32_t(reach - margins.bottom());
    value[11] = uint32_t(reach - margins.left());
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, xcb_window_t(window), m_property,
                        XCB_ATOM_CARDINAL, 32, uint32_t(value.size()), value.data());
    xcb_flush(connection());
}

} // namespace platform

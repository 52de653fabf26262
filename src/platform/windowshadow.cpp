// SPDX-License-Identifier: MIT
#include "platform/windowshadow.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace platform {

namespace {

constexpr int reach = 14; // pixels from the window's edge outwards
constexpr int ringAlpha = 5; // of each of the rings that make it up
constexpr int corner = 2 * reach; // the inner half lies below the window, whose corners may be round

template <typename Reply> using OwnedReply = std::unique_ptr<Reply, decltype(&std::free)>;

xcb_connection_t *connection()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_window_t rootWindow(xcb_connection_t *x)
{
    return xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
}

xcb_atom_t atom(xcb_connection_t *x, const char *name)
{
    const OwnedReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(x, xcb_intern_atom(x, false, uint16_t(qstrlen(name)), name), nullptr),
        &std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

bool isSupported(xcb_connection_t *x, xcb_atom_t property)
{
    constexpr uint32_t longest = 1024; // atoms
    const xcb_get_property_cookie_t cookie =
        xcb_get_property(x, false, rootWindow(x), atom(x, "_NET_SUPPORTED"), XCB_ATOM_ATOM, 0, longest);
    const OwnedReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(x, cookie, nullptr), &std::free);
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
    m_property = atom(x, "_KDE_NET_WM_SHADOW");
    if (!isSupported(x, m_property))
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

// SPDX-License-Identifier: MIT
#include "platform/floatingwindow.h"

#include "platform/x11.h"

#include <QRegion>

#include <vector>

#include <dlfcn.h>

namespace platform {

using namespace x11;

namespace {

constexpr uint32_t allDesktops = 0xFFFFFFFF;

constexpr std::array<const char *, 5> stateNames = {"_NET_WM_DESKTOP", "_NET_WM_STATE",
                                                    "_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR",
                                                    "_NET_WM_STATE_SKIP_PAGER"};

void sendToRoot(xcb_connection_t *x, xcb_window_t window, xcb_atom_t type,
                const std::array<uint32_t, 5> &data)
{
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(x, false, rootWindow(x),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&message));
}

} // namespace

bool mustBypassManager()
{
    // Both: a shell keeps the first one from a session that is over.
    return qEnvironmentVariableIsSet("SWAYSOCK") && qEnvironmentVariableIsSet("WAYLAND_DISPLAY")
        && connection();
}

void floatOnAllDesktops(quintptr window)
{
    xcb_connection_t *x = connection();
    if (!x)
        return;
    const auto [desktop, state, sticky, skipTaskbar, skipPager] = atoms(x, stateNames);
    const auto id = xcb_window_t(window);
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, id, desktop, XCB_ATOM_CARDINAL, 32, 1, &allDesktops);
    // Qt reads this property when it maps the window and keeps what it finds there.
    const std::array<xcb_atom_t, 3> states = {sticky, skipTaskbar, skipPager};
    xcb_change_property(x, XCB_PROP_MODE_APPEND, id, state, XCB_ATOM_ATOM, 32, states.size(), states.data());
}

void requestAllDesktops(quintptr window)
{
    xcb_connection_t *x = connection();
    if (!x)
        return;
    const auto [desktop, state, sticky, skipTaskbar, skipPager] = atoms(x, stateNames);
    const auto id = xcb_window_t(window);
    constexpr uint32_t add = 1;
    constexpr uint32_t fromApplication = 1;
    sendToRoot(x, id, desktop, {allDesktops, fromApplication, 0, 0, 0});
    sendToRoot(x, id, state, {add, sticky, skipTaskbar, fromApplication, 0});
    sendToRoot(x, id, state, {add, skipPager, 0, fromApplication, 0});
    xcb_flush(x);
}

void setInputRegion(quintptr window, const QRegion &region, qreal scale)
{
    using Rectangles =
        xcb_void_cookie_t(xcb_connection_t *, uint8_t operation, uint8_t kind, uint8_t order, xcb_window_t,
                          int16_t x, int16_t y, uint32_t, const xcb_rectangle_t *);
    constexpr uint8_t replace = 0;
    constexpr uint8_t inputShape = 2;
    // There with the toolkit's X11 plugin, and needed too seldom to be linked.
    static void *const library = ::dlopen("libxcb-shape.so.0", RTLD_LAZY);
    static auto *const shape =
        library ? reinterpret_cast<Rectangles *>(::dlsym(library, "xcb_shape_rectangles")) : nullptr;
    xcb_connection_t *x = connection();
    if (!x || !shape)
        return;
    std::vector<xcb_rectangle_t> rectangles;
    for (const QRect &part : region) {
        const QRect pixels =
            QRectF(QPointF(part.topLeft()) * scale, QSizeF(part.size()) * scale).toAlignedRect();
        rectangles.push_back(
            {int16_t(pixels.x()), int16_t(pixels.y()), uint16_t(pixels.width()), uint16_t(pixels.height())});
    }
    shape(x, replace, inputShape, XCB_CLIP_ORDERING_UNSORTED, xcb_window_t(window), 0, 0,
          uint32_t(rectangles.size()), rectangles.data());
    xcb_flush(x);
}

void moveToCurrentDesktop(quintptr window)
{
    xcb_connection_t *x = connection();
    if (!x)
        return;
    const auto [current, desktop] = atoms<2>(x, {"_NET_CURRENT_DESKTOP", "_NET_WM_DESKTOP"});
    const auto reply = rootProperty(x, current, XCB_ATOM_CARDINAL, 1);
    if (!reply || xcb_get_property_value_length(reply.get()) != sizeof(uint32_t))
        return;
    constexpr uint32_t fromApplication = 1;
    const uint32_t number = *static_cast<const uint32_t *>(xcb_get_property_value(reply.get()));
    sendToRoot(x, xcb_window_t(window), desktop, {number, fromApplication, 0, 0, 0});
    xcb_flush(x);
}

bool isPointerPressed()
{
    xcb_connection_t *x = connection();
    if (!x)
        return false;
    const Owned<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(x, xcb_query_pointer(x, rootWindow(x)), nullptr));
    constexpr uint16_t buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
    return reply && (reply->mask & buttons);
}

bool isCompositing()
{
    xcb_connection_t *x = connection();
    if (!x)
        return true;
    static const auto [manager] = atoms<1>(x, {"_NET_WM_CM_S0"});
    const Owned<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, manager), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

} // namespace platform

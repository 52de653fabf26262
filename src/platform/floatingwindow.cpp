// SPDX-License-Identifier: MIT
#include "platform/floatingwindow.h"

#include <QGuiApplication>

#include <array>
#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace platform {

namespace {

constexpr uint32_t allDesktops = 0xFFFFFFFF;

template <typename Reply> using OwnedReply = std::unique_ptr<Reply, decltype(&std::free)>;

xcb_connection_t *connection()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

/// Names to numbers in one round trip.
template <size_t count>
std::array<xcb_atom_t, count> atoms(xcb_connection_t *x, const std::array<const char *, count> &names)
{
    std::array<xcb_intern_atom_cookie_t, count> cookies;
    for (size_t i = 0; i < count; ++i)
        cookies[i] = xcb_intern_atom(x, false, uint16_t(qstrlen(names[i])), names[i]);
    std::array<xcb_atom_t, count> result;
    for (size_t i = 0; i < count; ++i) {
        const OwnedReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(x, cookies[i], nullptr),
                                                        &std::free);
        result[i] = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }
    return result;
}

constexpr std::array<const char *, 5> stateNames = {"_NET_WM_DESKTOP", "_NET_WM_STATE",
                                                    "_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR",
                                                    "_NET_WM_STATE_SKIP_PAGER"};

xcb_window_t rootWindow(xcb_connection_t *x)
{
    return xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
}

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

void moveToCurrentDesktop(quintptr window)
{
    xcb_connection_t *x = connection();
    if (!x)
        return;
    const auto [current, desktop] = atoms<2>(x, {"_NET_CURRENT_DESKTOP", "_NET_WM_DESKTOP"});
    const xcb_get_property_cookie_t cookie =
        xcb_get_property(x, false, rootWindow(x), current, XCB_ATOM_CARDINAL, 0, 1);
    const OwnedReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(x, cookie, nullptr), &std::free);
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
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    const OwnedReply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(x, xcb_query_pointer(x, root), nullptr), &std::free);
    constexpr uint16_t buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
    return reply && (reply->mask & buttons);
}

bool isCompositing()
{
    xcb_connection_t *x = connection();
    if (!x)
        return true;
    const auto [manager] = atoms<1>(x, {"_NET_WM_CM_S0"});
    const OwnedReply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, manager), nullptr), &std::free);
    return reply && reply->owner != XCB_WINDOW_NONE;
}

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include <QGuiApplication>

#include <array>
#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

/// What the sources that talk to the X server share. None of its types leaves this folder.
namespace platform::x11 {

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};
template <typename Reply> using Owned = std::unique_ptr<Reply, Free>;

/// The toolkit's own; null on another window system.
inline xcb_connection_t *connection()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

inline xcb_window_t rootWindow(xcb_connection_t *x)
{
    return xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
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
        const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(x, cookies[i], nullptr));
        result[i] = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }
    return result;
}

/// A property of the root window, up to `longest` 32-bit values of it. Null without a reply.
inline Owned<xcb_get_property_reply_t> rootProperty(xcb_connection_t *x, xcb_atom_t name, xcb_atom_t type,
                                                    uint32_t longest)
{
    return Owned<xcb_get_property_reply_t>(xcb_get_property_reply(
        x, xcb_get_property(x, false, rootWindow(x), name, type, 0, longest), nullptr));
}

} // namespace platform::x11

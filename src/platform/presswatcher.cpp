// SPDX-License-Identifier: MIT
#include "platform/presswatcher.h"

#include "platform/x11.h"

#include <dlfcn.h>

// The extension's own header names a parameter "explicit".
#if defined(__clang__)
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicit_
#include <xcb/xinput.h>
#undef explicit

namespace platform {

namespace {

/// The library is there with the toolkit's X11 plugin; asking for it here keeps it out of the program's
/// start.
template <typename Function> Function *lookUp(const char *name)
{
    static void *const library = ::dlopen("libxcb-xinput.so.0", RTLD_LAZY);
    return library ? reinterpret_cast<Function *>(::dlsym(library, name)) : nullptr;
}

/// What the X server sends us of the pointer's raw events from now on.
void selectRawEvents(uint32_t events)
{
    xcb_connection_t *x = x11::connection();
    static const auto select = lookUp<decltype(xcb_input_xi_select_events)>("xcb_input_xi_select_events");
    if (!x || !select)
        return;
    // All master devices: the toolkit's own selection on this window is for all devices and stays as it is.
    struct
    {
        xcb_input_event_mask_t head = {XCB_INPUT_DEVICE_ALL_MASTER, 1};
        uint32_t mask;
    } selection;
    selection.mask = events;
    select(x, x11::rootWindow(x), 1, &selection.head);
    xcb_flush(x);
}

} // namespace

PressWatcher::PressWatcher(std::function<void()> pressed)
    : m_pressed(std::move(pressed))
{
    selectRawEvents(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS);
    qApp->installNativeEventFilter(this);
}

PressWatcher::~PressWatcher()
{
    qApp->removeNativeEventFilter(this);
    selectRawEvents(0);
}

bool PressWatcher::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType == "xcb_generic_event_t") {
        const auto *event = static_cast<const xcb_ge_generic_event_t *>(message);
        if ((event->response_type & 0x7f) == XCB_GE_GENERIC
            && event->event_type == XCB_INPUT_RAW_BUTTON_PRESS)
            m_pressed();
    }
    return false;
}

} // namespace platform

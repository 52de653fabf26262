// SPDX-License-Identifier: MIT
#include "platform/managerwatcher.h"

#include "platform/floatingwindow.h"
#include "platform/x11.h"

#include <algorithm>

namespace platform {

ManagerWatcher::ManagerWatcher(std::function<void()> changed)
    : m_changed(std::move(changed))
{
    // The toolkit has asked for the root window's properties already.
    if (xcb_connection_t *x = x11::connection()) {
        m_properties = x11::atoms<2>(x, {"_NET_SUPPORTING_WM_CHECK", "_NET_ACTIVE_WINDOW"});
        if (!mustBypassManager())
            m_properties[1] = m_properties[0];
        qApp->installNativeEventFilter(this);
    }
}

ManagerWatcher::~ManagerWatcher()
{
    qApp->removeNativeEventFilter(this);
}

bool ManagerWatcher::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType == "xcb_generic_event_t") {
        const auto *event = static_cast<const xcb_property_notify_event_t *>(message);
        if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY
            && std::find(m_properties.begin(), m_properties.end(), event->atom) != m_properties.end())
            m_changed();
    }
    return false;
}

} // namespace platform

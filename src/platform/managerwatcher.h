// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>

#include <array>
#include <cstdint>
#include <functional>

namespace platform {

/// Tells when another window manager has taken over, which may not know what the one before was asked for;
/// and where we go past the manager, when that has put a window of its own on top. On X11 only; elsewhere it
/// stays silent.
class ManagerWatcher : public QAbstractNativeEventFilter
{
public:
    explicit ManagerWatcher(std::function<void()> changed);
    ~ManagerWatcher() override;
    Q_DISABLE_COPY_MOVE(ManagerWatcher)

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    std::function<void()> m_changed;
    std::array<uint32_t, 2> m_properties = {}; ///< atoms, of the root window
};

} // namespace platform

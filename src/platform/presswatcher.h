// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>

#include <functional>

namespace platform {

/// Tells of presses of a pointer button anywhere on the screen, in other programs' windows and on the bare
/// desktop too, without grabbing anything: everybody gets the presses as ever. On X11 only; elsewhere it
/// stays silent.
class PressWatcher : public QAbstractNativeEventFilter
{
public:
    explicit PressWatcher(std::function<void()> pressed);
    ~PressWatcher() override;
    Q_DISABLE_COPY_MOVE(PressWatcher)

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    std::function<void()> m_pressed;
};

} // namespace platform

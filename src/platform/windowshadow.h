// SPDX-License-Identifier: MIT
#pragma once

#include <QMargins>

#include <array>
#include <cstdint>

namespace platform {

/// The shadow that KWin draws around a window on request; other compositors have one of their own for every
/// window, and there this does nothing.
class WindowShadow
{
public:
    WindowShadow() = default;
    ~WindowShadow();
    Q_DISABLE_COPY_MOVE(WindowShadow)

    /// Draws it around the part of the window that is inside the margins, in device pixels.
    void apply(quintptr window, const QMargins &margins);

private:
    enum class State { Unknown, Supported, Unsupported };

    void prepare();

    State m_state = State::Unknown;
    uint32_t m_property = 0; ///< atom
    std::array<uint32_t, 8> m_pictures = {}; ///< pixmaps, clockwise from the top edge's
};

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

class QRegion;

/// What a window that floats on every desktop needs of the X server and the window manager and the toolkit
/// has no call for. On another window system each function does nothing.
namespace platform {

/// True under sway, which gives no window that it manages a place of its own, nor keeps it above others. A
/// window that is to float there takes Qt::BypassWindowManagerHint.
bool mustBypassManager();

/// Puts the window on all desktops and out of task bars and pagers. Called before every mapping: the window
/// manager takes these properties away when a window is hidden.
void floatOnAllDesktops(quintptr window);

/// The same as a request to the window manager, for a window that is mapped: some managers look at the
/// properties of a new window only in part.
void requestAllDesktops(quintptr window);

/// Lets presses outside the region, in points, through to what lies below the window. The toolkit's mask
/// does that on an X server of its own, but not on a Wayland compositor's.
void setInputRegion(quintptr window, const QRegion &region, qreal scale);

/// Brings a mapped window to the desktop that the user looks at.
void moveToCurrentDesktop(quintptr window);

/// True while the user holds a pointer button, in whatever window. What moves a window meanwhile is the user;
/// what moves it otherwise is a window manager that makes it fit a new screen.
bool isPointerPressed();

/// True while a compositor blends windows by their alpha channel; else what a window leaves transparent is
/// black.
bool isCompositing();

} // namespace platform

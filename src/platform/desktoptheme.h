// SPDX-License-Identifier: MIT
#pragma once

/// On the desktops that are built with GTK the toolkit loads GTK for their colours, fonts and file panel.
/// That costs twice what the rest of the start does, and we need the first only.
namespace platform {

/// Keeps the toolkit from loading GTK: called before the application object is made.
void hideGtkDesktop();

/// Gives the environment back what programs started by us are to see: called once the object is made.
void unhideGtkDesktop();

/// Asks the desktop that was hidden whether it is dark and which font it writes in, and follows its later
/// changes. The answers come later. Talks to the session bus: call it from the event loop, when the first
/// picture is out.
void followDesktopTheme();

} // namespace platform

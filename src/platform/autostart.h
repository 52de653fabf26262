// SPDX-License-Identifier: MIT
#pragma once

#include "platform/error.h"

namespace platform {

/// Whether the desktop starts the program when the user logs in. Read from the user's autostart entry on each
/// call, since the desktop's own settings change it too.
bool startsAtLogin();

/// Writes the entry, whole or not at all, so that the desktop starts this very program; or takes it away.
bool setStartsAtLogin(bool starts, Error *error);

} // namespace platform

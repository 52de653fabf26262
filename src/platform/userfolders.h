// SPDX-License-Identifier: MIT
#pragma once

#include "platform/error.h"

#include <optional>

namespace platform {

/// The user's documents folder as the desktop names it (user-dirs.dirs, else "Documents" in the home folder),
/// made with its parents when it is missing. Nothing when its place is not absolute, taken by a file or
/// cannot be made.
std::optional<QString> documentsFolder(Error *error);

/// Where the program keeps what the user may one day need but never looks at: "pondWicket" in XDG_STATE_HOME,
/// else in ~/.local/state. Only named, not made.
QString stateFolder();

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace platform {

/// Whether opening the ".desktop" file may start its program. True when it lies in an applications folder of
/// the XDG data folders, where only the user and the administrator install, and for a regular file that the
/// user or root owns, that its owner may execute and that nobody else may write.
bool mayLaunchDesktopFile(const QByteArray &path);

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/singleinstance.h"

namespace strip {

/// What the program's arguments ask for: "--settings" and "--quit" are actions, paths and URIs of files are
/// to be opened; the strip comes to the front when there are none of them.
QList<platform::InstanceRequest> requestsFrom(const QStringList &arguments);

} // namespace strip

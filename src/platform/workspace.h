// SPDX-License-Identifier: MIT
#pragma once

#include "platform/error.h"

#include <functional>

namespace platform {

/// Opens what stands at the path: an application is started, a document or folder goes to the program that is
/// registered for its content type. Returns at once; what follows happens in the background and in silence.
/// Nothing is ever run only because it is executable.
void openFile(const QString &path);

/// Moves the file to the Trash in the background. `onFailure` is called on the interface thread, at the
/// latest when the application object goes: it must not hold what goes before. A move under
/// way at the end of the program is waited for.
void moveToTrash(const QString &path, const std::function<void(const Error &)> &onFailure);

/// True when a move failed because the place of the file has no Trash.
bool isWithoutTrash(const Error &error);

} // namespace platform

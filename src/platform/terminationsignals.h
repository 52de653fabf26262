// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace platform {

/// Calls `end` from the event loop when the process is asked to end (SIGTERM, SIGINT), so that it ends as if
/// the user had quit. Set once, after the application object is made.
void onTerminationSignal(std::function<void()> end);

/// Makes a write fail whose reader is gone, or that meets a limit on the size of files: the signals that come
/// with it would end the process. Programs started by us get both as usual.
void outliveFailedWrites();

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace platform {

/// Calls `end` from the event loop when the process is asked to end (SIGTERM, SIGINT), so that it ends as if
/// the user had quit. Set once, after the application object is made.
void onTerminationSignal(std::function<void()> end);

} // namespace platform

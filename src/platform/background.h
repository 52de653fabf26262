// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace platform {

/// Runs the work on a thread that nobody waits for. False when there is no thread to be had.
bool startThread(std::function<void()> work);

/// Runs the work on a thread of its own, for calls that may hang for as long as a network mount or a service
/// likes: a stuck one holds up neither the interface nor the next. When the application object goes, what is
/// under way is waited for, but at most a few seconds. False when the system has no thread left; nothing ran
/// then.
bool runInBackground(std::function<void()> work);

/// Waits for what is under way, a few seconds at most, and lets its last calls run here.
void waitForBackground();

/// From the background: runs the call on the interface thread in its next turn, at the latest when the
/// application object goes.
void runOnInterfaceThread(std::function<void()> call);

} // namespace platform

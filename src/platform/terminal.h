// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayList>

#include <optional>

namespace platform {

struct Uri;

/// The command that an "ssh" address stands for: user, host and port as arguments of their own, made of
/// harmless characters only. Nothing for an address that holds others, a password, or a port that is none.
std::optional<QByteArrayList> shellCommand(const Uri &address);

/// Runs the command of an "ssh" address in the user's terminal. May block: only from the background.
void openShell(const Uri &address);

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayList>

typedef struct _GAppInfo GAppInfo;

namespace platform {

// Starting other programs. They outlive us, have a session of their own, start in the home folder with the
// environment that we were given, and never write to our standard output. Both calls may block: only from the
// background. Failures are silent; no shell is involved.

/// Starts the application of a ".desktop" file with the addresses, or has it activated over D-Bus when it
/// asks so.
void launchApplication(GAppInfo *application, const QByteArrayList &addresses);

/// Starts the program `arguments[0]`, searched in PATH when it is a plain name.
void launchProgram(const QByteArrayList &arguments);

} // namespace platform

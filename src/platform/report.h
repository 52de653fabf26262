// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace platform {

/// Writes one diagnostic line to standard output and flushes it. Line ends inside `line` become blanks, so
/// that whoever reads the output can trust that one line is one report. A line that nobody takes is lost
/// rather than waited for. Nothing else in the program writes there.
void report(const QString &line);

} // namespace platform

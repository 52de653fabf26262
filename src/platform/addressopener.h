// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace platform {

/// Hands an address to the program that is registered for its scheme, or where none is, to what stands in for
/// it (docs/OPENING.md has the table). Returns at once; all that follows happens in the background and in
/// silence: an address that does not parse, has no scheme, or has nobody to open it opens nothing.
void openAddress(const QString &text);

} // namespace platform

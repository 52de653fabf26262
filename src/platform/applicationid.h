// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace platform {

/// What the desktop knows the program by: its desktop entry, its name on the session bus, its icon.
inline QString applicationId()
{
    return QStringLiteral(PW_APPLICATION_ID);
}

} // namespace platform

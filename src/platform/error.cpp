// SPDX-License-Identifier: MIT
#include "platform/error.h"

#include <string.h>

namespace platform {

QString Error::fullDescription() const
{
    QString details = QStringLiteral("%1 (domain %2, code %3").arg(reason, domain).arg(code);
    if (!path.isEmpty())
        details += QStringLiteral(", path ") + path;
    return details + QLatin1Char(')');
}

Error Error::fromErrno(const QString &deed, int number, const QString &path)
{
    // Not strerror(): its text follows the locale, and the diagnostics are English.
    const char *text = strerrordesc_np(number);
    const QString why = text ? QString::fromLatin1(text) : QStringLiteral("Unknown error");
    return {QStringLiteral("POSIX"), number, QStringLiteral("%1: %2.").arg(deed, why), path};
}

} // namespace platform

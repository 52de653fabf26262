// SPDX-License-Identifier: MIT
#include "platform/localized.h"

#include <QCoreApplication>

namespace platform {

QString localized(const char *key)
{
    return QCoreApplication::translate("pondWicket", key);
}

QString localizedFileName(const char *key)
{
    return QCoreApplication::translate("pondWicket file names", key);
}

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/files.h"

#include <QDir>

namespace support {

/// Writes a file, or makes a folder where the path ends in a slash, and the folders above. Returns the path.
inline QString make(const QString &path, const QByteArray &bytes = {})
{
    QDir().mkpath(path.section(u'/', 0, -2));
    if (!path.endsWith(u'/') && !platform::writeInPlace(path, bytes, nullptr))
        qFatal("cannot make %s", qPrintable(path));
    return path;
}

inline QByteArray bytesOf(const QString &path)
{
    return platform::readWholeFile(path, nullptr).value_or("(no file)");
}

inline QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                  QDir::Name);
}

} // namespace support

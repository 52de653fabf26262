// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace platform {

/// What the program needs to know of a ".desktop" file.
struct DesktopEntry
{
    bool isApplication = false; ///< its Type is "Application"
    bool isDisabled = false; ///< Hidden, or taken out of the autostart by a desktop's settings
    QString name; ///< in the language of the current locale, as far as the entry has it
};

/// The first group of a ".desktop" file's text; nothing when that is no "[Desktop Entry]". `locale` is as in
/// LANG: "de_AT.UTF-8@euro", each part after the language optional.
std::optional<DesktopEntry> parseDesktopEntry(QByteArrayView text, const QByteArray &locale);

/// The entry of a file whose name ends in ".desktop"; nothing for every other file. Reads the file on each
/// call.
std::optional<DesktopEntry> readDesktopEntry(const QByteArray &path);

} // namespace platform

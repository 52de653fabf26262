// SPDX-License-Identifier: MIT
#include "platform/desktopentry.h"

#include "platform/files.h"

#include <QFile>

#include <clocale>

namespace platform {

namespace {

constexpr qint64 maxEntrySize = 1024 * 1024; // bytes; large ones hold the name in a hundred languages

QString unescaped(QByteArrayView value)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            bytes += value[i];
            continue;
        }
        const char c = value[++i];
        bytes += c == 's' ? ' ' : c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c;
    }
    return QString::fromUtf8(bytes);
}

/// The keys under which the name is looked up, best first: "Name[de_AT@euro]", "Name[de_AT]", …, "Name".
QList<QByteArray> nameKeys(const QByteArray &locale)
{
    const qsizetype at = locale.indexOf('@');
    const QByteArray modifier = at < 0 ? QByteArray() : locale.sliced(at);
    const QByteArray place = locale.split('@').constFirst().split('.').constFirst();
    const QByteArray language = place.split('_').constFirst();
    QList<QByteArray> keys;
    for (const QByteArray &variant : {place + modifier, place, language + modifier, language})
        keys.append("Name[" + variant + ']');
    keys.append("Name");
    return keys;
}

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(QByteArrayView text, const QByteArray &locale)
{
    const QList<QByteArray> keys = nameKeys(locale);
    qsizetype best = keys.size();
    bool inside = false;
    DesktopEntry entry;
    while (!text.isEmpty()) {
        const qsizetype end = text.indexOf('\n');
        const QByteArrayView line = text.first(end < 0 ? text.size() : end).trimmed();
        text = text.sliced(end < 0 ? text.size() : end + 1);
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        if (line.startsWith('[')) {
            if (inside || line != "[Desktop Entry]")
                break;
            inside = true;
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (!inside || equals < 0)
            continue;
        const QByteArrayView key = line.first(equals).trimmed();
        const QByteArrayView value = line.sliced(equals + 1).trimmed();
        if (key == "Type")
            entry.isApplication = value == "Application";
        if ((key == "Hidden" && value == "true") || (key == "X-GNOME-Autostart-enabled" && value == "false"))
            entry.isDisabled = true;
        const qsizetype rank = keys.indexOf(key.toByteArray());
        if (rank >= 0 && rank < best) {
            best = rank;
            entry.name = unescaped(value);
        }
    }
    return inside ? std::optional(entry) : std::nullopt;
}

std::optional<DesktopEntry> readDesktopEntry(const QByteArray &path)
{
    if (!path.endsWith(".desktop"))
        return std::nullopt;
    const std::optional<QByteArray> text = readWholeFile(QFile::decodeName(path), nullptr, maxEntrySize);
    return text ? parseDesktopEntry(*text, ::setlocale(LC_MESSAGES, nullptr)) : std::nullopt;
}

} // namespace platform

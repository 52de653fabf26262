// SPDX-License-Identifier: MIT
#include "platform/addressopener.h"

#include "platform/applauncher.h"
#include "platform/background.h"
#include "platform/gio.h"
#include "platform/terminal.h"
#include "platform/uri.h"
#include "platform/workspace.h"

#include <algorithm>
#include <array>

namespace platform {

namespace {

constexpr qsizetype longestArgument = 128 * 1024 - 1; // bytes; the kernel starts no program with a longer one

using Handler = GioPointer<GAppInfo>;

Handler handlerOfScheme(const char *scheme)
{
    return Handler(gio()->g_app_info_get_default_for_uri_scheme(scheme));
}

// "ssh://-oProxyCommand=…" is an option to many a program that takes the host out of the address, and no host
// or user begins so. Escaped it is no better.
bool beginsLikeAnOption(const Uri &address)
{
    return percentDecoded(address.host).startsWith('-') || percentDecoded(address.userInfo).startsWith('-');
}

// Some mail programs attach the file that such a parameter names, and a link may come from a web page.
// "attach", "attachment" and the like go; all else stays as it was written.
QByteArray withoutAttachments(const QByteArray &address)
{
    const qsizetype start = address.indexOf('?') + 1;
    if (start == 0)
        return address;
    QByteArrayList kept;
    for (const QByteArray &parameter : address.sliced(start).split('&')) {
        const QByteArray name = QByteArray::fromPercentEncoding(parameter).trimmed().toLower();
        if (!name.startsWith("attach"))
            kept.append(parameter);
    }
    return address.first(start) + kept.join('&');
}

// What to look for on the map, escaped as it was written; empty when the address does not say.
QByteArray searchedPlace(const Uri &address)
{
    const QStringList parameters = address.query.split(u'&');
    for (const QLatin1String name : {QLatin1String("q="), QLatin1String("address=")}) {
        const auto found = std::ranges::find_if(
            parameters, [name](const QString &parameter) { return parameter.startsWith(name); });
        if (found != parameters.end())
            return found->sliced(name.size()).toLatin1();
    }
    return {};
}

void openMap(const Uri &address)
{
    const QByteArray place = searchedPlace(address);
    if (const Handler maps = handlerOfScheme("geo"))
        launchApplication(maps.get(), {"geo:0,0?q=" + place});
    else if (const Handler browser = handlerOfScheme("https"))
        launchApplication(browser.get(), {"https://www.openstreetmap.org/search?query=" + place});
}

void openShare(const QByteArray &address)
{
    if (const Handler fileManager{gio()->g_app_info_get_default_for_type("inode/directory", true)})
        launchApplication(fileManager.get(), {address});
}

void openWithoutHandler(const QByteArray &scheme, const Uri &address, const QByteArray &text)
{
    if (scheme == "maps")
        openMap(address);
    else if (scheme == "sftp" || scheme == "smb" || scheme == "ftp")
        openShare(text);
    else if (scheme == "ssh")
        openShell(address);
}

// GNOME Maps takes "maps:q=pizza" only, without the slashes and the question mark of the usual form.
QByteArray inFormOf(GAppInfo *handler, const QByteArray &scheme, const Uri &address, const QByteArray &text)
{
    const char *const id = gio()->g_app_info_get_id(handler);
    if (scheme == "maps" && qstrcmp(id, "org.gnome.Maps.desktop") == 0 && !address.query.isEmpty())
        return "maps:" + address.query.toLatin1();
    return text;
}

void route(const Uri &address, QByteArray text)
{
    const QByteArray scheme = address.scheme.toLatin1().toLower();
    if (scheme == "mailto")
        text = withoutAttachments(text);
    if (const Handler handler = handlerOfScheme(scheme.constData()))
        launchApplication(handler.get(), {inFormOf(handler.get(), scheme, address, text)});
    else
        openWithoutHandler(scheme, address, text);
}

} // namespace

void openAddress(const QString &text)
{
    if (text.size() > longestArgument)
        return;
    const auto address = parseUriReference(text);
    if (!address || address->scheme.isEmpty() || beginsLikeAnOption(*address))
        return;
    if (address->scheme.compare(u"file", Qt::CaseInsensitive) == 0) {
        if (const auto path = pathOfFileUri(text))
            openFile(*path);
    } else if (gio()) {
        runInBackground([address = *address, bytes = text.toLatin1()] { route(address, bytes); });
    }
}

} // namespace platform

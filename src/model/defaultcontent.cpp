// SPDX-License-Identifier: MIT
#include "model/defaultcontent.h"

#include "model/hosts.h"
#include "platform/localized.h"

namespace model {

namespace {

TileMenuItem link(QLatin1String name, const QString &address)
{
    return {.itemString = address, .itemName = name};
}

TileMenuItem page(const char *name, const char *path)
{
    return link(QLatin1String(name), makerAddress(QLatin1String(path)));
}

TileMenuItem article(const char *name, const char *path)
{
    return link(QLatin1String(name), encyclopediaAddress(QLatin1String(path)));
}

TileMenuItem map(const char *name, const char *query)
{
    return link(QLatin1String(name), QLatin1String("maps://?q=") + QLatin1String(query));
}

} // namespace

QString defaultTileName(qsizetype count)
{
    switch (count) {
    case 0:
        return platform::localized("Welcome to pondWicket");
    case 1:
        return platform::localized("Computer history");
    case 2:
        return platform::localized("What’s for dinner?");
    default:
        return platform::localized("Untitled");
    }
}

QList<TileMenuItem> defaultTileLinks(qsizetype count)
{
    switch (count) {
    case 0:
        return {link(QLatin1String("About pondWicket"), homePage()), page("1995 wallpaper", "/beos/"),
                page("1996 wallpaper", "/copeland/")};
    case 1:
        return {article("System/360", "/wiki/IBM_System/360"), article("PDP-11", "/wiki/PDP-11"),
                article("NeXT", "/wiki/NeXT"), article("Copeland", "/wiki/Copland_(operating_system)"),
                article("BeBox", "/wiki/BeBox")};
    case 2:
        return {map("Noodles", "noodles"), map("Pizza", "pizza"), map("Tacos", "tacos")};
    default:
        return {article("Wikipedia", "/")};
    }
}

} // namespace model

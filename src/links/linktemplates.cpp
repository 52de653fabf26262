// SPDX-License-Identifier: MIT
#include "links/linktemplates.h"

#include "links/linktext.h"
#include "platform/localized.h"

namespace links {

namespace {

QString startingAddress(QLatin1String key)
{
    if (key == QLatin1String("mail"))
        return QStringLiteral("mailto:");
    if (key == QLatin1String("maps"))
        return QStringLiteral("maps://?q=pizza");
    if (key == QLatin1String("sms"))
        return QStringLiteral("sms://");
    if (key == QLatin1String("tel"))
        return QStringLiteral("tel://");
    if (key == QLatin1String("shortcuts"))
        return QStringLiteral("shortcuts://run-shortcut?name=");
    return QStringLiteral("https://");
}

} // namespace

void addTemplateLink(Config &config, const QUuid &tileId, QLatin1String key)
{
    TileMenuItem item;
    item.itemString = startingAddress(key);
    item.itemName = platform::localized("(Untitled bookmark)");
    appendLinks(config, tileId, {item});
}

} // namespace links

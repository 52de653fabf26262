// SPDX-License-Identifier: MIT
#include "links/linktext.h"

#include "links/linkdetector.h"
#include "model/settingsstore.h"
#include "platform/localized.h"

#include <QSet>

namespace links {

namespace {

std::string_view view(QByteArrayView bytes)
{
    return {bytes.data(), size_t(bytes.size())};
}

QString fromAscii(std::string_view text)
{
    return QString::fromLatin1(text.data(), qsizetype(text.size()));
}

} // namespace

QStringList detectLinks(QByteArrayView text)
{
    QStringList addresses;
    for (const Link &link : findLinks(view(text)))
        addresses.append(fromAscii(absoluteAddress(view(text), link)));
    return addresses;
}

QList<TileMenuItem> linksFromText(QByteArrayView text)
{
    const QString untitled = platform::localized("Untitled");
    QList<TileMenuItem> items;
    QSet<QString> seen;
    for (const Link &link : findLinks(view(text))) {
        const std::string address = absoluteAddress(view(text), link);
        const QString itemString = fromAscii(address);
        const qsizetype known = seen.size();
        seen.insert(itemString);
        if (seen.size() == known)
            continue;
        const std::string_view host = addressHost(address);
        TileMenuItem item;
        item.itemString = itemString;
        item.itemName = host.empty() ? untitled : fromAscii(host);
        items.append(item);
    }
    return items;
}

void appendLinks(Config &config, const QUuid &tileId, const QList<TileMenuItem> &links)
{
    if (config.editTile(tileId, [&links](TileItem &tile) { tile.tileMenuItems += links; }))
        model::saveSettings(config);
}

} // namespace links

// SPDX-License-Identifier: MIT
#include "links/openlink.h"

#include "links/linkkind.h"
#include "platform/report.h"
#include "platform/uri.h"

namespace links {

void openLink(const TileMenuItem &link, LinkOpener &opener)
{
    if (isAlias(link))
        opener.openFile(link.itemString);
    else if (platform::parseUriReference(link.itemString))
        opener.openAddress(link.itemString);
    else
        platform::report(QStringLiteral("Invalid URL"));
}

} // namespace links

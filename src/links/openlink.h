// SPDX-License-Identifier: MIT
#pragma once

#include "model/tilemenuitem.h"

namespace links {

/// Who opens what a link leads to. The real one is the desktop, tests record.
class LinkOpener
{
public:
    virtual ~LinkOpener() = default;
    virtual void openFile(const QString &path) = 0;
    virtual void openAddress(const QString &text) = 0;
};

/// Opens one link: an alias as the file it is, any other text as an address. Text that is none is reported.
void openLink(const TileMenuItem &link, LinkOpener &opener);

} // namespace links

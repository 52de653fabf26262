// SPDX-License-Identifier: MIT
#pragma once

#include "model/config.h"

#include <array>

namespace links {

/// A way to begin a new link, offered as a button.
struct LinkTemplate
{
    const char *label; ///< to be localized
    const char *symbol; ///< a system symbol, drawn in white
    const char *color; ///< a word of the palette, for the ground
    const char *key; ///< for addTemplateLink; null for the one that opens the file panel
};

/// In the order in which they are offered.
inline constexpr std::array<LinkTemplate, 7> linkTemplates = {{
    {"App, file or folder", "document", "blue", nullptr},
    {"Web link", "safari", "green", "https://"},
    {"Mail link", "mail", "blue", "mail"},
    {"Map link", "map", "violet", "maps"},
    {"Message link", "message", "red", "sms"},
    {"Phone link", "phone", "orange", "tel"},
    {"Shortcuts bookmark", "square.on.square", "green", "shortcuts"},
}};

/// Adds a link with the key's starting address ("https://" for a key it does not know) at the end of the
/// tile's and saves. Nothing when the tile is gone.
void addTemplateLink(Config &config, const QUuid &tileId, QLatin1String key);

} // namespace links

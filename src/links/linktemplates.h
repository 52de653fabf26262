// SPDX-License-Identifier: MIT
#pragma once

#include "model/config.h"
#include "platform/localized.h"

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
    {platform::localizable("App, file or folder"), "document", "blue", nullptr},
    {platform::localizable("Web link"), "safari", "green", "https://"},
    {platform::localizable("Mail link"), "mail", "blue", "mail"},
    {platform::localizable("Map link"), "map", "violet", "maps"},
    {platform::localizable("Message link"), "message", "red", "sms"},
    {platform::localizable("Phone link"), "phone", "orange", "tel"},
    {platform::localizable("Shortcuts bookmark"), "square.on.square", "green", "shortcuts"},
}};

/// Adds a link with the key's starting address ("https://" for a key it does not know) at the end of the
/// tile's and saves. Nothing when the tile is gone.
void addTemplateLink(Config &config, const QUuid &tileId, QLatin1String key);

} // namespace links

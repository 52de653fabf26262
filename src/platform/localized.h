// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace platform {

/// The user's translation of a text, looked up by the English text itself; the text unchanged where there is
/// none.
QString localized(const char *key);

/// Marks a text that comes to `localized` by way of a table or a variable: only literals inside the
/// parentheses of the two get into the template for translators.
constexpr const char *localizable(const char *key)
{
    return key;
}

/// As `localized`, for words that name files and folders on disk ("Tiles", "Notes"): never translated, since
/// a name that changed with the language would lose what lies under the old one.
QString localizedFileName(const char *key);

} // namespace platform

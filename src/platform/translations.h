// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>

namespace platform {

/// Installs the translation that the user's languages ask for, and the toolkit's own with it, so that a
/// window never mixes two languages. Where English comes first or none of the languages is there, it does
/// nothing. Before the first text is looked up.
void installTranslations(const QLocale &locale = QLocale::system());

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QStringView>

namespace themes {

/// The colour that menus mean by "green", "yellow", "orange", "red", "violet" or "blue"; orange for any other
/// word.
QColor paletteColor(QStringView word);

} // namespace themes

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The user's text in places where the toolkit gives some characters a meaning of their own.
namespace widgets {

/// A tooltip that shows the text as it is, cut when it is very long: plain text would be taken for HTML when
/// it looks like some, and would never wrap.
QString plainToolTip(const QString &text);

/// The label with a mnemonic at its first letter or digit that is not in `taken`, to which it is added.
/// Without one when all are taken.
QString withMnemonic(const QString &label, QString &taken);

} // namespace widgets

// SPDX-License-Identifier: MIT
#include "widgets/plaintext.h"

namespace widgets {

QString plainToolTip(const QString &text)
{
    constexpr qsizetype longest = 1000; // characters
    if (text.isEmpty())
        return {};
    const QString shown = text.size() > longest ? text.left(longest) + QChar(u'…') : text;
    return QStringLiteral("<p style=\"white-space: pre-wrap\">") + shown.toHtmlEscaped()
        + QStringLiteral("</p>");
}

QString withMnemonic(const QString &label, QString &taken)
{
    QString result;
    bool found = false;
    for (const QChar c : label) {
        if (!found && c.isLetterOrNumber() && !taken.contains(c, Qt::CaseInsensitive)) {
            found = true;
            taken += c;
            result += u'&';
        } else if (c == u'&') {
            result += u'&';
        }
        result += c;
    }
    return result;
}

} // namespace widgets

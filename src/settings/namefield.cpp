// SPDX-License-Identifier: MIT
#include "settings/namefield.h"

#include "platform/localized.h"
#include "settings/settingsmetrics.h"

#include <QSignalBlocker>
#include <QTextBoundaryFinder>

namespace {

/// How much of the text its first `count` user-perceived characters are.
qsizetype lengthOfCharacters(const QString &text, int count)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (int i = 0; i < count; ++i) {
        if (finder.toNextBoundary() < 0)
            return text.size();
    }
    return finder.position();
}

} // namespace

NameField::NameField(QWidget *parent)
    : PlainField(parent)
{
    setObjectName(QStringLiteral("Tile name"));
    setAccessibleName(platform::localized("Tile name"));
    QFont font = this->font();
    font.setPixelSize(settings::nameFontSize);
    font.setBold(true);
    setFont(font);
    setTextMargins(4, 0, 4, 0);
    QPalette colors;
    colors.setColor(QPalette::Base, Qt::transparent);
    setPalette(colors);
    connect(this, &QLineEdit::textEdited, this, [this] {
        cut();
        Q_EMIT nameEdited(text());
    });
}

void NameField::cut()
{
    const auto length = int(lengthOfCharacters(text(), settings::maxNameLength));
    if (length == text().size())
        return;
    // Deleted rather than set anew, so that the cursor stays and the edit can be undone.
    const QSignalBlocker blocker(this);
    const int cursor = cursorPosition();
    setSelection(length, int(text().size()) - length);
    del();
    setCursorPosition(qMin(cursor, length));
}

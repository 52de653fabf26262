// SPDX-License-Identifier: MIT
#include "model/jsontext.h"

#include <algorithm>

namespace model {

namespace {

std::optional<QByteArray> narrowed(QByteArrayView text, int unit, bool isBigEndian)
{
    if (text.size() % unit != 0)
        return std::nullopt;
    QString wide;
    for (qsizetype i = unit; i < text.size(); i += unit) {
        char32_t c = 0;
        for (int b = 0; b < unit; ++b)
            c = c << 8 | quint8(text[isBigEndian ? i + b : i + unit - 1 - b]);
        if (unit == 2)
            wide += QChar(char16_t(c));
        else if (c > QChar::LastValidCodePoint || QChar::isSurrogate(c))
            return std::nullopt;
        else
            wide += QChar::fromUcs4(c);
    }
    if (!wide.isValidUtf16())
        return std::nullopt;
    return wide.toUtf8();
}

} // namespace

std::optional<QByteArray> narrowed(QByteArrayView text)
{
    constexpr QByteArrayView utf32le("\xFF\xFE\0\0", 4);
    constexpr QByteArrayView utf32be("\0\0\xFE\xFF", 4);
    if (text.startsWith(utf32le) || text.startsWith(utf32be))
        return narrowed(text, 4, text.startsWith(utf32be));
    if (text.startsWith("\xFF\xFE") || text.startsWith("\xFE\xFF"))
        return narrowed(text, 2, text.startsWith("\xFE\xFF"));
    if (text.startsWith("\xEF\xBB\xBF"))
        text = text.sliced(3);
    return QByteArray::fromRawData(text.data(), text.size());
}

QString placeOf(QByteArrayView text, qsizetype offset)
{
    const QByteArrayView before = text.first(offset);
    const qsizetype line = before.count('\n') + 1;
    const QByteArrayView row = before.sliced(before.lastIndexOf('\n') + 1);
    const auto column = 1 + std::count_if(row.begin(), row.end(), [](char c) { return (c & 0xC0) != 0x80; });
    return QStringLiteral("line %1, column %2").arg(line).arg(column);
}

} // namespace model

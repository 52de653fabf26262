// SPDX-License-Identifier: MIT
#include "model/uuidtext.h"

#include <QtEndian>

namespace model {

namespace {

constexpr bool hyphenAt(int index)
{
    return index == 8 || index == 13 || index == 18 || index == 23;
}

/// The sixteen bytes in the order of their digits.
std::array<quint8, 16> digitsOf(const QUuid &id)
{
    std::array<quint8, 16> bytes;
    qToBigEndian(id.data1, bytes.data());
    qToBigEndian(id.data2, bytes.data() + 4);
    qToBigEndian(id.data3, bytes.data() + 6);
    std::copy(std::begin(id.data4), std::end(id.data4), bytes.begin() + 8);
    return bytes;
}

} // namespace

UuidText uuidBytes(const QUuid &id)
{
    const auto bytes = digitsOf(id);
    const char *hex = "0123456789ABCDEF";
    UuidText text;
    size_t byte = 0;
    for (int i = 0; i < 36; ++i) {
        if (hyphenAt(i)) {
            text[size_t(i)] = '-';
            continue;
        }
        text[size_t(i)] = hex[bytes[byte] >> 4];
        text[size_t(++i)] = hex[bytes[byte++] & 15];
    }
    return text;
}

QString uuidText(const QUuid &id)
{
    const UuidText text = uuidBytes(id);
    return QString::fromLatin1(text.data(), qsizetype(text.size()));
}

std::optional<QUuid> uuidFromText(QByteArrayView text)
{
    if (text.size() != 36)
        return std::nullopt;
    std::array<char, 16> bytes = {};
    size_t digits = 0;
    for (int i = 0; i < 36; ++i) {
        const char c = text[i];
        if (hyphenAt(i)) {
            if (c != '-')
                return std::nullopt;
            continue;
        }
        const char lower = char(c | 0x20);
        int value;
        if (c >= '0' && c <= '9')
            value = c - '0';
        else if (lower >= 'a' && lower <= 'f')
            value = lower - 'a' + 10;
        else
            return std::nullopt;
        char &byte = bytes[digits++ / 2];
        byte = char(byte << 4 | value);
    }
    return QUuid::fromRfc4122(QByteArrayView(bytes.data(), 16));
}

} // namespace model

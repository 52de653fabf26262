// SPDX-License-Identifier: MIT
#include "model/uuidtext.h"

#include <QtEndian>

namespace model {

namespace {

constexpr bool hyphenAt(int index)
{
    return index == 8 || index == 13 || index == 18 || index == 23;
}

/// The value of a hexadecimal digit by its code, -1 for everything else.
constexpr std::array<qint8, 256> digitValues = [] {
    std::array<qint8, 256> values;
    values.fill(-1);
    for (int i = 0; i < 10; ++i)
        values[size_t('0' + i)] = qint8(i);
    for (int i = 0; i < 6; ++i)
        values[size_t('a' + i)] = values[size_t('A' + i)] = qint8(10 + i);
    return values;
}();

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
    int invalid = 0; // asked once at the end: whether a digit is a letter cannot be foreseen
    size_t digits = 0;
    for (int i = 0; i < 36; ++i) {
        const quint8 c = quint8(text[i]);
        if (hyphenAt(i)) {
            invalid |= c != '-';
            continue;
        }
        const int value = digitValues[c];
        invalid |= value < 0;
        char &byte = bytes[digits++ / 2];
        byte = char(byte << 4 | (value & 15));
    }
    if (invalid)
        return std::nullopt;
    return QUuid::fromRfc4122(QByteArrayView(bytes.data(), 16));
}

} // namespace model

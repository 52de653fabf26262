// SPDX-License-Identifier: MIT
#include "model/uuidtext.h"

#include <QtEndian>

#include <cstring>

namespace model {

namespace {

constexpr bool hyphenAt(int index)
{
    return index == 8 || index == 13 || index == 18 || index == 23;
}

/// Sixteen digits in one register: both compilers have vectors without intrinsics.
using Digits [[gnu::vector_size(16)]] = quint8;

/// The values of hexadecimal digits. Clears the lanes of `valid` that are none.
Digits valuesOf(Digits digits, Digits *valid)
{
    const Digits letters = digits | 0x20;
    const Digits areDigits = (digits >= '0') & (digits <= '9');
    const Digits areLetters = (letters >= 'a') & (letters <= 'f');
    *valid &= areDigits | areLetters;
    return (digits & 15) + (areLetters & 9);
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
    if (text.size() != uuidLength || text[8] != '-' || text[13] != '-' || text[18] != '-' || text[23] != '-')
        return std::nullopt;
    std::array<char, 32> plain;
    std::memcpy(plain.data(), text.data(), 8);
    std::memcpy(plain.data() + 8, text.data() + 9, 4);
    std::memcpy(plain.data() + 12, text.data() + 14, 4);
    std::memcpy(plain.data() + 16, text.data() + 19, 4);
    std::memcpy(plain.data() + 20, text.data() + 24, 12);
    Digits halves[2];
    std::memcpy(halves, plain.data(), plain.size());
    Digits valid = ~Digits{};
    const Digits first = valuesOf(halves[0], &valid);
    const Digits second = valuesOf(halves[1], &valid);
    std::array<quint64, 2> lanes;
    std::memcpy(lanes.data(), &valid, sizeof valid);
    if (~(lanes[0] & lanes[1]))
        return std::nullopt;
    const Digits bytes =
        (__builtin_shufflevector(first, second, 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30)
         << 4)
        | __builtin_shufflevector(first, second, 1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23, 25, 27, 29, 31);
    QUuid id;
    id.data1 = qFromBigEndian<quint32>(reinterpret_cast<const char *>(&bytes));
    id.data2 = qFromBigEndian<quint16>(reinterpret_cast<const char *>(&bytes) + 4);
    id.data3 = qFromBigEndian<quint16>(reinterpret_cast<const char *>(&bytes) + 6);
    std::memcpy(id.data4, reinterpret_cast<const char *>(&bytes) + 8, sizeof id.data4);
    return id;
}

} // namespace model

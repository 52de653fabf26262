// SPDX-License-Identifier: MIT
#include "model/jsonreader.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace model {

namespace {

/// So many bytes of the text in one register: both compilers have vectors without intrinsics.
constexpr qsizetype block = 16;
using Bytes [[gnu::vector_size(block)]] = quint8;
using SignedBytes [[gnu::vector_size(block)]] = qint8;

/// The next block, with NULs past the end of the text.
Bytes blockAt(const char *at, const char *end)
{
    Bytes bytes;
    if (Q_LIKELY(end - at >= block)) {
        std::memcpy(&bytes, at, block);
        return bytes;
    }
    char last[block] = {};
    std::copy(at, end, last);
    std::memcpy(&bytes, last, block);
    return bytes;
}

/// The place of the first lane that is set; their number when none is.
template <typename Lanes> qsizetype firstSet(const Lanes &lanes)
{
    quint64 halves[2];
    std::memcpy(halves, &lanes, block);
    for (int half = 0; half < 2; ++half) {
        if (const quint64 bits = qFromLittleEndian(halves[half]))
            return 8 * half + qCountTrailingZeroBits(bits) / 8;
    }
    return block;
}

/// Copies a block's leading characters that stand for themselves, and says how many they are. Has room for
/// all.
qsizetype copyPlain(const char *at, const char *end, char16_t *to)
{
    constexpr int o = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? 0 : block; // where a unit's first byte comes from
    constexpr int z = block - o;
    const Bytes bytes = blockAt(at, end);
    const Bytes units =
        __builtin_shufflevector(bytes, Bytes{}, o, z, o + 1, z + 1, o + 2, z + 2, o + 3, z + 3, o + 4, z + 4,
                                o + 5, z + 5, o + 6, z + 6, o + 7, z + 7);
    const Bytes more =
        __builtin_shufflevector(bytes, Bytes{}, o + 8, z + 8, o + 9, z + 9, o + 10, z + 10, o + 11, z + 11,
                                o + 12, z + 12, o + 13, z + 13, o + 14, z + 14, o + 15, z + 15);
    std::memcpy(to, &units, block);
    std::memcpy(to + block / 2, &more, block);
    // Of signed bytes, those outside ASCII come first.
    return firstSet((SignedBytes(bytes) < 0x20) | (SignedBytes(bytes) == '"') | (SignedBytes(bytes) == '\\'));
}

constexpr char32_t noCharacter = char32_t(-1);

/// Passes a character of several bytes.
char32_t passCharacter(const char *&at, const char *end)
{
    const quint8 lead = quint8(*at);
    const int size = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
    if (lead < 0xc2 || lead > 0xf4 || end - at < size)
        return noCharacter;
    char32_t c = lead & (0xff >> (size + 1));
    for (int i = 1; i < size; ++i) {
        if ((at[i] & 0xc0) != 0x80)
            return noCharacter;
        c = c << 6 | (at[i] & 0x3f);
    }
    const char32_t least = size == 4 ? 0x10000 : size == 3 ? 0x800 : 0x80;
    at += size;
    return c < least || c > QChar::LastValidCodePoint || QChar::isSurrogate(c) ? noCharacter : c;
}

int hexadecimalValue(char c)
{
    const char letter = char(c | 0x20);
    return c >= '0' && c <= '9' ? c - '0' : letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

/// Passes four hexadecimal digits.
char32_t passUnit(const char *&at, const char *end)
{
    if (end - at < 4)
        return noCharacter;
    char32_t value = 0;
    for (const char *const stop = at + 4; at < stop; ++at) {
        const int digit = hexadecimalValue(*at);
        if (digit < 0)
            return noCharacter;
        value = value << 4 | char32_t(digit);
    }
    return value;
}

bool comesSlash(const char *at, const char *end)
{
    return end - at > 1 && at[0] == '\\' && at[1] == '/';
}

/// Passes a backslash and what it escapes.
char32_t passEscape(const char *&at, const char *end)
{
    constexpr QByteArrayView letters("/\"\\bfnrt");
    constexpr QByteArrayView meanings("/\"\\\b\f\n\r\t");
    if (end - at < 2)
        return noCharacter;
    const char letter = at[1];
    at += 2;
    if (letter != 'u') {
        const qsizetype which = letters.indexOf(letter);
        return which < 0 ? noCharacter : char32_t(meanings[which]);
    }
    const char32_t unit = passUnit(at, end);
    if (!QChar::isSurrogate(unit))
        return unit;
    if (!QChar::isHighSurrogate(unit) || end - at < 2 || at[0] != '\\' || at[1] != 'u')
        return noCharacter;
    at += 2;
    const char32_t low = passUnit(at, end);
    return low <= 0xffff && QChar::isLowSurrogate(low) ? QChar::surrogateToUcs4(char16_t(unit), char16_t(low))
                                                       : noCharacter;
}

} // namespace

void JsonReader::passBlanks()
{
    while (m_at < m_end) {
        const Bytes bytes = blockAt(m_at, m_end);
        const qsizetype blanks =
            firstSet(~((bytes == ' ') | (bytes == '\n') | (bytes == '\r') | (bytes == '\t')));
        m_at += blanks;
        if (blanks < block)
            return;
    }
}

bool JsonReader::name(std::initializer_list<QByteArrayView> names, size_t guess, size_t *index)
{
    if (peek() != '"')
        return fail(QStringLiteral("a key is missing"));
    *index = names.size();
    if (guess < names.size()) {
        const QByteArrayView likely = names.begin()[guess];
        const qsizetype size = likely.size();
        if (m_end - m_at > size + 1 && m_at[size + 1] == '"'
            && std::memcmp(m_at + 1, likely.data(), size_t(size)) == 0) {
            m_at += size + 2;
            *index = guess;
        }
    }
    if (*index == names.size()) {
        if (!decodeString())
            return false;
        const QStringView other(m_texts.data(), m_length);
        *index = size_t(std::find_if(names.begin(), names.end(),
                                     [&](QByteArrayView one) { return other == QLatin1String(one); })
                        - names.begin());
    }
    if (peek() != ':')
        return fail(QStringLiteral("a colon is missing"));
    ++m_at;
    return true;
}

bool JsonReader::string(QString *value)
{
    if (peek() != '"')
        return invalid();
    if (!decodeString())
        return false;
    m_texts.take(m_length, value);
    return true;
}

bool JsonReader::boolean(bool *value)
{
    *value = peek() == 't';
    return passWord(*value ? "true" : "false");
}

bool JsonReader::skip()
{
    switch (peek()) {
    case '{':
        return object([this] {
            size_t index = 0;
            return name({}, 0, &index) && skip();
        });
    case '[':
        return array([this] { return skip(); });
    case '"':
        return decodeString();
    case 't':
        return passWord("true");
    case 'f':
        return passWord("false");
    case 'n':
        return passWord("null");
    default:
        return passNumber();
    }
}

bool JsonReader::end()
{
    passBlanks();
    return m_at == m_end || fail(QStringLiteral("text follows the root object"));
}

bool JsonReader::fail(const QString &problem, qsizetype offset)
{
    m_problem = problem;
    m_problemOffset = offset;
    return false;
}

bool JsonReader::passWord(QByteArrayView word)
{
    if (ahead(word.size()) != word)
        return invalid();
    m_at += word.size();
    return true;
}

bool JsonReader::passDigits()
{
    const char *const start = m_at;
    while (m_at < m_end && *m_at >= '0' && *m_at <= '9')
        ++m_at;
    return m_at > start;
}

/// Numbers are only passed over: they may be of any size.
bool JsonReader::passNumber()
{
    const qsizetype start = offset();
    const auto passAny = [this](QByteArrayView characters) {
        const bool is = m_at < m_end && characters.contains(*m_at);
        m_at += is;
        return is;
    };
    passAny("-");
    if (!passAny("0") && !passDigits())
        return fail(QStringLiteral("Invalid value"), start);
    if (passAny(".") && !passDigits())
        return fail(QStringLiteral("Invalid value"), start);
    if (passAny("eE")) {
        passAny("+-");
        if (!passDigits())
            return fail(QStringLiteral("Invalid value"), start);
    }
    return true;
}

namespace {

constexpr qsizetype likelyLength = 250; // units, of a string
constexpr qsizetype mostAtOnce = block + 2; // units

} // namespace

/// Passes the string whose opening quote comes next. Its text is then the one that m_texts has under way.
bool JsonReader::decodeString()
{
    const char *at = m_at + 1;
    m_texts.makeRoom(0, likelyLength);
    char16_t *to = m_texts.data();
    const char16_t *stop = to + likelyLength - mostAtOnce;
    while (true) {
        if (to > stop) {
            const qsizetype length = to - m_texts.data();
            m_texts.makeRoom(length, length);
            to = m_texts.data() + length;
            stop = to + length - mostAtOnce;
        }
        const qsizetype plain = copyPlain(at, m_end, to);
        at += plain;
        to += plain;
        if (plain == block)
            continue;
        if (at < m_end && *at == '"')
            break;
        if (comesSlash(at, m_end)) { // addresses are full of them
            *to++ = u'/';
            at += 2;
            if (!comesSlash(at, m_end))
                continue;
            *to++ = u'/'; // behind the scheme
            at += 2;
            continue;
        }
        if (at == m_end)
            return fail(QStringLiteral("a string does not end"));
        if (quint8(*at) < 0x20)
            return fail(QStringLiteral("a string holds a control character"));
        const bool isEscape = *at == '\\';
        const char32_t c = isEscape ? passEscape(at, m_end) : passCharacter(at, m_end);
        if (c == noCharacter)
            return fail(isEscape ? QStringLiteral("a string holds an invalid escape")
                                 : QStringLiteral("a string is not valid Unicode"));
        if (QChar::requiresSurrogates(c)) {
            *to++ = QChar::highSurrogate(c);
            *to++ = QChar::lowSurrogate(c);
        } else {
            *to++ = char16_t(c);
        }
    }
    m_at = at + 1;
    m_length = to - m_texts.data();
    return true;
}

} // namespace model

// SPDX-License-Identifier: MIT
#include "model/settingsjson.h"
#include "model/uuidtext.h"

#include <array>
#include <cstring>

namespace model {

namespace {

/// How an ASCII character is written: by itself, behind a backslash, or (length 0) in the six of \u00XX.
struct Escape
{
    quint8 length = 1;
    char last = 0;
};

constexpr std::array<Escape, 128> escapes = [] {
    std::array<Escape, 128> table = {};
    for (size_t c = 0; c < 128; ++c)
        table[c] = {quint8(c < 0x20 ? 0 : 1), char(c)};
    table['\b'] = {2, 'b'};
    table['\f'] = {2, 'f'};
    table['\n'] = {2, 'n'};
    table['\r'] = {2, 'r'};
    table['\t'] = {2, 't'};
    table['"'] = {2, '"'};
    table['\\'] = {2, '\\'};
    table['/'] = {2, '/'};
    return table;
}();

/// Writes the text of a file straight into one buffer of UTF-8: saving blocks the interface.
class Writer
{
public:
    QByteArray settings(const SettingsData &data)
    {
        reserve(lineSize);
        begin('{');
        member("currentTheme", data.currentTheme);
        array("availableThemes", data.availableThemes, [this](const QString &theme) { put(theme); });
        member("showsDate", data.showsDate);
        member("direction", data.direction);
        member("appIcon", data.appIcon);
        array("tileItems", data.tileItems, [this](const TileItem &item) { tile(item); });
        end('}');
        m_buffer.truncate(m_to - m_buffer.constData());
        return std::move(m_buffer);
    }

private:
    /// Room that a line takes at most besides its value.
    static constexpr qsizetype lineSize = 64; // bytes

    /// Eight UTF-16 units in one register, and as many bytes: both compilers have vectors without intrinsics.
    static constexpr qsizetype block = 8;
    using Units [[gnu::vector_size(16)]] = quint16;
    using Bytes [[gnu::vector_size(8)]] = quint8;

    void tile(const TileItem &item)
    {
        begin('{');
        member("id", item.id);
        member("iconName", item.iconName);
        member("tileName", item.tileName);
        member("tileDirectory", item.tileDirectory);
        member("showsScratchpad", item.showsScratchpad);
        member("scratchpadText", item.scratchpadText);
        array("tileMenuItems", item.tileMenuItems, [this](const TileMenuItem &entry) { link(entry); });
        end('}');
    }

    void link(const TileMenuItem &item)
    {
        begin('{');
        member("id", item.id);
        member("itemString", item.itemString);
        member("itemName", item.itemName);
        end('}');
    }

    template <size_t size, typename T> void member(const char (&name)[size], const T &value)
    {
        key(name);
        put(value);
    }

    template <size_t size, typename T, typename WriteElement>
    void array(const char (&name)[size], const QList<T> &list, WriteElement writeElement)
    {
        key(name);
        begin('[');
        for (const T &element : list) {
            line();
            writeElement(element);
        }
        end(']');
    }

    template <size_t size> void key(const char (&name)[size])
    {
        line();
        *m_to++ = '"';
        raw(name);
        raw("\" : ");
    }

    void begin(char bracket)
    {
        *m_to++ = bracket;
        ++m_level;
        m_first = true;
    }

    void end(char bracket)
    {
        --m_level;
        if (!m_first) {
            reserve(lineSize);
            indent();
        }
        *m_to++ = bracket;
        m_first = false;
    }

    /// Starts the line of a member or an element.
    void line()
    {
        reserve(lineSize);
        if (!m_first)
            *m_to++ = ',';
        m_first = false;
        indent();
    }

    void indent()
    {
        *m_to++ = '\n';
        std::memset(m_to, ' ', size_t(2 * m_level));
        m_to += 2 * m_level;
    }

    template <size_t size> void raw(const char (&text)[size])
    {
        std::memcpy(m_to, text, size - 1);
        m_to += size - 1;
    }

    void put(bool value) { value ? raw("true") : raw("false"); }

    void put(const QUuid &id)
    {
        const UuidText text = uuidBytes(id);
        *m_to++ = '"';
        m_to = std::copy(text.begin(), text.end(), m_to);
        *m_to++ = '"';
    }

    void put(const QString &text)
    {
        reserve(6 * text.size() + lineSize); // \u00XX is the longest that one unit becomes
        *m_to++ = '"';
        const auto *from = reinterpret_cast<const char16_t *>(text.utf16());
        const char16_t *const stop = from + text.size();
        char *to = m_to; // not the member: whatever is written through it might be itself
        while (from < stop) {
            if (stop - from >= block && copyPlain(from, to)) {
                from += block;
                to += block;
                continue;
            }
            const char16_t *const blockEnd = from + qMin(block, qsizetype(stop - from));
            while (from < blockEnd) {
                const char16_t c = *from;
                if (c < 0x80 && escapes[c].length > 0) {
                    // Without a branch: an address has a slash every few characters.
                    const Escape escape = escapes[c];
                    *to = '\\';
                    to[escape.length - 1] = escape.last;
                    to += escape.length;
                    ++from;
                } else {
                    to = rareCharacter(from, stop, to);
                }
            }
        }
        m_to = to;
        *m_to++ = '"';
    }

    /// Copies a block of units if each of them stands for itself.
    static bool copyPlain(const char16_t *from, char *to)
    {
        Units units;
        std::memcpy(&units, from, sizeof units);
        const auto special =
            (units < 0x20) | (units > 0x7f) | (units == '"') | (units == '\\') | (units == '/');
        quint64 halves[2];
        std::memcpy(halves, &special, sizeof halves);
        if (halves[0] | halves[1])
            return false;
        const auto bytes = __builtin_convertvector(units, Bytes);
        std::memcpy(to, &bytes, sizeof bytes);
        return true;
    }

    /// Writes the control or non-ASCII character at `from` and moves past it.
    static char *rareCharacter(const char16_t *&from, const char16_t *stop, char *to)
    {
        char32_t c = *from++;
        if (c < 0x20) {
            const char *digits = "0123456789ABCDEF";
            std::memcpy(to, "\\u00", 4);
            to[4] = digits[c >> 4];
            to[5] = digits[c & 15];
            return to + 6;
        }
        if (c < 0x800) {
            *to++ = char(0xc0 | c >> 6);
            *to++ = char(0x80 | (c & 0x3f));
            return to;
        }
        if (QChar::isHighSurrogate(c) && from < stop && QChar::isLowSurrogate(*from)) {
            c = QChar::surrogateToUcs4(char16_t(c), *from++);
            *to++ = char(0xf0 | c >> 18);
            *to++ = char(0x80 | (c >> 12 & 0x3f));
        } else {
            // Half a pair can be pasted but not written: the file would not load again.
            if (QChar::isSurrogate(c))
                c = QChar::ReplacementCharacter;
            *to++ = char(0xe0 | c >> 12);
        }
        *to++ = char(0x80 | (c >> 6 & 0x3f));
        *to++ = char(0x80 | (c & 0x3f));
        return to;
    }

    /// Makes sure that so many bytes can be written at `m_to`.
    void reserve(qsizetype count)
    {
        const qsizetype used = m_to - m_buffer.constData();
        if (m_buffer.size() - used >= count)
            return;
        m_buffer.resize(qMax(2 * m_buffer.size(), used + count + 4096));
        m_to = m_buffer.data() + used;
    }

    QByteArray m_buffer;
    char *m_to = m_buffer.data(); // the end of what is written
    int m_level = 0;
    bool m_first = true; // of its object or array
};

} // namespace

QByteArray settingsToJson(const SettingsData &data)
{
    return Writer().settings(data);
}

} // namespace model

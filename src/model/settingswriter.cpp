// SPDX-License-Identifier: MIT
#include "model/settingsjson.h"
#include "model/uuidtext.h"

#include <array>
#include <cstring>

namespace model {

namespace {

/// What follows the backslash where a character is written as an escape of two, 'u' for the six of \u00XX.
constexpr std::array<char, 128> escapes = [] {
    std::array<char, 128> table = {};
    for (size_t c = 0; c < 0x20; ++c)
        table[c] = 'u';
    table['\b'] = 'b';
    table['\f'] = 'f';
    table['\n'] = 'n';
    table['\r'] = 'r';
    table['\t'] = 't';
    table['"'] = '"';
    table['\\'] = '\\';
    table['/'] = '/';
    return table;
}();

/// Writes the text of a file into one buffer of UTF-8. Saving blocks the interface, so that there is no value
/// between a record's text and the buffer.
class Writer
{
public:
    QByteArray settings(const SettingsData &data)
    {
        begin('{');
        member("currentTheme", data.currentTheme);
        array("availableThemes", data.availableThemes, [this](const QString &theme) { string(theme); });
        member("showsDate", data.showsDate);
        member("direction", data.direction);
        member("appIcon", data.appIcon);
        array("tileItems", data.tileItems, [this](const TileItem &item) { tile(item); });
        end('}');
        m_buffer.truncate(m_size);
        return std::move(m_buffer);
    }

private:
    void tile(const TileItem &item)
    {
        begin('{');
        member("id", item.id);
        member("iconName", item.iconName);
        member("tileName", item.tileName);
        member("tileDirectory", item.tileDirectory);
        member("showsScratchpad", item.showsScratchpad);
        member("scratchpadText", item.scratchpadText);
        array("tileMenuItems", item.tileMenuItems, [this](const TileMenuItem &link) {
            begin('{');
            member("id", link.id);
            member("itemString", link.itemString);
            member("itemName", link.itemName);
            end('}');
        });
        end('}');
    }

    template <typename T> void member(QLatin1String name, const T &value)
    {
        line();
        raw('"');
        raw(name);
        raw(QLatin1String("\" : "));
        put(value);
    }
    template <typename T> void member(const char *name, const T &value)
    {
        member(QLatin1String(name), value);
    }

    template <typename T, typename WriteElement>
    void array(const char *name, const QList<T> &list, WriteElement writeElement)
    {
        line();
        raw('"');
        raw(QLatin1String(name));
        raw(QLatin1String("\" : "));
        begin('[');
        for (const T &element : list) {
            line();
            writeElement(element);
        }
        end(']');
    }

    void put(const QString &text) { string(text); }
    void put(bool value) { raw(value ? QLatin1String("true") : QLatin1String("false")); }
    void put(const QUuid &id)
    {
        const UuidText text = uuidBytes(id);
        raw('"');
        raw(QLatin1String(text.data(), qsizetype(text.size())));
        raw('"');
    }

    void begin(char bracket)
    {
        raw(bracket);
        ++m_level;
        m_first = true;
    }
    void end(char bracket)
    {
        --m_level;
        if (!m_first)
            indent();
        raw(bracket);
        m_first = false;
    }
    /// Starts the line of a member or an element.
    void line()
    {
        if (!m_first)
            raw(',');
        m_first = false;
        indent();
    }
    void indent()
    {
        char *to = room(1 + 2 * m_level);
        *to++ = '\n';
        std::memset(to, ' ', size_t(2 * m_level));
        m_size += 1 + 2 * m_level;
    }
    void raw(char c) { *room(1) = c, ++m_size; }
    void raw(QLatin1String text)
    {
        std::memcpy(room(text.size()), text.data(), size_t(text.size()));
        m_size += text.size();
    }

    void string(QStringView text)
    {
        char *to = room(2 + 6 * text.size()); // \u00XX is the longest that one unit becomes
        char *const start = to;
        *to++ = '"';
        const char16_t *from = text.utf16();
        const char16_t *const stop = from + text.size();
        while (from < stop) {
            // Most text is plain ASCII: sixteen units at once, in a form that the compiler turns into vector
            // code.
            constexpr int block = 16;
            while (stop - from >= block) {
                unsigned special = 0;
                for (int i = 0; i < block; ++i) {
                    const char16_t c = from[i];
                    special |= unsigned(c < 0x20) | unsigned(c > 0x7e) | unsigned(c == u'"')
                        | unsigned(c == u'\\') | unsigned(c == u'/');
                    to[i] = char(c);
                }
                if (special)
                    break;
                from += block;
                to += block;
            }
            const char16_t *const blockEnd = stop - from < block ? stop : from + block;
            while (from < blockEnd)
                to = character(from, stop, to);
        }
        *to++ = '"';
        m_size += to - start;
    }

    /// Writes the character at `from` and moves past it.
    static char *character(const char16_t *&from, const char16_t *stop, char *to)
    {
        char32_t c = *from++;
        if (c < 0x80) {
            const char escape = escapes[c];
            if (escape)
                *to++ = '\\';
            *to++ = escape ? escape : char(c);
            if (escape == 'u') {
                const char *digits = "0123456789ABCDEF";
                *to++ = '0';
                *to++ = '0';
                *to++ = digits[c >> 4];
                *to++ = digits[c & 15];
            }
            return to;
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
            if (QChar::isSurrogate(
                    c)) // half a pair can be pasted but not written: the file would not load again
                c = QChar::ReplacementCharacter;
            *to++ = char(0xe0 | c >> 12);
        }
        *to++ = char(0x80 | (c >> 6 & 0x3f));
        *to++ = char(0x80 | (c & 0x3f));
        return to;
    }

    /// Where to write at least `count` bytes.
    char *room(qsizetype count)
    {
        if (m_buffer.size() - m_size < count)
            m_buffer.resize(qMax(2 * m_buffer.size(), m_size + count + 4096));
        return m_buffer.data() + m_size;
    }

    QByteArray m_buffer;
    qsizetype m_size = 0; // bytes of the buffer in use
    int m_level = 0;
    bool m_first = true; // of its object or array
};

} // namespace

QByteArray settingsToJson(const SettingsData &data)
{
    return Writer().settings(data);
}

} // namespace model

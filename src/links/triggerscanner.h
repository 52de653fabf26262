// SPDX-License-Identifier: MIT
#pragma once

#include "links/linkcharacters.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace links {

/// What the bytes at and around a ":", "@" or "." have to be, a bit for each kind of link: the bytes that
/// stand there have one in common, or no link can be found at that place.
struct TriggerTables
{
    enum : std::uint8_t { Web = 1, ShortScheme = 2, Mail = 4, Name = 8, Numbers = 16 };

    constexpr TriggerTables()
    {
        for (unsigned i = 0; i < 256; ++i) {
            const char c = char(i);
            const bool wide = hasClass(c, WideByte), alnum = hasClass(c, AlnumByte),
                       digit = alnum && c <= '9';
            const auto bits = [](bool web, bool shortScheme, bool mail, bool name, bool numbers) {
                return std::uint8_t(web * Web | shortScheme * ShortScheme | mail * Mail | name * Name
                                    | numbers * Numbers);
            };
            before[i] = bits(hasClass(c, SchemeByte), isOneOf(c, "olspOLSP"), // the ends of such schemes
                             alnum || wide || isOneOf(c, "_~"), hasClass(c, HostByte | WideByte), digit);
            here[i] = bits(c == ':', c == ':', c == '@', c == '.', c == '.');
            after[i] = bits(c == '/', !hasClass(c, EndByte), alnum || wide, wide || (alnum && !digit), digit);
            second[i] = bits(c == '/', true, c == '.' || hasClass(c, HostByte | WideByte),
                             hasClass(c, HostByte | WideByte), true);
        }
    }

    std::array<std::uint8_t, 256> before{}, here{}, after{}, second{};
};

constexpr TriggerTables triggerTables;

/// Walks through a text from one byte at which a link may show itself to the next: ":", "@" and "." with what
/// a link has around them. It looks at some kilobytes at a time without a branch for what it finds.
class TriggerScanner
{
public:
    explicit TriggerScanner(std::string_view text)
        : m_text(text)
    {
    }

    /// The next such byte at `from` or later; npos at the end. `from` never goes back.
    std::size_t next(std::size_t from)
    {
        for (;;) {
            if (from >= m_end) {
                if (from >= m_text.size())
                    return std::string_view::npos;
                fill(from);
            }
            // The 64 bytes from here, which in a text full of links hold the next one.
            std::size_t word = (from - m_begin) / 64;
            const unsigned bit = (from - m_begin) % 64;
            std::uint64_t mask = m_masks[word] >> bit | m_masks[word + 1] << 1 << (63 - bit);
            if (!mask) {
                while (!(mask = m_masks[++word])) { }
                from = m_begin + word * 64;
            }
            for (; mask; mask &= mask - 1) {
                const std::size_t at = from + std::size_t(std::countr_zero(mask));
                if (at < m_end && maySayLink(at))
                    return at;
            }
            from = std::min(from + 64, m_end);
        }
    }

private:
    bool maySayLink(std::size_t at) const
    {
        if (at < 4 || m_text.size() - at < 3)
            return true;
        const auto *const text = reinterpret_cast<const unsigned char *>(m_text.data()) + at;
        const unsigned kinds = triggerTables.here[text[0]] & triggerTables.before[text[-1]]
            & triggerTables.after[text[1]] & triggerTables.second[text[2]];
        if (kinds != TriggerTables::Numbers)
            return kinds != 0;
        return text[-2] == '.' || text[-3] == '.' || text[-4] == '.'; // as before the last of four numbers
    }
    void fill(std::size_t begin);

    std::string_view m_text;
    std::size_t m_begin = 0; ///< the bytes from here to m_end are described by m_masks
    std::size_t m_end = 0;
    std::array<std::uint64_t, 129> m_masks; ///< the one after the last of them is not 0
};

} // namespace links

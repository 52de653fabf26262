// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace links {

/// Walks through a text from one byte at which a link may show itself to the next: ":" unless a blank
/// follows, "@" and
/// "." before a byte that a name may hold. It looks at some kilobytes at a time without a branch for what it
/// finds.
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
        while (from < m_text.size()) {
            if (from >= m_end)
                fill(from);
            std::size_t word = (from - m_begin) / 64;
            std::uint64_t mask = m_masks[word] & ~std::uint64_t(0) << (from - m_begin) % 64;
            const std::size_t words = (m_end - m_begin + 63) / 64;
            while (!mask && ++word < words)
                mask = m_masks[word];
            if (mask)
                return m_begin + word * 64 + std::size_t(std::countr_zero(mask));
            from = m_end;
        }
        return std::string_view::npos;
    }

private:
    void fill(std::size_t begin);

    std::string_view m_text;
    std::size_t m_begin = 0; ///< the bytes from here to m_end are described by m_masks
    std::size_t m_end = 0;
    std::array<std::uint64_t, 128> m_masks;
};

} // namespace links

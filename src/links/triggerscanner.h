// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace links {

/// Walks through a text from one byte at which a link may show itself to the next: ":" before "/" or after
/// the last letter of a scheme that goes without slashes, "@" and "." between two bytes that a name may hold.
/// Looks at 64 bytes at a time; some bytes it stops at are no such place after all.
class TriggerScanner
{
public:
    explicit TriggerScanner(std::string_view text)
        : m_text(text)
    {
    }

    /// Moves to the next such byte at `from` or later, `from` never going back; npos at the end.
    std::size_t next(std::size_t from);

private:
    void fill(std::size_t base);

    std::string_view m_text;
    std::size_t m_base = 0; ///< of the block that m_mask describes
    std::size_t m_next = 0; ///< of the block after it
    std::uint64_t m_mask = 0;
};

/// The first byte in [at, end) that is not plainly part of a path (CheckByte); `end` when all are.
std::size_t findCheckByte(std::string_view text, std::size_t at, std::size_t end);

} // namespace links

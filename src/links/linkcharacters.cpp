// SPDX-License-Identifier: MIT
#include "links/linkcharacters.h"

#include <algorithm>
#include <iterator>

namespace links {

namespace {

struct Range
{
    char32_t first;
    char32_t last;
    WideKind kind;
};

// Sorted; everything between is a letter. U+200C and U+200D join letters inside words; U+2010 to U+2013 are
// the dashes that page titles contain.
constexpr Range ranges[] = {
    {0x0080, 0x00A0, WideKind::End},    {0x00AB, 0x00AB, WideKind::End},
    {0x00AD, 0x00AD, WideKind::End},    {0x00B4, 0x00B4, WideKind::End},
    {0x00BB, 0x00BB, WideKind::End},    {0x060C, 0x060C, WideKind::End},
    {0x061B, 0x061C, WideKind::End},    {0x061F, 0x061F, WideKind::End},
    {0x06D4, 0x06D4, WideKind::End},    {0x0964, 0x0965, WideKind::End},
    {0x1100, 0x11FF, WideKind::Cjk},    {0x1680, 0x1680, WideKind::End},
    {0x180E, 0x180E, WideKind::End},    {0x2000, 0x200B, WideKind::End},
    {0x200E, 0x200F, WideKind::End},    {0x2010, 0x2013, WideKind::Symbol},
    {0x2014, 0x206F, WideKind::End},    {0x20A0, 0x20CF, WideKind::Symbol},
    {0x2190, 0x2BFF, WideKind::Symbol}, {0x2E00, 0x2E7F, WideKind::End},
    {0x2E80, 0x2FDF, WideKind::Cjk},    {0x2FF0, 0x3004, WideKind::End},
    {0x3005, 0x3007, WideKind::Cjk},    {0x3008, 0x3020, WideKind::End},
    {0x3021, 0x302F, WideKind::Cjk},    {0x3030, 0x3030, WideKind::End},
    {0x3031, 0x3035, WideKind::Cjk},    {0x3036, 0x3037, WideKind::Symbol},
    {0x3038, 0x303C, WideKind::Cjk},    {0x303D, 0x303F, WideKind::End},
    {0x3040, 0x309F, WideKind::Cjk},    {0x30A0, 0x30A0, WideKind::End},
    {0x30A1, 0x30FA, WideKind::Cjk},    {0x30FB, 0x30FB, WideKind::End},
    {0x30FC, 0xA4CF, WideKind::Cjk},    {0xA960, 0xA97F, WideKind::Cjk},
    {0xAC00, 0xD7FF, WideKind::Cjk},    {0xE000, 0xF8FF, WideKind::Symbol},
    {0xF900, 0xFAFF, WideKind::Cjk},    {0xFE00, 0xFE0F, WideKind::Symbol},
    {0xFE10, 0xFE6F, WideKind::End},    {0xFEFF, 0xFF0F, WideKind::End},
    {0xFF1A, 0xFF20, WideKind::End},    {0xFF3B, 0xFF40, WideKind::End},
    {0xFF5B, 0xFF65, WideKind::End},    {0xFF66, 0xFFDC, WideKind::Cjk},
    {0xFFE0, 0xFFFB, WideKind::End},    {0xFFFC, 0xFFFD, WideKind::Symbol},
    {0xFFFE, 0xFFFF, WideKind::End},    {0x1F000, 0x1FBFF, WideKind::Symbol},
    {0x20000, 0x3FFFF, WideKind::Cjk},  {0xE0000, 0xE00FF, WideKind::End},
};

WideKind kindOf(char32_t character)
{
    if (character > 0x3400 && character < 0xA000) // Han
        return WideKind::Cjk;
    const Range *range = std::ranges::lower_bound(ranges, character, {}, &Range::last);
    return range != std::end(ranges) && character >= range->first ? range->kind : WideKind::Letter;
}

} // namespace

WideCharacter rareWideCharacterAt(std::string_view text, std::size_t at)
{
    constexpr WideCharacter invalid = {WideKind::End, 1};
    const auto lead = static_cast<unsigned char>(text[at]);
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() - at < length)
        return invalid;
    char32_t character = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(text[at + i]))
            return invalid;
        character = character << 6 | (static_cast<unsigned char>(text[at + i]) & 0x3F);
    }
    const bool overlong = character < (length == 4 ? 0x10000u : length == 3 ? 0x800u : 0x80u);
    if (overlong || character > 0x10FFFF || (character >= 0xD800 && character < 0xE000))
        return invalid;
    return {kindOf(character), length};
}

WideCharacter wideCharacterBefore(std::string_view text, std::size_t begin, std::size_t end)
{
    for (std::size_t length = 2; length <= 4 && end - begin >= length; ++length) {
        if (isContinuation(text[end - length]))
            continue;
        if (!hasClass(text[end - length], WideByte))
            break;
        const WideCharacter character = wideCharacterAt(text.substr(0, end), end - length);
        if (character.length == length)
            return character;
        break;
    }
    return {WideKind::End, 1};
}

} // namespace links

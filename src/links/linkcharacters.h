// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace links {

// What a byte may be part of; of a byte past ASCII, its code point decides.
enum ByteClass : std::uint16_t {
    AlnumByte = 1,
    HostByte = 2, ///< letters, digits, "-", "_"
    SchemeByte = 4, ///< letters, digits, "+", "-", "."
    LocalByte = 8, ///< of a mail address before its "@"
    UserByte = 16, ///< of "user:password" before the "@" of an authority
    EndByte = 32, ///< never inside an address: blanks, controls, quotes, "<", ">", "\", "`"
    CheckByte = 64, ///< may end an address by what stands around it, or is past ASCII
    WideByte = 128, ///< past ASCII
    TailByte = 256, ///< "/", "?" and "#", which begin what follows a host
    LastByte = 512, ///< letters, digits, "/" and "=", which are never trimmed from an address
};

/// A set of ASCII characters, made from a literal when compiling.
struct AsciiSet
{
    consteval AsciiSet(const char *characters)
    {
        for (; *characters; ++characters)
            bits[*characters / 64] |= std::uint64_t(1) << *characters % 64;
    }

    std::uint64_t bits[2] = {};
};

constexpr bool isOneOf(char c, AsciiSet set)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte < 128 && ((byte < 64 ? set.bits[0] : set.bits[1]) >> byte % 64 & 1);
}

constexpr std::array<std::uint16_t, 256> makeByteClasses()
{
    std::array<std::uint16_t, 256> classes{};
    for (unsigned i = 0; i < 256; ++i) {
        const char c = char(i);
        const bool alnum = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        unsigned bits = 0;
        if (i >= 0x80)
            bits = WideByte | CheckByte;
        else if (i <= 0x20 || i == 0x7f || isOneOf(c, "\"<>\\`"))
            bits = EndByte | CheckByte;
        if (alnum)
            bits |= AlnumByte;
        if (alnum || isOneOf(c, "-_"))
            bits |= HostByte;
        if (alnum || isOneOf(c, "+-."))
            bits |= SchemeByte;
        if (alnum || isOneOf(c, "._-+%~'"))
            bits |= LocalByte;
        if (alnum || isOneOf(c, "._-+%~!$&*=:,;"))
            bits |= UserByte;
        if (isOneOf(c, "'()[]{}|,;&"))
            bits |= CheckByte;
        if (isOneOf(c, "/?#"))
            bits |= TailByte;
        if (alnum || isOneOf(c, "/="))
            bits |= LastByte;
        classes[i] = std::uint16_t(bits);
    }
    return classes;
}

// Not inline: a table of its own in each object file is reached without a look-up by the linker.
constexpr std::array<std::uint16_t, 256> byteClasses = makeByteClasses();

constexpr bool hasClass(char c, unsigned classes)
{
    return (byteClasses[static_cast<unsigned char>(c)] & classes) != 0;
}

/// What a code point past ASCII means to an address.
enum class WideKind {
    End, ///< blanks, controls, quotes, CJK and other sentence punctuation, bytes that are no UTF-8
    Letter,
    Cjk, ///< Han, kana and Hangul: written without blanks around words
    Symbol, ///< arrows, pictures and the like
};

struct WideCharacter
{
    WideKind kind;
    std::size_t length; ///< in bytes, at least 1
};

constexpr bool isContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

WideCharacter rareWideCharacterAt(std::string_view text, std::size_t at);

/// The character past ASCII that begins at `at`.
inline WideCharacter wideCharacterAt(std::string_view text, std::size_t at)
{
    const auto lead = static_cast<unsigned char>(text[at]);
    if (lead >= 0xC3 && lead < 0xD8 && text.size() - at > 1 && isContinuation(text[at + 1]))
        return {WideKind::Letter, 2}; // Latin, Greek, Cyrillic, Hebrew
    return rareWideCharacterAt(text, at);
}

/// The character past ASCII that ends before `end`; `length` never reaches before `begin`.
WideCharacter wideCharacterBefore(std::string_view text, std::size_t begin, std::size_t end);

} // namespace links

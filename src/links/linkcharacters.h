// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace links {

// What a byte may be part of; of a byte past ASCII, its code point decides.
enum ByteClass : std::uint8_t {
    AlnumByte = 1,
    HostByte = 2, ///< letters, digits, "-", "_"
    SchemeByte = 4, ///< letters, digits, "+", "-", "."
    LocalByte = 8, ///< of a mail address before its "@"
    UserByte = 16, ///< of "user:password" before the "@" of an authority
    EndByte = 32, ///< never inside an address: blanks, controls, quotes, "<", ">", "\", "`"
    CheckByte = 64, ///< may end an address by what stands around it, or is past ASCII
    WideByte = 128, ///< past ASCII
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
    return byte < 128 && (set.bits[byte / 64] >> byte % 64 & 1);
}

constexpr std::array<std::uint8_t, 256> makeByteClasses()
{
    std::array<std::uint8_t, 256> classes{};
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
        classes[i] = std::uint8_t(bits);
    }
    return classes;
}

inline constexpr std::array<std::uint8_t, 256> byteClasses = makeByteClasses();

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

/// The character past ASCII that begins at `at`.
WideCharacter wideCharacterAt(std::string_view text, std::size_t at);
/// The character past ASCII that ends before `end`; `length` never reaches before `begin`.
WideCharacter wideCharacterBefore(std::string_view text, std::size_t begin, std::size_t end);

} // namespace links

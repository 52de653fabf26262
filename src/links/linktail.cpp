// SPDX-License-Identifier: MIT
#include "links/linktail.h"

#include "links/linkcharacters.h"
#include "links/linkwords.h"
#include "links/plainaddress.h"

#include <algorithm>

namespace links {

namespace {

/// The row of 32 characters in which both brackets of a pair stand, another for each pair.
std::size_t bracketKind(char c)
{
    return static_cast<unsigned char>(c) >> 5 & 3;
}

struct PackedWord
{
    consteval PackedWord(const char *word)
        : bytes(packedBytes(word))
        , mask(~std::uint64_t(0) >> 8 * (8 - std::string_view(word).size()))
    {
    }

    std::uint64_t bytes, mask;
};

/// Whether one of the words stands at `at`.
bool startsWith(std::string_view text, std::size_t at, std::initializer_list<PackedWord> words)
{
    const std::uint64_t packed = packedBytes(text.substr(at, 8));
    bool found = false;
    for (const PackedWord &word : words)
        found |= (packed & word.mask) == word.bytes;
    return found;
}

/// An entity for a quote, an angle bracket or a blank stands at `at`.
bool isEndingEntity(std::string_view text, std::size_t at)
{
    switch (at + 1 < text.size() ? text[at + 1] : '\0') {
    case 'q':
        return startsWith(text, at + 1, {"quot;"});
    case 'l':
        return startsWith(text, at + 1, {"lt;"});
    case 'g':
        return startsWith(text, at + 1, {"gt;"});
    case 'a':
        return startsWith(text, at + 1, {"apos;"});
    case 'n':
        return startsWith(text, at + 1, {"nbsp;"});
    case '#':
        return startsWith(
            text, at + 2,
            {"34;", "39;", "039;", "60;", "62;", "160;", "x22;", "x27;", "x3c;", "x3C;", "x3e;", "x3E;"});
    default:
        return false;
    }
}

/// Another address begins at `at`: lists hold addresses with nothing but a comma between them.
bool isAddressBegin(std::string_view text, std::size_t at)
{
    return at < text.size() && isOneOf(text[at], "hfw")
        && startsWith(text, at, {"http://", "https://", "ftp://", "www."});
}

/// The begin of an entity whose ";" is the last byte before `end`; `end` when there is none.
std::size_t entityBegin(std::string_view text, std::size_t from, std::size_t end)
{
    constexpr std::size_t longest = 10;
    std::size_t at = end - 1;
    while (at > from && end - at <= longest && hasClass(text[at - 1], AlnumByte))
        --at;
    return at > from && at < end - 1 && text[at - 1] == '&' ? at - 1 : end;
}

/// The next byte that may end the address: near ones by single steps, since they come in groups, then by
/// vectors.
std::size_t nextCheckByte(std::string_view text, std::size_t at)
{
    const std::size_t near = std::min(at + 8, text.size());
    for (; at < near; ++at) {
        if (hasClass(text[at], CheckByte))
            return at;
    }
    return findCheckByte(text, at, text.size());
}

std::size_t trimmedEnd(std::string_view text, std::size_t from, std::size_t end, char before)
{
    while (end > from) {
        const char last = text[end - 1];
        const std::size_t entity = last == ';' ? entityBegin(text, from, end) : end;
        if (entity < end)
            end = entity;
        else if (isOneOf(last, ".,;:!?'|^([{") || (last == before && isOneOf(last, "*_~")))
            --end;
        else
            break;
    }
    return end;
}

} // namespace

std::size_t tailEnd(std::string_view text, std::size_t from, char before)
{
    unsigned open[4] = {}; // brackets of each kind
    std::size_t at = from;
    while ((at = nextCheckByte(text, at)) < text.size()) {
        const char c = text[at];
        if (hasClass(c, EndByte) || (c == before && isOneOf(c, "'|")))
            break;
        if (hasClass(c, WideByte)) {
            const WideCharacter wide = wideCharacterAt(text, at);
            if (wide.kind == WideKind::End)
                break;
            at += wide.length;
            continue;
        }
        if (isOneOf(c, ",;|") && isAddressBegin(text, at + 1))
            break;
        if (c == '&' && isEndingEntity(text, at))
            break;
        if (isOneOf(c, "([{")) {
            if (c == '[' && at + 1 < text.size() && text[at + 1] == '/') // "[/url]"
                break;
            ++open[bracketKind(c)];
        } else if (isOneOf(c, ")]}") && open[bracketKind(c)]-- == 0) {
            break;
        }
        ++at;
    }
    return trimmedEnd(text, from, at, before);
}

} // namespace links

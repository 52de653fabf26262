// SPDX-License-Identifier: MIT
#include "links/linktail.h"

#include "links/linkcharacters.h"
#include "links/plainaddress.h"

#include <algorithm>

namespace links {

namespace {

constexpr std::string_view openingBrackets = "([{";
constexpr std::string_view closingBrackets = ")]}";

/// An entity for a quote, an angle bracket or a blank stands at `at`.
bool isEndingEntity(std::string_view text, std::size_t at)
{
    constexpr std::string_view entities[] = {"quot;", "lt;",   "gt;",   "apos;", "nbsp;", "#34;",
                                             "#39;",  "#039;", "#60;",  "#62;",  "#160;", "#x22;",
                                             "#x27;", "#x3c;", "#x3C;", "#x3e;", "#x3E;"};
    if (at + 1 == text.size() || !isOneOf(text[at + 1], "qlgan#"))
        return false;
    const std::string_view rest = text.substr(at + 1, 6);
    return std::ranges::any_of(entities,
                               [rest](std::string_view entity) { return rest.starts_with(entity); });
}

/// Another address begins at `at`: lists hold addresses with nothing but a comma between them.
bool isAddressBegin(std::string_view text, std::size_t at)
{
    if (at >= text.size() || !isOneOf(text[at], "hfw"))
        return false;
    const std::string_view rest = text.substr(at, 8);
    return rest.starts_with("http://") || rest.starts_with("https://") || rest.starts_with("ftp://")
        || rest.starts_with("www.");
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
    unsigned open[3] = {};
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
        if (const std::size_t bracket = openingBrackets.find(c); bracket != std::string_view::npos) {
            if (c == '[' && at + 1 < text.size() && text[at + 1] == '/') // "[/url]"
                break;
            ++open[bracket];
        } else if (const std::size_t closing = closingBrackets.find(c); closing != std::string_view::npos) {
            if (!open[closing])
                break;
            --open[closing];
        }
        ++at;
    }
    return trimmedEnd(text, from, at, before);
}

} // namespace links

// SPDX-License-Identifier: MIT
#include "links/linkhost.h"

#include "links/linkcharacters.h"
#include "links/topleveldomains.h"

#include <algorithm>

namespace links {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// How many bytes of a host's label stand at `at`; 0 for none.
std::size_t labelBytesAt(std::string_view text, std::size_t at)
{
    if (at >= text.size())
        return 0;
    if (!hasClass(text[at], WideByte))
        return hasClass(text[at], HostByte) ? 1 : 0;
    const WideCharacter wide = wideCharacterAt(text, at);
    return wide.kind == WideKind::End ? 0 : wide.length;
}

/// Where a Latin top-level domain ends to which a CJK word or a symbol is glued; `end` when none is.
std::size_t gluedSuffixBegin(std::string_view text, std::size_t label, std::size_t end)
{
    std::size_t at = label;
    while (at < end && !hasClass(text[at], WideByte))
        ++at;
    if (at == end || wideCharacterAt(text, at).kind == WideKind::Letter)
        return end;
    return isTopLevelDomain(text.substr(label, at - label)) ? at : end;
}

} // namespace

HostName readHostName(std::string_view text, std::size_t begin, std::size_t *runEnd)
{
    std::size_t lastLabel = begin, secondLastLabel = begin, at = begin;
    bool valid = true, wide = false;
    for (;;) {
        while (at < text.size() && hasClass(text[at], HostByte))
            ++at;
        if (at == text.size())
            break;
        if (text[at] == '.') {
            if (at == begin || !labelBytesAt(text, at + 1))
                break;
            if (text[at - 1] == '-' || text[at + 1] == '-')
                valid = false;
            secondLastLabel = lastLabel;
            lastLabel = ++at;
        } else if (hasClass(text[at], WideByte)) {
            const std::size_t length = labelBytesAt(text, at);
            if (!length)
                break;
            wide = true;
            at += length;
        } else {
            break;
        }
    }
    *runEnd = at;
    if (wide)
        at = gluedSuffixBegin(text, lastLabel, at);
    while (at > lastLabel && text[at - 1] == '-')
        --at;
    if (at == lastLabel || at - begin > longestHost || text[begin] == '-')
        valid = false;
    return {begin, at, lastLabel, secondLastLabel, valid};
}

std::size_t hostRunBegin(std::string_view text, std::size_t floor, std::size_t dot)
{
    const std::size_t bound = std::max(floor, dot > longestHost ? dot - longestHost : 0);
    std::size_t at = dot;
    while (at > bound) {
        const char c = text[at - 1];
        if (hasClass(c, HostByte)) {
            --at;
        } else if (c == '.') {
            if (at - 1 == bound || !(hasClass(text[at - 2], HostByte | WideByte)))
                break;
            --at;
        } else if (hasClass(c, WideByte)) {
            const WideCharacter wide = wideCharacterBefore(text, bound, at);
            if (wide.kind == WideKind::End)
                break;
            at -= wide.length;
        } else {
            break;
        }
    }
    return at;
}

std::size_t skipGluedPrefix(std::string_view text, std::size_t begin, std::size_t end)
{
    std::size_t at = begin;
    while (at < end && hasClass(text[at], WideByte)) {
        const WideCharacter wide = wideCharacterAt(text, at);
        if (wide.kind == WideKind::Letter)
            return begin;
        at += wide.length;
    }
    return at < end && hasClass(text[at], AlnumByte) ? at : begin;
}

bool isIpv4Address(std::string_view host)
{
    int numbers = 0;
    while (!host.empty()) {
        const std::size_t dot = std::min(host.find('.'), host.size());
        const std::string_view number = host.substr(0, dot);
        int value = 0;
        for (const char c : number.substr(0, 4)) {
            if (!isDigit(c))
                return false;
            value = value * 10 + (c - '0');
        }
        if (number.empty() || number.size() > 3 || value > 255 || (number.size() > 1 && number[0] == '0'))
            return false;
        ++numbers;
        host.remove_prefix(std::min(dot + 1, host.size()));
    }
    return numbers == 4;
}

std::size_t ipLiteralEnd(std::string_view text, std::size_t at)
{
    constexpr std::size_t longest = 45; // eight groups of four digits, the last two as an IPv4 address
    const std::size_t length = text.substr(at + 1, longest + 1).find(']');
    if (length == std::string_view::npos)
        return at;
    const std::size_t end = at + 1 + length;
    std::string_view rest = text.substr(at + 1, length);
    int groups = 0;
    bool gap = false;
    if (rest.starts_with("::")) {
        gap = true;
        rest.remove_prefix(2);
    }
    while (!rest.empty()) {
        const std::size_t colon = std::min(rest.find(':'), rest.size());
        const std::string_view group = rest.substr(0, colon);
        rest.remove_prefix(colon);
        if (rest.empty() && isIpv4Address(group)) {
            groups += 2;
            break;
        }
        const auto isHex = [](char c) { return isDigit(c) || ((c | 0x20) >= 'a' && (c | 0x20) <= 'f'); };
        if (group.empty() || group.size() > 4 || !std::ranges::all_of(group, isHex))
            return at;
        ++groups;
        if (rest.starts_with("::")) {
            if (gap)
                return at;
            gap = true;
            rest.remove_prefix(2);
        } else if (rest.starts_with(':')) {
            rest.remove_prefix(1);
            if (rest.empty())
                return at;
        }
    }
    return (gap ? groups <= 7 : groups == 8) ? end + 1 : at;
}

Port readPort(std::string_view text, std::size_t at)
{
    Port port = {at};
    if (at >= text.size() || text[at] != ':')
        return port;
    std::size_t end = at + 1;
    int number = 0;
    for (; end < text.size() && isDigit(text[end]); ++end)
        number = std::min(number * 10 + (text[end] - '0'), 65536);
    if (end == at + 1 || labelBytesAt(text, end))
        return port;
    return {end, number};
}

} // namespace links

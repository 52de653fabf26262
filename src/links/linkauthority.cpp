// SPDX-License-Identifier: MIT
#include "links/linkauthority.h"

#include "links/linkcharacters.h"
#include "links/linkhost.h"
#include "links/linkwords.h"

#include <algorithm>

namespace links {

namespace {

constexpr std::size_t longestUserPart = 128; // bytes

char byteAt(std::string_view text, std::size_t at)
{
    return at < text.size() ? text[at] : '\0';
}

/// Where the host begins after the "user[:password]@" at `at`; `at` when there is none.
std::size_t userPartEnd(std::string_view text, std::size_t at)
{
    const std::size_t bound = std::min(text.size(), at + longestUserPart);
    std::size_t end = at;
    while (end < bound && hasClass(text[end], UserByte))
        ++end;
    if (end == at || byteAt(text, end) != '@')
        return at;
    for (std::size_t i = at; i < end && text[i] != ':'; ++i) {
        if (isOneOf(text[i], ",;"))
            return at;
    }
    return end + 1;
}

/// "2001:db8::7" without brackets has no port, and "a:b" is no host.
bool isColonOfOther(std::string_view text, std::size_t at)
{
    return byteAt(text, at) == ':'
        && (byteAt(text, at + 1) == ':' || hasClass(byteAt(text, at + 1), HostByte));
}

} // namespace

std::size_t webAuthorityEnd(std::string_view text, std::size_t at)
{
    std::size_t runEnd;
    HostName host = readHostName(text, at, &runEnd);
    if (isOneOf(byteAt(text, runEnd), "@:%+~!$&*=.") && !isSchemeEnd(text, runEnd)) {
        if (const std::size_t begin = userPartEnd(text, at); begin > at) {
            host = readHostName(text, begin, &runEnd);
            if (byteAt(text, runEnd) == '@')
                return at;
        }
    }
    if (byteAt(text, host.begin) == '[') {
        const std::size_t end = ipLiteralEnd(text, host.begin);
        return end == host.begin ? at : readPort(text, end).end;
    }
    if (!host.valid)
        return at;
    if (!host.hasDot()) {
        // The glued "http://http://": the second one is the address.
        if (isSchemeEnd(text, host.end) && hasHostRules(text.substr(host.begin, host.end - host.begin)))
            return at;
    } else if (text.substr(host.lastLabel, host.end - host.lastLabel).find('_') != std::string_view::npos) {
        return at;
    }
    std::size_t end = host.end;
    const char next = byteAt(text, end + 1);
    if (byteAt(text, end) == '.' && (next == '/' || (next == ':' && readPort(text, end + 1).number >= 0)))
        ++end; // the root's dot
    const Port port = readPort(text, end);
    return port.number < 0 && !host.hasDot() && isColonOfOther(text, end) ? at : port.end;
}

} // namespace links

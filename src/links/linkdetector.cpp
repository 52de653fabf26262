// SPDX-License-Identifier: MIT
#include "links/linkdetector.h"

#include "links/linkauthority.h"
#include "links/linkcharacters.h"
#include "links/linkhost.h"
#include "links/linktail.h"
#include "links/linkwords.h"
#include "links/plainaddress.h"
#include "links/topleveldomains.h"
#include "links/triggerscanner.h"

#include <algorithm>
#include <cstring>

namespace links {

namespace {

constexpr std::size_t longestScheme = 32; // bytes
constexpr std::size_t longestLocalPart = 64;
// So much of what follows "tel:" and the like has to show that it is one.
constexpr std::size_t shortSchemeLook = 64;

class Detector
{
public:
    explicit Detector(std::string_view text)
        : m_text(text)
        , m_scanner(text)
    {
        // A link in 32 bytes is more than most texts hold; what is not written to costs no memory.
        m_links.reserve(text.size() / 32);
    }

    std::vector<Link> run()
    {
        for (std::size_t at = m_scanner.next(0); at != std::string_view::npos;
             at = m_scanner.next(std::max(at + 1, m_floor))) {
            if (m_text[at] == ':')
                readColon(at);
            else if (at > 0 && m_text[at] == '.')
                readHost(at);
            else if (at > 0)
                readMail(at);
        }
        return std::move(m_links);
    }

private:
    char byteAt(std::size_t at) const { return at < m_text.size() ? m_text[at] : '\0'; }
    char byteBefore(std::size_t at) const { return at > 0 ? m_text[at - 1] : '\0'; }
    std::string_view slice(std::size_t begin, std::size_t end) const
    {
        return {m_text.data() + begin, end - begin};
    }

    void add(std::size_t begin, std::size_t end, LinkForm form)
    {
        m_links.push_back({begin, std::uint32_t(std::min<std::size_t>(end - begin, UINT32_MAX)), form});
        m_floor = end;
    }

    /// The end of what may follow a host and port: a path, a query, a fragment or nothing.
    std::size_t hostTailEnd(std::size_t at, char before) const
    {
        return isOneOf(byteAt(at), "/?#") ? tailEnd(m_text, at, before) : at;
    }

    void readColon(std::size_t colon)
    {
        if (!isSchemeEnd(m_text, colon))
            readShortScheme(colon);
        else if (!readPlainWebAddress(colon))
            readScheme(colon);
    }
    void readScheme(std::size_t colon);
    bool readPlainWebAddress(std::size_t colon);
    std::size_t webSchemeBegin(std::size_t colon, std::size_t bound) const;
    std::size_t schemeBegin(std::size_t colon, std::size_t bound) const;
    void readShortScheme(std::size_t colon);
    void readHost(std::size_t dot);
    bool mayEndHost(std::size_t dot) const;
    bool isScopeOrScript(std::size_t begin) const;
    bool isBareHost(const HostName &host) const;
    void readMail(std::size_t at);

    std::string_view m_text;
    TriggerScanner m_scanner;
    std::vector<Link> m_links;
    std::size_t m_floor = 0; ///< end of the last link
    std::size_t m_hostsRead = 0; ///< dots before this belong to a host that was looked at
};

/// Where "http" or "https" before `colon` begins; `colon` when it is another scheme. A word glued to it does
/// not make another scheme, but "git+http" is one.
std::size_t Detector::webSchemeBegin(std::size_t colon, std::size_t bound) const
{
    for (const std::size_t length : {5, 4}) {
        const std::size_t begin = colon - std::min(length, colon - bound);
        const std::uint64_t word = foldedBytes(slice(begin, colon));
        if ((word == packedBytes("https") || word == packedBytes("http"))
            && (begin == bound || !isOneOf(m_text[begin - 1], "+-")))
            return begin;
    }
    return colon;
}

/// The first letter of the scheme before `colon`; `colon` when there is none.
std::size_t Detector::schemeBegin(std::size_t colon, std::size_t bound) const
{
    std::size_t begin = colon;
    while (begin > bound && hasClass(m_text[begin - 1], SchemeByte))
        --begin;
    if (begin > m_floor && hasClass(m_text[begin - 1], SchemeByte))
        return colon;
    const auto isLetter = [](char c) { return hasClass(c, AlnumByte) && c > '9'; };
    while (begin < colon && !isLetter(m_text[begin])) {
        if (hasClass(m_text[begin], AlnumByte) && isLetter(m_text[begin + 1]))
            return colon;
        ++begin;
    }
    return begin;
}

/// Takes the plainest addresses, which most are, without the general rules; false for all others.
bool Detector::readPlainWebAddress(std::size_t colon)
{
    if (colon - m_floor < 5) // then a rare one at the text's begin is left to the general rules
        return false;
    const std::size_t begin = colon - (m_text[colon - 1] == 's' ? 5 : 4);
    if (std::memcmp(m_text.data() + begin, "http", 4) != 0)
        return false;
    if (begin > m_floor && hasClass(m_text[begin - 1], SchemeByte))
        return false;
    const std::size_t end = plainWebAddressEnd(m_text, colon + 3);
    if (end == colon + 3)
        return false;
    add(begin, end, LinkForm::Complete);
    return true;
}

void Detector::readScheme(std::size_t colon)
{
    const std::size_t bound = std::max(m_floor, colon > longestScheme ? colon - longestScheme : 0);
    std::size_t begin = webSchemeBegin(colon, bound);
    const bool isWeb = begin < colon;
    if (!isWeb)
        begin = schemeBegin(colon, bound);
    const std::string_view scheme = slice(begin, colon);
    const char before = byteBefore(begin);
    const std::size_t rest = colon + 3;
    if (isWeb || hasHostRules(scheme)) {
        const std::size_t end = webAuthorityEnd(m_text, rest);
        if (end > rest)
            add(begin, hostTailEnd(end, before), LinkForm::Complete);
        return;
    }
    if (scheme.empty() || isForbidden(scheme))
        return;
    const std::size_t end = tailEnd(m_text, rest, before);
    const auto says = [](char c) { return hasClass(c, AlnumByte | WideByte) || c == '/'; };
    if (std::ranges::any_of(slice(rest, end), says))
        add(begin, end, LinkForm::Complete);
}

void Detector::readShortScheme(std::size_t colon)
{
    if (colon == 0 || !isOneOf(m_text[colon - 1], "olspOLSP")) // mailto, geo; tel; sms, maps; xmpp
        return;
    std::size_t begin = colon;
    const std::size_t bound = std::max(m_floor, colon > 8 ? colon - 8 : 0);
    while (begin > bound && hasClass(m_text[begin - 1], SchemeByte | HostByte))
        --begin;
    // Before the end is looked for: text that only looks so may hold this scheme again and again.
    const std::string_view scheme = slice(begin, colon);
    if (!isShortScheme(scheme, m_text.substr(colon + 1, shortSchemeLook)))
        return;
    const std::size_t end = tailEnd(m_text, colon + 1, byteBefore(begin));
    if (isShortScheme(scheme, slice(colon + 1, std::min(end, colon + 1 + shortSchemeLook))))
        add(begin, end, LinkForm::Complete);
}

/// The rules for hosts without a scheme that look at nothing but the name and what touches it.
bool Detector::isBareHost(const HostName &host) const
{
    if (!host.valid || !host.hasDot())
        return false;
    const std::string_view name = slice(host.begin, host.end);
    const std::string_view last = slice(host.lastLabel, host.end);
    if (last.front() >= '0' && last.front() <= '9')
        return isIpv4Address(name);
    if (!isTopLevelDomain(last) || slice(host.secondLastLabel, host.end).find('_') != std::string_view::npos)
        return false;
    const auto isUpper = [](char c) { return c >= 'A' && c <= 'Z'; };
    const auto isLower = [](char c) { return c >= 'a' && c <= 'z'; };
    if (std::ranges::any_of(last, isUpper) && std::ranges::any_of(last, isLower))
        return false;
    const std::string_view first = name.substr(0, name.find('.'));
    if (isAnyOf(first, {"www"}))
        return true;
    if (isAnyOf(first, {"this", "self", "window", "document"}))
        return false;
    if (host.secondLastLabel != host.begin && isAnyOf(first, {"com", "org", "net", "edu", "gov", "io"}))
        return false; // "org.example.app" is the name of a program
    return byteAt(host.end) == '/' || !isCodeWord(last);
}

/// Whether the dot stands before the last label of a name, and that label is one to look at.
bool Detector::mayEndHost(std::size_t dot) const
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (!hasClass(m_text[dot - 1], HostByte | WideByte))
        return false;
    std::size_t end = dot + 1;
    while (end < m_text.size() && hasClass(m_text[end], HostByte))
        ++end;
    const char next = byteAt(end);
    if (isOneOf(next, "@(={"))
        return false;
    if (hasClass(next, WideByte) || m_text[end - 1] == '-')
        return true;
    if (next == '.' && hasClass(byteAt(end + 1), HostByte))
        return false; // a later dot is before the last label
    if (isDigit(m_text[dot + 1]))
        return isDigit(m_text[dot - 1])
            && slice(dot - std::min<std::size_t>(dot, 4), dot).find('.') != std::string_view::npos;
    return isTopLevelDomain(slice(dot + 1, end));
}

/// Whether the ":" before `begin` tells that no address begins here: "std::x", "javascript:x".
bool Detector::isScopeOrScript(std::size_t begin) const
{
    std::size_t word = begin - 1;
    while (word > m_floor && begin - word < longestScheme && hasClass(m_text[word - 1], AlnumByte))
        --word;
    return byteBefore(begin - 1) == ':' || isForbidden(slice(word, begin - 1));
}

void Detector::readHost(std::size_t dot)
{
    if (dot < m_hostsRead || !mayEndHost(dot))
        return;
    std::size_t begin = hostRunBegin(m_text, m_floor, dot);
    const bool isCut = hasClass(byteBefore(begin), HostByte);
    begin = skipGluedPrefix(m_text, begin, dot);
    const HostName host = readHostName(m_text, begin, &m_hostsRead);

    const char before = byteBefore(begin);
    const bool isPath =
        before == '/' && begin > 2 && m_text[begin - 2] == '/' && isOneOf(m_text[begin - 3], "\"'(=");
    if (!isPath && (isCut || isOneOf(before, "@./\\-$#%")))
        return;
    if (before == '[' && byteBefore(begin - 1) == '@') // "me@[192.0.2.1]"
        return;
    if (before == ':' && isScopeOrScript(begin))
        return;
    if (isSchemeEnd(m_text, m_hostsRead) || isOneOf(byteAt(m_hostsRead), "(@={"))
        return;
    const Port port = readPort(m_text, host.end);
    const char afterColon = byteAt(host.end + 1);
    const bool hasDigits = byteAt(host.end) == ':' && afterColon >= '0' && afterColon <= '9';
    if ((hasDigits && (port.number < 1 || port.number > 65535)) || !isBareHost(host))
        return;
    const std::size_t from = isPath ? begin - 2 : begin;
    add(from, hostTailEnd(port.end, byteBefore(from)), isPath ? LinkForm::NetworkPath : LinkForm::Host);
}

void Detector::readMail(std::size_t at)
{
    const char last = m_text[at - 1];
    if (!(hasClass(last, AlnumByte | WideByte) || isOneOf(last, "_~"))
        || !hasClass(byteAt(at + 1), AlnumByte | WideByte))
        return;
    std::size_t labelEnd = at + 2;
    while (hasClass(byteAt(labelEnd), HostByte))
        ++labelEnd;
    if (byteAt(labelEnd) != '.' && !hasClass(byteAt(labelEnd), WideByte)) // a host of one label
        return;
    const std::size_t bound = std::max(m_floor, at > longestLocalPart ? at - longestLocalPart : 0);
    std::size_t begin = at;
    while (begin > bound) {
        const char c = m_text[begin - 1];
        if (hasClass(c, WideByte)) {
            const WideCharacter wide = wideCharacterBefore(m_text, bound, begin);
            if (wide.kind == WideKind::End || wide.kind == WideKind::Symbol)
                break;
            begin -= wide.length;
        } else if (hasClass(c, LocalByte) && !(c == '.' && byteAt(begin) == '.')) {
            --begin;
        } else {
            break;
        }
    }
    if (begin > m_floor && hasClass(byteBefore(begin), LocalByte) && byteBefore(begin) != '.')
        return; // longer than a local part may be
    while (begin < at && isOneOf(m_text[begin], ".'"))
        ++begin;
    if (hasClass(m_text[begin], WideByte))
        begin = skipGluedPrefix(m_text, begin, at);
    if (begin == at || byteBefore(begin) == '@')
        return;
    std::size_t runEnd;
    const HostName host = readHostName(m_text, at + 1, &runEnd);
    const std::string_view name = slice(host.begin, host.end);
    if (host.valid && host.hasDot() && isTopLevelDomain(slice(host.lastLabel, host.end))
        && name.find('_') == std::string_view::npos && byteAt(host.end) != '@')
        add(begin, host.end, LinkForm::Mail);
}

} // namespace

std::vector<Link> findLinks(std::string_view utf8)
{
    return Detector(utf8).run();
}

} // namespace links

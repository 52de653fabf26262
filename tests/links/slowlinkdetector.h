// SPDX-License-Identifier: MIT
#pragma once

#include "links/linkcharacters.h"
#include "links/linkdetector.h"
#include "links/topleveldomains.h"

#include <algorithm>
#include <string>

/// The rules of docs/LINKS.md once more, written for reading: one character after the other, no vectors, no
/// look-ups by byte class, copies of everything. The detector has to find the same links.
class SlowLinkDetector
{
public:
    explicit SlowLinkDetector(std::string_view text)
        : m_text(text)
    {
        for (std::size_t at = 0; at < text.size();) {
            const bool wide = static_cast<unsigned char>(text[at]) >= 0x80;
            const links::WideCharacter character =
                wide ? links::wideCharacterAt(text, at) : links::WideCharacter{links::WideKind::Letter, 1};
            m_characters.push_back({at, wide ? '\x80' : text[at], character.kind});
            at += character.length;
        }
        m_characters.push_back({text.size(), '\0', links::WideKind::End});
        m_count = m_characters.size() - 1;
    }

    std::vector<links::Link> find()
    {
        for (std::size_t i = 1; i < m_count; ++i) {
            if (i < m_floor)
                continue;
            if (at(i) == ':')
                at(i + 1) == '/' && at(i + 2) == '/' ? scheme(i) : shortScheme(i);
            else if (at(i) == '.')
                host(i);
            else if (at(i) == '@')
                mail(i);
        }
        return m_links;
    }

private:
    struct Character
    {
        std::size_t offset;
        char ascii; ///< '\x80' for all past ASCII
        links::WideKind kind;
    };

    static bool in(char c, std::string_view set) { return c && set.find(c) != set.npos; }
    static bool letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
    static bool digit(char c) { return c >= '0' && c <= '9'; }
    static bool alnum(char c) { return letter(c) || digit(c); }
    char at(std::size_t i) const { return i <= m_count ? m_characters[i].ascii : '\0'; }
    bool wide(std::size_t i) const { return i < m_count && at(i) == '\x80'; }
    links::WideKind kind(std::size_t i) const { return m_characters[i].kind; }
    bool wideIn(std::size_t i) const { return wide(i) && kind(i) != links::WideKind::End; }
    bool scheme_(std::size_t i) const { return alnum(at(i)) || in(at(i), "+-."); }
    bool host_(std::size_t i) const { return alnum(at(i)) || in(at(i), "-_") || wideIn(i); }
    bool local_(std::size_t i) const
    {
        return alnum(at(i)) || in(at(i), "._-+%~'") || (wideIn(i) && kind(i) != links::WideKind::Symbol);
    }
    std::size_t bytes(std::size_t from, std::size_t to) const
    {
        return m_characters[to].offset - m_characters[from].offset;
    }
    std::string slice(std::size_t from, std::size_t to) const
    {
        return std::string(m_text.substr(m_characters[from].offset, bytes(from, to)));
    }
    static std::string lower(std::string text)
    {
        std::ranges::transform(text, text.begin(),
                               [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
        return text;
    }
    static bool oneOf(const std::string &text, const std::string &words)
    {
        return (' ' + words + ' ').find(' ' + lower(text) + ' ') != words.npos;
    }
    char before(std::size_t i) const { return i > 0 ? at(i - 1) : '\0'; }

    void add(std::size_t from, std::size_t to, links::LinkForm form)
    {
        m_links.push_back({m_characters[from].offset, std::uint32_t(bytes(from, to)), form});
        m_floor = to;
    }

    // -- where an address ends
    // ----------------------------------------------------------------------------------------

    bool startsAt(std::size_t i, const std::vector<std::string> &words) const
    {
        const std::string_view rest = m_text.substr(i <= m_count ? m_characters[i].offset : m_text.size());
        return std::ranges::any_of(words, [rest](const std::string &word) { return rest.starts_with(word); });
    }

    std::size_t tail(std::size_t from, char opener) const
    {
        std::size_t end = from;
        std::string open;
        for (; end < m_count; ++end) {
            const char c = at(end);
            if (wide(end) ? kind(end) == links::WideKind::End : c <= ' ' || c == 0x7f || in(c, "\"<>\\`"))
                break;
            if (in(c, "'|") && c == opener)
                break;
            if (in(c, ",;|") && startsAt(end + 1, {"http://", "https://", "ftp://", "www."}))
                break;
            if (startsAt(end,
                         {"&quot;", "&lt;", "&gt;", "&apos;", "&nbsp;", "&#34;", "&#39;", "&#039;", "&#60;",
                          "&#62;", "&#160;", "&#x22;", "&#x27;", "&#x3c;", "&#x3C;", "&#x3e;", "&#x3E;"}))
                break;
            if (c == '[' && at(end + 1) == '/')
                break;
            if (in(c, "([{"))
                open += c == '(' ? ')' : char(c + 2);
            if (in(c, ")]}")) {
                const std::size_t match = open.find(c);
                if (match == open.npos)
                    break;
                open.erase(match, 1);
            }
        }
        while (end > from) {
            std::size_t entity = end - 1;
            while (entity > from && end - entity <= 10 && alnum(at(entity - 1)))
                --entity;
            if (at(end - 1) == ';' && entity < end - 1 && entity > from && at(entity - 1) == '&')
                end = entity - 1;
            else if (in(at(end - 1), ".,;:!?'|^([{") || (in(opener, "*_~") && at(end - 1) == opener))
                --end;
            else
                break;
        }
        return end;
    }

    std::size_t hostTail(std::size_t from, char opener) const
    {
        return in(at(from), "/?#") ? tail(from, opener) : from;
    }

    // -- hosts
    // --------------------------------------------------------------------------------------------------------

    struct Host
    {
        std::size_t begin, end, run;
        std::vector<std::string> labels;
        bool valid;
    };

    Host readHost(std::size_t from) const
    {
        Host host = {from, from, from, {}, true};
        std::size_t label = from;
        while (host_(host.run) || (at(host.run) == '.' && host.run > from && host_(host.run + 1))) {
            if (at(host.run) == '.')
                label = host.run + 1;
            ++host.run;
        }
        host.end = host.run;
        std::size_t glued = label;
        while (glued < host.end && !wide(glued))
            ++glued;
        if (glued < host.end && kind(glued) != links::WideKind::Letter
            && links::isTopLevelDomain(slice(label, glued)))
            host.end = glued;
        while (host.end > label && at(host.end - 1) == '-')
            --host.end;
        std::string name = slice(from, host.end) + '.';
        for (std::size_t dot; (dot = name.find('.')) != name.npos; name.erase(0, dot + 1))
            host.labels.push_back(name.substr(0, dot));
        for (const std::string &part : host.labels)
            host.valid = host.valid && !part.empty() && part.front() != '-' && part.back() != '-';
        // A hyphen before a dot counts even when the label after it was cut away.
        host.valid = host.valid && bytes(from, host.end) <= 253;
        return host;
    }

    static bool ipv4(const std::vector<std::string> &labels)
    {
        return labels.size() == 4 && std::ranges::all_of(labels, [](const std::string &label) {
                   return label.size() <= 3 && !label.empty() && std::ranges::all_of(label, digit)
                       && std::stoi(label) <= 255 && (label == "0" || label[0] != '0');
               });
    }

    std::size_t ipv6(std::size_t open) const
    {
        std::string inner = std::string(m_text.substr(m_characters[open].offset + 1, 46));
        if (inner.find(']') == inner.npos)
            return open;
        inner.resize(inner.find(']'));
        const std::size_t end = open + inner.size() + 2;
        const std::size_t gap = inner.find("::");
        if (gap != inner.npos && inner.find("::", gap + 1) != inner.npos)
            return open;
        const auto groups = [](std::string text, bool last) {
            int count = 0;
            for (text += text.empty() ? "" : ":"; !text.empty();) {
                const std::string group = text.substr(0, text.find(':'));
                text.erase(0, group.size() + 1);
                std::vector<std::string> numbers;
                std::string dotted = group + '.';
                for (std::size_t dot; (dot = dotted.find('.')) != dotted.npos; dotted.erase(0, dot + 1))
                    numbers.push_back(dotted.substr(0, dot));
                if (text.empty() && last && ipv4(numbers))
                    return count + 2;
                if (group.empty() || group.size() > 4
                    || group.find_first_not_of("0123456789abcdefABCDEF") != group.npos)
                    return 100;
                ++count;
            }
            return count;
        };
        if (gap == inner.npos)
            return groups(inner, true) == 8 ? end : open;
        return groups(inner.substr(0, gap), false) + groups(inner.substr(gap + 2), true) <= 7 ? end : open;
    }

    std::size_t port(std::size_t colon, int *number) const
    {
        *number = -1;
        std::size_t end = colon + 1;
        while (digit(at(end)))
            ++end;
        if (at(colon) != ':' || end == colon + 1 || host_(end))
            return colon;
        std::string digits = slice(colon + 1, end);
        digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
        *number = digits.empty() ? 0 : digits.size() > 5 ? 99999 : std::stoi(digits);
        return end;
    }

    // -- the five kinds
    // -----------------------------------------------------------------------------------------------

    void scheme(std::size_t colon)
    {
        std::size_t begin = colon;
        while (begin > m_floor && scheme_(begin - 1) && bytes(begin - 1, colon) <= 32)
            --begin;
        bool web = false;
        for (const std::string known : {"https", "http"}) {
            if (web || colon - begin < known.size() || lower(slice(colon - known.size(), colon)) != known)
                continue;
            if (colon - known.size() == begin || !in(before(colon - known.size()), "+-")) {
                begin = colon - known.size();
                web = true;
            }
        }
        if (!web) {
            if (begin > m_floor && scheme_(begin - 1))
                return;
            while (begin < colon && !letter(at(begin))) {
                if (digit(at(begin)) && letter(at(begin + 1)))
                    return;
                ++begin;
            }
        }
        const std::string name = slice(begin, colon);
        if (name.empty() || oneOf(name, "javascript data vbscript"))
            return;
        std::size_t end;
        if (oneOf(name, "https http ftp ftps ws wss")) {
            end = authority(colon + 3);
            if (end == colon + 3)
                return;
            end = hostTail(end, before(begin));
        } else {
            end = tail(colon + 3, before(begin));
            bool says = false;
            for (std::size_t i = colon + 3; i < end; ++i)
                says = says || alnum(at(i)) || wide(i) || at(i) == '/';
            if (!says)
                return;
        }
        add(begin, end, links::LinkForm::Complete);
    }

    std::size_t authority(std::size_t from) const
    {
        std::size_t user = from;
        while ((alnum(at(user)) || in(at(user), "._-+%~!$&*=:,;")) && bytes(from, user) < 128)
            ++user;
        std::size_t start = from;
        const std::string name = slice(from, user);
        if (at(user) == '@' && user > from && name.substr(0, name.find(':')).find_first_of(",;") == name.npos)
            start = user + 1;
        const Host host = readHost(start);
        int number;
        if (at(start) == '[') {
            const std::size_t end = ipv6(start);
            return end == start ? from : port(end, &number);
        }
        if (start > from && at(host.run) == '@')
            return from;
        if (!host.valid || (host.labels.size() > 1 && host.labels.back().find('_') != std::string::npos))
            return from;
        if (host.labels.size() == 1 && startsAt(host.end, {"://"})
            && oneOf(host.labels[0], "https http ftp ftps ws wss"))
            return from;
        std::size_t end = host.end;
        if (at(end) == '.' && (at(end + 1) == '/' || port(end + 1, &number) > end + 1))
            ++end;
        const std::size_t last = port(end, &number);
        if (host.labels.size() == 1 && number < 0 && at(end) == ':'
            && (at(end + 1) == ':' || (host_(end + 1) && !wide(end + 1))))
            return from;
        return last;
    }

    void shortScheme(std::size_t colon)
    {
        std::size_t begin = colon;
        while (begin > m_floor && colon - begin < 8 && (scheme_(begin - 1) || at(begin - 1) == '_'))
            --begin;
        const std::string name = lower(slice(begin, colon));
        const std::size_t end = tail(colon + 1, before(begin));
        const std::string rest = slice(colon + 1, end).substr(0, 64);
        if (rest.empty() || !static_cast<unsigned char>(rest[0]))
            return;
        const auto has = [&rest](char c) { return rest.find(c) != rest.npos; };
        const bool named = std::ranges::any_of(rest, [](char c) { return alnum(c) || c < 0; });
        const bool fits = (name == "mailto" && named)
            || (name == "tel" && std::ranges::count_if(rest, digit) >= 2
                && (digit(rest[0]) || in(rest[0], "+(*#-")))
            || (name == "sms" && rest.size() > 1 && (digit(rest[0]) || in(rest[0], "+?&(")))
            || (name == "geo" && has(',') && (digit(rest[0]) || in(rest[0], "+-")))
            || (name == "maps" && (has('=') || (rest[0] == '/' && rest.size() > 1)))
            || (name == "xmpp" && (has('@') || has('.')));
        if (fits)
            add(begin, end, links::LinkForm::Complete);
    }

    std::size_t skipGlued(std::size_t begin, std::size_t end) const
    {
        std::size_t i = begin;
        while (i < end && wide(i)) {
            if (kind(i) == links::WideKind::Letter)
                return begin;
            ++i;
        }
        return i < end && alnum(at(i)) ? i : begin;
    }

    void host(std::size_t dot)
    {
        if (dot < m_run || !host_(dot - 1) || !host_(dot + 1))
            return;
        std::size_t begin = dot;
        while (begin > m_floor
               && (host_(begin - 1) || (at(begin - 1) == '.' && begin - 1 > m_floor && host_(begin - 2)))
               && bytes(begin - 1, dot) <= 253)
            --begin;
        const bool cut = begin > 0 && (alnum(at(begin - 1)) || in(at(begin - 1), "-_"));
        begin = skipGlued(begin, dot);
        const Host host = readHost(begin);
        m_run = host.run;
        int number;
        const std::size_t end = port(host.end, &number);
        const bool path =
            before(begin) == '/' && begin > 2 && at(begin - 2) == '/' && in(at(begin - 3), "\"'(=");
        if (!path && (cut || in(before(begin), "@./\\-$#%")))
            return;
        if (startsAt(host.run, {"://"}) || in(at(host.run), "(@={"))
            return;
        if (!host.valid || host.labels.size() < 2)
            return;
        const std::string &last = host.labels.back();
        const std::string first = lower(host.labels.front());
        if (digit(last[0])) {
            if (!ipv4(host.labels))
                return;
        } else {
            if (!links::isTopLevelDomain(last)
                || (last + host.labels[host.labels.size() - 2]).find('_') != last.npos)
                return;
            if (last != lower(last) && std::ranges::any_of(last, [](char c) { return c >= 'a' && c <= 'z'; }))
                return;
            if (first != "www") {
                if (oneOf(first, "this self window document"))
                    return;
                if (host.labels.size() > 2 && oneOf(first, "com org net edu gov io"))
                    return;
                if (at(host.end) != '/'
                    && oneOf(last,
                             "am as audio bar black blue box bz cab call cat cc channel click data date "
                             "day do dot download email events fail final foo green group host how id "
                             "inc int java la link map md mk ml mm mo mov name new next now off open "
                             "page phone pink pl place pm post pro properties ps pub py read red report "
                             "rs run sas save sc search select services sh show so st stream style tab "
                             "target tf top total vi video watch zip"))
                    return;
            }
        }
        if (before(begin) == '[' && before(begin - 1) == '@')
            return;
        if (at(host.end) == ':' && digit(at(host.end + 1)) && (number < 1 || number > 65535))
            return;
        if (before(begin) == ':') {
            std::size_t word = begin - 1;
            while (word > m_floor && alnum(before(word)) && begin - word < 32)
                --word;
            if (at(begin - 2) == ':' || oneOf(slice(word, begin - 1), "javascript data vbscript"))
                return;
        }
        const std::size_t from = path ? begin - 2 : begin;
        add(from, hostTail(end, before(from)), path ? links::LinkForm::NetworkPath : links::LinkForm::Host);
    }

    void mail(std::size_t sign)
    {
        const std::size_t last = sign - 1;
        if (!(alnum(at(last)) || in(at(last), "_~") || wide(last))
            || !(alnum(at(sign + 1)) || wide(sign + 1)))
            return;
        std::size_t begin = sign;
        while (begin > m_floor && local_(begin - 1) && bytes(begin - 1, sign) <= 64
               && !(at(begin - 1) == '.' && at(begin) == '.'))
            --begin;
        if (begin > m_floor && (alnum(before(begin)) || in(before(begin), "_-+%~'")))
            return;
        while (begin < sign && in(at(begin), ".'"))
            ++begin;
        begin = skipGlued(begin, sign);
        if (begin == sign || before(begin) == '@')
            return;
        const Host host = readHost(sign + 1);
        if (host.valid && host.labels.size() > 1 && links::isTopLevelDomain(host.labels.back())
            && at(host.end) != '@' && slice(host.begin, host.end).find('_') == std::string::npos)
            add(begin, host.end, links::LinkForm::Mail);
    }

    std::string_view m_text;
    std::vector<Character> m_characters;
    std::size_t m_count = 0;
    std::vector<links::Link> m_links;
    std::size_t m_floor = 0;
    std::size_t m_run = 0; ///< dots before this belong to a run that was looked at
};

// SPDX-License-Identifier: MIT
#pragma once

#include "links/linkcharacters.h"
#include "links/linkdetector.h"
#include "links/topleveldomains.h"

#include <QHash>
#include <QRegularExpression>

#include <arpa/inet.h>
#include <cstring>

/// The rules of docs/LINKS.md once more, written for reading: regular expressions over a copy of the text in
/// which one ASCII character stands for each character, 1, 2 and 3 for letters, CJK and symbols past ASCII
/// and a blank for all that no link holds. The detector has to find the same links.
class SlowLinkDetector
{
public:
    explicit SlowLinkDetector(std::string_view text)
        : m_text(text)
    {
        for (std::size_t at = 0; at < text.size();) {
            const char c = text[at];
            m_offsets.append(at);
            const bool wide = static_cast<unsigned char>(c) >= 0x80;
            const auto [kind, length] =
                wide ? links::wideCharacterAt(text, at) : links::WideCharacter{links::WideKind::End, 1};
            m_copy += QLatin1Char(wide ? " \1\2\3"[int(kind)] : c < ' ' || c == 0x7f ? ' ' : c);
            at += length;
        }
        m_offsets.append(text.size());
    }

    std::vector<links::Link> find()
    {
        for (int i = 1; i < m_copy.size(); i = std::max(i + 1, m_floor)) {
            if (at(i) == ':')
                matches(i, "://") ? scheme(i) : shortScheme(i);
            else if (at(i) == '.')
                host(i);
            else if (at(i) == '@')
                mail(i);
        }
        return m_links;
    }

private:
    // -- the copy: `end` is what follows the last character of a part
    char at(int i) const { return i >= 0 && i < m_copy.size() ? m_copy[i].toLatin1() : '\0'; }
    bool in(int i, const char *set) const { return at(i) && std::strchr(set, at(i)); }
    QString part(int from, int end) const { return m_copy.mid(from, end - from); }
    int bytes(int from, int end) const { return int(m_offsets[end] - m_offsets[from]); }
    static QRegularExpressionMatch match(const QString &text, const QByteArray &pattern, int from = 0,
                                         bool anchored = false)
    {
        static QHash<QByteArray, QRegularExpression> known;
        QRegularExpression &expression = known[pattern];
        if (expression.pattern().isEmpty())
            expression.setPattern(QLatin1String(pattern));
        return expression.match(text, from, QRegularExpression::NormalMatch,
                                anchored ? QRegularExpression::AnchorAtOffsetMatchOption
                                         : QRegularExpression::NoMatchOption);
    }
    /// How many characters match at `from`; 0 for none.
    int matches(int from, const char *pattern) const
    {
        return from > m_copy.size() ? 0 : int(match(m_copy, pattern, from, true).capturedLength());
    }
    bool hostAt(int i) const { return i >= 0 && matches(i, "[\\w\\-\1-\3]"); }
    void add(int from, int end, links::LinkForm form)
    {
        m_links.push_back({m_offsets[from], std::uint32_t(bytes(from, end)), form});
        m_floor = end;
    }

    // -- where an address ends
    int tail(int from, char opener) const
    {
        int end = from;
        for (QByteArray open; end < m_copy.size(); ++end) {
            const char c = at(end);
            if (matches(end,
                        "[ \"<>\\\\`]|\\[/|[,;|](?:https?://|ftp://|www\\.)|&(?:quot|lt|gt|apos|nbsp"
                        "|#(?:34|39|039|60|62|160|x22|x27|x3[cCeE]));")
                || ((c == '\'' || c == '|') && c == opener))
                break;
            if (in(end, "([{"))
                open += c == '(' ? ')' : char(c + 2);
            if (const auto opened = open.indexOf(c); in(end, ")]}")) {
                if (opened < 0)
                    break;
                open.remove(opened, 1);
            }
        }
        const bool emphasis = opener && std::strchr("*_~", opener);
        const QByteArray trimmed = "(?:&[A-Za-z\\d]{1,10};|[.,;:!?'|^(\\[{"
            + (emphasis ? QByteArray(1, opener) : QByteArray()) + "])+$";
        return end - int(match(part(from, end), trimmed).capturedLength());
    }
    int hostTail(int from, char opener) const { return in(from, "/?#") ? tail(from, opener) : from; }

    // -- hosts
    struct Host
    {
        int end, run;
        QStringList labels;
        bool valid;
    };
    bool isKnown(const QString &label, int from) const
    {
        return links::isTopLevelDomain(m_text.substr(m_offsets[from], bytes(from, from + int(label.size()))));
    }
    Host readHost(int from) const
    {
        QString name = part(from, from + matches(from, "[\\w\\-\1-\3]+(?:\\.[\\w\\-\1-\3]+)*"));
        const int run = from + int(name.size()), label = int(name.lastIndexOf(u'.')) + 1;
        const auto glued = match(name.mid(label), "^[^\1-\3]*(?=[\2\3])");
        if (glued.hasMatch() && isKnown(glued.captured(), from + label))
            name.truncate(label + glued.capturedLength());
        name.remove(QRegularExpression(QStringLiteral("-+$")));
        const int end = from + int(name.size());
        const bool isWrong = match(name, "^$|\\.$|(?:^|\\.)-|-(?:\\.|$)").hasMatch();
        return {end, run, name.split(u'.'), !isWrong && bytes(from, end) <= 253};
    }
    static bool ip(int family, const QString &text)
    {
        unsigned char address[16];
        return ::inet_pton(family, text.toLatin1().constData(), address) == 1;
    }
    /// The end of the port and its number: -1 when there is none, 0 for one past every integer.
    std::pair<int, int> port(int colon) const
    {
        const int length = matches(colon, ":\\d++(?![\\w\\-\1-\3])");
        return {colon + length, length == 0 ? -1 : part(colon + 1, colon + length).toInt()};
    }

    // -- the five kinds
    static bool oneOf(const QString &word, const char *words)
    {
        return QString::fromLatin1(words).split(u' ').contains(word, Qt::CaseInsensitive);
    }
    void scheme(int colon)
    {
        const int bound = std::max(m_floor, colon - 32);
        QString name = match(part(bound, colon), "(?i)(?<![+\\-])https?$").captured();
        if (name.isEmpty()) {
            const QString run = match(part(bound, colon), "[A-Za-z\\d+.\\-]*$").captured();
            const int begin = colon - int(run.size());
            if (begin > m_floor && matches(begin - 1, "[A-Za-z\\d+.\\-]"))
                return;
            name = match(run, "^(?:[+.\\-\\d]*[+.\\-])?([A-Za-z].*)$").captured(1);
        }
        const int begin = colon - int(name.size()), rest = colon + 3;
        if (name.isEmpty() || oneOf(name, "javascript data vbscript"))
            return;
        const bool web = oneOf(name, "https http ftp ftps ws wss");
        int end = web ? authority(rest) : tail(rest, at(begin - 1));
        if (web ? end == rest : !match(part(rest, end), "[A-Za-z\\d/\1-\3]").hasMatch())
            return;
        add(begin, web ? hostTail(end, at(begin - 1)) : end, links::LinkForm::Complete);
    }
    int authority(int from) const
    {
        const int begin = from + matches(from, "(?![^:@]*[,;])[\\w.\\-+%~!$&*=:,;]{1,128}+@");
        if (const int literal = matches(begin, "\\[[^\\]]*\\]"))
            return ip(AF_INET6, part(begin + 1, begin + literal - 1)) ? port(begin + literal).first : from;
        const Host host = readHost(begin);
        const bool single = host.labels.size() == 1;
        if (at(begin) == '[' || (begin > from && at(host.run) == '@') || !host.valid
            || (!single && host.labels.last().contains(u'_'))
            || (single && matches(host.end, "://") && oneOf(host.labels[0], "https http ftp ftps ws wss")))
            return from;
        int end = host.end;
        if (at(end) == '.' && (at(end + 1) == '/' || port(end + 1).second >= 0))
            ++end;
        const auto [last, number] = port(end);
        return single && number < 0 && matches(end, ":[:\\w\\-]") ? from : last;
    }
    void shortScheme(int colon)
    {
        const QString name = match(part(std::max(m_floor, colon - 8), colon), "[\\w+.\\-]*$").captured();
        if (!oneOf(name, "mailto tel sms geo maps xmpp"))
            return;
        const int begin = colon - int(name.size()), end = tail(colon + 1, at(begin - 1));
        int look = colon + 1;
        while (look < end && bytes(colon + 1, look) < 64)
            ++look;
        if (match(name.toLower() + part(colon, look),
                  "^(?:mailto:.*[A-Za-z\\d\1-\3]|tel:(?=[+(*#\\-\\d])(?:\\D*\\d){2}|sms:[+?&(\\d]."
                  "|geo:[+\\-\\d].*,|maps:(?:.*=|/.)|xmpp:.*[@.])")
                .hasMatch())
            add(begin, end, links::LinkForm::Complete);
    }
    int skipGlued(int begin, int end) const
    {
        return begin + int(match(part(begin, end), "^[\2\3]+(?=[A-Za-z\\d])").capturedLength());
    }
    bool isWebName(const Host &host) const
    {
        const QString first = host.labels.first(), last = host.labels.last();
        if (last[0].isDigit())
            return ip(AF_INET, host.labels.join(u'.'));
        if (!isKnown(last, host.end - int(last.size()))
            || (last + host.labels[host.labels.size() - 2]).contains(u'_')
            || (match(last, "[A-Z]").hasMatch() && match(last, "[a-z]").hasMatch()))
            return false;
        if (oneOf(first, "www"))
            return true;
        if (oneOf(first, "this self window document")
            || (host.labels.size() > 2 && oneOf(first, "com org net edu gov io")))
            return false;
        return at(host.end) == '/'
            || !oneOf(
                   last,
                   "am as audio bar black blue box bz cab call cat cc channel click data date day do dot "
                   "download email events fail final foo green group host how id inc int java la link map md "
                   "mk ml mm mo mov name new next now off open page phone pink pl place pm post pro "
                   "properties ps pub py read red report rs run sas save sc search select services sh show "
                   "so st stream style tab target tf top total vi video watch zip");
    }
    void host(int dot)
    {
        if (dot < m_run || !hostAt(dot - 1) || !hostAt(dot + 1))
            return;
        int begin = dot;
        while (begin > m_floor
               && (hostAt(begin - 1) || (at(begin - 1) == '.' && begin - 1 > m_floor && hostAt(begin - 2)))
               && bytes(begin - 1, dot) <= 253)
            --begin;
        const bool cut = begin > 0 && matches(begin - 1, "[\\w\\-]");
        begin = skipGlued(begin, dot);
        const Host host = readHost(begin);
        m_run = host.run;
        const auto [end, number] = port(host.end);
        const bool path = at(begin - 1) == '/' && at(begin - 2) == '/' && in(begin - 3, "\"'(=");
        const bool outOfRange = matches(host.end, ":\\d") && (number < 1 || number > 65535);
        if ((!path && (cut || in(begin - 1, "@./\\-$#%"))) || matches(host.run, "://|[(@={]") || !host.valid
            || host.labels.size() < 2 || !isWebName(host) || outOfRange
            || (at(begin - 1) == '[' && at(begin - 2) == '@'))
            return;
        if (at(begin - 1) == ':') {
            const QString before = part(std::max(m_floor, begin - 32), begin - 1);
            if (at(begin - 2) == ':'
                || oneOf(match(before, "[A-Za-z\\d]*$").captured(), "javascript data vbscript"))
                return;
        }
        const int from = path ? begin - 2 : begin;
        add(from, hostTail(end, at(from - 1)), path ? links::LinkForm::NetworkPath : links::LinkForm::Host);
    }
    void mail(int sign)
    {
        if (!matches(sign - 1, "[\\w~\1-\3]@[A-Za-z\\d\1-\3]"))
            return;
        int begin = sign;
        while (begin > m_floor && matches(begin - 1, "[\\w.\\-+%~'\1\2]") && bytes(begin - 1, sign) <= 64
               && !matches(begin - 1, "\\.\\."))
            --begin;
        if (begin > m_floor && matches(begin - 1, "[\\w\\-+%~']"))
            return;
        while (in(begin, ".'"))
            ++begin;
        begin = skipGlued(begin, sign);
        if (begin == sign || at(begin - 1) == '@')
            return;
        const Host host = readHost(sign + 1);
        const QString last = host.labels.last();
        if (host.valid && host.labels.size() > 1 && isKnown(last, host.end - int(last.size()))
            && at(host.end) != '@' && !part(sign, host.end).contains(u'_'))
            add(begin, host.end, links::LinkForm::Mail);
    }

    std::string_view m_text;
    QString m_copy;
    QList<std::size_t> m_offsets;
    std::vector<links::Link> m_links;
    int m_floor = 0; ///< end of the last link
    int m_run = 0; ///< dots before this belong to a run that was looked at
};

// SPDX-License-Identifier: MIT
#include "platform/uri.h"

#include "platform/files.h"

#include <QList>

#include <algorithm>

namespace platform {

namespace {

// Bits of the character classes of RFC 3986, appendix A.
enum CharacterClass : unsigned char {
    Alpha = 1,
    Digit = 2,
    HexDigit = 4,
    SchemeMark = 8, // + - .
    UnreservedMark = 16, // - . _ ~
    SubDelimiter = 32,
    ColonMark = 64,
    AtMark = 128,
};
constexpr int unreserved = Alpha | Digit | UnreservedMark;
constexpr int regName = unreserved | SubDelimiter;
constexpr int userInfo = regName | ColonMark;
constexpr int pathCharacter = userInfo | AtMark;

int classOf(QChar c)
{
    const char16_t code = c.unicode();
    if ((code >= u'a' && code <= u'z') || (code >= u'A' && code <= u'Z'))
        return (code | 0x20) <= u'f' ? Alpha | HexDigit : Alpha;
    if (code >= u'0' && code <= u'9')
        return Digit | HexDigit;
    switch (code) {
    case u'+':
        return SchemeMark | SubDelimiter;
    case u'-':
    case u'.':
        return SchemeMark | UnreservedMark;
    case u'_':
    case u'~':
        return UnreservedMark;
    case u'!':
    case u'$':
    case u'&':
    case u'\'':
    case u'(':
    case u')':
    case u'*':
    case u',':
    case u';':
    case u'=':
        return SubDelimiter;
    case u':':
        return ColonMark;
    case u'@':
        return AtMark;
    default:
        return 0;
    }
}

bool consistsOf(QStringView text, int classes)
{
    return std::all_of(text.begin(), text.end(), [classes](QChar c) { return classOf(c) & classes; });
}

/// Characters of the classes, the characters of `more`, and whole percent triplets.
bool isEscapedText(QStringView text, int classes, QStringView more = {})
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c == u'%') {
            if (text.size() - i < 3 || !consistsOf(text.sliced(i + 1, 2), HexDigit))
                return false;
            i += 2;
        } else if (!(classOf(c) & classes) && !more.contains(c)) {
            return false;
        }
    }
    return true;
}

bool isIpv4Address(QStringView text)
{
    const auto numbers = text.split(u'.');
    return numbers.size() == 4 && std::all_of(numbers.begin(), numbers.end(), [](QStringView number) {
               return !number.isEmpty() && number.size() <= 3 && consistsOf(number, Digit)
                   && (number.size() == 1 || number.front() != u'0') && number.toInt() <= 255;
           });
}

/// How many 16-bit groups a run of groups joined by colons stands for, -1 when it is none. The last run of an
/// address may end in an IPv4 address, which stands for two.
int ipv6Groups(QStringView run, bool isLast)
{
    if (run.isEmpty())
        return 0;
    const auto parts = run.split(u':');
    int groups = 0;
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const QStringView part = parts.at(i);
        if (!part.isEmpty() && part.size() <= 4 && consistsOf(part, HexDigit))
            groups += 1;
        else if (isLast && i == parts.size() - 1 && isIpv4Address(part))
            groups += 2;
        else
            return -1;
    }
    return groups;
}

bool isIpv6Address(QStringView text)
{
    const qsizetype gap = text.indexOf(u"::");
    if (gap < 0)
        return ipv6Groups(text, true) == 8;
    const int before = ipv6Groups(text.first(gap), false);
    const int after = ipv6Groups(text.sliced(gap + 2), true);
    return before >= 0 && after >= 0 && before + after <= 7;
}

/// What stands between the brackets.
bool isIpLiteral(QStringView text)
{
    if (!text.startsWith(u'v', Qt::CaseInsensitive))
        return isIpv6Address(text);
    const qsizetype dot = text.indexOf(u'.');
    return dot > 1 && consistsOf(text.sliced(1, dot - 1), HexDigit) && dot + 1 < text.size()
        && consistsOf(text.sliced(dot + 1), userInfo);
}

bool parseAuthority(QStringView text, Uri &uri)
{
    if (const qsizetype at = text.indexOf(u'@'); at >= 0) {
        if (!isEscapedText(text.first(at), userInfo))
            return false;
        uri.userInfo = text.first(at).toString();
        text = text.sliced(at + 1);
    }
    QStringView host = text;
    QStringView rest;
    if (text.startsWith(u'[')) {
        const qsizetype end = text.indexOf(u']');
        if (end < 0 || !isIpLiteral(text.sliced(1, end - 1)))
            return false;
        host = text.first(end + 1);
        rest = text.sliced(end + 1);
    } else {
        if (const qsizetype colon = text.indexOf(u':'); colon >= 0) {
            host = text.first(colon);
            rest = text.sliced(colon);
        }
        if (!isEscapedText(host, regName))
            return false;
    }
    if (!rest.isEmpty()) {
        if (rest.front() != u':' || !consistsOf(rest.sliced(1), Digit))
            return false;
        uri.port = rest.sliced(1).toString();
    }
    uri.host = host.toString();
    return true;
}

qsizetype firstOf(QStringView text, QStringView characters)
{
    const auto found =
        std::find_if(text.begin(), text.end(), [&](QChar c) { return characters.contains(c); });
    return found - text.begin();
}

} // namespace

std::optional<Uri> parseUriReference(QStringView text)
{
    if (text.isEmpty())
        return std::nullopt;
    Uri uri;
    // A colon before the first slash, question or number sign ends a scheme: without one, the first segment
    // of a path must not hold a colon, so there is nothing else that it could be.
    if (const qsizetype end = firstOf(text, u":/?#"); end < text.size() && text.at(end) == u':') {
        const QStringView scheme = text.first(end);
        if (scheme.isEmpty() || !(classOf(scheme.front()) & Alpha)
            || !consistsOf(scheme, Alpha | Digit | SchemeMark))
            return std::nullopt;
        uri.scheme = scheme.toString();
        text = text.sliced(end + 1);
    }
    if (const qsizetype mark = text.indexOf(u'#'); mark >= 0) {
        uri.hasFragment = true;
        uri.fragment = text.sliced(mark + 1).toString();
        text = text.first(mark);
    }
    if (const qsizetype mark = text.indexOf(u'?'); mark >= 0) {
        uri.hasQuery = true;
        uri.query = text.sliced(mark + 1).toString();
        text = text.first(mark);
    }
    if (text.startsWith(u"//")) {
        text = text.sliced(2);
        const qsizetype end = firstOf(text, u"/");
        uri.hasAuthority = true;
        if (!parseAuthority(text.first(end), uri))
            return std::nullopt;
        text = text.sliced(end);
    }
    uri.path = text.toString();
    if (!isEscapedText(uri.path, pathCharacter, u"/") || !isEscapedText(uri.query, pathCharacter, u"/?")
        || !isEscapedText(uri.fragment, pathCharacter, u"/?"))
        return std::nullopt;
    return uri;
}

QByteArray percentDecoded(QStringView text)
{
    return QByteArray::fromPercentEncoding(text.toUtf8());
}

QString fileUri(const QString &path)
{
    return QStringLiteral("file://") + QString::fromLatin1(path.toUtf8().toPercentEncoding("/!$&'()*+,:=@"));
}

std::optional<QString> pathOfFileUri(QStringView text)
{
    const auto uri = parseUriReference(text);
    if (!uri || uri->scheme.compare(u"file", Qt::CaseInsensitive) != 0 || !uri->path.startsWith(u'/'))
        return std::nullopt;
    if (!uri->host.isEmpty() && uri->host.compare(u"localhost", Qt::CaseInsensitive) != 0)
        return std::nullopt;
    const QByteArray bytes = percentDecoded(uri->path);
    auto path = bytes.contains('\0') ? std::nullopt : decodeUtf8(bytes, nullptr);
    while (path && path->size() > 1 && path->endsWith(u'/'))
        path->chop(1);
    return path;
}

} // namespace platform

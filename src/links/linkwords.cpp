// SPDX-License-Identifier: MIT
#include "links/linkwords.h"

#include "links/linkcharacters.h"

#include <algorithm>

namespace links {

namespace {

constexpr char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c | 0x20) : c;
}

/// `word` is lower-case.
bool equalsFolded(std::string_view text, std::string_view word)
{
    return text.size() == word.size()
        && std::ranges::equal(text, word, [](char a, char b) { return lower(a) == b; });
}

} // namespace

bool isAnyOf(std::string_view text, std::initializer_list<std::string_view> words)
{
    return std::ranges::any_of(words, [text](std::string_view word) { return equalsFolded(text, word); });
}

bool hasHostRules(std::string_view scheme)
{
    return isAnyOf(scheme, {"http", "https", "ftp", "ftps", "ws", "wss"});
}

bool isForbidden(std::string_view scheme)
{
    return isAnyOf(scheme, {"javascript", "data", "vbscript"});
}

bool isCodeWord(std::string_view label)
{
    constexpr std::string_view words[] = {
        "am",    "as",       "audio",      "bar",     "black", "blue",   "box",    "bz",       "cab",
        "call",  "cat",      "cc",         "channel", "click", "data",   "date",   "day",      "do",
        "dot",   "download", "email",      "events",  "fail",  "final",  "foo",    "green",    "group",
        "host",  "how",      "id",         "inc",     "int",   "java",   "la",     "link",     "map",
        "md",    "mk",       "ml",         "mm",      "mo",    "mov",    "name",   "new",      "next",
        "now",   "off",      "open",       "page",    "phone", "pink",   "pl",     "place",    "pm",
        "post",  "pro",      "properties", "ps",      "pub",   "py",     "read",   "red",      "report",
        "rs",    "run",      "sas",        "save",    "sc",    "search", "select", "services", "sh",
        "show",  "so",       "st",         "stream",  "style", "tab",    "target", "tf",       "top",
        "total", "vi",       "video",      "watch",   "zip"};
    return std::ranges::any_of(words, [label](std::string_view word) { return equalsFolded(label, word); });
}

bool isShortScheme(std::string_view scheme, std::string_view rest)
{
    if (rest.empty())
        return false;
    const auto has = [rest](char c) { return rest.find(c) != std::string_view::npos; };
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const char first = rest.front();
    if (equalsFolded(scheme, "mailto"))
        return std::ranges::any_of(rest, [](char c) { return hasClass(c, AlnumByte | WideByte); });
    if (equalsFolded(scheme, "tel"))
        return isOneOf(first, "+(*#-0123456789") && std::ranges::count_if(rest, isDigit) >= 2;
    if (equalsFolded(scheme, "sms"))
        return isOneOf(first, "+?&(0123456789") && rest.size() > 1;
    if (equalsFolded(scheme, "geo"))
        return isOneOf(first, "+-0123456789") && has(',');
    if (equalsFolded(scheme, "maps"))
        return has('=') || (first == '/' && rest.size() > 1);
    return equalsFolded(scheme, "xmpp") && (has('@') || has('.'));
}

} // namespace links

// SPDX-License-Identifier: MIT
#include "links/linkwords.h"

#include "links/linkcharacters.h"

#include <algorithm>

namespace links {

bool hasHostRules(std::string_view scheme)
{
    switch (foldedBytes(scheme)) {
    case packedBytes("http"):
    case packedBytes("https"):
    case packedBytes("ftp"):
    case packedBytes("ftps"):
    case packedBytes("ws"):
    case packedBytes("wss"):
        return true;
    default:
        return false;
    }
}

bool isForbidden(std::string_view scheme)
{
    return isAnyOf(scheme, {"javascript", "data", "vbscript"});
}

bool isCodeWord(std::string_view label)
{
    return isAnyOf(label,
                   {"am",         "as",    "audio", "bar",      "black",   "blue",   "box",      "bz",
                    "cab",        "call",  "cat",   "cc",       "channel", "click",  "data",     "date",
                    "day",        "do",    "dot",   "download", "email",   "events", "fail",     "final",
                    "foo",        "green", "group", "host",     "how",     "id",     "inc",      "int",
                    "java",       "la",    "link",  "map",      "md",      "mk",     "ml",       "mm",
                    "mo",         "mov",   "name",  "new",      "next",    "now",    "off",      "open",
                    "page",       "phone", "pink",  "pl",       "place",   "pm",     "post",     "pro",
                    "properties", "ps",    "pub",   "py",       "read",    "red",    "report",   "rs",
                    "run",        "sas",   "save",  "sc",       "search",  "select", "services", "sh",
                    "show",       "so",    "st",    "stream",   "style",   "tab",    "target",   "tf",
                    "top",        "total", "vi",    "video",    "watch",   "zip"});
}

bool isShortScheme(std::string_view scheme, std::string_view rest)
{
    if (rest.empty())
        return false;
    const auto has = [rest](char c) { return rest.find(c) != std::string_view::npos; };
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const char first = rest.front();
    switch (foldedBytes(scheme)) {
    case packedBytes("mailto"):
        return std::ranges::any_of(rest, [](char c) { return hasClass(c, AlnumByte | WideByte); });
    case packedBytes("tel"):
        return isOneOf(first, "+(*#-0123456789") && std::ranges::count_if(rest, isDigit) >= 2;
    case packedBytes("sms"):
        return isOneOf(first, "+?&(0123456789") && rest.size() > 1;
    case packedBytes("geo"):
        return isOneOf(first, "+-0123456789") && has(',');
    case packedBytes("maps"):
        return has('=') || (first == '/' && rest.size() > 1);
    case packedBytes("xmpp"):
        return has('@') || has('.');
    default:
        return false;
    }
}

} // namespace links

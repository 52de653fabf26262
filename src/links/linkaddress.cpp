// SPDX-License-Identifier: MIT
#include "links/linkcharacters.h"
#include "links/linkdetector.h"
#include "links/linkhost.h"

#include <algorithm>

namespace links {

namespace {

bool isHex(char c)
{
    return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'f');
}

void encode(std::string &out, char c)
{
    constexpr char digits[] = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    out += '%';
    out += digits[byte >> 4];
    out += digits[byte & 0x0F];
}

/// Appends `part`, encoding what is neither unreserved nor one of `allowed`. Finished escapes stay.
void appendEncoded(std::string &out, std::string_view part, AsciiSet allowed)
{
    for (std::size_t i = 0; i < part.size(); ++i) {
        const char c = part[i];
        const bool escape = c == '%' && i + 2 < part.size() && isHex(part[i + 1]) && isHex(part[i + 2]);
        if (escape || hasClass(c, AlnumByte) || isOneOf(c, "-._~") || isOneOf(c, allowed))
            out += c;
        else
            encode(out, c);
    }
}

void appendAuthority(std::string &out, std::string_view authority)
{
    constexpr AsciiSet subDelims = "!$&'()*+,;=";
    if (const std::size_t at = authority.rfind('@'); at != std::string_view::npos) {
        appendEncoded(out, authority.substr(0, at), "!$&'()*+,;=:");
        out += '@';
        authority.remove_prefix(at + 1);
    }
    std::string_view port;
    if (const std::size_t colon = authority.rfind(':'); colon != std::string_view::npos) {
        const std::string_view digits = authority.substr(colon + 1);
        if (std::ranges::all_of(digits, [](char c) { return c >= '0' && c <= '9'; })) {
            port = authority.substr(colon);
            authority.remove_suffix(port.size());
        }
    }
    if (authority.starts_with('[') && ipLiteralEnd(authority, 0) == authority.size())
        out += authority;
    else
        appendEncoded(out, authority, subDelims);
    out += port;
}

/// Where the authority of "scheme://authority…" begins and ends; both 0 when the address has none.
std::pair<std::size_t, std::size_t> authorityOf(std::string_view address)
{
    const std::size_t colon = address.find(':');
    if (colon == std::string_view::npos || address.substr(colon, 3) != "://")
        return {0, 0};
    return {colon + 3, std::min(address.find_first_of("/?#", colon + 3), address.size())};
}

} // namespace

std::string absoluteAddress(std::string_view utf8, const Link &link)
{
    constexpr std::string_view prefixes[] = {"", "http://", "http:", "mailto:"};
    std::string written(prefixes[std::size_t(link.form)]);
    written += utf8.substr(link.begin, link.length);

    const auto [begin, end] = authorityOf(written);
    std::string address;
    address.reserve(written.size() + 16);
    std::size_t rest = written.find(':') + 1;
    address.append(written, 0, rest);
    if (end > 0) {
        address += "//";
        appendAuthority(address, std::string_view(written).substr(begin, end - begin));
        rest = end;
    }
    constexpr AsciiSet allowed = "!$&'()*+,;=:@/?";
    const std::size_t fragment = std::min(written.find('#', rest), written.size());
    appendEncoded(address, std::string_view(written).substr(rest, fragment - rest), allowed);
    if (fragment < written.size()) {
        address += '#';
        appendEncoded(address, std::string_view(written).substr(fragment + 1), allowed);
    }
    return address;
}

std::string_view addressHost(std::string_view address)
{
    const auto [begin, end] = authorityOf(address);
    std::string_view host = address.substr(begin, end - begin);
    host.remove_prefix(host.rfind('@') + 1); // npos + 1 is 0
    const std::size_t colon = host.rfind(':');
    if (colon != std::string_view::npos && host.find(']', colon) == std::string_view::npos)
        host.remove_suffix(host.size() - colon);
    return host;
}

} // namespace links

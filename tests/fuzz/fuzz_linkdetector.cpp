// SPDX-License-Identifier: MIT
#include "../links/slowlinkdetector.h"

#include "links/linkdetector.h"
#include "platform/uri.h"

#include <cstdlib>

/// Any bytes: the links are those of the slow detector, in order and apart, and each makes an address by the
/// grammar.
extern "C" int LLVMFuzzerTestOneInput(const char *data, std::size_t size)
{
    const std::string_view text(data, size);
    const std::vector<links::Link> found = links::findLinks(text);
    if (size <= 4096 && found != SlowLinkDetector(text).find())
        std::abort();
    std::size_t end = 0;
    for (const links::Link &link : found) {
        if (link.begin < end || link.length == 0 || link.begin + link.length > size)
            std::abort();
        end = link.begin + link.length;
        const std::string address = links::absoluteAddress(text, link);
        const std::optional<platform::Uri> uri = platform::parseUriReference(QString::fromStdString(address));
        if (!uri || uri->scheme.isEmpty()
            || uri->host != QString::fromStdString(std::string(links::addressHost(address))))
            std::abort();
    }
    return 0;
}

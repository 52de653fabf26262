// SPDX-License-Identifier: MIT
#include "links/linkdetector.h"
#include "platform/uri.h"

#include <cstdlib>

/// Any bytes: the links are in order and apart, each makes an address by the grammar, and blanks before the
/// text move them and change none.
extern "C" int LLVMFuzzerTestOneInput(const char *data, std::size_t size)
{
    const std::string_view text(data, size);
    const std::vector<links::Link> found = links::findLinks(text);
    const std::vector<links::Link> moved =
        links::findLinks(std::string(size % 67, ' ').append(text).append(70, ' '));
    if (moved.size() != found.size())
        std::abort();
    std::size_t end = 0, next = 0;
    for (const links::Link &link : found) {
        if (link.begin < end || link.length == 0 || link.begin + link.length > size
            || moved[next++] != links::Link{link.begin + size % 67, link.length, link.form})
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

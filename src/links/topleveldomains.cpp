// SPDX-License-Identifier: MIT
#include "links/topleveldomains.h"

#include "links/labelhash.h"

#include <cstddef>

namespace links {

namespace {

// labelSeeds: a seed a bucket; labelSlots: offset into labelBytes a slot, length in labelLengths, 0 when
// empty.
#include "topleveldomainstable.inc"

char foldAscii(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c | 0x20) : c;
}

} // namespace

bool isTopLevelDomain(std::string_view label)
{
    if (label.size() < 2 || label.size() > longestLabel)
        return false;
    const std::uint32_t hash = labelHash(label);
    const std::uint32_t slot =
        labelSlot(hash, labelSeeds[hash % std::size(labelSeeds)], std::size(labelLengths));
    if (labelLengths[slot] != label.size())
        return false;
    const char *known = labelBytes + labelSlots[slot];
    for (std::size_t i = 0; i < label.size(); ++i) {
        if (foldAscii(label[i]) != known[i])
            return false;
    }
    return true;
}

} // namespace links

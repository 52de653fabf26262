// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace links {
class LinkOpener;
}

/// What the strip's views ask of the world outside. Handed in by the application object, replaced in tests.
struct StripServices
{
    links::LinkOpener &opener;
    std::function<void()> openSettings;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace links {
class LinkOpener;
}
namespace platform {
class FilePanel;
}

/// What the strip's views ask of the world outside. Handed in by the application object, replaced in tests.
struct StripServices
{
    links::LinkOpener &opener;
    platform::FilePanel &filePanel;
    std::function<void()> openSettings;
};

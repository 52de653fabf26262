// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Every web address that the program itself knows. The maker's site stands under a name that is reserved for
/// examples until there is a real one.
namespace model {

inline QString makerAddress(QLatin1String path)
{
    return QLatin1String("https://www.pondwicket.example") + path;
}

inline QString encyclopediaAddress(QLatin1String path)
{
    return QLatin1String("https://en.wikipedia.org") + path;
}

/// The product's home page.
inline QString homePage()
{
    return makerAddress(QLatin1String("/pondWicket/index.html"));
}

/// The page with help and support.
inline QString supportPage()
{
    return makerAddress(QLatin1String("/pondWicket"));
}

} // namespace model

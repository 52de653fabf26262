// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace platform {

/// Why an operation failed, in the two lengths that the diagnostics need.
struct Error
{
    QString domain; ///< who says so: "POSIX", "JSON", "UTF-8", …
    int code = 0; ///< the domain's own number: errno for "POSIX"
    QString reason; ///< one English sentence without the code
    QString path; ///< the file concerned; empty when there is none

    /// The sentence alone.
    const QString &description() const { return reason; }
    /// The sentence, then domain, code and path in parentheses; one line.
    QString fullDescription() const;

    /// The failure of a system call: `deed` reads "The file “x” could not be opened", `number` is errno.
    static Error fromErrno(const QString &deed, int number, const QString &path);
};

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace platform {

/// The parts of a URI reference, each exactly as it stood in the text: no case is folded, no escape decoded.
struct Uri
{
    QString scheme; ///< empty in a relative reference
    QString userInfo;
    QString host; ///< an IP literal with its brackets
    QString port;
    QString path;
    QString query;
    QString fragment;
    bool hasAuthority = false; ///< "//" was there; the host may still be empty
    bool hasQuery = false;
    bool hasFragment = false;

    bool operator==(const Uri &) const = default;
};

/// Reads a URI reference by the grammar of RFC 3986 and nothing looser: ASCII only, whole percent triplets,
/// checked IP literals. Nothing for text that does not match, and for the empty text.
std::optional<Uri> parseUriReference(QStringView text);

/// The bytes behind the percent triplets; what is no triplet stays as it is.
QByteArray percentDecoded(QStringView text);

/// "file://" and the absolute path, escaped as a URI's path.
QString fileUri(const QString &path);

/// The path that a file URI of this machine names, without a slash at its end. Nothing for other schemes and
/// hosts and for paths that hold a NUL or are not UTF-8.
std::optional<QString> pathOfFileUri(QStringView text);

} // namespace platform

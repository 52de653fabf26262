// SPDX-License-Identifier: MIT
// Addresses come from files and drops. What parses falls into parts that make up the same text again.
#include "platform/uri.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(QByteArrayView(data, qsizetype(size)));
    if (const auto path = platform::pathOfFileUri(text)) {
        if (platform::pathOfFileUri(platform::fileUri(*path)) != path)
            std::abort();
    }
    const auto uri = platform::parseUriReference(text);
    if (!uri)
        return 0;
    // Whether "@" and ":" stood around empty parts, only the text can tell.
    QString whole = uri->scheme.isEmpty() ? QString() : uri->scheme + u':';
    const auto addMarked = [&](const QString &part, const QString &mark, bool before) {
        const QString marked = before ? mark + part : part + mark;
        whole += QStringView(text).sliced(whole.size()).startsWith(marked) ? marked : part;
    };
    if (uri->hasAuthority) {
        whole += QStringLiteral("//");
        addMarked(uri->userInfo, QStringLiteral("@"), false);
        whole += uri->host;
        addMarked(uri->port, QStringLiteral(":"), true);
    }
    whole += uri->path + (uri->hasQuery ? u'?' + uri->query : QString())
        + (uri->hasFragment ? u'#' + uri->fragment : QString());
    if (whole != text)
        std::abort();
    return 0;
}

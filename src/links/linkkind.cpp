// SPDX-License-Identifier: MIT
#include "links/linkkind.h"

#include "platform/aliasresolver.h"
#include "platform/contenttype.h"
#include "platform/report.h"
#include "platform/uri.h"

#include <QFile>

#include <algorithm>
#include <array>

namespace links {

namespace {

struct Look
{
    QLatin1String kind;
    QLatin1String symbol;
    QColor tint;
};

const QColor green = QColor::fromRgbF(0.47F, 0.75F, 0.13F);
const QColor blue = QColor::fromRgbF(0.0F, 0.64F, 0.88F);
const QColor purple = QColor::fromRgbF(0.68F, 0.1F, 0.67F);
const QColor orange = QColor::fromRgbF(1.0F, 0.4F, 0.12F);

/// Kinds are compared exactly; the last look is that of every other kind.
const std::array looks = {
    Look{QLatin1String("https"), QLatin1String("safari"), green},
    Look{QLatin1String("http"), QLatin1String("safari"), green},
    Look{QLatin1String("sftp"), QLatin1String("server.rack"), blue},
    Look{QLatin1String("ftp"), QLatin1String("server.rack"), blue},
    Look{QLatin1String("smb"), QLatin1String("server.rack"), orange},
    Look{QLatin1String("rtsp"), QLatin1String("questionmark.square"), blue},
    Look{QLatin1String("ssh"), QLatin1String("apple.terminal"), blue},
    Look{QLatin1String("ws"), QLatin1String("questionmark.square"), blue},
    Look{QLatin1String("wss"), QLatin1String("questionmark.square"), blue},
    Look{QLatin1String("mailto"), QLatin1String("mail"), blue},
    Look{QLatin1String("tel"), QLatin1String("phone"), green},
    Look{QLatin1String("sms"), QLatin1String("message"), green},
    Look{QLatin1String("irc"), QLatin1String("questionmark.square"), purple},
    Look{QLatin1String("shortcuts"), QLatin1String("square.on.square"), purple},
    Look{QLatin1String("maps"), QLatin1String("map"), purple},
    Look{QLatin1String("appAlias"), QLatin1String("app.edit"), blue},
    Look{QLatin1String("folderAlias"), QLatin1String("folder"), blue},
    Look{QLatin1String("documentAlias"), QLatin1String("document"), orange},
    Look{QLatin1String(), QLatin1String("questionmark.square"), orange},
};

const Look &look(const QString &kind)
{
    const auto found = std::find_if(looks.begin(), looks.end() - 1,
                                    [&kind](const Look &candidate) { return candidate.kind == kind; });
    return *found;
}

} // namespace

QString linkKind(const TileMenuItem &link)
{
    const std::optional<platform::Uri> uri = platform::parseUriReference(link.itemString);
    if (uri && !uri->scheme.isEmpty())
        return uri->scheme;

    platform::Error error;
    const std::optional<platform::AliasTarget> target =
        platform::resolveAliasTarget(QFile::encodeName(link.itemString), &error);
    if (!target) {
        platform::report(QStringLiteral("Failed to resolve alias: ") + error.fullDescription());
        return QStringLiteral("unknown");
    }
    if (target->isFolder ? platform::isApplicationFolder(target->path)
                         : platform::isApplicationFile(target->path))
        return QStringLiteral("appAlias");
    return target->isFolder ? QStringLiteral("folderAlias") : QStringLiteral("documentAlias");
}

bool isAliasKind(const QString &kind)
{
    return kind == QLatin1String("appAlias") || kind == QLatin1String("folderAlias")
        || kind == QLatin1String("documentAlias");
}

QString symbolOfKind(const QString &kind)
{
    return look(kind).symbol;
}

QColor tintOfKind(const QString &kind)
{
    return look(kind).tint;
}

bool isAlias(const TileMenuItem &link)
{
    return isAliasKind(linkKind(link));
}

QString linkSymbol(const TileMenuItem &link)
{
    return symbolOfKind(linkKind(link));
}

QColor linkTint(const TileMenuItem &link)
{
    return tintOfKind(linkKind(link));
}

} // namespace links

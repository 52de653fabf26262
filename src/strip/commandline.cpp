// SPDX-License-Identifier: MIT
#include "strip/commandline.h"

#include "platform/uri.h"

#include <QDir>

namespace strip {

QList<platform::InstanceRequest> requestsFrom(const QStringList &arguments)
{
    using Kind = platform::InstanceRequest::Kind;
    QList<platform::InstanceRequest> requests;
    for (const QString &argument : arguments) {
        if (argument == QLatin1String("--settings") || argument == QLatin1String("--quit"))
            requests.append({Kind::Action, argument.sliced(2)});
        else if (argument.startsWith(QLatin1String("file:")))
            requests.append({Kind::Open, argument});
        else if (!argument.isEmpty() && !argument.startsWith(u'-'))
            requests.append({Kind::Open, platform::fileUri(QDir::current().absoluteFilePath(argument))});
    }
    return requests;
}

} // namespace strip

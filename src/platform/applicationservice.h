// SPDX-License-Identifier: MIT
#pragma once

#include "platform/singleinstance.h"

#include <QVariantMap>

namespace platform {

/// This instance on the session bus, as the desktop finds it: "org.freedesktop.Application" under the
/// program's id.
class ApplicationService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationService(QObject *parent)
        : QObject(parent)
    {
    }

    /// Silent when there is no bus or an instance for another folder has the name.
    void start();

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SCRIPTABLE void ActivateAction(const QString &name, const QVariantList &parameters,
                                     const QVariantMap &platformData);

Q_SIGNALS:
    void requested(const platform::InstanceRequest &request);
};

} // namespace platform

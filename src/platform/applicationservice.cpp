// SPDX-License-Identifier: MIT
#include "platform/applicationservice.h"

#include "platform/applicationid.h"

#include <QDBusConnection>

namespace platform {

void ApplicationService::start()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    const QString path = u'/' + applicationId().replace(u'.', u'/');
    // The object first: whoever waits for the name calls at once.
    if (!bus.isConnected() || !bus.registerObject(path, this, QDBusConnection::ExportScriptableSlots))
        return;
    if (!bus.registerService(applicationId()))
        bus.unregisterObject(path);
}

void ApplicationService::Activate(const QVariantMap &)
{
    Q_EMIT requested({InstanceRequest::Kind::Activate, {}});
}

void ApplicationService::Open(const QStringList &uris, const QVariantMap &)
{
    for (const QString &uri : uris)
        Q_EMIT requested({InstanceRequest::Kind::Open, uri});
}

void ApplicationService::ActivateAction(const QString &name, const QVariantList &, const QVariantMap &)
{
    Q_EMIT requested({InstanceRequest::Kind::Action, name});
}

} // namespace platform

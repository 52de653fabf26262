// SPDX-License-Identifier: MIT
#include "platform/desktoptheme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QPalette>

#include <algorithm>
#include <optional>

namespace platform {

namespace {

constexpr char variable[] = "XDG_CURRENT_DESKTOP";
std::optional<QByteArray> hiddenDesktop;

bool isBuiltWithGtk(const QByteArray &desktops)
{
    const QList<QByteArray> names = desktops.toUpper().split(':');
    return std::any_of(names.cbegin(), names.cend(), [](const QByteArray &name) {
        return QList<QByteArray>{"GNOME", "X-CINNAMON", "UNITY", "MATE", "XFCE", "LXDE"}.contains(name);
    });
}

QPalette darkPalette()
{
    QPalette palette(QColor(0x3a, 0x3a, 0x3a), QColor(0x2c, 0x2c, 0x2c));
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
    palette.setColor(QPalette::Highlight, QColor(0x35, 0x84, 0xe4));
    palette.setColor(QPalette::Link, QColor(0x78, 0xae, 0xed));
    return palette;
}

} // namespace

void hideGtkDesktop()
{
    const QByteArray desktops = qgetenv(variable);
    if (!isBuiltWithGtk(desktops))
        return;
    hiddenDesktop = desktops;
    qputenv(variable, "generic"); // not unset: the toolkit would guess from other variables
}

void unhideGtkDesktop()
{
    if (hiddenDesktop)
        qputenv(variable, *hiddenDesktop);
}

void takeColorScheme()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!hiddenDesktop || !bus.isConnected())
        return;
    // Portals know the choice on every desktop.
    QDBusMessage read = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
    read << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme");
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(read), qApp);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, qApp, [watcher] {
        constexpr uint dark = 1;
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        // The value is wrapped twice.
        if (!reply.isError()
            && qvariant_cast<QDBusVariant>(reply.value().variant()).variant().toUInt() == dark)
            QApplication::setPalette(darkPalette());
        watcher->deleteLater();
    });
}

} // namespace platform

// SPDX-License-Identifier: MIT
#include "platform/desktoptheme.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QFontDatabase>
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

QString appearance()
{
    return QStringLiteral("org.freedesktop.appearance");
}

/// The choices of the desktops that are built with GTK, whose portals pass them on under this name.
QString gtkInterface()
{
    return QStringLiteral("org.gnome.desktop.interface");
}

/// The font that "Family 11" describes; the application's own where that describes none.
QFont describedFont(const QString &description)
{
    const qsizetype blank = description.lastIndexOf(QLatin1Char(' '));
    const double points = description.mid(blank + 1).toDouble();
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    if (blank > 0 && points >= 4 && points <= 72) {
        font.setFamily(description.left(blank).remove(QLatin1Char(',')));
        font.setPointSizeF(points);
    }
    return font;
}

/// Takes over what the desktop's portal says, now and later.
class DesktopTheme : public QObject
{
    Q_OBJECT

public:
    explicit DesktopTheme(QObject *parent);

private Q_SLOTS:
    void takeChange(const QDBusMessage &signal);

private:
    void take(const QString &group, const QString &key, const QVariant &value);
};

DesktopTheme::DesktopTheme(QObject *parent)
    : QObject(parent)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
    const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
    const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
    bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                SLOT(takeChange(QDBusMessage)));
    QDBusMessage read = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("ReadAll"));
    read << QStringList{appearance(), gtkInterface()};
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(read), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusMessage reply = watcher->reply();
        if (reply.signature() != QLatin1String("a{sa{sv}}"))
            return;
        const auto groups = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst());
        for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
            for (auto value = group->cbegin(); value != group->cend(); ++value)
                take(group.key(), value.key(), *value);
        }
    });
}

void DesktopTheme::takeChange(const QDBusMessage &signal)
{
    const QVariantList values = signal.arguments();
    if (signal.signature() == QLatin1String("ssv"))
        take(values[0].toString(), values[1].toString(), values[2].value<QDBusVariant>().variant());
}

void DesktopTheme::take(const QString &group, const QString &key, const QVariant &value)
{
    constexpr uint dark = 1;
    if (group == appearance() && key == QLatin1String("color-scheme"))
        QApplication::setPalette(value.toUInt() == dark ? darkPalette() : QPalette());
    else if (group == gtkInterface() && key == QLatin1String("font-name"))
        QApplication::setFont(describedFont(value.toString()));
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

void followDesktopTheme()
{
    if (hiddenDesktop && QDBusConnection::sessionBus().isConnected())
        new DesktopTheme(qApp);
}

} // namespace platform

#include "desktoptheme.moc"

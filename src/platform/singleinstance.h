// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>

#include <memory>

class QSocketNotifier;

namespace platform {

/// What a start asks of the instance that runs already, or the desktop of this one.
struct InstanceRequest
{
    enum class Kind {
        Activate, ///< come to the front
        Open, ///< open `text`, a URI
        Action, ///< do what the desktop entry's action `text` names
    };
    Kind kind = Kind::Activate;
    QString text;

    bool operator==(const InstanceRequest &) const = default;
};

/// Sees to it that one instance runs for each folder, whose files it alone writes. A lock on a private folder
/// decides, which the system drops with the process, so that a crash leaves nothing behind that counts.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    explicit SingleInstance(const QString &folder);
    ~SingleInstance() override;

    /// True when this is the only instance from here on, also where that cannot be found out. Otherwise the
    /// running one was sent the requests, or asked to come to the front when there are none, and this one has
    /// nothing more to do. Needs no application object and takes next to no time.
    bool claim(const QList<InstanceRequest> &requests);

    /// Takes requests of later starts, and over the session bus as "org.freedesktop.Application" when there
    /// is one and the name is free. Talks to the bus: call it from the event loop, when the first picture is
    /// out.
    void serve();

    /// Gives the lock up and takes its folder away, as the end of the object does.
    void release();

Q_SIGNALS:
    void requested(const platform::InstanceRequest &request);

private:
    bool openFolder();
    bool takeLock();
    void receive();
    bool send(const InstanceRequest &request) const;

    QByteArray m_name; ///< of the private folder
    QByteArray m_path; ///< of the private folder
    int m_folder = -1; ///< its descriptor, which holds the lock
    int m_socket = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace platform

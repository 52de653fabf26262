// SPDX-License-Identifier: MIT
#include "platform/singleinstance.h"

#include "platform/applicationservice.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QSocketNotifier>

#include <array>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr const char *socketName = "requests";
constexpr std::array kindNames = {"activate", "open", "action"};

QByteArray toMessage(const InstanceRequest &request)
{
    return kindNames[size_t(request.kind)] + QByteArray("\n") + request.text.toUtf8();
}

std::optional<InstanceRequest> fromMessage(const QByteArray &message)
{
    const qsizetype end = message.indexOf('\n');
    for (size_t kind = 0; kind < kindNames.size(); ++kind) {
        if (end >= 0 && message.first(end) == kindNames[kind])
            return InstanceRequest{InstanceRequest::Kind(kind), QString::fromUtf8(message.sliced(end + 1))};
    }
    return std::nullopt;
}

// The socket's address by way of the folder's descriptor, since addresses are short and paths need not be.
sockaddr_un addressIn(int folder)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/%s", folder, socketName);
    return address;
}

int makeSocket()
{
    return ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

// A folder of ours that nobody else can enter; -1 when it cannot be had.
int privateFolder(const QByteArray &path)
{
    if (::mkdir(path.constData(), 0700) != 0 && errno != EEXIST)
        return -1;
    const int folder = ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    struct stat status;
    if (folder >= 0 && ::fstat(folder, &status) == 0 && status.st_uid == ::getuid()
        && !(status.st_mode & 0077))
        return folder;
    if (folder >= 0)
        ::close(folder);
    return -1;
}

} // namespace

SingleInstance::SingleInstance(const QString &folder)
{
    const QByteArray path = QFile::encodeName(QDir::cleanPath(folder));
    const QByteArray hash = QCryptographicHash::hash(path, QCryptographicHash::Sha256).toHex().first(32);
    m_name = "/pondwicket-" + QByteArray::number(::getuid()) + '-' + hash;
}

SingleInstance::~SingleInstance()
{
    release();
}

void SingleInstance::release()
{
    m_notifier.reset();
    if (m_socket >= 0) {
        ::unlinkat(m_folder, socketName, 0);
        ::rmdir(m_path.constData());
        ::close(m_socket);
        m_socket = -1;
    }
    if (m_folder >= 0)
        ::close(m_folder);
    m_folder = -1;
}

bool SingleInstance::openFolder()
{
    QByteArrayList places = {QFile::encodeName(QDir::tempPath())};
    if (const QByteArray runtimeFolder = qgetenv("XDG_RUNTIME_DIR"); runtimeFolder.startsWith('/'))
        places.prepend(runtimeFolder);
    for (const QByteArray &place : places) {
        m_path = place + m_name;
        m_folder = privateFolder(m_path);
        if (m_folder >= 0)
            return true;
    }
    return false;
}

// Not a lock on a folder that its last owner took away between our opening and our locking it.
bool SingleInstance::takeLock()
{
    while (::flock(m_folder, LOCK_EX | LOCK_NB) == 0) {
        struct stat ours;
        struct stat there;
        if (::fstat(m_folder, &ours) == 0 && ::stat(m_path.constData(), &there) == 0
            && ours.st_ino == there.st_ino)
            return true;
        ::close(m_folder);
        if (!openFolder())
            return true;
    }
    return errno != EWOULDBLOCK;
}

bool SingleInstance::claim(const QList<InstanceRequest> &requests)
{
    if (!openFolder())
        return true;
    if (!takeLock()) {
        int patience = 5;
        for (const InstanceRequest &request : requests.isEmpty() ? QList{InstanceRequest()} : requests) {
            // The other may hold the lock since a moment ago and listen in the next.
            while (!send(request) && patience-- > 0)
                ::usleep(10'000);
        }
        return false;
    }
    ::unlinkat(m_folder, socketName, 0); // of one that crashed
    m_socket = makeSocket();
    const sockaddr_un address = addressIn(m_folder);
    if (m_socket >= 0)
        ::bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address);
    return true;
}

bool SingleInstance::send(const InstanceRequest &request) const
{
    const int socket = makeSocket();
    const sockaddr_un address = addressIn(m_folder);
    const QByteArray message = toMessage(request);
    const ssize_t sent = ::sendto(socket, message.constData(), size_t(message.size()), MSG_NOSIGNAL,
                                  reinterpret_cast<const sockaddr *>(&address), sizeof address);
    // A full queue is one that nobody reads: there is no use in trying again.
    const bool isDone = sent >= 0 || (errno != ECONNREFUSED && errno != ENOENT);
    if (socket >= 0)
        ::close(socket);
    return isDone;
}

void SingleInstance::serve()
{
    if (m_socket >= 0 && !m_notifier) {
        m_notifier = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, &SingleInstance::receive);
    }
    auto *service = new ApplicationService(this);
    // Later, so that the caller has its answer before we may quit.
    connect(service, &ApplicationService::requested, this, &SingleInstance::requested, Qt::QueuedConnection);
    service->start();
}

void SingleInstance::receive()
{
    QByteArray buffer(256 * 1024, Qt::Uninitialized); // more than a datagram can hold
    while (true) {
        const ssize_t length = ::recv(m_socket, buffer.data(), size_t(buffer.size()), 0);
        if (length < 0)
            return;
        if (const auto request = fromMessage(buffer.first(length)))
            Q_EMIT requested(*request);
    }
}

} // namespace platform

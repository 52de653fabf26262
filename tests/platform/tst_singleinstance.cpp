// SPDX-License-Identifier: MIT
#include "platform/applicationid.h"
#include "platform/singleinstance.h"
#include "support/process.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using platform::InstanceRequest;
using platform::SingleInstance;
using Kind = InstanceRequest::Kind;

class TestSingleInstance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_bus =
            support::startProcess(u"dbus-daemon"_qs, u"--session --nofork --print-address=1"_qs.split(u' '),
                                  QProcessEnvironment::systemEnvironment());
        QVERIFY(m_bus && support::waitUntil([this] { return m_bus->canReadLine(); }));
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus->readLine().trimmed());
    }

    void cleanupTestCase() { support::endProcess(*m_bus); }

    void init()
    {
        m_requests.clear();
        m_root = std::make_unique<QTemporaryDir>(m_temporaryFolder + u"/instance-XXXXXX"_qs);
        for (const char *name : {"runtime", "temporary"})
            QDir(m_root->path()).mkdir(QString::fromLatin1(name));
        qputenv("XDG_RUNTIME_DIR", m_root->filePath(u"runtime"_qs).toLocal8Bit());
        qputenv("TMPDIR", m_root->filePath(u"temporary"_qs).toLocal8Bit());
    }

    void laterStartsAskTheFirst()
    {
        // The runtime folder, and the mode of what stands in the place of our private folder; 0: nothing. The
        // last folder's name is longer than a socket's address may be.
        const std::pair<QByteArray, mode_t> rows[] = {{"runtime", 0},    {"runtime", 0700},
                                                      {"runtime", 0777}, {"", 0},
                                                      {"missing", 0},    {QByteArray(120, 'x'), 0}};
        for (const auto &[name, found] : rows) {
            init();
            qputenv("XDG_RUNTIME_DIR", name.isEmpty() ? name : m_root->path().toLocal8Bit() + '/' + name);
            QVERIFY(name.size() < 100 || QDir(m_root->path()).mkdir(QString::fromLatin1(name)));
            const QString folder = m_root->filePath(u"documents/ƒ"_qs);
            const QDir runtime(m_root->filePath(u"runtime"_qs));
            const auto privateFolders = [&] { return runtime.entryList(QDir::Dirs | QDir::NoDotAndDotDot); };
            if (found) {
                auto earlier = makeServing(folder);
                const QString left = privateFolders().value(0);
                earlier.reset();
                QCOMPARE(privateFolders(), QStringList()); // nothing is left of one that ended well
                QVERIFY(runtime.mkdir(left));
                QCOMPARE(::chmod(qPrintable(runtime.filePath(left)), found), 0);
            }
            const auto first = makeServing(folder);
            const auto ofAnotherFolder = makeServing(m_root->filePath(u"two"_qs));
            QVERIFY2(first && ofAnotherFolder, name.constData());
            const QList<InstanceRequest> requests = {
                {Kind::Activate, {}}, {Kind::Open, u"file:///a%20b\nƒ"_qs}, {Kind::Action, u"settings"_qs}};
            QVERIFY2(!SingleInstance(folder + u'/').claim(requests), name.constData());
            QTRY_COMPARE(m_requests, requests);
        }
    }

    void aCrashBlocksNobodyNorDoesAMissingPlaceForTheLock()
    {
        const pid_t process = ::fork();
        if (process == 0) {
            SingleInstance instance(m_root->path());
            ::_exit(instance.claim({}) ? 0 : 1); // no destructor tidies up
        }
        int status = -1;
        QVERIFY(::waitpid(process, &status, 0) == process && status == 0);
        const auto next = makeServing(m_root->path());
        QVERIFY(next && !SingleInstance(m_root->path()).claim({}));
        QTRY_COMPARE(m_requests, QList{InstanceRequest()});
        qputenv("XDG_RUNTIME_DIR", "/dev/null");
        qputenv("TMPDIR", "/dev/null");
        QVERIFY(makeServing(m_root->path()));
    }

    void servesTheDesktop()
    {
        const auto instance = makeServing(m_root->path());
        auto desktop =
            QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), u"desktop"_qs);
        const auto call = [&](const QString &method, const QVariantList &arguments) {
            auto message = QDBusMessage::createMethodCall(
                platform::applicationId(), u'/' + platform::applicationId().replace(u'.', u'/'),
                u"org.freedesktop.Application"_qs, method);
            message.setArguments(arguments);
            return desktop.asyncCall(message, 2000);
        };
        call(u"Activate"_qs, {QVariantMap()});
        call(u"Open"_qs, {QStringList{u"file:///a"_qs, u"file:///b"_qs}, QVariantMap()});
        // Who asks us to quit once got an error, since we were gone before the answer was sent.
        QDBusPendingCall quit = QDBusPendingCall::fromError({});
        connect(instance.get(), &SingleInstance::requested, this, [&quit](const InstanceRequest &request) {
            if (request.kind == Kind::Action)
                quit.waitForFinished();
        });
        quit = call(u"ActivateAction"_qs, {u"quit"_qs, QVariantList(), QVariantMap()});
        QTRY_COMPARE(m_requests,
                     (QList<InstanceRequest>{{Kind::Activate, {}},
                                             {Kind::Open, u"file:///a"_qs},
                                             {Kind::Open, u"file:///b"_qs},
                                             {Kind::Action, u"quit"_qs}}));
        QVERIFY(quit.isFinished() && !quit.isError());
    }

private:
    /// An instance whose requests end in `m_requests`.
    std::unique_ptr<SingleInstance> makeServing(const QString &folder)
    {
        auto instance = std::make_unique<SingleInstance>(folder);
        if (!instance->claim({}))
            return nullptr;
        connect(instance.get(), &SingleInstance::requested, this,
                [this](const InstanceRequest &request) { m_requests << request; });
        instance->serve();
        return instance;
    }

    const QString m_temporaryFolder = QDir::tempPath();
    std::unique_ptr<QTemporaryDir> m_root;
    std::unique_ptr<QProcess> m_bus;
    QList<InstanceRequest> m_requests;
};

QTEST_GUILESS_MAIN(TestSingleInstance)
#include "tst_singleinstance.moc"

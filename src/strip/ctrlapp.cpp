// SPDX-License-Identifier: MIT
#include "strip/ctrlapp.h"

#include "links/openlink.h"
#include "model/config.h"
#include "model/safetycopies.h"
#include "model/settingsstore.h"
#include "model/tiles.h"
#include "platform/addressopener.h"
#include "platform/aliasresolver.h"
#include "platform/applicationid.h"
#include "platform/background.h"
#include "platform/copyingdrags.h"
#include "platform/desktoptheme.h"
#include "platform/filepanel.h"
#include "platform/files.h"
#include "platform/floatingwindow.h"
#include "platform/report.h"
#include "platform/singleinstance.h"
#include "platform/terminationsignals.h"
#include "platform/translations.h"
#include "platform/uri.h"
#include "platform/userfolders.h"
#include "platform/workspace.h"
#include "settings/settingsview.h"
#include "strip/accessibility.h"
#include "strip/appdelegate.h"
#include "strip/commandline.h"
#include "strip/commands.h"
#include "strip/contentview.h"
#include "strip/services.h"
#include "strip/startup.h"
#include "themes/imagecache.h"

#include <QFile>
#include <QPointer>
#include <QScreen>
#include <QTimer>

#include <chrono>
#include <optional>

namespace {

/// After the last change, before the pictures are saved for the next start.
constexpr std::chrono::seconds idleTime(2);

/// After the first picture, before the session bus is asked for anything.
constexpr std::chrono::milliseconds serviceDelay(200);

const platform::InstanceRequest quitRequest = {platform::InstanceRequest::Kind::Action,
                                               QStringLiteral("quit")};

/// Hands everything to the desktop.
class DesktopOpener : public links::LinkOpener
{
public:
    void openFile(const QString &path) override { platform::openFile(path); }
    void openAddress(const QString &text) override { platform::openAddress(text); }
};

} // namespace

/// What lives from the end of the start to the end of the process, in the order in which it is made.
struct ctrlApp::Parts
{
    Parts(ctrlApp &app, const QString &documents)
        : config(documents, platform::stateFolder())
        , instance(model::applicationFolder(config))
        , services{opener, *filePanel, [&app] { app.openSettings(); }}
    {
    }

    ~Parts() { delete settings; }

    Config config;
    platform::SingleInstance instance;
    DesktopOpener opener;
    std::unique_ptr<platform::FilePanel> filePanel = platform::makeFilePanel();
    StripServices services;
    QPointer<SettingsView> settings; // its own, deleted when the user closes it
    std::optional<ContentView> strip;
    std::optional<AppDelegate> appDelegate;
    QTimer idleTimer;
};

ctrlApp::ctrlApp(int &argc, char **argv)
    : QApplication(argc, argv)
{
    setApplicationName(QStringLiteral("pondWicket"));
    setDesktopFileName(platform::applicationId());
    setAttribute(Qt::AA_DisableSessionManager);
    setQuitOnLastWindowClosed(false);
    installEventFilter(new platform::CopyingDrags(this));
    platform::installTranslations();
    strip::installAccessibility();
}

ctrlApp::~ctrlApp() = default;

int ctrlApp::run()
{
    platform::outliveFailedWrites();
    platform::Error error;
    const std::optional<QString> documents = platform::documentsFolder(&error);
    if (!documents) {
        platform::report(QLatin1String("Unable to locate document directory: ") + error.fullDescription());
        return EXIT_FAILURE;
    }
    m_parts = std::make_unique<Parts>(*this, *documents);
    const QList<platform::InstanceRequest> requests = strip::requestsFrom(arguments().sliced(1));
    const bool isOnly = m_parts->instance.claim(requests);
    if (!isOnly || requests.contains(quitRequest))
        return EXIT_SUCCESS;
    strip::loadOrCreateSettings(m_parts->config);

    ContentView &strip = m_parts->strip.emplace(m_parts->config, m_parts->services);
    connect(&strip, &ContentView::quitRequested, this, [] { quit(); });
    m_parts->appDelegate.emplace(strip, nullptr).applicationDidFinishLaunching();

    platform::onTerminationSignal([] { quit(); });
    // Nobody presses a key before the strip is there, so its commands may come after the first picture.
    QTimer::singleShot(0, this, [this, &strip] {
        auto *commands = new Commands(m_parts->config, m_parts->services, strip);
        connect(&strip, &ContentView::contextMenuRequested, commands, &Commands::showMenus);
        connect(commands, &Commands::quitRequested, this, [] { quit(); });
    });
    connect(&m_parts->instance, &platform::SingleInstance::requested, this, &ctrlApp::perform);
    QTimer::singleShot(serviceDelay, this, [this, requests] {
        m_parts->instance.serve();
        // A link whose target a search has found leads somewhere again.
        connect(&platform::aliasResolver(), &platform::AliasResolver::targetFound, &m_parts->config,
                &Config::redrawNeeded);
        platform::followDesktopTheme();
        for (const platform::InstanceRequest &request : requests)
            perform(request);
    });
    QTimer &idleTimer = m_parts->idleTimer;
    idleTimer.setSingleShot(true);
    idleTimer.setInterval(idleTime);
    connect(&idleTimer, &QTimer::timeout, this, &ctrlApp::tidyUp);
    connect(&m_parts->config, &Config::redrawNeeded, &idleTimer, qOverload<>(&QTimer::start));
    idleTimer.start();
    const int status = exec();
    m_parts->instance.release();
    return status;
}

/// What can wait until nothing else is to do.
void ctrlApp::tidyUp()
{
    themes::saveImageCache();

    const Config &config = m_parts->config;
    QList<QByteArray> aliases;
    for (const TileItem &tile : config.tileItems()) {
        for (const TileMenuItem &link : tile.tileMenuItems) {
            if (link.itemString.startsWith(QLatin1Char('/')))
                aliases.append(QFile::encodeName(link.itemString));
        }
    }
    platform::holdTargets(aliases);

    platform::runInBackground(
        [tiles = config.tileItems(), copy = model::lastGoodPath(config.stateDirectory())] {
            platform::flushToDisk(copy);
            for (const TileItem &tile : tiles) {
                if (const QString folder = model::tileFolderPath(tile); !folder.isEmpty())
                    platform::removeLeftovers(folder);
            }
        });
}

void ctrlApp::perform(const platform::InstanceRequest &request)
{
    switch (request.kind) {
    case platform::InstanceRequest::Kind::Activate:
        m_parts->strip->raise();
        m_parts->strip->activateWindow();
        return;
    case platform::InstanceRequest::Kind::Open:
        // Only what leads somewhere else: we may be the program that the desktop has for this very file.
        if (const auto path = platform::pathOfFileUri(request.text)) {
            const auto target = platform::resolveAliasTarget(QFile::encodeName(*path), nullptr);
            if (target && target->path != QFile::encodeName(*path))
                platform::openFile(*path);
        }
        return;
    case platform::InstanceRequest::Kind::Action:
        if (request == quitRequest)
            quit();
        else if (request.text == QLatin1String("settings"))
            openSettings();
        return;
    }
}

/// One window, made anew at each opening. One that is open already comes to where the user is.
void ctrlApp::openSettings()
{
    QPointer<SettingsView> &window = m_parts->settings;
    const bool isNew = !window;
    if (isNew) {
        window = new SettingsView(m_parts->config, *m_parts->filePanel);
        window->setAttribute(Qt::WA_DeleteOnClose);
    } else {
        platform::moveToCurrentDesktop(window->winId());
    }
    const QScreen *screen = m_parts->strip->screen();
    if (screen && (isNew || window->screen() != screen)) {
        QRect place(QPoint(), window->size());
        place.moveCenter(screen->availableGeometry().center());
        window->move(place.topLeft());
    }
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
}

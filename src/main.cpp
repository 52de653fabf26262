// SPDX-License-Identifier: MIT
#include "platform/childenvironment.h"
#include "platform/desktoptheme.h"
#include "platform/endprocess.h"
#include "strip/ctrlapp.h"

#include <QByteArray>

#include <cstdio>
#include <cstdlib>

namespace {

QtMessageHandler toolkitHandler;

/// What the toolkit says while it looks for the display. Without one it would end by a signal.
void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtFatalMsg) {
        std::fputs("pondwicket: There is no X display to show the strip on.\n", stderr);
        std::_Exit(EXIT_FAILURE);
    }
    if (!text.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set")))
        toolkitHandler(type, context, text);
}

} // namespace

int main(int argc, char **argv)
{
    // A client of a Wayland compositor can neither place itself nor float: its X server can do both for us.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsSet("WAYLAND_DISPLAY")
        && qEnvironmentVariableIsSet("DISPLAY"))
        platform::setOwnVariable("QT_QPA_PLATFORM", "xcb");
    platform::hideGtkDesktop();
    toolkitHandler = qInstallMessageHandler(handleMessage);
    ctrlApp app(argc, argv);
    qInstallMessageHandler(nullptr);
    platform::unhideGtkDesktop();
    const int status = app.run();
    platform::endProcess(status);
    return status;
}

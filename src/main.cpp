// SPDX-License-Identifier: MIT
#include "platform/childenvironment.h"
#include "platform/desktoptheme.h"
#include "platform/endprocess.h"
#include "strip/ctrlapp.h"

#include <QByteArray>

int main(int argc, char **argv)
{
    // A client of a Wayland compositor can neither place itself nor float: its X server can do both for us.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsSet("WAYLAND_DISPLAY")
        && qEnvironmentVariableIsSet("DISPLAY"))
        platform::setOwnVariable("QT_QPA_PLATFORM", "xcb");
    platform::hideGtkDesktop();
    ctrlApp app(argc, argv);
    platform::unhideGtkDesktop();
    const int status = app.run();
    platform::endProcess(status);
    return status;
}

// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>

#include <memory>

class AppDelegate;
class Commands;
class Config;
class ContentView;
struct StripServices;

namespace platform {
struct InstanceRequest;
}

/// The application object: owns Config, the services, the strip and its commands.
class ctrlApp : public QApplication // named as the product names it
{
    Q_OBJECT

public:
    ctrlApp(int &argc, char **argv);
    ~ctrlApp() override;

    /// Loads the settings, shows the strip and runs until the user quits. Returns the process's exit status.
    int run();

private:
    struct Parts;

    void openSettings();
    void tidyUp();
    void perform(const platform::InstanceRequest &request);

    std::unique_ptr<Parts> m_parts;
};

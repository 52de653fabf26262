// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>
#include <optional>

namespace platform {

/// The question for a file. Runs modally; anything may have changed in the program when it comes back.
class FilePanel
{
public:
    virtual ~FilePanel() = default;
    /// The path of one file or folder; nothing when the user cancels.
    virtual std::optional<QString> chooseFileOrFolder(const QString &title) = 0;
    /// The path of one file.
    virtual std::optional<QString> chooseFile(const QString &title) = 0;
};

std::unique_ptr<FilePanel> makeFilePanel();

} // namespace platform

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/filepanel.h"

#include <QStringList>

#include <functional>

/// Answers at once, and records the titles under which it was asked.
class FakeFilePanel : public platform::FilePanel
{
public:
    std::optional<QString> answer;
    std::function<void()> meanwhile = [] {}; ///< what happens in the program while the panel is open
    QStringList titles;

    std::optional<QString> chooseFileOrFolder(const QString &title) override { return ask(title); }
    std::optional<QString> chooseFile(const QString &title) override { return ask(title); }

private:
    std::optional<QString> ask(const QString &title)
    {
        titles.append(title);
        meanwhile();
        return answer;
    }
};

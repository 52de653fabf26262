// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QTemporaryFile>

/// While it lives, standard output goes to a file. Diagnostics are part of what the program promises, so
/// tests read them where a user would. Take the lines before a check that may fail, or its message is
/// captured too.
class StdoutCapture
{
public:
    StdoutCapture();
    ~StdoutCapture();
    Q_DISABLE_COPY_MOVE(StdoutCapture)

    /// The whole lines since the last call.
    QStringList lines();

private:
    QTemporaryFile m_file;
    int m_original;
};

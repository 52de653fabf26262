// SPDX-License-Identifier: MIT
#include "support/stdoutcapture.h"

#include <cstdio>

#include <unistd.h>

StdoutCapture::StdoutCapture()
{
    std::fflush(stdout);
    m_original = ::dup(STDOUT_FILENO);
    if (m_original < 0 || !m_file.open() || ::dup2(m_file.handle(), STDOUT_FILENO) < 0)
        qFatal("Standard output cannot be captured.");
}

StdoutCapture::~StdoutCapture()
{
    const QStringList rest = lines();
    ::dup2(m_original, STDOUT_FILENO);
    ::close(m_original);
    for (const QString &line : rest)
        std::puts(qPrintable(line));
}

QStringList StdoutCapture::lines()
{
    std::fflush(stdout);
    // The offset is shared with the writer: remember it, read from the start, empty the file.
    m_file.seek(0);
    const QString text = QString::fromUtf8(m_file.readAll());
    m_file.resize(0);
    m_file.seek(0);
    return text.split(u'\n', Qt::SkipEmptyParts);
}

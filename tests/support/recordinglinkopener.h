// SPDX-License-Identifier: MIT
#pragma once

#include "links/openlink.h"

#include <QStringList>

namespace support {

/// Opens nothing and remembers what it was asked to.
class RecordingLinkOpener final : public links::LinkOpener
{
public:
    void openFile(const QString &path) override { files << path; }
    void openAddress(const QString &address) override { addresses << address; }

    QStringList files;
    QStringList addresses;
};

} // namespace support

// SPDX-License-Identifier: MIT
// Any bytes as an alias file. What is read as a record must be written and read again as the same record.
#include "platform/aliassearch.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    using namespace platform;
    const QByteArrayView text(reinterpret_cast<const char *>(bytes), qsizetype(size));
    Error error;
    const std::optional<AliasRecord> record = parseAlias(text, &error);
    if (!record) {
        if (error.reason.isEmpty())
            std::abort();
        return 0;
    }
    const QByteArray written = serialiseAlias(*record);
    if (written.size() <= maxAliasFileSize && parseAlias(written, nullptr) != record)
        std::abort();
    if (chainOf(*record).isEmpty())
        std::abort();
    descend(*record, chainOf(*record).size() - 1, "/no/such/folder");
    return 0;
}

// SPDX-License-Identifier: MIT
#include "model/textpool.h"

#include <algorithm>

namespace model {

void TextPool::takeLong(qsizetype length, QString *text)
{
    *text = QString(reinterpret_cast<const QChar *>(m_free), length);
    *this = TextPool();
}

void TextPool::startBlock(qsizetype length, qsizetype more)
{
    QString block(std::max(blockSize, 2 * (length + more)), Qt::Uninitialized);
    auto *start = reinterpret_cast<char16_t *>(block.data());
    std::copy_n(m_free, length, start);
    m_free = start;
    m_end = start + block.size();
    m_block = std::move(block);
}

} // namespace model

// SPDX-License-Identifier: MIT
#include "model/textpool.h"

#include <algorithm>

namespace model {

namespace {

// Units. A text that outlives the others of its block keeps no more than these few bytes from being freed.
constexpr qsizetype blockSize = 2000;
constexpr qsizetype longText = blockSize / 4;

} // namespace

void TextPool::take(qsizetype length, QString *text)
{
    if (length > longText) {
        *text = QString(reinterpret_cast<const QChar *>(m_free), length);
        *this = TextPool();
        return;
    }
    // The class's own way to share, but of a part of the block instead of the whole.
    auto *const header = m_block.data_ptr().d_ptr();
    header->ref();
    text->data_ptr() = QString::DataPointer(header, m_free, length);
    m_free[length] = u'\0';
    m_free += length + 1;
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

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace model {

/// Makes many texts quickly: short ones share a block of memory, which goes when the last of them does. They
/// are written unit by unit behind `data()`, with `makeRoom` before each step, and then taken.
class TextPool
{
public:
    /// The text that is being written.
    char16_t *data() { return m_free; }

    /// Sees to it that `more` units can be written behind the `length` of the text so far.
    void makeRoom(qsizetype length, qsizetype more)
    {
        if (m_end - m_free < length + more + 1)
            startBlock(length, more + 1);
    }

    /// Makes `text` the first `length` of what was written.
    void take(qsizetype length, QString *text)
    {
        if (length > longText)
            return takeLong(length, text);
        // The class's own way to share, but of a part of the block instead of the whole.
        auto *const header = m_block.data_ptr().d_ptr();
        header->ref();
        QString::DataPointer part(header, m_free, length);
        text->data_ptr().swap(part);
        m_free[length] = u'\0';
        m_free += length + 1;
    }

private:
    // Units. A text that outlives the others of its block keeps no more than these few bytes from being
    // freed.
    static constexpr qsizetype blockSize = 2000;
    static constexpr qsizetype longText = blockSize / 4;

    void takeLong(qsizetype length, QString *text);
    void startBlock(qsizetype length, qsizetype more);

    QString m_block; // the block's first reference
    char16_t *m_free = nullptr; // in the block
    char16_t *m_end = nullptr;
};

} // namespace model

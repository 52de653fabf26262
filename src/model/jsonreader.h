// SPDX-License-Identifier: MIT
#pragma once

#include "model/textpool.h"

#include <QByteArrayView>

#include <cstring>
#include <initializer_list>

namespace model {

/// Reads a JSON text in UTF-8 from front to back, in one pass and without a tree: the caller says what should
/// come next. Every function is false at a problem, which stays; nothing is to be read after it.
class JsonReader
{
public:
    explicit JsonReader(QByteArrayView text)
        : m_begin(text.begin())
        , m_at(text.begin())
        , m_end(text.end())
    {
    }

    /// The first character of what comes next, which tells a value's type: { [ " t f n - or a digit. NUL at
    /// the end, and for what begins nothing.
    char peek()
    {
        if (m_at < m_end && *m_at == ' ')
            ++m_at; // one is all there is between most tokens
        if (m_at < m_end && quint8(*m_at) > ' ')
            return *m_at;
        passBlanks();
        return m_at < m_end ? *m_at : '\0';
    }
    /// At most so many of the next bytes, as they stand there.
    QByteArrayView ahead(qsizetype count) const { return {m_at, qMin(count, m_end - m_at)}; }
    qsizetype offset() const { return m_at - m_begin; }
    void moveTo(qsizetype offset) { m_at = m_begin + offset; }
    /// Passes what comes next if it is this, byte for byte.
    template <size_t size> bool passText(const char (&text)[size])
    {
        constexpr qsizetype length = size - 1;
        constexpr qsizetype word = 8; // is compared without a call
        static_assert(length >= word);
        if (m_end - m_at < length)
            return false;
        for (qsizetype i = 0; i < length; i += word) {
            const qsizetype start = qMin(i, length - word);
            if (std::memcmp(m_at + start, text + start, word) != 0)
                return false;
        }
        m_at += length;
        return true;
    }

    /// Pass an object or array; the argument passes each member or element and is false at a problem.
    template <typename Pass> bool object(Pass passMember) { return list('{', '}', passMember); }
    template <typename Pass> bool array(Pass passElement) { return list('[', ']', passElement); }
    /// Passes a member's name, which is one of `names` or (`index` is their number) another. The guess costs
    /// least.
    bool name(std::initializer_list<QByteArrayView> names, size_t guess, size_t *index);
    bool string(QString *value);
    bool boolean(bool *value);
    /// Passes a value of any type.
    bool skip();
    /// Whether nothing follows.
    bool end();

    bool fail(const QString &problem, qsizetype offset);
    bool fail(const QString &problem) { return fail(problem, offset()); }
    const QString &problem() const { return m_problem; }
    qsizetype problemOffset() const { return m_problemOffset; }

private:
    static constexpr int maxDepth = 512;

    template <typename Pass> bool list(char open, char close, Pass passItem)
    {
        if (peek() != open)
            return invalid();
        if (++m_depth > maxDepth)
            return fail(QStringLiteral("it is nested too deeply"));
        ++m_at;
        if (peek() != close) {
            while (true) {
                if (!passItem())
                    return false;
                const char next = peek();
                if (next == close)
                    break;
                if (next != ',')
                    return fail(QStringLiteral("a comma or “%1” is missing").arg(QLatin1Char(close)));
                ++m_at;
            }
        }
        ++m_at;
        --m_depth;
        return true;
    }

    void passBlanks();
    bool passWord(QByteArrayView word);
    bool passNumber();
    bool passDigits();
    bool decodeString();
    bool invalid() { return fail(QStringLiteral("Invalid value")); }

    const char *m_begin;
    const char *m_at;
    const char *m_end;
    int m_depth = 0; // of the objects and arrays that are open
    TextPool m_texts; // with the string that was read last
    qsizetype m_length = 0; // of that string
    QString m_problem;
    qsizetype m_problemOffset = 0;
};

} // namespace model

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/aliasfile.h"

#include <chrono>
#include <functional>
#include <memory>

namespace platform {

/// Looks for lost targets through whole folders, on a worker that lives only while there is something to look
/// for. All targets asked for together are looked for in one round of at most three seconds.
class AliasSearch
{
public:
    /// `folders` are gone through in this order. `found` is called on the worker after a round that found
    /// anything.
    AliasSearch(const QList<QByteArray> &folders, const std::function<void()> &found);
    /// Ends a running round; it is not waited for when the disk does not answer.
    ~AliasSearch();
    Q_DISABLE_COPY_MOVE(AliasSearch)

    /// True when a round would be new: the record's target is neither being looked for nor was missed lately.
    bool isWorthwhile(const AliasRecord &record) const;
    void start(const AliasRecord &record);
    /// Where a round has found the record's target, and as what: it may have moved again since.
    struct Answer
    {
        QByteArray path;
        FileIdentity identity;
    };
    std::optional<Answer> answer(const AliasRecord &record) const;
    /// Takes back an answer that no longer holds.
    void forget(const AliasRecord &record);
    /// Returns when no round is running.
    void wait();

    static constexpr std::chrono::seconds missTime{60}; ///< how long a miss is not repeated

private:
    struct State;
    std::shared_ptr<State> m_state; ///< shared with the worker, which may outlive this object
};

/// Tells targets apart; two aliases of one target have one.
QByteArray targetKey(const AliasRecord &record);

/// Goes down from one of the record's folders, found at `place`, to the target by the recorded names, or
/// where a name is gone by identity. `level` counts folders from the target: 1 is the one that held it; 0 is
/// the target itself.
std::optional<QByteArray> descend(const AliasRecord &record, qsizetype level, const QByteArray &place);

/// The identities of the target and of the folders above it, as far as its path has any.
QList<FileIdentity> chainOf(const AliasRecord &record);

} // namespace platform

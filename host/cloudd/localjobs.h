// Jobs that bring local copies of cloud files up to date. Each calls its `ended` once, at its end.
#pragma once

#include "host/cloudd/localcopy.h"
#include "host/cloudd/localplaces.h"
#include "host/cloudd/rounds.h"
#include "host/cloudd/store.h"

namespace cloudd {

/// Copies one file into the cache.
class CacheJob final : public Job {
public:
    using Ended = std::function<void(State)>;

    CacheJob(Store& store, Contents& contents, const LocalPlaces& places, QString fileId, Ended ended);
    Step step() override;

private:
    Store& m_store;
    Contents& m_contents;
    const LocalPlaces& m_places;
    QString m_fileId;
    Ended m_ended;
    std::unique_ptr<LocalCopy> m_copy;
};

/// Copies the files of a folder, and of the folders in it so many levels down, to the user's documents. A
/// file that can not be copied does not keep the others from it, unless there is no more space.
class SyncJob final : public Job {
public:
    struct Result {
        State state = State::Ok; ///< the first failure's
        qint64 files = 0;        ///< that were copied
        qint64 bytes = 0;
    };
    using Ended = std::function<void(const Result&)>;

    SyncJob(Store& store, Contents& contents, const LocalPlaces& places, QString userId, QString folderId,
        int depth, Ended ended);
    Step step() override;

private:
    /// A folder whose items are being copied.
    struct Level {
        QString folderId;
        QString path; ///< local
        Descriptor local;
        std::vector<Item> items; ///< the next ones, the last first
        QString lastName;        ///< of what was read from the records
        bool hasMore = true;
    };

    bool advance();
    void take(const Item& item);

    Store& m_store;
    Contents& m_contents;
    const LocalPlaces& m_places;
    QString m_userId;
    QString m_folderId;
    int m_depth;
    Ended m_ended;
    Result m_result;
    std::vector<Level> m_levels; ///< the one worked at is the last
    Item m_copied;
    std::unique_ptr<LocalCopy> m_copy;
    bool m_begun = false;
};

} // namespace cloudd

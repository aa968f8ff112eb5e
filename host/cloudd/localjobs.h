// Jobs that update local copies of cloud files. Each calls `ended` once, when it has ended.
#pragma once

#include "host/cloudd/jobqueue.h"
#include "host/cloudd/localcopy.h"
#include "host/cloudd/localplaces.h"
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

/// Copies the files of a folder, and of its subfolders down to `depth`, to the user's documents. After a file
/// that can not be copied it continues, unless the disk failed or is full.
class SyncJob final : public Job {
public:
    struct Result {
        State state = State::Ok; ///< of the first failure
        qint64 files = 0;        ///< copied
        qint64 bytes = 0;
        qint64 kept = 0; ///< edited files that got another name
    };
    using Ended = std::function<void(const Result&)>;

    SyncJob(Store& store, Contents& contents, const LocalPlaces& places, QString userId, QString folderId,
        int depth, Ended ended);
    Step step() override;

private:
    /// A folder that is being copied.
    struct Level {
        QString folderId;
        QString path; ///< local
        Descriptor local;
        std::vector<Item> items; ///< to be copied, in reverse order
        QString lastName;        ///< of the last item read from the store
        bool hasMore = true;
    };

    bool advance();
    void start(const Item& item);

    Store& m_store;
    Contents& m_contents;
    const LocalPlaces& m_places;
    QString m_userId;
    QString m_folderId;
    int m_depth;
    Ended m_ended;
    Result m_result;
    std::vector<Level> m_levels; ///< from the synced folder down to the current one
    Item m_copied;
    QString m_lastCopied;
    std::unique_ptr<LocalCopy> m_copy;
    bool m_begun = false;
};

} // namespace cloudd

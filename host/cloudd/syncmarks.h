// Looks whether the synced files of a user still have their mark (FolderSync::StateAttribute), which file managers show as
// an overlay icon, and writes those that are missing.
#pragma once

#include "host/cloudd/foldersync.h"

namespace cloudd {

class MarkJob final : public Job {
public:
    struct Result {
        bool isSupported = false; ///< by the disk of one of the folders
        qint64 missing = 0;       ///< before the repair
        qint64 repaired = 0;
    };
    using Ended = std::function<void(State, const Result&)>;

    MarkJob(Store& store, const QString& userId, bool repair, Ended ended);
    Step step() override;

private:
    bool advance();
    void look(const QString& path);

    SyncRecords m_records;
    bool m_repair;
    Ended m_ended;
    Result m_result;
    std::vector<SyncFolder> m_folders; ///< the last one is looked at
    QStringList m_files;               ///< absolute paths, still to be looked at
};

} // namespace cloudd

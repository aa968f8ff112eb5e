#include "host/cloudd/syncmarks.h"

#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <sys/xattr.h>

namespace cloudd {

namespace {

constexpr int FilesPerStep = 100;

} // namespace

MarkJob::MarkJob(Store& store, const QString& userId, bool repair, Ended ended)
    : m_records(store)
    , m_repair(repair)
    , m_ended(std::move(ended))
    , m_folders(m_records.list(userId))
{
}

Job::Step MarkJob::step()
{
    State state = State::Ok;
    try {
        if (advance())
            return Step::Again;
    } catch (const Error& error) {
        state = error.state;
    }
    m_ended(state, m_result);
    return Step::Ended;
}

bool MarkJob::advance()
{
    for (int count = 0; count < FilesPerStep && !m_files.isEmpty(); ++count)
        look(m_files.takeLast());
    if (!m_files.isEmpty())
        return true;
    if (m_folders.empty())
        return false;
    const SyncFolder folder = m_folders.back();
    m_folders.pop_back();
    const QMap<QString, SyncEntry> entries = m_records.listEntries(folder.id);
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        if (!entry->isFolder)
            m_files.append(folder.localPath + QLatin1Char('/') + entry.key());
    }
    return true;
}

void MarkJob::look(const QString& path)
{
    struct stat found { };
    const Descriptor file = openRegular(AT_FDCWD, QFile::encodeName(path), O_NOFOLLOW, found);
    if (!file)
        return;
    if (fgetxattr(file.get(), FolderSync::StateAttribute, nullptr, 0) >= 0) {
        m_result.isSupported = true;
        return;
    }
    if (errno != ENODATA)
        return;
    m_result.isSupported = true;
    ++m_result.missing;
    if (m_repair && fsetxattr(file.get(), FolderSync::StateAttribute, "synced", 6, 0) == 0)
        ++m_result.repaired;
}

} // namespace cloudd

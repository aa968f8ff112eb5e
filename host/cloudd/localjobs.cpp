#include "host/cloudd/localjobs.h"

#include <QFile>
#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace cloudd {

namespace {

/// Items read from the store at a time.
constexpr int PageItems = 200;

} // namespace

CacheJob::CacheJob(Store& store, Contents& contents, const LocalPlaces& places, QString fileId, Ended ended)
    : m_store(store)
    , m_contents(contents)
    , m_places(places)
    , m_fileId(std::move(fileId))
    , m_ended(std::move(ended))
{
}

Job::Step CacheJob::step()
{
    State state = State::Ok;
    try {
        if (!m_copy) {
            const Item file = m_store.findItemById(m_fileId);
            m_copy = std::make_unique<LocalCopy>(m_contents, file.sha256, file.size,
                m_places.openCacheFolder(file.id), QFile::encodeName(file.name));
        }
        if (m_copy->step())
            return Step::Again;
    } catch (const Error& error) {
        state = error.state;
    }
    m_copy.reset();
    m_ended(state);
    return Step::Ended;
}

SyncJob::SyncJob(Store& store, Contents& contents, const LocalPlaces& places, QString userId,
    QString folderId, int depth, Ended ended)
    : m_store(store)
    , m_contents(contents)
    , m_places(places)
    , m_userId(std::move(userId))
    , m_folderId(std::move(folderId))
    , m_depth(depth)
    , m_ended(std::move(ended))
{
}

Job::Step SyncJob::step()
{
    try {
        if (advance())
            return Step::Again;
    } catch (const Error& error) {
        m_copy.reset();
        if (m_result.state == State::Ok)
            m_result.state = error.state;
        if (!m_levels.empty() && error.state != State::StorageFailed)
            return Step::Again;
    }
    m_levels.clear();
    m_ended(m_result);
    return Step::Ended;
}

/// Processes a slice of a file, begins an item, or reads a page of items. False when nothing is left.
bool SyncJob::advance()
{
    if (!m_begun) {
        m_begun = true;
        const QString path = m_store.findPath(m_store.findItemById(m_folderId));
        m_levels.push_back({ m_folderId, m_places.documentsPath(m_userId, path),
            m_places.openDocumentsFolder(m_userId, path), {}, {}, true });
    }
    if (m_copy) {
        if (m_copy->step())
            return true;
        const auto copy = std::move(m_copy);
        if (copy->hasWritten()) {
            ++m_result.files;
            m_result.bytes += m_copied.size;
        }
        if (copy->hasKept())
            ++m_result.kept;
        if (m_copied.sha256 != m_lastCopied)
            m_store.recordLocalCopy(m_copied.id, m_copied.sha256);
        return true;
    }
    Level& level = m_levels.back();
    if (!level.items.empty()) {
        const Item item = std::move(level.items.back());
        level.items.pop_back();
        start(item);
        return true;
    }
    if (level.hasMore) {
        level.items = m_store.listChildren(level.folderId, level.lastName, PageItems);
        level.hasMore = level.items.size() == PageItems;
        if (!level.items.empty())
            level.lastName = level.items.back().name;
        std::reverse(level.items.begin(), level.items.end());
        return true;
    }
    m_levels.pop_back();
    return !m_levels.empty();
}

void SyncJob::start(const Item& item)
{
    const QByteArray name = QFile::encodeName(item.name);
    const Descriptor& here = m_levels.back().local;
    const QString path = m_levels.back().path + QLatin1Char('/') + item.name;
    if (!item.isFolder) {
        checkPathLength(path);
        // Read again: the file may have a new version by now.
        m_copied = m_store.findItemById(item.id);
        m_lastCopied = m_store.findLocalCopy(item.id);
        m_copy = std::make_unique<LocalCopy>(m_contents, m_copied.sha256, m_copied.size,
            Descriptor(fcntl(here.get(), F_DUPFD_CLOEXEC, 0)), name, m_lastCopied);
        return;
    }
    if (static_cast<int>(m_levels.size()) <= m_depth)
        m_levels.push_back({ item.id, checkPathLength(path), enterFolder(here, name), {}, {}, true });
}

} // namespace cloudd

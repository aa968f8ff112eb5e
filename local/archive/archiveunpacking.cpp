// "Tools.decompress".
#include "exports/zipfile.h"
#include "framework/pagewatch.h"
#include "framework/request.h"
#include "krt/dirs.h"
#include "local/archive/archives.h"
#include "local/archive/unpackedtree.h"
#include "local/pageturns.h"

#include <QElapsedTimer>
#include <QFile>
#include <cerrno>
#include <cmath>
#include <ctime>
#include <fcntl.h>
#include <map>
#include <sys/statvfs.h>

namespace jsapi {

namespace {

constexpr qint64 UnpackSliceMs = 8;
constexpr unsigned UnpackStepBytes = 1 << 16;
constexpr int MaxShownName = 200;

/// An entry's time is that of a clock on the wall.
timespec readTime(const tm_unz& date)
{
    std::tm parts {};
    parts.tm_year = static_cast<int>(date.tm_year) - 1900;
    parts.tm_mon = static_cast<int>(date.tm_mon);
    parts.tm_mday = static_cast<int>(date.tm_mday);
    parts.tm_hour = static_cast<int>(date.tm_hour);
    parts.tm_min = static_cast<int>(date.tm_min);
    parts.tm_sec = static_cast<int>(date.tm_sec);
    parts.tm_isdst = -1;
    return { std::mktime(&parts), 0 };
}

class DecompressRequest final : public KJsRequestFor<DecompressResult> {
public:
    static Answer<Promise<DecompressResult>> start(const JSContextEnv& page, const DecompressOptions& options)
    {
        auto request = std::make_unique<DecompressRequest>(page, options);
        takeTurns(
            page, request.get(), [self = request.get()](QByteArray& buffer) { return self->work(buffer); });
        return promise(page, std::move(request));
    }

    DecompressRequest(const JSContextEnv& page, const DecompressOptions& options)
        : m_watch(page)
        , m_options(options)
    {
    }

private:
    using Step = bool (DecompressRequest::*)(QByteArray&);

    /// Does steps for some milliseconds.
    Slice work(QByteArray& buffer)
    {
        QElapsedTimer time;
        time.start();
        do {
            if (m_watch.isGone())
                fail(ArchiveNotWritten / m_options.folder);
            else if ((this->*m_step)(buffer))
                continue;
            return Slice::Ended;
        } while (time.elapsed() < UnpackSliceMs);
        return Slice::Worked;
    }

    // Each step returns whether there is another one.

    bool begin(QByteArray&)
    {
        m_file = openRegularFile(m_options.path);
        // The suite looks at what has the path now, which must be what was opened.
        if (!m_file || !krt::dirs::isFileFormatSafe(m_options.path) || !m_file.isAt(m_options.path))
            return fail(ArchivePathIsIllegal);
        m_folder = WritablePath::check(m_options.folder);
        if (!m_folder)
            return fail(ArchiveNewPathIsIllegal);
        m_archive.emplace(m_file.number());
        if (!*m_archive)
            return fail(ArchiveDamaged / m_options.path);
        m_step = &DecompressRequest::checkEntry;
        return true;
    }

    /// Looks at an entry as the archive lists it, before anything is written.
    bool checkEntry(QByteArray&)
    {
        const ZipReader::Step next = m_archive->next(m_entry);
        if (next == ZipReader::Step::Damaged)
            return fail(ArchiveDamaged / m_options.path);
        if (next == ZipReader::Step::End) {
            m_step = &DecompressRequest::makeTree;
            return true;
        }
        if (++m_entries > MaxArchiveEntries)
            return fail(ArchiveTooManyEntries / m_options.path);
        const auto name = decodeEntryName(m_entry.storedName, m_entry.hasUtf8Flag());
        if (!name || !isEntryName(*name))
            return refuseEntry();
        m_name = *name;
        const bool isDirectory = m_name.back() == '/';
        const mode_t type = m_entry.unixMode() & S_IFMT;
        if (type != 0 && type != static_cast<mode_t>(isDirectory ? S_IFDIR : S_IFREG))
            return refuseEntry(); // a link, a device and the like
        if (m_entry.isEncrypted())
            return fail(ArchiveEncrypted / shownName());
        const auto method = m_entry.info.compression_method;
        if ((method != 0 && method != Z_DEFLATED) || (isDirectory && m_entry.info.uncompressed_size != 0))
            return refuseEntry();
        if (isClosed(m_folder->string()) || isClosed(QFile::decodeName(m_folder->above().realPath())))
            return refuseEntry();
        m_declared += static_cast<double>(m_entry.info.uncompressed_size);
        return m_declared <= m_options.maxBytes || fail(ArchiveTooLarge / m_options.path);
    }

    /// Whether the place of the entry is one that the suite has closed to pages, or can not be asked about.
    bool isClosed(const QString& folder) const
    {
        // Behind the directory that is there are the names of those that are not.
        QString path = folder;
        if (folder != m_folder->string()) {
            for (const QByteArray& name : m_folder->names())
                path += QLatin1Char('/') + QFile::decodeName(name);
        }
        const QByteArray name = QByteArray::fromStdString(m_name);
        const QString below = QFile::decodeName(name);
        return QFile::encodeName(below) != name || isClosedToPages(path + QLatin1Char('/') + below);
    }

    bool makeTree(QByteArray&)
    {
        m_tree = UnpackedTree::make(*m_folder);
        if (!m_tree)
            return failToWrite(errno);
        struct statvfs space { };
        if (fstatvfs(m_tree->root().number(), &space) == 0
            && m_declared > static_cast<double>(space.f_bavail) * static_cast<double>(space.f_frsize))
            return failToWrite(ENOSPC);
        m_archive->rewind();
        m_step = &DecompressRequest::beginEntry;
        return true;
    }

    bool beginEntry(QByteArray&)
    {
        const ZipReader::Step next = m_archive->next(m_entry);
        if (next == ZipReader::Step::Damaged)
            return fail(ArchiveDamaged / m_options.path);
        if (next == ZipReader::Step::End)
            return finish();
        // The same as before, unless the file has been changed meanwhile.
        const auto name = decodeEntryName(m_entry.storedName, m_entry.hasUtf8Flag());
        if (!name || !isEntryName(*name) || m_seen++ == m_entries)
            return fail(ArchiveDamaged / m_options.path);
        m_name = *name;
        if (m_name.back() == '/')
            return m_tree->makeDirectory(m_name) || refusePlace(errno);
        m_output = m_tree->makeFile(m_name);
        if (!m_output)
            return refusePlace(errno);
        if (!m_archive->open() || !takeRange())
            return fail(ArchiveDamaged / shownName());
        m_left = m_entry.info.uncompressed_size;
        m_step = &DecompressRequest::writeBytes;
        return true;
    }

    /// Whether no other entry has had the stored bytes of this one: an archive that is small may not become large so.
    bool takeRange()
    {
        if (m_entry.info.compressed_size == 0)
            return true;
        const std::uint64_t begin = m_archive->position();
        const std::uint64_t end = begin + m_entry.info.compressed_size;
        const auto after = m_ranges.upper_bound(begin);
        if (end < begin || (after != m_ranges.end() && after->first < end)
            || (after != m_ranges.begin() && std::prev(after)->second > begin))
            return false;
        m_ranges.emplace_hint(after, begin, end);
        return true;
    }

    bool writeBytes(QByteArray& buffer)
    {
        const int count = m_archive->read(buffer.data(), UnpackStepBytes);
        if (count < 0 || static_cast<std::uint64_t>(count) > m_left || (count == 0) != (m_left == 0))
            return fail(ArchiveDamaged / shownName());
        if (count == 0)
            return endEntry();
        m_left -= static_cast<std::uint64_t>(count);
        m_bytes += count;
        if (static_cast<double>(m_bytes) > m_options.maxBytes)
            return fail(ArchiveTooLarge / m_options.path);
        return writeAll(m_output, buffer.constData(), count) || failToWrite(errno);
    }

    bool endEntry()
    {
        if (!m_archive->close())
            return fail(ArchiveDamaged / shownName());
        const timespec time = readTime(m_entry.info.tmu_date);
        const timespec times[] { time, time };
        (void)futimens(m_output.number(), times);
        // What pages may not copy they may not unpack: programs and the like.
        const QString path = QFile::decodeName(m_tree->pathOf(m_name));
        if (!m_output.isAt(path) || !krt::dirs::isFileFormatSafe(path))
            return refuseEntry();
        m_output = FileDescriptor();
        ++m_files;
        m_step = &DecompressRequest::beginEntry;
        return true;
    }

    bool finish()
    {
        const UnpackedTree::Placement placement = m_tree->place(m_options.overwrite);
        if (placement.ended == UnpackedTree::Ended::Done)
            resolve({ m_folder->string(), m_files, m_bytes });
        else if (placement.ended == UnpackedTree::Ended::Exists)
            fail(ArchiveTargetExists / (m_folder->string() + QFile::decodeName(placement.name)));
        else
            failToWrite(placement.error);
        return false;
    }

    QString shownName() const
    {
        const auto name = decodeEntryName(m_entry.storedName, false);
        return QString::fromStdString(*name).left(MaxShownName);
    }
    bool refuseEntry() { return fail(ArchiveEntryRefused / shownName()); }
    /// Two entries of one name, one below a file, and the like.
    bool refusePlace(int error)
    {
        return error == EEXIST || error == ENOTDIR || error == EISDIR || error == ELOOP
                || error == ENAMETOOLONG
            ? refuseEntry()
            : failToWrite(error);
    }
    bool failToWrite(int error)
    {
        const bool isFull = error == ENOSPC || error == EDQUOT || error == EFBIG;
        return fail((isFull ? ArchiveNoSpace : ArchiveNotWritten) / m_folder->string());
    }
    bool fail(const Refusal& refusal)
    {
        m_output = FileDescriptor();
        m_tree.reset();
        reject(refusal);
        return false;
    }

    PageWatch m_watch;
    DecompressOptions m_options;
    Step m_step = &DecompressRequest::begin;
    FileDescriptor m_file;
    std::optional<WritablePath> m_folder;
    std::optional<ZipReader> m_archive;
    ZipEntry m_entry;
    std::string m_name; ///< of the entry
    std::size_t m_entries = 0;
    std::size_t m_seen = 0;
    double m_declared = 0;
    std::unique_ptr<UnpackedTree> m_tree;
    FileDescriptor m_output;
    std::map<std::uint64_t, std::uint64_t> m_ranges; ///< of stored bytes that have been read: begin and end
    std::uint64_t m_left = 0;
    std::int32_t m_files = 0;
    qlonglong m_bytes = 0;
};

} // namespace

Answer<Promise<DecompressResult>> unpackArchive(const JSContextEnv& page, const DecompressOptions& options)
{
    if (!(options.maxBytes >= 0))
        return WrongParameters;
    return DecompressRequest::start(page, options);
}

} // namespace jsapi

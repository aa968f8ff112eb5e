// "Tools.compress".
#include "exports/newfile.h"
#include "exports/zipfile.h"
#include "exports/zipsources.h"
#include "framework/pagewatch.h"
#include "framework/request.h"
#include "krt/dirs.h"
#include "local/archive/archives.h"
#include "local/pageturns.h"

#include <QElapsedTimer>
#include <QFile>
#include <cerrno>
#include <unistd.h>

namespace jsapi {

namespace {

constexpr int MaxLevel = 9;
constexpr qint64 SliceMs = 8;
constexpr std::size_t StepBytes = 1 << 16;

QString decode(const std::filesystem::path& path)
{
    return QFile::decodeName(path.c_str());
}

class CompressRequest final : public KJsRequestFor<CompressResult> {
public:
    static Answer<Promise<CompressResult>> start(const JSContextEnv& page, const CompressOptions& options)
    {
        auto request = std::make_unique<CompressRequest>(page, options);
        takeTurns(
            page, request.get(), [self = request.get()](QByteArray& buffer) { return self->work(buffer); });
        return promise(page, std::move(request));
    }

    CompressRequest(const JSContextEnv& page, const CompressOptions& options)
        : m_watch(page)
        , m_options(options)
    {
    }

private:
    using Step = bool (CompressRequest::*)(QByteArray&);

    /// Does steps for some milliseconds.
    Slice work(QByteArray& buffer)
    {
        QElapsedTimer time;
        time.start();
        do {
            if (m_watch.isGone())
                fail(ArchiveNotWritten / m_options.path);
            else if ((this->*m_step)(buffer))
                continue;
            return Slice::Ended;
        } while (time.elapsed() < SliceMs);
        return Slice::Worked;
    }

    // Each step returns whether there is another one.

    bool begin(QByteArray&)
    {
        m_target = WritablePath::check(m_options.path);
        if (!m_target)
            return fail(ArchiveNewPathIsIllegal);
        if (const auto present = m_target->look()) {
            const auto led = m_target->look(true);
            if (!m_options.overwrite)
                return fail(ArchiveTargetExists / m_target->string());
            if (!led || !S_ISREG(led->st_mode))
                return fail(ArchiveNotWritten / m_target->string());
            m_replaced = identify(*led);
        }
        std::vector<std::filesystem::path> sources;
        for (const std::string& file : m_options.files) {
            const QString path = QString::fromStdString(file);
            const QByteArray name = QFile::encodeName(path);
            if (path.isEmpty() || path.contains(QChar::Null) || QFile::decodeName(name) != path)
                return fail(ArchiveSourceRefused / path);
            sources.emplace_back(name.toStdString());
        }
        m_search.emplace(std::move(sources));
        m_step = &CompressRequest::search;
        return true;
    }

    bool search(QByteArray&)
    {
        if (const std::int32_t error = m_search->step()) {
            const QString path = decode(m_search->failed());
            return fail(
                (error == VEXLITE_ZIP_NOT_FOUND ? ArchiveSourceMissing : ArchiveSourceRefused) / path);
        }
        if (m_search->count() > MaxArchiveEntries)
            return fail(ArchiveTooManyEntries / m_target->string());
        if (m_search->hasEnded()) {
            m_sources = m_search->take();
            m_search.reset();
            m_step = &CompressRequest::makeFile;
        }
        return true;
    }

    bool makeFile(QByteArray&)
    {
        if (!m_target->name())
            return fail(ArchiveNotWritten / m_target->string());
        m_file.emplace(m_target->above().number(), 0666);
        if (*m_file)
            m_archive.emplace(m_file->file().number());
        if (!m_archive || !*m_archive)
            return failToWrite(
                errno == ENOSPC || errno == EDQUOT ? VEXLITE_ZIP_NO_SPACE : VEXLITE_ZIP_WRITE_FAILED);
        m_step = &CompressRequest::beginEntry;
        return true;
    }

    bool beginEntry(QByteArray&)
    {
        if (m_next == m_sources.size())
            return finish();
        const ZipSource& source = m_sources[m_next];
        struct stat facts { };
        const bool isDirectory = source.entryName.back() == '/';
        if (isDirectory) {
            if (stat(source.path.c_str(), &facts) != 0 || !S_ISDIR(facts.st_mode))
                return refuseSource();
        } else {
            const QString path = decode(source.path);
            m_source = openRegularFile(QByteArray(source.path.c_str()));
            // The suite looks at what has the path now, which must be what was opened.
            if (!m_source || !krt::dirs::isFileFormatSafe(path) || !m_source.isAt(path)
                || fstat(m_source.number(), &facts) != 0)
                return refuseSource();
            if (identify(facts) == m_replaced) {
                // An older archive in one of the directories is left out; a file that was named would be lost.
                if (source.entryName.find('/') == std::string::npos)
                    return refuseSource();
                ++m_next;
                return true;
            }
        }
        m_left = facts.st_size;
        if (const std::int32_t error = m_archive->begin(source.entryName, facts, m_options.level))
            return failToWrite(error);
        m_step = isDirectory ? &CompressRequest::endEntry : &CompressRequest::addBytes;
        m_files += isDirectory ? 0 : 1;
        return true;
    }

    bool addBytes(QByteArray& buffer)
    {
        // A byte more than the size says that the file has grown, or that it has no size.
        const ssize_t count = read(m_source.number(), buffer.data(), m_left ? StepBytes : 1);
        if (count < 0 && errno == EINTR)
            return true;
        if (count < 0 || count > m_left || (count == 0) != (m_left == 0))
            return refuseSource();
        if (count == 0) {
            m_step = &CompressRequest::endEntry;
            return true;
        }
        m_left -= count;
        const std::int32_t error = m_archive->write(buffer.constData(), static_cast<std::size_t>(count));
        return !error || failToWrite(error);
    }

    bool endEntry(QByteArray&)
    {
        if (const std::int32_t error = m_archive->end())
            return failToWrite(error);
        ++m_next;
        m_step = &CompressRequest::beginEntry;
        return true;
    }

    bool finish()
    {
        if (const std::int32_t error = m_archive->finish())
            return failToWrite(error);
        struct stat facts { };
        const auto present = m_target->look();
        const int descriptor = m_file->file().number();
        if (fstat(descriptor, &facts) != 0
            || (m_replaced && present && fchmod(descriptor, present->st_mode & 0777) != 0)
            || !m_file->take(*m_target->name(), m_options.overwrite))
            return fail((errno == EEXIST ? ArchiveTargetExists : ArchiveNotWritten) / m_target->string());
        resolve({ m_target->string(), m_files, facts.st_size });
        return false;
    }

    bool refuseSource() { return fail(ArchiveSourceRefused / decode(m_sources[m_next].path)); }
    bool failToWrite(std::int32_t error)
    {
        return fail(
            (error == VEXLITE_ZIP_NO_SPACE ? ArchiveNoSpace : ArchiveNotWritten) / m_target->string());
    }
    bool fail(const Refusal& refusal)
    {
        reject(refusal);
        return false;
    }

    PageWatch m_watch;
    CompressOptions m_options;
    Step m_step = &CompressRequest::begin;
    std::optional<WritablePath> m_target;
    std::optional<FileId> m_replaced;
    std::optional<ZipSourceSearch> m_search;
    std::vector<ZipSource> m_sources;
    std::size_t m_next = 0;
    FileDescriptor m_source;
    off_t m_left = 0; ///< of the open source
    std::int32_t m_files = 0;
    std::optional<NewFile> m_file;
    std::optional<ZipWriter> m_archive;
};

} // namespace

Answer<Promise<CompressResult>> compressFiles(const JSContextEnv& page, const CompressOptions& options)
{
    if (options.level < 0 || options.level > MaxLevel)
        return WrongParameters;
    return CompressRequest::start(page, options);
}

} // namespace jsapi

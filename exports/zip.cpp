// Zip archives: made of files and directories, and files added to them.
#include "exports/compression.h"
#include "exports/replacementfile.h"
#include "exports/zipfile.h"
#include "exports/zipsources.h"
#include "framework/export.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace jsapi;

constexpr int MaxLevel = 9;

/// An open file or directory.
class Descriptor {
public:
    Descriptor(int directory, const char* path, int flags)
        : m_number(openat(directory, path, flags | O_CLOEXEC))
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            close(m_number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    explicit operator bool() const noexcept { return m_number >= 0; }
    int number() const noexcept { return m_number; }

private:
    int m_number;
};

std::int32_t convertErrno(int error)
{
    return error == ENOSPC || error == EDQUOT || error == EFBIG ? VEXLITE_ZIP_NO_SPACE : VEXLITE_ZIP_WRITE_FAILED;
}

/// Where a link leads, so that its target is replaced and not the link.
fs::path followLink(const fs::path& path)
{
    std::error_code error;
    if (!fs::is_symlink(path, error))
        return path;
    const fs::path target = fs::weakly_canonical(path, error);
    return error ? path : target;
}

/// An archive while it is made: a new file beside its place, which it takes when it is whole.
class NewArchive {
public:
    explicit NewArchive(const fs::path& path)
        : m_path(followLink(path))
        , m_name(m_path.filename().native())
        , m_directory(AT_FDCWD, m_path.has_parent_path() ? m_path.parent_path().c_str() : ".", O_PATH | O_DIRECTORY)
        , m_file(m_directory.number())
        , m_error(errno)
    {
    }

    /// Why there is no new file, or VEXLITE_ZIP_OK.
    std::int32_t error() const { return m_file ? std::int32_t { VEXLITE_ZIP_OK } : convertErrno(m_error); }
    int descriptor() const noexcept { return m_file.descriptor(); }
    /// What is in its place now.
    Descriptor openOld() const { return Descriptor(m_directory.number(), m_name.c_str(), O_RDONLY | O_NONBLOCK); }
    bool isThere() const
    {
        struct stat facts { };
        return fstatat(m_directory.number(), m_name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0;
    }

    std::int32_t takePlace()
    {
        struct stat old { };
        const bool replaces = fstatat(m_directory.number(), m_name.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0;
        if (replaces && (!S_ISREG(old.st_mode) || fchmod(m_file.descriptor(), old.st_mode & 0777) != 0))
            return VEXLITE_ZIP_WRITE_FAILED;
        if (!m_file.take(m_name, true))
            return convertErrno(errno);
        // The new name on disk as well, where the directory may be read.
        const Descriptor readable(m_directory.number(), ".", O_RDONLY | O_DIRECTORY);
        if (readable)
            fsync(readable.number());
        return VEXLITE_ZIP_OK;
    }

private:
    fs::path m_path;
    std::string m_name;
    Descriptor m_directory;
    ReplacementFile m_file;
    int m_error;
};

std::int32_t addContent(ZipWriter& archive, int file, off_t size)
{
    std::array<char, 1 << 16> buffer;
    off_t left = size;
    for (;;) {
        // A byte more than the size says that the file has grown, or tells none.
        const ssize_t count = read(file, buffer.data(), left ? std::min<off_t>(left, buffer.size()) : 1);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0 || (count == 0) != (left == 0))
            return VEXLITE_ZIP_UNREADABLE;
        if (count == 0)
            return VEXLITE_ZIP_OK;
        if (const std::int32_t error = archive.write(buffer.data(), static_cast<std::size_t>(count)))
            return error;
        left -= count;
    }
}

/// Adds a file or a directory, as its entry's name says.
std::int32_t addSource(ZipWriter& archive, const ZipSource& source, int level)
{
    const bool isDirectory = source.entryName.back() == '/';
    const Descriptor file(
        AT_FDCWD, source.path.c_str(), isDirectory ? O_PATH | O_DIRECTORY : O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat facts { };
    if (!file || fstat(file.number(), &facts) != 0)
        return errno == ENOENT || errno == ENOTDIR ? VEXLITE_ZIP_NOT_FOUND : VEXLITE_ZIP_UNREADABLE;
    if (!isDirectory && !S_ISREG(facts.st_mode))
        return VEXLITE_ZIP_UNREADABLE;
    std::int32_t error = archive.begin(source.entryName, facts, level);
    if (!error && !isDirectory)
        error = addContent(archive, file.number(), facts.st_size);
    return error ? error : archive.end();
}

std::int32_t compressToZipFile(const fs::path& path, std::vector<fs::path> sources, int level)
{
    // Before there is a new file, which could be in a source.
    ZipSourceSearch search(std::move(sources));
    while (!search.hasEnded()) {
        if (const std::int32_t error = search.step())
            return error;
    }
    const std::vector<ZipSource> found = search.take();
    NewArchive file(path);
    if (file.error())
        return file.error();
    ZipWriter archive(file.descriptor(), false);
    if (!archive)
        return VEXLITE_ZIP_NO_MEMORY;
    for (const ZipSource& source : found) {
        std::error_code none;
        if (fs::equivalent(source.path, path, none)) // an older archive in one of the directories
            continue;
        if (const std::int32_t error = addSource(archive, source, level))
            return error;
    }
    const std::int32_t error = archive.finish();
    return error ? error : file.takePlace();
}

/// Whether an archive has an entry. Nothing when it is none, or damaged.
std::optional<bool> hasEntry(int descriptor, const std::string& name)
{
    ZipReader reader(descriptor);
    if (!reader)
        return std::nullopt;
    bool isFound = false;
    ZipEntry entry;
    ZipReader::Step step;
    while ((step = reader.next(entry)) == ZipReader::Step::Entry)
        isFound = isFound || decodeEntryName(entry.storedName, entry.hasUtf8Flag()) == name;
    return step == ZipReader::Step::End ? std::optional(isFound) : std::nullopt;
}

std::int32_t copyBytes(int from, int to)
{
    constexpr std::size_t Part = 1 << 30;
    ssize_t count = 0;
    while ((count = copy_file_range(from, nullptr, to, nullptr, Part, 0)) > 0) { }
    // What the file systems can not copy between them is read and written.
    std::array<char, 1 << 16> buffer;
    while (count < 0 ? errno != ENOSPC && errno != EDQUOT && errno != EFBIG : true) {
        count = read(from, buffer.data(), buffer.size());
        if (count < 0)
            return VEXLITE_ZIP_NOT_ARCHIVE;
        if (count == 0)
            return VEXLITE_ZIP_OK;
        for (ssize_t written = 0; written < count;) {
            const ssize_t part = write(to, buffer.data() + written, static_cast<std::size_t>(count - written));
            if (part < 0)
                return convertErrno(errno);
            written += part;
        }
    }
    return convertErrno(errno);
}

/// Takes all entries over but one.
std::int32_t copyEntries(ZipReader& from, ZipWriter& to, const std::string& without)
{
    ZipEntry entry;
    ZipReader::Step step;
    while ((step = from.next(entry)) == ZipReader::Step::Entry) {
        if (decodeEntryName(entry.storedName, entry.hasUtf8Flag()) == without)
            continue;
        if (entry.storedName.empty() || entry.storedName.find('\0') != std::string::npos || !from.open(true))
            return VEXLITE_ZIP_NOT_ARCHIVE;
        const std::int32_t error = to.copy(from, entry);
        if (error)
            return error;
        (void)from.close();
    }
    return step == ZipReader::Step::End ? VEXLITE_ZIP_OK : VEXLITE_ZIP_NOT_ARCHIVE;
}

std::int32_t addToZipFile(const fs::path& path, const ZipSource& source, int level, bool replaces)
{
    if (fs::is_directory(source.path))
        return VEXLITE_ZIP_UNREADABLE;
    NewArchive file(path);
    if (file.error())
        return file.error();
    bool isFound = false;
    const bool isThere = file.isThere();
    const Descriptor old = file.openOld();
    if (isThere) {
        const auto found = old ? hasEntry(old.number(), source.entryName) : std::nullopt;
        if (!found)
            return VEXLITE_ZIP_NOT_ARCHIVE;
        isFound = *found;
    }
    if (isFound && !replaces)
        return VEXLITE_ZIP_EXISTS;
    std::int32_t error = VEXLITE_ZIP_OK;
    const bool appends = isThere && !isFound;
    if (appends && (lseek(old.number(), 0, SEEK_SET) != 0 || (error = copyBytes(old.number(), file.descriptor()))))
        return error ? error : std::int32_t { VEXLITE_ZIP_NOT_ARCHIVE };
    ZipWriter archive(file.descriptor(), appends);
    if (!archive)
        return appends ? VEXLITE_ZIP_NOT_ARCHIVE : VEXLITE_ZIP_NO_MEMORY;
    std::string comment;
    if (isFound) {
        ZipReader reader(old.number());
        if (!reader)
            return VEXLITE_ZIP_NOT_ARCHIVE;
        comment = reader.comment();
        error = copyEntries(reader, archive, source.entryName);
    }
    if (error || (error = addSource(archive, source, level)))
        return error;
    error = archive.finish(isFound ? comment.c_str() : nullptr);
    return error ? error : file.takePlace();
}

/// What a body returns, or the code of the exception that it threw. Where the file system's own have no better one, a
/// path can not be looked at.
template <typename Body> std::int32_t convertExceptions(Body body) noexcept
{
    return withoutExceptions([&]() -> std::int32_t {
        try {
            return body();
        } catch (const fs::filesystem_error&) {
            return VEXLITE_ZIP_UNREADABLE;
        }
    });
}

bool isLevel(std::int32_t level)
{
    return level >= -1 && level <= MaxLevel;
}

std::int32_t addFile(const VexliteChar16* zipPath, const VexliteChar16* filePath, const VexliteChar16* entryName,
    std::int32_t level, bool replaces)
{
    return convertExceptions([&]() -> std::int32_t {
        const auto path = convertToUtf8(zipPath);
        const auto file = convertToUtf8(filePath);
        if (!path || path->empty() || !file || file->empty() || !isLevel(level))
            return VEXLITE_ZIP_BAD_ARGUMENT;
        const auto name = entryName ? convertToUtf8(entryName) : fs::path(*file).filename().native();
        if (!name || !isEntryName(*name) || name->back() == '/')
            return VEXLITE_ZIP_BAD_NAME;
        return addToZipFile(*path, { *file, *name }, level, replaces);
    });
}

} // namespace

VEXLITE_EXPORT std::int32_t _XCompressToZipFile(
    const VexliteChar16* zipPath, const VexliteChar16* const* sources, std::uint32_t count, std::int32_t level)
{
    return convertExceptions([&]() -> std::int32_t {
        const auto path = convertToUtf8(zipPath);
        if (!path || path->empty() || !sources || !count || !isLevel(level))
            return VEXLITE_ZIP_BAD_ARGUMENT;
        std::vector<fs::path> paths;
        for (std::uint32_t i = 0; i < count; ++i) {
            const auto source = convertToUtf8(sources[i]);
            if (!source || source->empty())
                return VEXLITE_ZIP_BAD_ARGUMENT;
            paths.emplace_back(*source);
        }
        return compressToZipFile(*path, std::move(paths), level);
    });
}

VEXLITE_EXPORT std::int32_t _XAppendFileToZipFile(const VexliteChar16* zipPath, const VexliteChar16* file,
    const VexliteChar16* entryName, std::int32_t level)
{
    return addFile(zipPath, file, entryName, level, false);
}

VEXLITE_EXPORT std::int32_t _XAddFileToZipFile(const VexliteChar16* zipPath, const VexliteChar16* file,
    const VexliteChar16* entryName, std::int32_t level)
{
    return addFile(zipPath, file, entryName, level, true);
}

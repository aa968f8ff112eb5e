// Zip archives: made of files and directories, and files added to them.
#include "exports/compression.h"
#include "exports/newfile.h"
#include "exports/zipdirectory.h"
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

/// Opens what is in a directory, as `flags` say.
Descriptor openIn(int directory, const char* path, int flags)
{
    return Descriptor(openat(directory, path, flags | O_CLOEXEC));
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
        , m_directory(openIn(
              AT_FDCWD, m_path.has_parent_path() ? m_path.parent_path().c_str() : ".", O_PATH | O_DIRECTORY))
        , m_file(m_directory.number(), 0666)
        , m_error(errno)
    {
    }

    /// Why there is no new file, or VEXLITE_ZIP_OK.
    std::int32_t error() const
    {
        return m_file ? std::int32_t { VEXLITE_ZIP_OK } : convertWriteError(m_error);
    }
    int descriptor() const noexcept { return m_file.file().number(); }
    /// What is in its place now.
    Descriptor openOld() const { return openIn(m_directory.number(), m_name.c_str(), O_RDONLY | O_NONBLOCK); }
    bool isThere() const
    {
        struct stat facts { };
        return fstatat(m_directory.number(), m_name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0;
    }

    std::int32_t takePlace()
    {
        struct stat old { };
        const bool replaces = fstatat(m_directory.number(), m_name.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0;
        if (replaces && (!S_ISREG(old.st_mode) || fchmod(descriptor(), old.st_mode & 0777) != 0))
            return VEXLITE_ZIP_WRITE_FAILED;
        if (!m_file.take(m_name.c_str(), true))
            return convertWriteError(errno);
        // The new name on disk as well, where the directory may be read.
        const Descriptor readable = openIn(m_directory.number(), ".", O_RDONLY | O_DIRECTORY);
        if (readable)
            fsync(readable.number());
        return VEXLITE_ZIP_OK;
    }

private:
    fs::path m_path;
    std::string m_name;
    Descriptor m_directory;
    NewFile m_file;
    int m_error;
};

std::int32_t addContent(ZipWriter& archive, int file, off_t size)
{
    std::array<char, 1 << 16> buffer;
    off_t left = size;
    for (;;) {
        // A byte more than the size says that the file has grown, or that it has no size.
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
    const Descriptor file = openIn(
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
    ZipWriter archive(file.descriptor());
    if (!archive)
        return VEXLITE_ZIP_NO_MEMORY;
    for (const ZipSource& source : found) {
        std::error_code none;
        if (fs::equivalent(source.path, path, none)) {
            // An older archive in one of the directories is left out; a file that was named would be lost.
            if (source.entryName.find('/') == std::string::npos)
                return VEXLITE_ZIP_UNREADABLE;
            continue;
        }
        if (const std::int32_t error = addSource(archive, source, level))
            return error;
    }
    const std::int32_t error = archive.finish();
    return error ? error : file.takePlace();
}

/// What an archive that is to get an entry has already.
struct Present {
    std::uint64_t entries = 0;
    bool hasName = false;
    bool isBlank = false; ///< nothing but an end, so it is made anew
    std::string comment;
};

/// Nothing when it is no archive, or damaged.
std::optional<Present> lookThrough(int descriptor, const std::string& name)
{
    ZipReader reader(descriptor);
    if (!reader)
        return std::nullopt;
    Present present;
    present.isBlank = reader.isBlank();
    present.comment = reader.comment();
    ZipEntry entry;
    ZipReader::Step step;
    for (; (step = reader.next(entry)) == ZipReader::Step::Entry; ++present.entries)
        present.hasName = present.hasName || decodeEntryName(entry.storedName, entry.hasUtf8Flag()) == name;
    return step == ZipReader::Step::End ? std::optional(present) : std::nullopt;
}

std::int32_t addToZipFile(const fs::path& path, const ZipSource& source, int level, bool replaces)
{
    if (fs::is_directory(source.path))
        return VEXLITE_ZIP_UNREADABLE;
    NewArchive file(path);
    if (file.error())
        return file.error();
    const Descriptor old = file.openOld();
    std::optional<Present> present;
    if (file.isThere() && !(present = old ? lookThrough(old.number(), source.entryName) : std::nullopt))
        return VEXLITE_ZIP_NOT_ARCHIVE;
    if (present && present->hasName && !replaces)
        return VEXLITE_ZIP_EXISTS;
    const bool extends = present && !present->isBlank;
    if (extends) {
        std::uint64_t left = present->entries;
        struct stat facts { };
        const std::int32_t error = present->hasName
            ? copyArchiveWithout(source.entryName, old.number(), file.descriptor(), left)
            : fstat(old.number(), &facts) == 0
            ? copyPart(old.number(), 0, static_cast<std::uint64_t>(facts.st_size), file.descriptor())
            : VEXLITE_ZIP_NOT_ARCHIVE;
        if (error)
            return error;
        present->entries = left;
    }
    ZipWriter archive(file.descriptor(), extends ? std::optional(present->entries) : std::nullopt);
    if (!archive)
        return extends ? VEXLITE_ZIP_NOT_ARCHIVE : VEXLITE_ZIP_NO_MEMORY;
    std::int32_t error = addSource(archive, source, level);
    if (!error)
        error = archive.finish(present ? present->comment : std::string());
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

std::int32_t addFile(const VexliteChar16* zipPath, const VexliteChar16* filePath,
    const VexliteChar16* entryName, std::int32_t level, bool replaces)
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

VEXLITE_EXPORT std::int32_t _XCompressToZipFile(const VexliteChar16* zipPath,
    const VexliteChar16* const* sources, std::uint32_t count, std::int32_t level)
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

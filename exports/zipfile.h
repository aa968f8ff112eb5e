// Zip files through open descriptors, with minizip: names, writing, reading. Needs nothing of a suite, nor Qt. Whatever
// fails does so with one of the VEXLITE_ZIP codes. [any thread], an object on one at a time
#pragma once

#include "exports/vexlitejsapi.h"

#include <cstdio>
#include <memory>
#include <minizip/unzip.h>
#include <minizip/zip.h>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace jsapi {

/// Whether a name may stand in an archive, as it is written or found there: steps that are separated by single slashes
/// and lead down, in UTF-8. A slash at its end makes it the name of a directory. No control characters, no backslash
/// and no drive, which lead elsewhere on other systems; no step of more than 255 bytes, and no more than 100 of them.
bool isEntryName(std::string_view name);

/// The name of an entry in UTF-8. One that is not flagged as such and is none is of code page 437, as old programs
/// write it. Nothing for one that is flagged and is none.
std::optional<std::string> decodeEntryName(std::string_view stored, bool isFlagged);

/// UTF-16 that ends at a zero as UTF-8; nothing when it is null or has half a surrogate pair.
std::optional<std::string> convertToUtf8(const VexliteChar16* text);

/// What minizip reads and writes through. The descriptor stays the caller's, and its position is any afterwards.
class ZipStream {
public:
    explicit ZipStream(int descriptor);
    explicit operator bool() const noexcept { return bool(m_file); }

    /// The functions that minizip is to call. They hold until the stream ends.
    zlib_filefunc64_def functions();
    /// Gives the system what has been written. False when that, or any writing before, has failed.
    bool flush();
    /// Why writing failed first, as errno says; 0 when it has not.
    int error() const noexcept { return m_error; }

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> m_file;
    int m_error = 0;
};

/// An entry as an archive lists it.
struct ZipEntry {
    unz_file_info64 info {};
    std::string storedName;

    bool hasUtf8Flag() const { return info.flag & 0x800; }
    bool isEncrypted() const { return info.flag & 0x2041; }
    /// The type and permissions that a Unix system gave it; 0 when it comes from another one.
    mode_t unixMode() const;
};

/// Writes an archive, entry by entry.
class ZipWriter {
public:
    /// Of a new archive, or behind the entries that are present in the one that `descriptor` is open for.
    explicit ZipWriter(int descriptor, std::optional<std::uint64_t> present = {});
    ~ZipWriter();
    ZipWriter(const ZipWriter&) = delete;
    ZipWriter& operator=(const ZipWriter&) = delete;
    explicit operator bool() const noexcept { return m_zip; }

    /// Begins a file or a directory, whose name ends with a slash. `name` must be one that isEntryName passes.
    std::int32_t begin(const std::string& name, const struct stat& facts, int level);
    std::int32_t write(const void* bytes, std::size_t count);
    std::int32_t end();
    /// Ends the archive, on disk when it returns. The comment ends at its first zero.
    std::int32_t finish(const std::string& comment = {});

private:
    std::int32_t convert(int error) const;
    bool writeLargeCount(std::size_t commentLength);

    int m_descriptor;
    ZipStream m_stream;
    zipFile m_zip;
    std::uint64_t m_entries;
    std::size_t m_unflushed = 0; ///< bytes added since the system was told to write
};

/// Reads an archive, entry by entry.
class ZipReader {
public:
    explicit ZipReader(int descriptor);
    ~ZipReader();
    ZipReader(const ZipReader&) = delete;
    ZipReader& operator=(const ZipReader&) = delete;
    explicit operator bool() const noexcept { return m_unzip || isBlank(); }
    /// Whether there is nothing but the record of an end, which minizip does not take for an archive.
    bool isBlank() const noexcept { return m_blankComment.has_value(); }

    enum class Step { Entry, End, Damaged };
    /// Goes to the next entry, at first to the first one.
    Step next(ZipEntry& entry);
    void rewind() noexcept { m_isBefore = true; }

    /// Opens the content of the entry. False when it is damaged, or the method not known.
    bool open();
    /// Where the stored content of the open entry begins.
    std::uint64_t position() { return unzGetCurrentFileZStreamPos64(m_unzip); }
    /// The bytes read; 0 at the end, and less when the content is damaged.
    int read(void* bytes, unsigned count) { return unzReadCurrentFile(m_unzip, bytes, count); }
    /// Closes the content. False when it was read to its end and its checksum is wrong.
    bool close() { return unzCloseCurrentFile(m_unzip) == UNZ_OK; }

    /// Of the archive, up to its first zero.
    std::string comment();

private:
    ZipStream m_stream;
    unzFile m_unzip;
    std::optional<std::string> m_blankComment;
    bool m_isBefore = true;
};

} // namespace jsapi

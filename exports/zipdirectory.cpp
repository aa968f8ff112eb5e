#include "exports/zipdirectory.h"

#include "exports/vexlitejsapi.h"
#include "exports/zipfile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace jsapi {

namespace {

constexpr std::size_t EndSize = 22;
constexpr std::size_t LocatorSize = 20;
constexpr std::size_t LargeEndSize = 56;
constexpr std::size_t RecordSize = 46;
constexpr std::uint16_t Large16 = 0xffff;
constexpr std::uint32_t Large32 = 0xffffffff;
constexpr std::uint16_t LargeMadeBy = 3 << 8 | 45;
constexpr std::uint16_t LargeVersion = 45;

/// Nothing when the file has less.
std::optional<std::string> readPart(int file, std::uint64_t at, std::uint64_t count)
{
    std::string part(count, '\0');
    for (std::size_t done = 0; done < count;) {
        const ssize_t read = pread(file, part.data() + done, count - done, static_cast<off_t>(at + done));
        if (read <= 0)
            return std::nullopt;
        done += static_cast<std::size_t>(read);
    }
    return part;
}

std::int32_t writeBytes(int to, const char* bytes, std::size_t count)
{
    while (count) {
        const ssize_t written = write(to, bytes, count);
        if (written < 0 && errno != EINTR)
            return convertWriteError(errno);
        bytes += std::max<ssize_t>(written, 0);
        count -= static_cast<std::size_t>(std::max<ssize_t>(written, 0));
    }
    return VEXLITE_ZIP_OK;
}

struct Directory {
    std::uint64_t at = 0; ///< in the file
    std::uint64_t ahead =
        0; ///< the bytes in front of what offsets count from, such as a program that unpacks itself
    std::string records;
    std::string comment;
};

std::optional<Directory> readDirectory(int file, std::uint64_t fileSize)
{
    const std::uint64_t tailAt =
        fileSize - std::min<std::uint64_t>(fileSize, EndSize + Large16 + LocatorSize);
    const auto tail = readPart(file, tailAt, fileSize - tailAt);
    std::size_t end = tail ? tail->rfind("PK\5\6") : std::string::npos;
    while (end != std::string::npos
        && (tail->size() - end < EndSize
            || tail->size() - end != EndSize + readNumber<std::uint16_t>(*tail, end + 20)))
        end = end ? tail->rfind("PK\5\6", end - 1) : std::string::npos;
    if (end == std::string::npos)
        return std::nullopt;
    std::uint64_t size = readNumber<std::uint32_t>(*tail, end + 12);
    std::uint64_t offset = readNumber<std::uint32_t>(*tail, end + 16);
    std::uint64_t behind = tailAt + end;
    if (end >= LocatorSize && tail->compare(end - LocatorSize, 4, "PK\6\7") == 0) {
        // It is where the locator says, or right before it where something stands ahead of the archive.
        const std::uint64_t said = readNumber<std::uint64_t>(*tail, end - LocatorSize + 8);
        const std::uint64_t near =
            behind - LocatorSize - std::min<std::uint64_t>(behind - LocatorSize, LargeEndSize);
        std::optional<std::string> large;
        for (const std::uint64_t at : { said, near }) {
            if (at < fileSize && (large = readPart(file, at, LargeEndSize))
                && large->compare(0, 4, "PK\6\6") == 0) {
                size = readNumber<std::uint64_t>(*large, 40);
                offset = readNumber<std::uint64_t>(*large, 48);
                behind = at;
                break;
            }
            large.reset();
        }
        if (!large)
            return std::nullopt;
    }
    if (size > behind || offset > behind - size)
        return std::nullopt;
    Directory found { behind - size, behind - size - offset, {}, tail->substr(end + EndSize) };
    auto records = readPart(file, found.at, size);
    if (!records)
        return std::nullopt;
    found.records = std::move(*records);
    return found;
}

/// An entry's record in a directory.
struct Record {
    std::string bytes;
    std::size_t offsetAt = 0; ///< where in the bytes its offset is
    bool isLarge = false;     ///< of 64 bits, instead of 32
    std::uint64_t offset = 0;

    void setOffset(std::uint64_t value)
    {
        std::string number;
        isLarge ? appendNumber(number, value) : appendNumber(number, static_cast<std::uint32_t>(value));
        bytes.replace(offsetAt, number.size(), number);
    }
    std::optional<std::string> name() const
    {
        const bool isFlagged = readNumber<std::uint16_t>(bytes, 8) & 0x800;
        return decodeEntryName(
            std::string_view(bytes).substr(RecordSize, readNumber<std::uint16_t>(bytes, 28)), isFlagged);
    }
};

/// Finds the offset of 64 bits: in the field 1, behind the sizes that are as large.
bool findLargeOffset(Record& record)
{
    const std::string& bytes = record.bytes;
    std::size_t at = RecordSize + readNumber<std::uint16_t>(bytes, 28);
    const std::size_t end = at + readNumber<std::uint16_t>(bytes, 30);
    while (at + 4 <= end) {
        const std::size_t length = readNumber<std::uint16_t>(bytes, at + 2);
        if (readNumber<std::uint16_t>(bytes, at) == 1) {
            const std::size_t before = (readNumber<std::uint32_t>(bytes, 20) == Large32 ? 8u : 0u)
                + (readNumber<std::uint32_t>(bytes, 24) == Large32 ? 8u : 0u);
            record.offsetAt = at + 4 + before;
            record.isLarge = true;
            if (before + 8 > length || record.offsetAt + 8 > end)
                return false;
            record.offset = readNumber<std::uint64_t>(bytes, record.offsetAt);
            return true;
        }
        at += 4 + length;
    }
    return false;
}

/// The records of a directory, in its order; nothing when it is damaged.
std::optional<std::vector<Record>> splitRecords(const std::string& directory)
{
    std::vector<Record> records;
    for (std::size_t at = 0; at < directory.size();) {
        if (directory.size() - at < RecordSize || directory.compare(at, 4, "PK\1\2") != 0)
            return std::nullopt;
        const std::size_t length = RecordSize + readNumber<std::uint16_t>(directory, at + 28)
            + readNumber<std::uint16_t>(directory, at + 30) + readNumber<std::uint16_t>(directory, at + 32);
        if (length > directory.size() - at)
            return std::nullopt;
        constexpr std::size_t OffsetAt = 42;
        Record record { directory.substr(at, length), OffsetAt };
        record.offset = readNumber<std::uint32_t>(record.bytes, OffsetAt);
        if (record.offset == Large32 && !findLargeOffset(record))
            return std::nullopt;
        records.push_back(std::move(record));
        at += length;
    }
    return records;
}

} // namespace

std::int32_t convertWriteError(int error)
{
    return error == ENOSPC || error == EDQUOT || error == EFBIG ? VEXLITE_ZIP_NO_SPACE
                                                                : VEXLITE_ZIP_WRITE_FAILED;
}

std::string makeLargeEnd(std::uint64_t entries, std::uint64_t size, std::uint64_t offset)
{
    std::string records = "PK\6\6";
    appendNumber(records, std::uint64_t { LargeEndSize - 12 });
    appendNumber(records, LargeMadeBy);
    appendNumber(records, LargeVersion);
    appendNumber(records, std::uint64_t { 0 }); // the numbers of two disks
    appendNumber(records, entries);
    appendNumber(records, entries);
    appendNumber(records, size);
    appendNumber(records, offset);
    records += "PK\6\7";
    appendNumber(records, std::uint32_t { 0 });
    appendNumber(records, offset + size);
    appendNumber(records, std::uint32_t { 1 });
    return records;
}

std::int32_t copyPart(int from, std::uint64_t begin, std::uint64_t end, int to)
{
    auto at = static_cast<off_t>(begin);
    const auto left = [&] { return static_cast<std::size_t>(end - static_cast<std::uint64_t>(at)); };
    constexpr std::size_t Part = 1 << 30;
    ssize_t count = 1;
    while (left() && count > 0)
        count = copy_file_range(from, &at, to, nullptr, std::min(left(), Part), 0);
    if (count < 0 && convertWriteError(errno) == VEXLITE_ZIP_NO_SPACE)
        return VEXLITE_ZIP_NO_SPACE;
    // What the file systems can not copy between them is read and written.
    std::array<char, 1 << 16> buffer;
    while (left()) {
        count = pread(from, buffer.data(), std::min(left(), buffer.size()), at);
        if (count <= 0)
            return VEXLITE_ZIP_NOT_ARCHIVE;
        if (const std::int32_t error = writeBytes(to, buffer.data(), static_cast<std::size_t>(count)))
            return error;
        at += count;
    }
    return VEXLITE_ZIP_OK;
}

std::optional<std::string> readBlankArchive(int file)
{
    struct stat facts { };
    const auto directory = fstat(file, &facts) == 0
        ? readDirectory(file, static_cast<std::uint64_t>(facts.st_size))
        : std::nullopt;
    if (!directory || directory->at != 0 || !directory->records.empty())
        return std::nullopt;
    return directory->comment;
}

std::int32_t copyArchiveWithout(const std::string& name, int from, int to, std::uint64_t& left)
{
    struct stat facts { };
    const auto directory = fstat(from, &facts) == 0
        ? readDirectory(from, static_cast<std::uint64_t>(facts.st_size))
        : std::nullopt;
    auto records = directory ? splitRecords(directory->records) : std::nullopt;
    if (!records)
        return VEXLITE_ZIP_NOT_ARCHIVE;
    // An entry's bytes end where the next one's begin.
    std::vector<std::uint64_t> begins { directory->at - directory->ahead };
    for (const Record& record : *records)
        begins.push_back(record.offset);
    std::sort(begins.begin(), begins.end());
    if (begins.back() != directory->at - directory->ahead
        || std::adjacent_find(begins.begin(), begins.end()) != begins.end())
        return VEXLITE_ZIP_NOT_ARCHIVE;

    std::vector<std::pair<std::uint64_t, std::uint64_t>> gone; ///< the bytes of what goes
    std::vector<Record> kept;
    for (Record& record : *records) {
        if (record.name() != name)
            kept.push_back(std::move(record));
        else
            gone.emplace_back(record.offset, *std::upper_bound(begins.begin(), begins.end(), record.offset));
    }
    std::sort(gone.begin(), gone.end());
    gone.emplace_back(begins.back(), begins.back());
    std::uint64_t at = 0; // in the file
    for (const auto& [begin, end] : gone) {
        if (const std::int32_t error = copyPart(from, at, begin + directory->ahead, to))
            return error;
        at = end + directory->ahead;
    }
    std::string end;
    for (Record& record : kept) {
        std::uint64_t before = 0;
        for (const auto& [goneBegin, goneEnd] : gone)
            before += goneBegin < record.offset ? goneEnd - goneBegin : 0;
        record.setOffset(record.offset - before);
        end += record.bytes;
    }
    std::uint64_t removed = 0;
    for (const auto& [goneBegin, goneEnd] : gone)
        removed += goneEnd - goneBegin;
    const std::uint64_t size = end.size();
    const std::uint64_t offset = begins.back() - removed;
    left = kept.size();
    if (left >= Large16 || offset >= Large32 || size >= Large32)
        end += makeLargeEnd(left, size, offset);
    end += "PK\5\6";
    appendNumber(end, std::uint32_t { 0 });
    for (int i = 0; i < 2; ++i)
        appendNumber(end, static_cast<std::uint16_t>(std::min<std::uint64_t>(left, Large16)));
    for (const std::uint64_t number : { size, offset })
        appendNumber(end, static_cast<std::uint32_t>(std::min<std::uint64_t>(number, Large32)));
    appendNumber(end, static_cast<std::uint16_t>(directory->comment.size()));
    end += directory->comment;
    return writeBytes(to, end.data(), end.size());
}

} // namespace jsapi

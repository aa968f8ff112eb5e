#include "exports/zipfile.h"

#include "exports/zipdirectory.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <limits>
#include <unistd.h>
#include <utility>

namespace jsapi {

namespace {

constexpr std::size_t MaxStepLength = 255;
constexpr int MaxSteps = 100;
constexpr std::size_t StreamBuffer = 1 << 18;
constexpr std::size_t FlushBytes = 8 << 20;

constexpr uLong MadeByUnix = 3 << 8 | 30;
constexpr int UnixSystem = 3;
constexpr int MacSystem = 19;
constexpr uLong Utf8Flag = 0x800;
constexpr uLong DosDirectory = 0x10;
/// Sizes close to 4 GiB may grow beyond them when they are compressed.
constexpr std::uint64_t Zip64From = 0xf0000000;

/// The upper half of code page 437.
constexpr char16_t CodePage437[] =
    u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒáíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐└┴┬├─┼╞╟╚╔╩╦╠═╬╧"
    u"╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00a0";
static_assert(std::size(CodePage437) == 129);

void appendUtf8(std::string& text, char32_t character)
{
    if (character < 0x80) {
        text += static_cast<char>(character);
        return;
    }
    const int more = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    constexpr std::array<unsigned, 4> marks { 0, 0xc0, 0xe0, 0xf0 };
    text += static_cast<char>(marks[more] | character >> (6 * more));
    for (int i = more - 1; i >= 0; --i)
        text += static_cast<char>(0x80 | (character >> (6 * i) & 0x3f));
}

/// The character that a text begins with, which is removed. Nothing where none is encoded the one way that it may be.
std::optional<char32_t> takeUtf8(std::string_view& text)
{
    const auto first = static_cast<unsigned char>(text.front());
    const int more = first < 0x80 ? 0 : first >= 0xf0 ? 3 : first >= 0xe0 ? 2 : 1;
    if (text.size() <= static_cast<std::size_t>(more) || (first >= 0x80 && first < 0xc0) || first >= 0xf8)
        return std::nullopt;
    char32_t character = more ? first & (0x3f >> more) : first;
    for (int i = 1; i <= more; ++i) {
        const auto byte = static_cast<unsigned char>(text[static_cast<std::size_t>(i)]);
        if ((byte & 0xc0) != 0x80)
            return std::nullopt;
        character = character << 6 | (byte & 0x3f);
    }
    constexpr std::array<char32_t, 4> least { 0, 0x80, 0x800, 0x10000 };
    if (character < least[static_cast<std::size_t>(more)] || character > 0x10ffff
        || (character >= 0xd800 && character < 0xe000))
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(more) + 1);
    return character;
}

bool isUtf8(std::string_view text)
{
    while (!text.empty()) {
        if (!takeUtf8(text))
            return false;
    }
    return true;
}

bool isControl(char32_t character)
{
    return character < 0x20 || (character >= 0x7f && character < 0xa0);
}

bool isLetter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

std::FILE* fileOf(voidpf stream)
{
    return static_cast<std::FILE*>(stream);
}

/// The time as archives have it: local, in steps of two seconds, from 1980 to 2107.
uLong convertTime(std::time_t time)
{
    std::tm parts {};
    localtime_r(&time, &parts);
    if (parts.tm_year < 80)
        return 1 << 21 | 1 << 16;
    const auto year = static_cast<uLong>(std::min(parts.tm_year - 80, 127));
    const auto field = [](int value, int at) { return static_cast<uLong>(value) << at; };
    return year << 25 | field(parts.tm_mon + 1, 21) | field(parts.tm_mday, 16) | field(parts.tm_hour, 11)
        | field(parts.tm_min, 5) | static_cast<uLong>(std::min(parts.tm_sec, 59) / 2);
}

/// The time of the last modification in UTC, as the field that other programs prefer. Empty when it does not fit.
std::string makeTimeField(std::time_t time)
{
    if (time < 0 || time > std::numeric_limits<std::int32_t>::max())
        return {};
    std::string field { 'U', 'T', 5, 0, 1 };
    for (int shift = 0; shift < 32; shift += 8)
        field += static_cast<char>(time >> shift);
    return field;
}

} // namespace

bool isEntryName(std::string_view name)
{
    if (name.size() > 1 && name.back() == '/')
        name.remove_suffix(1);
    if (name.empty() || (name.size() > 1 && isLetter(name[0]) && name[1] == ':'))
        return false;
    for (std::string_view rest = name; !rest.empty();) {
        const auto character = takeUtf8(rest);
        if (!character || isControl(*character) || *character == U'\\')
            return false;
    }
    for (int steps = 1;; ++steps) {
        const std::size_t length = std::min(name.find('/'), name.size());
        const std::string_view step = name.substr(0, length);
        if (step.empty() || step == "." || step == ".." || length > MaxStepLength || steps > MaxSteps)
            return false;
        if (length == name.size())
            return true;
        name.remove_prefix(length + 1);
    }
}

std::optional<std::string> decodeEntryName(std::string_view stored, bool isFlagged)
{
    if (isUtf8(stored))
        return std::string(stored);
    if (isFlagged)
        return std::nullopt;
    std::string name;
    for (const char byte : stored) {
        const auto code = static_cast<unsigned char>(byte);
        appendUtf8(name, code < 0x80 ? char32_t { code } : char32_t { CodePage437[code - 0x80] });
    }
    return name;
}

std::optional<std::string> convertToUtf8(const VexliteChar16* text)
{
    if (!text)
        return std::nullopt;
    std::string converted;
    while (*text) {
        char32_t character = *text++;
        if (character >= 0xd800 && character < 0xe000) {
            const char32_t low = *text;
            if (character >= 0xdc00 || low < 0xdc00 || low >= 0xe000)
                return std::nullopt;
            ++text;
            character = 0x10000 + ((character - 0xd800) << 10) + (low - 0xdc00);
        }
        appendUtf8(converted, character);
    }
    return converted;
}

ZipStream::ZipStream(int descriptor)
{
    const int own = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    const bool writes = own >= 0 && (fcntl(own, F_GETFL) & O_ACCMODE) != O_RDONLY;
    m_file.reset(own >= 0 ? fdopen(own, writes ? "r+" : "r") : nullptr);
    if (m_file)
        std::setvbuf(m_file.get(), nullptr, _IOFBF, StreamBuffer);
    else if (own >= 0)
        ::close(own);
}

zlib_filefunc64_def ZipStream::functions()
{
    zlib_filefunc64_def table {};
    table.opaque = this;
    table.zopen64_file = [](voidpf self, const void*, int) -> voidpf {
        std::FILE* file = static_cast<ZipStream*>(self)->m_file.get();
        if (file)
            std::rewind(file);
        return file;
    };
    table.zread_file = [](voidpf, voidpf stream, void* bytes, uLong count) -> uLong {
        return std::fread(bytes, 1, count, fileOf(stream));
    };
    table.zwrite_file = [](voidpf self, voidpf stream, const void* bytes, uLong count) -> uLong {
        const uLong written = std::fwrite(bytes, 1, count, fileOf(stream));
        int& error = static_cast<ZipStream*>(self)->m_error;
        if (written != count && !error)
            error = errno;
        return written;
    };
    table.ztell64_file = [](voidpf, voidpf stream) -> ZPOS64_T {
        return static_cast<ZPOS64_T>(ftello(fileOf(stream)));
    };
    table.zseek64_file = [](voidpf self, voidpf stream, ZPOS64_T offset, int origin) -> long {
        // minizip's origins have the values of stdio's. What is still to be written is written here.
        const int result = fseeko(fileOf(stream), static_cast<off_t>(offset), origin);
        int& error = static_cast<ZipStream*>(self)->m_error;
        if (result != 0 && !error)
            error = errno;
        return result;
    };
    table.zclose_file = [](voidpf, voidpf) -> int { return 0; };
    table.zerror_file = [](voidpf, voidpf stream) -> int { return std::ferror(fileOf(stream)); };
    return table;
}

bool ZipStream::flush()
{
    if (std::fflush(m_file.get()) != 0 && !m_error)
        m_error = errno;
    return !m_error && !std::ferror(m_file.get());
}

mode_t ZipEntry::unixMode() const
{
    const int system = static_cast<int>(info.version >> 8 & 0xff);
    return system == UnixSystem || system == MacSystem ? static_cast<mode_t>(info.external_fa >> 16 & 0xffff)
                                                       : 0;
}

ZipWriter::ZipWriter(int descriptor, std::optional<std::uint64_t> present)
    : m_descriptor(descriptor)
    , m_stream(descriptor)
    , m_zip(nullptr)
    , m_entries(present.value_or(0))
{
    zlib_filefunc64_def functions = m_stream.functions();
    if (m_stream)
        m_zip = zipOpen2_64("", present ? APPEND_STATUS_ADDINZIP : APPEND_STATUS_CREATE, nullptr, &functions);
}

ZipWriter::~ZipWriter()
{
    if (m_zip)
        zipClose(m_zip, nullptr);
}

std::int32_t ZipWriter::convert(int error) const
{
    if (error == ZIP_OK)
        return VEXLITE_ZIP_OK;
    if (!m_stream.error() && (error == ZIP_INTERNALERROR || error == Z_MEM_ERROR))
        return VEXLITE_ZIP_NO_MEMORY;
    return convertWriteError(m_stream.error());
}

std::int32_t ZipWriter::begin(const std::string& name, const struct stat& facts, int level)
{
    ++m_entries;
    const bool isDirectory = name.back() == '/';
    zip_fileinfo info {};
    info.dosDate = convertTime(facts.st_mtime);
    info.external_fa = uLong { facts.st_mode } << 16 | (isDirectory ? DosDirectory : 0);
    const std::string time = makeTimeField(facts.st_mtime);
    const auto length = static_cast<uInt>(time.size());
    const bool isStored = isDirectory || level == 0;
    const bool isLarge = !isDirectory && static_cast<std::uint64_t>(facts.st_size) >= Zip64From;
    return convert(zipOpenNewFileInZip4_64(m_zip, name.c_str(), &info, time.data(), length, time.data(),
        length, nullptr, isStored ? 0 : Z_DEFLATED, level, 0, -MAX_WBITS, DEF_MEM_LEVEL, Z_DEFAULT_STRATEGY,
        nullptr, 0, MadeByUnix, Utf8Flag, isLarge));
}

std::int32_t ZipWriter::write(const void* bytes, std::size_t count)
{
    const std::int32_t error = convert(zipWriteInFileInZip(m_zip, bytes, static_cast<unsigned>(count)));
    m_unflushed += count;
    // Little by little, so that finish() need not wait for all of it.
    if (m_unflushed >= FlushBytes) {
        sync_file_range(m_descriptor, 0, 0, SYNC_FILE_RANGE_WRITE);
        m_unflushed = 0;
    }
    return error;
}

std::int32_t ZipWriter::end()
{
    return convert(zipCloseFileInZip(m_zip));
}

/// minizip writes the number of entries as a large one only where the offset of the directory is one. This puts the
/// records for that before the last one.
bool ZipWriter::writeLargeCount(std::size_t commentLength)
{
    constexpr std::size_t EndSize = 22, LocatorSize = 20;
    const off_t fileSize = lseek(m_descriptor, 0, SEEK_END);
    const off_t at = fileSize - static_cast<off_t>(EndSize + commentLength);
    std::string end(EndSize + commentLength, '\0');
    std::string before(LocatorSize, '\0');
    if (at < static_cast<off_t>(LocatorSize)
        || pread(m_descriptor, end.data(), end.size(), at) != static_cast<ssize_t>(end.size())
        || pread(m_descriptor, before.data(), LocatorSize, at - static_cast<off_t>(LocatorSize))
            != static_cast<ssize_t>(LocatorSize)
        || end.compare(0, 4, "PK\5\6") != 0)
        return false;
    if (before.compare(0, 4, "PK\6\7") == 0)
        return true;
    const std::uint64_t size = readNumber<std::uint32_t>(end, 12);
    std::string records = makeLargeEnd(m_entries, size, readNumber<std::uint32_t>(end, 16));
    records += end;
    return pwrite(m_descriptor, records.data(), records.size(), at) == static_cast<ssize_t>(records.size());
}

std::int32_t ZipWriter::finish(const std::string& comment)
{
    const int error = zipClose(std::exchange(m_zip, nullptr), comment.c_str());
    constexpr std::uint64_t Large = 0xffff;
    const bool isWritten = m_stream.flush() && (error || m_entries < Large || writeLargeCount(comment.size()))
        && fdatasync(m_descriptor) == 0;
    if (error == ZIP_OK && !isWritten && !m_stream.error())
        return convertWriteError(errno);
    return convert(isWritten ? error : ZIP_ERRNO);
}

ZipReader::ZipReader(int descriptor)
    : m_stream(descriptor)
    , m_unzip(nullptr)
{
    zlib_filefunc64_def functions = m_stream.functions();
    if (m_stream)
        m_unzip = unzOpen2_64("", &functions);
    if (!m_unzip)
        m_blankComment = readBlankArchive(descriptor);
}

ZipReader::~ZipReader()
{
    if (m_unzip)
        unzClose(m_unzip);
}

ZipReader::Step ZipReader::next(ZipEntry& entry)
{
    unz_global_info64 all {};
    if (!m_unzip)
        return Step::End;
    if (m_isBefore && unzGetGlobalInfo64(m_unzip, &all) == UNZ_OK && all.number_entry == 0)
        return Step::End;
    const int moved = std::exchange(m_isBefore, false) ? unzGoToFirstFile(m_unzip) : unzGoToNextFile(m_unzip);
    if (moved == UNZ_END_OF_LIST_OF_FILE)
        return Step::End;
    const auto look = [&](char* name, uLong size) {
        return unzGetCurrentFileInfo64(m_unzip, &entry.info, name, size, nullptr, 0, nullptr, 0) == UNZ_OK;
    };
    if (moved != UNZ_OK || !look(nullptr, 0))
        return Step::Damaged;
    entry.storedName.assign(entry.info.size_filename, '\0');
    return look(entry.storedName.data(), entry.storedName.size()) ? Step::Entry : Step::Damaged;
}

bool ZipReader::open()
{
    return unzOpenCurrentFile(m_unzip) == UNZ_OK;
}

std::string ZipReader::comment()
{
    unz_global_info64 all {};
    if (!m_unzip || unzGetGlobalInfo64(m_unzip, &all) != UNZ_OK)
        return m_blankComment.value_or(std::string());
    std::string text(all.size_comment, '\0');
    if (!text.empty() && unzGetGlobalComment(m_unzip, text.data(), text.size()) < 0)
        return {};
    return text.substr(0, text.find('\0'));
}

} // namespace jsapi

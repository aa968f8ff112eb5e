// The directory at the end of an archive: taking an entry out, whatever the others are packed with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace jsapi {

template <typename Number> void appendNumber(std::string& bytes, Number number)
{
    for (std::size_t i = 0; i < sizeof number; ++i)
        bytes += static_cast<char>(number >> (8 * i));
}

template <typename Number> Number readNumber(std::string_view bytes, std::size_t at)
{
    Number number = 0;
    for (std::size_t i = 0; i < sizeof number; ++i)
        number |= static_cast<Number>(Number { static_cast<unsigned char>(bytes[at + i]) } << (8 * i));
    return number;
}

/// The two records that say where a directory is that numbers of 16 and 32 bits can not describe.
std::string makeLargeEnd(std::uint64_t entries, std::uint64_t size, std::uint64_t offset);

/// The comment of an archive that has no entries and begins with its end; nothing for any other file.
std::optional<std::string> readBlankArchive(int file);

/// Writes an archive to an empty file, without the entries of that name; the others with every byte that they have.
/// Returns one of the VEXLITE_ZIP codes, and in `left` how many they are. [any thread]
std::int32_t copyArchiveWithout(const std::string& name, int from, int to, std::uint64_t& left);

/// Writes a part of a file behind what is in another one.
std::int32_t copyPart(int from, std::uint64_t begin, std::uint64_t end, int to);

/// What stands for the reason of a write that failed.
std::int32_t convertWriteError(int error);

} // namespace jsapi

// Zip archives of pages: made of files that a page may pass on, and unpacked where it may write. Both are done in slices;
// what has not ended well leaves nothing behind.
#pragma once

#include "framework/answer.h"
#include "framework/structs.h"
#include "local/pathcheck.h"

namespace jsapi {

inline constexpr Failure ArchiveSourceMissing { ErrorCode::OperationFailed, "%1 is not existed", true };
inline constexpr Failure ArchiveSourceRefused { ErrorCode::OperationFailed, "%1 can't be packed.", true };
inline constexpr Failure ArchivePathIsIllegal { ErrorCode::OperationFailed, "Path is illegal.", true };
inline constexpr Failure ArchiveNewPathIsIllegal { ErrorCode::OperationFailed, "New path is illegal.", true };
inline constexpr Failure ArchiveTargetExists { ErrorCode::OperationFailed, "%1 exists already.", true };
inline constexpr Failure ArchiveNotWritten { ErrorCode::OperationFailed, "%1 can't be written.", true };
inline constexpr Failure ArchiveNoSpace { ErrorCode::OperationFailed, "No space is left for %1.", true };
inline constexpr Failure ArchiveTooManyEntries { ErrorCode::OperationFailed, "%1 has too many entries.",
    true };
inline constexpr Failure ArchiveTooLarge { ErrorCode::OperationFailed, "%1 is too large.", true };
inline constexpr Failure ArchiveDamaged { ErrorCode::OperationFailed, "%1 is damaged.", true };
inline constexpr Failure ArchiveEncrypted { ErrorCode::OperationFailed, "%1 is encrypted.", true };
inline constexpr Failure ArchiveEntryRefused { ErrorCode::OperationFailed, "%1 can't be unpacked.", true };

struct CompressOptions {
    std::vector<std::string> files;
    QString path;
    std::int32_t level = 6;
    bool overwrite = false;
    static constexpr auto fields()
    {
        return strictly(std::tuple(required("files", &CompressOptions::files,
                                       "files of kinds that pages may copy, and directories of such files"),
            required("path", &CompressOptions::path, "the archive", PathIsEmpty),
            optional("level", &CompressOptions::level, "from 0, stored, to 9, smallest"),
            optional("overwrite", &CompressOptions::overwrite, "replace what is there")));
    }
};

struct CompressResult {
    QString path;
    std::int32_t files = 0;
    qlonglong bytes = 0;
    static constexpr auto fields()
    {
        return std::tuple(property("path", &CompressResult::path, "of the archive, absolute"),
            property("files", &CompressResult::files, "the files in it, without directories"),
            property("bytes", &CompressResult::bytes, "the size of the archive"));
    }
};

struct DecompressOptions {
    QString path;
    QString folder;
    bool overwrite = false;
    double maxBytes = 1 << 30;
    static constexpr auto fields()
    {
        return strictly(std::tuple(required("path", &DecompressOptions::path,
                                       "the archive, of a kind that pages may copy", PathIsEmpty),
            required("folder", &DecompressOptions::folder,
                "the directory to unpack into, made with all directories above it when it is not there",
                PathIsEmpty),
            optional("overwrite", &DecompressOptions::overwrite, "replace files that are there"),
            optional("maxBytes", &DecompressOptions::maxBytes,
                "the most bytes that all files together may have")));
    }
};

struct DecompressResult {
    QString folder;
    std::int32_t files = 0;
    qlonglong bytes = 0;
    static constexpr auto fields()
    {
        return std::tuple(property("folder", &DecompressResult::folder, "where the files are, absolute"),
            property("files", &DecompressResult::files, "the files unpacked, without directories"),
            property("bytes", &DecompressResult::bytes, "their bytes"));
    }
};

/// "Tools.compress".
Answer<Promise<CompressResult>> compressFiles(const JSContextEnv& page, const CompressOptions& options);
/// "Tools.decompress".
Answer<Promise<DecompressResult>> unpackArchive(const JSContextEnv& page, const DecompressOptions& options);

/// What archives may hold for pages.
inline constexpr std::size_t MaxArchiveEntries = 100'000;

} // namespace jsapi

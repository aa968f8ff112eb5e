// The C functions that the library offers to other modules of the suite: memory blocks that know their size, streams
// on them, compression into them, and zip archives. C99 and C++; needs no other header.
//
// A module of the suite links the library itself. A program without a suite links the static library of the same
// functions, libvexlitejsapi-c.a, with zlib, minizip and the C++ runtime (CMake: VexliteJsApi::c; pkg-config:
// vexlitejsapi-c).
// There only _XDeflate needs something else: whoever calls it links what has the suite's mfxGlobalAlloc.
#ifndef VEXLITEJSAPI_H
#define VEXLITEJSAPI_H

#include <stdint.h>

/// A code unit of UTF-16.
#ifdef __cplusplus
typedef char16_t VexliteChar16;
#else
typedef uint16_t VexliteChar16;
#endif

#ifdef __cplusplus
extern "C" {
#endif

// Memory blocks
//
// A block is one piece of heap memory. Its handle is the address of its data; two unsigned 32-bit fields lie
// before it:
//
//     handle - 8   the size: the bytes in use, what _XGblSize returns
//     handle - 4   the capacity: the bytes that there is room for
//     handle       the data
//
// The whole piece, with the two fields, is the smallest multiple of 1024 bytes that holds what was asked for.
// Whoever has the handle owns the block and ends it with _XGblFree. Handles are plain pointers: nothing is
// locked, moved or discarded behind the owner's back. Sizes are bytes, from 0 to 2^31 - 1.
//
// Only handles of living blocks, and null, may be given. [any thread] Threads that share a block take turns.

enum {
    /// A flag of _XGblAlloc and _XGblReAlloc: the bytes that come into use are 0. Other flags do nothing.
    VEXLITE_GBL_ZERO = 64
};

/// A new block of `size` bytes, which the caller owns. With VEXLITE_GBL_ZERO its whole capacity is 0, without
/// the flag the content is any. Null for a size of 2^31 or more and when memory is short.
void* _XGblAlloc(uint32_t flags, uint32_t size);

/// Gives a block another size and returns its handle, which may be a new one: the old one has ended then.
/// - Within the capacity only the size changes. A smaller size releases no memory.
/// - Beyond it the block is reallocated for `size` bytes or for twice its old size, whichever is more.
/// - With VEXLITE_GBL_ZERO the bytes from the old size up to `size` become 0.
/// A null handle is _XGblAlloc(flags, size). Null, with the block as it was and still the caller's, for a
/// size of 2^31 or more and when memory is short.
void* _XGblReAlloc(void* handle, uint32_t size, uint32_t flags);

/// The block's size in bytes; 0 for null.
uint32_t _XGblSize(const void* handle);

/// Always 0: a block keeps no flags.
uint32_t _XGblFlags(const void* handle);

/// The address of the data, which is the handle itself. It holds until the block is reallocated or freed.
void* _XGblLock(void* handle);

/// Always 1. Locks are not counted, so nothing needs to be unlocked.
int32_t _XGblUnlock(void* handle);

/// Frees a block; null does nothing. Always null.
void* _XGblFree(void* handle);

// Compression
//
// Both functions read `length` bytes at `source`, which may be null when there are none, and reserve
// length + length / 1000 + 16 bytes for the output. No exception leaves them. [any thread]

/// What the compressors answer; zlib's codes have zlib's values.
enum {
    VEXLITE_COMPRESS_OK = 0,
    /// Z_STREAM_ERROR: a null out pointer, a null source with a length, or a level that zlib does not know.
    VEXLITE_COMPRESS_STREAM_ERROR = -2,
    /// Z_MEM_ERROR: no memory for zlib's own state.
    VEXLITE_COMPRESS_MEM_ERROR = -4,
    /// Z_BUF_ERROR: the output does not fit into what was reserved for it.
    VEXLITE_COMPRESS_BUF_ERROR = -5,
    /// Z_VERSION_ERROR: the process has a zlib that the library was not built for.
    VEXLITE_COMPRESS_VERSION_ERROR = -6,
    /// 0x80000002: the output can not be allocated. It never can with more than 2^31 - 1 bytes to reserve by
    /// _XZlibCompress, and 2^32 - 1 by _XDeflate.
    VEXLITE_COMPRESS_NO_MEMORY = -0x7ffffffe,
    /// 0x8000FFFF: an exception was stopped at the edge of the library.
    VEXLITE_COMPRESS_UNEXPECTED = -0x7fff0001
};

/// Compresses into the zlib format, with its header and checksum. `level` is zlib's: 0 (stored) to 9
/// (smallest), or -1 for zlib's default. On success *data is the handle of a block of the compressed size;
/// the caller owns it and ends it with _XGblFree. *data is null on every failure, and with
/// VEXLITE_COMPRESS_OK when memory is too short to give the block its final size. Returns one of the
/// VEXLITE_COMPRESS codes.
int32_t _XZlibCompress(const void* source, uint32_t length, void** data, int32_t level);

/// Compresses into raw deflate data: no header, no checksum, window of 32 KiB, memory level 9, default level.
/// The data is flushed but not finished: it has no last block, and the bytes 00 00 FF FF that end the flush
/// are left out of *deflatedLength. *handle is memory of the suite's mfxGlobalAlloc. Whenever it is not null
/// the caller owns it and ends it as the suite ends such memory, also when zlib fails after it was allocated; its
/// content is any then. *deflatedLength is the bytes in use, at least 1, and 0 on every failure. Returns one
/// of the VEXLITE_COMPRESS codes.
int32_t _XDeflate(const void* source, uint32_t length, void** handle, uint32_t* deflatedLength);

// Memory streams
//
// A stream reads and writes a memory block (see above) as if it were a file, and grows it as it writes. It is an
// interface in the manner of COM: an address of a table of functions, of which each takes the stream first. Its
// operations stand in the order of the usual IStream, behind the three of IUnknown, so that code which knows either can
// use it. In C: stream->functions->Read(stream, ...); in C++: stream->Read(...).
//
// References are counted atomically. The last one is given back before the library is unloaded. [any thread]
// for everything, though threads that share a stream, its clones or its block take turns.

/// What the operations return: 0, or one of these.
enum {
    VEXLITE_STREAM_OK = 0,
    VEXLITE_STREAM_NOT_SUPPORTED = -0x7fffffff, ///< 0x80000001
    VEXLITE_STREAM_NO_MEMORY = -0x7ffffffe,     ///< 0x80000002, also for more than 2^31 - 1 bytes
    VEXLITE_STREAM_BAD_ARGUMENT = -0x7ffffffd,  ///< 0x80000003
    VEXLITE_STREAM_NO_INTERFACE = -0x7ffffffc   ///< 0x80000004
};

/// What Seek counts from.
enum { VEXLITE_SEEK_BEGIN = 0, VEXLITE_SEEK_CURRENT = 1, VEXLITE_SEEK_END = 2 };

/// An interface identifier. A stream has three: {00000000-0000-0000-C000-000000000046}, IUnknown;
/// {0C733A30-2A1C-11CE-ADE5-00AA0044773D}, ISequentialStream; {0000000C-0000-0000-C000-000000000046}, IStream.
typedef struct VexliteIid {
    uint32_t data1;
    uint16_t data2;
    uint16_t data3;
    uint8_t data4[8];
} VexliteIid;

/// What Stat fills in, laid out as STATSTG on systems of 64 bits. Only type and size are not 0.
typedef struct VexliteStreamStat {
    void* name;
    uint32_t type; ///< 2, a stream
    uint64_t size;
    uint64_t modified;
    uint64_t created;
    uint64_t accessed;
    uint32_t mode;
    uint32_t locks;
    VexliteIid classId;
    uint32_t state;
    uint32_t reserved;
} VexliteStreamStat; // 80 bytes

typedef struct VexliteStream VexliteStream;

// The operations, once for C and once for C++. Out pointers may be null unless something else is said.
//
// - QueryInterface  Stores the stream in *out, with a reference for the caller, or null and returns NO_INTERFACE.
// - AddRef, Release Return the new count. At 0 the stream has ended.
// - Read            Reads up to `count` bytes and moves on. At the end of the content *done is less, also 0; that is OK.
// - Write           Writes `count` bytes, all or none of them, and moves on. What lies between the end of the content and
//                   the position becomes 0.
// - Seek            Moves the position, also beyond the end; BAD_ARGUMENT and no move before the beginning.
// - SetSize         Cuts the content off or fills it with zeros. The position stays.
// - CopyTo          Reads up to `count` bytes and writes them to another stream. Ends with what the other one fails with.
// - Commit, Revert  Do nothing: everything is written at once.
// - LockRegion, UnlockRegion  NOT_SUPPORTED.
// - Stat            Fills in *stat, which must not be null. `flags` do nothing.
// - Clone           A stream on the same block, with a position of its own that begins at this one's.
#ifdef __cplusplus
}
// Without a destructor: Release is the only way to end a stream.
struct VexliteStream {
    virtual int32_t QueryInterface(const VexliteIid* iid, void** out) = 0;
    virtual uint32_t AddRef() = 0;
    virtual uint32_t Release() = 0;
    virtual int32_t Read(void* bytes, uint32_t count, uint32_t* done) = 0;
    virtual int32_t Write(const void* bytes, uint32_t count, uint32_t* done) = 0;
    virtual int32_t Seek(int64_t distance, uint32_t from, uint64_t* position) = 0;
    virtual int32_t SetSize(uint64_t size) = 0;
    virtual int32_t CopyTo(VexliteStream* other, uint64_t count, uint64_t* read, uint64_t* written) = 0;
    virtual int32_t Commit(uint32_t flags) = 0;
    virtual int32_t Revert() = 0;
    virtual int32_t LockRegion(uint64_t at, uint64_t count, uint32_t type) = 0;
    virtual int32_t UnlockRegion(uint64_t at, uint64_t count, uint32_t type) = 0;
    virtual int32_t Stat(VexliteStreamStat* stat, uint32_t flags) = 0;
    virtual int32_t Clone(VexliteStream** out) = 0;
};
extern "C" {
#else
typedef struct VexliteStreamFunctions {
    int32_t (*QueryInterface)(VexliteStream* self, const VexliteIid* iid, void** out);
    uint32_t (*AddRef)(VexliteStream* self);
    uint32_t (*Release)(VexliteStream* self);
    int32_t (*Read)(VexliteStream* self, void* bytes, uint32_t count, uint32_t* done);
    int32_t (*Write)(VexliteStream* self, const void* bytes, uint32_t count, uint32_t* done);
    int32_t (*Seek)(VexliteStream* self, int64_t distance, uint32_t from, uint64_t* position);
    int32_t (*SetSize)(VexliteStream* self, uint64_t size);
    int32_t (*CopyTo)(
        VexliteStream* self, VexliteStream* other, uint64_t count, uint64_t* read, uint64_t* written);
    int32_t (*Commit)(VexliteStream* self, uint32_t flags);
    int32_t (*Revert)(VexliteStream* self);
    int32_t (*LockRegion)(VexliteStream* self, uint64_t at, uint64_t count, uint32_t type);
    int32_t (*UnlockRegion)(VexliteStream* self, uint64_t at, uint64_t count, uint32_t type);
    int32_t (*Stat)(VexliteStream* self, VexliteStreamStat* stat, uint32_t flags);
    int32_t (*Clone)(VexliteStream* self, VexliteStream** out);
} VexliteStreamFunctions;

struct VexliteStream {
    const VexliteStreamFunctions* functions;
};
#endif

/// A stream on a block, at position 0, with one reference for the caller. Its content is the block's, of the block's
/// size. A null handle stands for a new, empty block. With `freesBlock` the block ends with the last stream on it;
/// otherwise it stays the caller's, who asks for its handle before that, since writing may have given it another one,
/// and the old one has ended then. Until the last stream on it has gone the block is changed and freed by nobody else.
/// *out is null on failure, and the block as it was and the caller's. Returns OK, BAD_ARGUMENT for a null `out`, or
/// NO_MEMORY.
int32_t _XCreateStreamOnHGBL(void* handle, int32_t freesBlock, VexliteStream** out);

/// The handle of the block that a stream of _XCreateStreamOnHGBL is on now. It stays the stream's, and holds until
/// something is written or the size is set. Returns OK, or BAD_ARGUMENT for a null pointer and a stream of somebody else.
int32_t _XGetHGBLFromStream(VexliteStream* stream, void** handle);

// Zip archives
//
// Paths are zero-terminated UTF-16 and, if relative, begin at the working directory. `level` is zlib's: 0 (stored) to 9
// (smallest), or -1 for its default.
//
// An archive is written to a file of its own beside its place, which it takes when it is whole and on disk.
// So on every failure, and when the process dies, there is no half archive, and an older one is what it was,
// byte for byte; a process that dies may leave the file of its own, whose name begins with a dot. A link is
// followed to the archive. Changing an archive needs room for a copy of it. Who changes one from several
// threads or processes lets them take turns: the last one wins. [any thread] No exception leaves the
// functions.
//
// Entries have names in UTF-8, flagged so, the times of modification, and Unix permissions. Archives and files may have
// more than 4 GiB, archives more than 65,535 entries (zip64). A name is made of steps of at most 255 bytes, at most 100,
// that are separated by single slashes; it has no step "." or "..", begins with neither a slash nor a drive ("C:"), and
// has neither backslashes nor control characters.

/// What the functions return.
enum {
    VEXLITE_ZIP_OK = 0,
    VEXLITE_ZIP_BAD_ARGUMENT =
        -1, ///< a pointer is null, a path empty or no UTF-16, the level unknown, or `count` 0
    VEXLITE_ZIP_BAD_NAME = -2,  ///< an entry can not have the name
    VEXLITE_ZIP_NOT_FOUND = -3, ///< a source is not there
    VEXLITE_ZIP_UNREADABLE =
        -4, ///< a source can not be read, is of another kind or the archive itself, or changed its size meanwhile
    VEXLITE_ZIP_EXISTS = -5, ///< the archive has an entry of the name, or two sources would get the same one
    VEXLITE_ZIP_NOT_ARCHIVE =
        -6, ///< what is there is no archive, damaged, or packed in a way that is not known
    VEXLITE_ZIP_WRITE_FAILED = -7,       ///< the directory is not there, or the system refused
    VEXLITE_ZIP_NO_SPACE = -8,           ///< the disk, the quota or the limit of a file's size is reached
    VEXLITE_ZIP_NO_MEMORY = -0x7ffffffe, ///< 0x80000002
    VEXLITE_ZIP_UNEXPECTED = -0x7fff0001 ///< 0x8000FFFF: an exception was stopped at the edge of the library
};

/// Makes an archive of files and directories, in place of an older one. An entry is named as its source, without the
/// directories that lead there; of a directory all that is in it follows, empty directories too. Links in it are left out,
/// and sockets, pipes and devices; a source that is a link itself is followed. The archive does not become an entry of
/// itself.
int32_t _XCompressToZipFile(
    const VexliteChar16* zipPath, const VexliteChar16* const* sources, uint32_t count, int32_t level);

/// Adds a regular file behind the entries of an archive, which is made when it is not there. Without `entryName` (null) the
/// entry is named as the file. VEXLITE_ZIP_EXISTS when the archive has an entry of the name.
int32_t _XAppendFileToZipFile(
    const VexliteChar16* zipPath, const VexliteChar16* file, const VexliteChar16* entryName, int32_t level);

/// The same, but an entry of that name is replaced. The other ones are taken over byte for byte.
int32_t _XAddFileToZipFile(
    const VexliteChar16* zipPath, const VexliteChar16* file, const VexliteChar16* entryName, int32_t level);

#ifdef __cplusplus
}
#endif

#endif

// The C functions that the library offers to other modules of the suite: memory blocks that know their size,
// and compression into blocks. C99 and C++; needs no other header.
//
// A module of the suite links the library itself. A program without a suite links the static library of the same
// functions, libvexlitejsapi-c.a, with zlib and the C++ runtime (CMake: VexliteJsApi::c; pkg-config: vexlitejsapi-c).
// There only _XDeflate needs something else: whoever calls it links what has the suite's mfxGlobalAlloc.
#ifndef VEXLITEJSAPI_H
#define VEXLITEJSAPI_H

#include <stdint.h>

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

#ifdef __cplusplus
}
#endif

#endif

// Streams that read and write a memory block.
#include "exports/compression.h"
#include "framework/export.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <memory>

namespace {

constexpr VexliteIid UnknownId { 0, 0, 0, { 0xc0, 0, 0, 0, 0, 0, 0, 0x46 } };
constexpr VexliteIid SequentialStreamId { 0x0c733a30, 0x2a1c, 0x11ce,
    { 0xad, 0xe5, 0x00, 0xaa, 0x00, 0x44, 0x77, 0x3d } };
constexpr VexliteIid StreamId { 0x0000000c, 0, 0, { 0xc0, 0, 0, 0, 0, 0, 0, 0x46 } };
/// By which a stream is known as one of these. Nobody else has it.
constexpr VexliteIid MemoryStreamId { 0x6d3b41f8, 0x9c05, 0x4e7a,
    { 0xb2, 0x1d, 0x57, 0xe0, 0x8a, 0x93, 0x4c, 0x26 } };

constexpr std::uint32_t StreamType = 2;
constexpr std::uint64_t MaxSize = std::numeric_limits<std::int32_t>::max();

/// A block with all streams on it.
struct SharedBlock {
    SharedBlock(void* given, bool isFreed)
        : handle(given)
        , frees(isFreed)
    {
    }
    ~SharedBlock()
    {
        if (frees)
            _XGblFree(handle);
    }
    SharedBlock(const SharedBlock&) = delete;
    SharedBlock& operator=(const SharedBlock&) = delete;

    std::uint64_t size() const { return _XGblSize(handle); }
    char* data() const { return static_cast<char*>(_XGblLock(handle)); }
    bool resize(std::uint64_t size)
    {
        void* resized = size > MaxSize
            ? nullptr
            : _XGblReAlloc(handle, static_cast<std::uint32_t>(size), VEXLITE_GBL_ZERO);
        if (resized)
            handle = resized;
        return resized;
    }

    void* handle;
    bool frees;
};

template <typename Value> void store(Value* place, Value value)
{
    if (place)
        *place = value;
}

class MemoryStream final : public VexliteStream {
public:
    explicit MemoryStream(std::shared_ptr<SharedBlock> block, std::uint64_t position = 0)
        : m_block(std::move(block))
        , m_position(position)
    {
    }

    void* handle() const { return m_block->handle; }

    std::int32_t QueryInterface(const VexliteIid* iid, void** out) override
    {
        if (!iid || !out)
            return VEXLITE_STREAM_BAD_ARGUMENT;
        const auto is = [iid](
                            const VexliteIid& known) { return std::memcmp(iid, &known, sizeof known) == 0; };
        const bool isKnown = is(UnknownId) || is(SequentialStreamId) || is(StreamId) || is(MemoryStreamId);
        *out = isKnown ? this : nullptr;
        if (!isKnown)
            return VEXLITE_STREAM_NO_INTERFACE;
        AddRef();
        return VEXLITE_STREAM_OK;
    }

    std::uint32_t AddRef() override { return m_references.fetch_add(1, std::memory_order_relaxed) + 1; }

    std::uint32_t Release() override
    {
        const std::uint32_t left = m_references.fetch_sub(1, std::memory_order_acq_rel) - 1;
        if (left == 0)
            delete this;
        return left;
    }

    std::int32_t Read(void* bytes, std::uint32_t count, std::uint32_t* done) override
    {
        store(done, 0u);
        if (!bytes && count)
            return VEXLITE_STREAM_BAD_ARGUMENT;
        const std::uint64_t size = m_block->size();
        const std::uint64_t part = std::min<std::uint64_t>(count, size - std::min(m_position, size));
        if (part)
            std::memcpy(bytes, m_block->data() + m_position, part);
        m_position += part;
        store(done, static_cast<std::uint32_t>(part));
        return VEXLITE_STREAM_OK;
    }

    std::int32_t Write(const void* bytes, std::uint32_t count, std::uint32_t* done) override
    {
        store(done, 0u);
        if (!bytes && count)
            return VEXLITE_STREAM_BAD_ARGUMENT;
        if (!count)
            return VEXLITE_STREAM_OK;
        if (m_position > MaxSize || count > MaxSize - m_position)
            return VEXLITE_STREAM_NO_MEMORY;
        // What is written may come from the block itself, which growing may move.
        const auto* source = static_cast<const char*>(bytes);
        const auto offset =
            reinterpret_cast<std::uintptr_t>(source) - reinterpret_cast<std::uintptr_t>(m_block->data());
        const bool isOwn = offset < m_block->size();
        const std::uint64_t end = m_position + count;
        if (end > m_block->size() && !m_block->resize(end))
            return VEXLITE_STREAM_NO_MEMORY;
        std::memmove(m_block->data() + m_position, isOwn ? m_block->data() + offset : source, count);
        m_position = end;
        store(done, count);
        return VEXLITE_STREAM_OK;
    }

    std::int32_t Seek(std::int64_t distance, std::uint32_t from, std::uint64_t* position) override
    {
        if (from > VEXLITE_SEEK_END)
            return VEXLITE_STREAM_BAD_ARGUMENT;
        const std::uint64_t base = from == VEXLITE_SEEK_BEGIN ? 0
            : from == VEXLITE_SEEK_CURRENT                    ? m_position
                                                              : m_block->size();
        std::int64_t moved = 0;
        if (__builtin_add_overflow(static_cast<std::int64_t>(base), distance, &moved) || moved < 0)
            return VEXLITE_STREAM_BAD_ARGUMENT;
        m_position = static_cast<std::uint64_t>(moved);
        store(position, m_position);
        return VEXLITE_STREAM_OK;
    }

    std::int32_t SetSize(std::uint64_t size) override
    {
        return m_block->resize(size) ? VEXLITE_STREAM_OK : VEXLITE_STREAM_NO_MEMORY;
    }

    std::int32_t CopyTo(
        VexliteStream* other, std::uint64_t count, std::uint64_t* read, std::uint64_t* written) override
    {
        store(read, std::uint64_t { 0 });
        store(written, std::uint64_t { 0 });
        if (!other)
            return VEXLITE_STREAM_BAD_ARGUMENT;
        // Not from the block itself, which the other stream may be on.
        std::array<char, 1 << 14> part;
        std::uint64_t all = 0;
        std::int32_t error = VEXLITE_STREAM_OK;
        while (!error && all < count) {
            std::uint32_t taken = 0;
            (void)Read(part.data(),
                static_cast<std::uint32_t>(std::min<std::uint64_t>(count - all, part.size())), &taken);
            if (!taken)
                break;
            std::uint32_t given = 0;
            error = other->Write(part.data(), taken, &given);
            all += taken;
            store(read, all);
            store(written, all - taken + given);
            if (given < taken)
                break;
        }
        return error;
    }

    std::int32_t Commit(std::uint32_t) override { return VEXLITE_STREAM_OK; }
    std::int32_t Revert() override { return VEXLITE_STREAM_OK; }
    std::int32_t LockRegion(std::uint64_t, std::uint64_t, std::uint32_t) override
    {
        return VEXLITE_STREAM_NOT_SUPPORTED;
    }
    std::int32_t UnlockRegion(std::uint64_t, std::uint64_t, std::uint32_t) override
    {
        return VEXLITE_STREAM_NOT_SUPPORTED;
    }

    std::int32_t Stat(VexliteStreamStat* stat, std::uint32_t) override
    {
        if (!stat)
            return VEXLITE_STREAM_BAD_ARGUMENT;
        *stat = {};
        stat->type = StreamType;
        stat->size = m_block->size();
        return VEXLITE_STREAM_OK;
    }

    std::int32_t Clone(VexliteStream** out) override
    {
        if (!out)
            return VEXLITE_STREAM_BAD_ARGUMENT;
        *out = new (std::nothrow) MemoryStream(m_block, m_position);
        return *out ? VEXLITE_STREAM_OK : VEXLITE_STREAM_NO_MEMORY;
    }

private:
    ~MemoryStream() = default;

    std::shared_ptr<SharedBlock> m_block;
    std::uint64_t m_position;
    std::atomic<std::uint32_t> m_references { 1 };
};

} // namespace

VEXLITE_EXPORT std::int32_t _XCreateStreamOnHGBL(void* handle, std::int32_t freesBlock, VexliteStream** out)
{
    if (!out)
        return VEXLITE_STREAM_BAD_ARGUMENT;
    *out = nullptr;
    const auto make = [&]() -> std::int32_t {
        auto block = std::make_shared<SharedBlock>(handle ? handle : _XGblAlloc(0, 0), !handle);
        if (!block->handle)
            return VEXLITE_STREAM_NO_MEMORY;
        auto* stream = new MemoryStream(block);
        // From here on nothing fails: until then a given block stays the caller's.
        block->frees = freesBlock;
        *out = stream;
        return VEXLITE_STREAM_OK;
    };
    return jsapi::withoutExceptions(make);
}

VEXLITE_EXPORT std::int32_t _XGetHGBLFromStream(VexliteStream* stream, void** handle)
{
    if (handle)
        *handle = nullptr;
    void* known = nullptr;
    if (!stream || !handle || stream->QueryInterface(&MemoryStreamId, &known) != VEXLITE_STREAM_OK)
        return VEXLITE_STREAM_BAD_ARGUMENT;
    auto* own = static_cast<MemoryStream*>(known);
    *handle = own->handle();
    own->Release();
    return VEXLITE_STREAM_OK;
}

#include "local/js_api_bytebuffer.h"

#include <atomic>
#include <cmath>
#include <cstring>

namespace jsapi {

namespace {

constexpr Failure SizeIsIllegal { ErrorCode::BadArgument, "Size is illegal." };
constexpr Failure TooManyBytes { ErrorCode::OperationFailed, "Too many bytes in buffers." };

constexpr std::int64_t MaxBytes = 256 << 20;
constexpr std::int64_t MaxBytesOfAll = 1 << 30;

/// What all buffers of the process hold. The last reference to one may be given back on any thread.
std::atomic<std::int64_t> bytesOfAll = 0;

} // namespace

const MemberList& KJsApiByteBufferManager::members()
{
    using Self = KJsApiByteBufferManager;
    static const MemberList list = MemberList { "Makes byte buffers.",
        {
            member<&Self::create>(u"create", Category::Usual, Type::Object,
                { { Type::JsValue, "content",
                    "how many zero bytes, at most 268,435,456; a string, of which the buffer gets the UTF-8; or "
                    "bytes, of which it gets a copy" } },
                "Returns a ByteBuffer. All that there are may hold 1 GiB together: see `setSize`.",
                { &SizeIsIllegal, &TooManyBytes, &EmptyHandle }),
        } }.handingOut<KJsApiByteBuffer>();
    return list;
}

const MemberList& KJsApiByteBuffer::members()
{
    using Self = KJsApiByteBuffer;
    static const MemberList list {
        "Bytes that the suite holds for pages. A member that takes bytes takes a ByteBuffer for its own, so they need "
        "not be in script meanwhile.",
        {
            member<&Self::data>(
                u"data", Category::Usual, Type::Variant, "Returns a copy of the bytes, without an envelope."),
            member<&Self::getSize>(
                u"getSize", Category::Usual, Type::JsValue, "Returns how many bytes it holds."),
            member<&Self::setSize>(u"setSize", Category::Usual, Type::JsValue,
                { { Type::JsValue, "size", "in bytes, at most 268,435,456" } },
                "Keeps so many of the bytes from the first on, and appends zero bytes where there are fewer. With 0 the "
                "memory is free at once; otherwise it is when script has dropped the buffer and the engine has collected it.",
                { &SizeIsIllegal, &TooManyBytes }),
        }
    };
    return list;
}

Answer<Handle<KJsApiByteBuffer>> KJsApiByteBufferManager::create(
    const JSContextEnv& page, const Demanded<BufferContent>& content)
{
    KRef<IJSExtentionObject> object = KJsApiByteBuffer::makeFor(page, nullptr);
    auto* buffer = dynamic_cast<KJsApiByteBuffer*>(object.get());
    if (!buffer)
        return EmptyHandle;
    if (const auto* bytes = std::get_if<Bytes>(&content.value))
        buffer->m_bytes = bytes->data;
    else if (const auto* string = std::get_if<std::string>(&content.value))
        buffer->m_bytes = QByteArray::fromStdString(*string);
    const double* zeros = std::get_if<double>(&content.value);
    if (const Failure* failure = buffer->resize(zeros ? *zeros : buffer->m_bytes.size()))
        return *failure;
    return Handle<KJsApiByteBuffer> { std::move(object) };
}

KJsApiByteBuffer::~KJsApiByteBuffer()
{
    bytesOfAll -= m_counted;
}

const Failure* KJsApiByteBuffer::resize(double size)
{
    if (!(size >= 0 && size <= MaxBytes && std::trunc(size) == size))
        return &SizeIsIllegal;
    const auto more = static_cast<std::int64_t>(size) - m_counted;
    if ((bytesOfAll += more) > MaxBytesOfAll && more > 0) {
        bytesOfAll -= more;
        return &TooManyBytes;
    }
    m_counted += more;
    const int before = m_bytes.size();
    m_bytes.resize(static_cast<int>(size));
    if (m_bytes.size() > before)
        std::memset(m_bytes.data() + before, 0, static_cast<std::size_t>(m_bytes.size() - before));
    else if (m_bytes.size() < before)
        m_bytes.squeeze();
    return nullptr;
}

Answer<Plain<Bytes>> KJsApiByteBuffer::data()
{
    return Plain<Bytes> { { m_bytes } };
}

Answer<std::int32_t> KJsApiByteBuffer::getSize()
{
    return m_bytes.size();
}

Answer<void> KJsApiByteBuffer::setSize(const Demanded<double>& size)
{
    if (const Failure* failure = resize(size.value))
        return *failure;
    return {};
}

} // namespace jsapi

#pragma once

#include "framework/bytes.h"
#include "framework/extensionobject.h"

namespace jsapi {

class KJsApiByteBuffer;

/// What a buffer begins with: so many zero bytes, the UTF-8 of a string, or bytes.
using BufferContent = std::variant<double, std::string, Bytes>;

/// "NovaExtension.ByteBufferManager": makes byte buffers.
class KJsApiByteBufferManager final : public KJCExtendJsObj<KJsApiByteBufferManager> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.ByteBufferManager";
    static const MemberList& members();

    Answer<Handle<KJsApiByteBuffer>> create(const JSContextEnv& page, const Demanded<BufferContent>& content);
};

/// "NovaExtension.ByteBufferManager.ByteBuffer": bytes that script and native members pass to each other.
class KJsApiByteBuffer final : public KJCExtendJsObj<KJsApiByteBuffer>, public BytesHolder {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.ByteBufferManager.ByteBuffer";
    static const MemberList& members();
    ~KJsApiByteBuffer() override;

    Answer<Plain<Bytes>> data();
    Answer<std::int32_t> getSize();
    Answer<void> setSize(const Demanded<double>& size);

    QByteArray bytes() const override { return m_bytes; }

private:
    friend class KJsApiByteBufferManager;
    /// The failure where there can not be so many; null when there are.
    const Failure* resize(double size);

    QByteArray m_bytes;
    std::int64_t m_counted = 0; ///< what it has of the limit for all
};

} // namespace jsapi

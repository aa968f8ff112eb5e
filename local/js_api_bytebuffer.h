#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// "NovaExtension.ByteBufferManager": makes byte buffers.
class KJsApiByteBufferManager final : public KJCExtendJsObj<KJsApiByteBufferManager> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.ByteBufferManager";
    static const MemberList& members();
};

/// "NovaExtension.ByteBufferManager.ByteBuffer": bytes that script and native members pass to each other.
class KJsApiByteBuffer final : public KJCExtendJsObj<KJsApiByteBuffer> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.ByteBufferManager.ByteBuffer";
    static const MemberList& members();
};

} // namespace jsapi

#include "local/js_api_bytebuffer.h"

namespace jsapi {

const MemberList& KJsApiByteBufferManager::members()
{
    static const MemberList list = MemberList { "Makes byte buffers.",
        {
            unbuilt(u"create", Category::Usual, Type::Object, { Type::JsValue }),
        } }.handingOut<KJsApiByteBuffer>();
    return list;
}

const MemberList& KJsApiByteBuffer::members()
{
    static const MemberList list { "Bytes that script and native members pass to each other.",
        {
            unbuilt(u"data", Category::Usual, Type::Variant),
            unbuilt(u"getSize", Category::Usual, Type::JsValue),
            unbuilt(u"setSize", Category::Usual, Type::JsValue, { Type::JsValue }),
        } };
    return list;
}

} // namespace jsapi

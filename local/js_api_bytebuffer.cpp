#include "local/js_api_bytebuffer.h"

const MemberList& KJsApiByteBufferManager::members()
{
    static const MemberList list =
        MemberList {
            unbuilt(u"create", Category::Usual, Type::Object, { Type::JsValue }),
        }
            .handingOut<KJsApiByteBuffer>();
    return list;
}

const MemberList& KJsApiByteBuffer::members()
{
    static const MemberList list {
        unbuilt(u"data", Category::Usual, Type::Variant),
        unbuilt(u"getSize", Category::Usual, Type::JsValue),
        unbuilt(u"setSize", Category::Usual, Type::JsValue, { Type::JsValue }),
    };
    return list;
}

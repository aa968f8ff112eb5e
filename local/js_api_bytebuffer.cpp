#include "local/js_api_bytebuffer.h"

const MemberList& KJsApiByteBufferManager::members()
{
    // clang-format off
    static const MemberList list = MemberList {
        // member          category         answer        parameters
        unbuilt(u"create", Category::Usual, Type::Object, { Type::JsValue }),
    }.handingOut<KJsApiByteBuffer>();
    // clang-format on
    return list;
}

const MemberList& KJsApiByteBuffer::members()
{
    // clang-format off
    static const MemberList list {
        // member           category         answer         parameters
        unbuilt(u"data",    Category::Usual, Type::Variant),
        unbuilt(u"getSize", Category::Usual, Type::JsValue),
        unbuilt(u"setSize", Category::Usual, Type::JsValue, { Type::JsValue }),
    };
    // clang-format on
    return list;
}

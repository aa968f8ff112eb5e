#include "local/js_api_crypto.h"

const MemberList& KJsApiCrypto::members()
{
    static const MemberList list {
        unbuilt(u"c64Encode", Category::Usual, Type::JsValue, { Type::String }),
        unbuilt(u"md5Data", Category::Usual, Type::JsValue, { Type::String }),
    };
    return list;
}

#include "local/js_api_crypto.h"

const MemberList& KJsApiCrypto::members()
{
    // clang-format off
    static const MemberList list {
        // member             category         answer         parameters
        unbuilt(u"c64Encode", Category::Usual, Type::JsValue, { Type::String }),
        unbuilt(u"md5Data",   Category::Usual, Type::JsValue, { Type::String }),
    };
    // clang-format on
    return list;
}

#include "local/js_api_crypto.h"

namespace jsapi {

const MemberList& KJsApiCrypto::members()
{
    static const MemberList list { "Text encoding and digests.",
        {
            unbuilt(u"c64Encode", Category::Usual, Type::JsValue, { Type::String }),
            unbuilt(u"md5Data", Category::Usual, Type::JsValue, { Type::String }),
        } };
    return list;
}

} // namespace jsapi

#include "local/js_api_crypto.h"

#include <QCryptographicHash>

namespace jsapi {

const MemberList& KJsApiCrypto::members()
{
    using Self = KJsApiCrypto;
    static const MemberList list {
        "Text encoding and digests, of strings and of bytes. A string stands for its UTF-8, so one with half a surrogate "
        "pair is refused.",
        {
            member<&Self::c64Encode>(u"c64Encode", Category::Usual, Type::JsValue,
                { { Type::String, "content", "what to encode" } },
                "Returns Base64: the alphabet with `+` and `/`, padded with `=`, in one line."),
            member<&Self::md5Data>(u"md5Data", Category::Usual, Type::JsValue,
                { { Type::String, "content", "what to sum up" } },
                "Returns the MD5 sum as 32 hexadecimal digits in small letters. It finds accidental changes; "
                "whoever wants to can make contents with the same sum."),
        }
    };
    return list;
}

Answer<QString> KJsApiCrypto::c64Encode(const Demanded<TextOrBytes>& content)
{
    return QString::fromLatin1(content.value.data.toBase64());
}

Answer<QString> KJsApiCrypto::md5Data(const Demanded<TextOrBytes>& content)
{
    return QString::fromLatin1(QCryptographicHash::hash(content.value.data, QCryptographicHash::Md5).toHex());
}

} // namespace jsapi

#include "cloud/js_api_payment.h"

namespace jsapi {

const MemberList& KJsApiPayment::members()
{
    static const MemberList list { "Opens the suite's purchase page.",
        {
            unbuilt(u"open", Category::Purchase, Type::JsValue, { Type::JsValue }),
        } };
    return list;
}

} // namespace jsapi

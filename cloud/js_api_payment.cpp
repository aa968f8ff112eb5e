#include "cloud/js_api_payment.h"

const MemberList& KJsApiPayment::members()
{
    static const MemberList list {
        unbuilt(u"open", Category::Purchase, Type::JsValue, { Type::JsValue }),
    };
    return list;
}

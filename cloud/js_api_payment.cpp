#include "cloud/js_api_payment.h"

const MemberList& KJsApiPayment::members()
{
    // clang-format off
    static const MemberList list {
        // member        category            answer         parameters
        unbuilt(u"open", Category::Purchase, Type::JsValue, { Type::JsValue }),
    };
    // clang-format on
    return list;
}

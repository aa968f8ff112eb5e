#include "cloud/js_api_payment.h"

#include "framework/permission.h"

namespace jsapi {

struct KJsApiPayment::OpenOptions {
    QString source;
    QString item;
    static constexpr auto fields()
    {
        return strictly(std::tuple(required("source", &OpenOptions::source,
                                       "who offers it, for the suite's records", MissingParameters),
            optional("item", &OpenOptions::item,
                "what the purchase page begins with, such as a membership tier; without it, or if that is not for "
                "sale, the suite's own choice")));
    }
};

const MemberList& KJsApiPayment::members()
{
    using Self = KJsApiPayment;
    static const MemberList list { "Opens the suite's purchase page.",
        {
            member<&Self::open>(u"open", Category::Purchase, Type::JsValue, { Type::JsValue },
                "Opens the purchase page for the signed-in user, who buys there or closes it; only one is open at a "
                "time. Resolves when it has been closed. What was bought is among the memberships and privileges by "
                "then. The purchase page goes with the page that has opened it.",
                { &NotPermitted, &NoPurchaseService, &PromiseServiceNull, &NobodyBuys, &PurchaseIsOpen,
                    &PurchaseNotLoaded, &PurchaseServiceEnded }),
        } };
    return list;
}

Answer<Promise<PurchaseReport>> KJsApiPayment::open(const JSContextEnv& page, const OpenOptions& options)
{
    if (!isPermitted(page, KPagePermission::Purchase, options.item))
        return NotPermitted;
    KPurchase* service = KPurchase::getInstance();
    if (!service)
        return NoPurchaseService;
    return KPurchaseRequest::start(page, *service, options.item, options.source);
}

} // namespace jsapi

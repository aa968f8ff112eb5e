#include "webui/js_api_panels.h"

#include "framework/pagewatch.h"
#include "suite/kxloggerlite.h"

namespace jsapi {

namespace {

constexpr Panel DocumentChat { "knovaaidocschatpanel", "sig_panelNotify(QVariantMap)", "qaNotify" };
constexpr Panel Contract { "KContractMgrCommand", "sig_notifyToPanel(QVariantMap)", "handlePanelNotify" };

} // namespace

KJsApiAiDocsChatHandle::KJsApiAiDocsChatHandle()
    : KPanelHandle(DocumentChat)
{
}

QVariantMap KJsApiAiDocsChatHandle::toPanel(const QVariantMap& notification) const
{
    QVariantMap whole = notification;
    whole.insert(heapString("from"), heapString("qaPage"));
    return whole;
}

const MemberList& KJsApiAiDocsChat::members()
{
    using Self = KJsApiAiDocsChat;
    static const MemberList list { "Notifications between a page and the document chat panel.",
        {
            member<&registerPanelCallback, Self>(u"registerQACallback", Category::Usual, Type::JsValue,
                { { Type::Object, "callback", "is called with each notification of the panel's" } },
                "Has a function called with the notifications of the panel, in place of an earlier one.",
                { &PanelNotFound }),
            member<&notifyPanel, Self>(u"qaNotify", Category::Usual, Type::JsValue,
                { { Type::JsValue, "notification", "what the panel understands" } },
                "Sends a notification to the panel, with `from` as `\"qaPage\"`. The panel has received it when "
                "this returns.",
                { &PanelNotFound, &FailedInvokeMethod }),
        } };
    return list;
}

KJObjContractHandle::KJObjContractHandle()
    : KPanelHandle(Contract)
{
}

bool KJObjContractHandle::isForPage(const QVariantMap& notification)
{
    const QVariant view = notification.value(heapString("viewId"));
    if (view.userType() != QMetaType::QString) {
        if (!std::exchange(m_hasWarned, true))
            KxLoggerLite::writeWarning(L"PanelBridge",
                L"a notification of the contract panel has no \"viewId\" and reaches no page");
        return false;
    }
    const IVEXBrowser* browser = browserOf(page());
    return browser && browser->BrowserId() == view.toString();
}

const MemberList& KJObjContract::members()
{
    using Self = KJObjContract;
    static const MemberList list { "Notifications between a page and the contract panel.",
        {
            member<&registerPanelCallback, Self>(u"registerCallback", Category::Usual, Type::JsValue,
                { { Type::Object, "callback",
                    "is called with each notification whose `viewId` is this page's view" } },
                "Has a function called with the panel's notifications for this view, in place of an earlier one.",
                { &PanelNotFound }),
            member<&notifyPanel, Self>(u"panelNotify", Category::Usual, Type::JsValue,
                { { Type::JsValue, "notification", "what the panel understands" } },
                "Sends a notification to the panel, which has received it when this returns.",
                { &PanelNotFound, &FailedInvokeMethod }),
        } };
    return list;
}

} // namespace jsapi

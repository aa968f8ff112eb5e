#pragma once

#include "webui/panelbridge.h"

namespace jsapi {

/// The page's side of the document chat panel.
class KJsApiAiDocsChatHandle final : public KPanelHandle {
    Q_OBJECT

public:
    KJsApiAiDocsChatHandle();

private:
    QVariantMap toPanel(const QVariantMap& notification) const override;
};

/// "NovaExtension.AiDocsChat": notifications between a page and the document chat panel.
class KJsApiAiDocsChat final : public KPanelBridge<KJsApiAiDocsChat, KJsApiAiDocsChatHandle> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.AiDocsChat";
    static const MemberList& members();
};

/// The page's side of the contract panel, whose notifications are addressed to views.
class KJObjContractHandle final : public KPanelHandle {
    Q_OBJECT

public:
    KJObjContractHandle();

private:
    bool isForPage(const QVariantMap& notification) override;

    bool m_hasWarned = false;
};

/// "NovaExtension.KContract": notifications between a page and the contract panel.
class KJObjContract final : public KPanelBridge<KJObjContract, KJObjContractHandle> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.KContract";
    static const MemberList& members();
};

} // namespace jsapi

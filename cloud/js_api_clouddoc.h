#pragma once

#include "framework/events.h"

/// "NovaExtension.CloudDoc": the signed-in user's cloud documents.
class KJsApiCloudDoc final : public KJCExtendJsEventObj<KJsApiCloudDoc> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.CloudDoc";
    static const MemberList& members();

    /// Property: the Orbitapi object.
    Reply orbitapi(Call& call);

private:
    KRef<IJSExtentionObject> m_orbitapi;
};

/// "NovaExtension.CloudDoc.Orbitapi": generic requests to the cloud service.
class KJsApiOrbitapi final : public KJCExtendJsObj<KJsApiOrbitapi> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.CloudDoc.Orbitapi";
    static const MemberList& members();
};

/// "NovaExtension.CloudDoc.UploadFileTask": one upload, with events of its own.
class KJsApiUploadFileTask final : public KJCExtendJsObj_InstanceLevelEvent<KJsApiUploadFileTask> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.CloudDoc.UploadFileTask";
    static const MemberList& members();
};

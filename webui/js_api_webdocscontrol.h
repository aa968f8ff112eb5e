#pragma once

#include "cloud/clouddocapicaller.h"
#include "cloud/signedinuser.h"
#include "framework/events.h"
#include "webui/panelbridge.h"

namespace jsapi {

inline constexpr Failure EmptyCoreApp { ErrorCode::OperationFailed, "empty core app." };

/// The suite's application, as the first parameter.
class HostApplication { };
template <> struct Argument<HostApplication> : ArgumentValue<HostApplication> {
    static constexpr bool IsScript = false;
    static constexpr std::array Refusals { &ThisIsNull, &HandleIsNull, &EmptyCoreApp };
    bool read(ArgumentReader& reader);
};

/// "NovaExtension.WebDocsControl": informs the cloud-document service that a web document has been set up.
class KJObjWebDocsControl final : public KJCExtendJsEventObj<KJObjWebDocsControl> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.WebDocsControl";
    static constexpr const Failure& NoObject = ThisIsNull;
    static const MemberList& members();

    struct SetupDetails;

    Answer<Promise<ServiceReport>> notifySetupFinished(const HostApplication& application,
        const SetupDetails& details, const SignedInUser& user, const JSContextEnv& page);
};

/// One request that reports a set-up to the cloud-document service, until its reply. [GUI thread]
class KWebDocsControlJsApiHandle final : public KCloudRequest {
    Q_OBJECT

public:
    /// Fails with CallFailed and PromiseServiceError.
    static Answer<Promise<ServiceReport>> start(
        const JSContextEnv& page, const SignedInUser& user, const QVariantMap& details);

    // For the service, once.
    Q_SLOT void slot_statusUpdated(bool ok, const QString& requestId, const LarkIpcResult& result);
};

} // namespace jsapi

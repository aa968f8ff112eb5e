#include "webui/js_api_webdocscontrol.h"

#include "cloud/jsonhelper.h"

namespace jsapi {

// Strings go to the service as UTF-8: std::string refuses what UTF-8 can not spell.
struct KJObjWebDocsControl::SetupDetails {
    std::string groupId;
    std::string fileId;
    std::string uuid;
    std::string label;
    static constexpr auto fields()
    {
        using Self = SetupDetails;
        return std::tuple(required("group_id", &Self::groupId, "the document's group"),
            required("file_id", &Self::fileId, "the document"),
            required("uuid", &Self::uuid, "which set-up of the document this is"),
            required("label", &Self::label, "the label that the document has got"));
    }
};

bool Argument<HostApplication>::read(ArgumentReader& reader)
{
    const QCoreApplication* application = QCoreApplication::instance();
    if (!application) // without one there is nothing that could receive the reply
        return reader.refuse(HandleIsNull);
    return application->inherits("KCoreApplication") || reader.refuse(EmptyCoreApp);
}

const MemberList& KJObjWebDocsControl::members()
{
    using Self = KJObjWebDocsControl;
    static const MemberList list = MemberList {
        "Informs the cloud-document service that a web document has been set up.",
        {
            member<&Self::notifySetupFinished>(u"notifySetupFinished", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Reports that a document has been set up and what label it has got. Resolves when the "
                "service has recorded it.",
                { &CallFailed, &PromiseServiceError, &CloudOperations::UpdateClassifyLabelStatus.failure }),
        }
    }.withEvents();
    return list;
}

Answer<Promise<ServiceReport>> KJObjWebDocsControl::notifySetupFinished(
    const HostApplication&, const SetupDetails& details, const SignedInUser& user, const JSContextEnv& page)
{
    return KWebDocsControlJsApiHandle::start(page, user, toMap(details));
}

Answer<Promise<ServiceReport>> KWebDocsControlJsApiHandle::start(
    const JSContextEnv& page, const SignedInUser& user, const QVariantMap& details)
{
    constexpr auto& operation = CloudOperations::UpdateClassifyLabelStatus;
    const LarkIpcArg envelope = larkIpcArg(heapString(operation.procedure),
        { { heapString("userId"), user.id() },
            { heapString("data"), JsonHelper::variantMapSerialize(details) } });
    return send<ServiceReport>(page, std::make_unique<KWebDocsControlJsApiHandle>(),
        QString::fromUtf16(LarkIpcCall), envelope, operation.replySlot);
}

void KWebDocsControlJsApiHandle::slot_statusUpdated(bool ok, const QString&, const LarkIpcResult& result)
{
    settle(CloudOperations::UpdateClassifyLabelStatus, ok, result);
}

} // namespace jsapi

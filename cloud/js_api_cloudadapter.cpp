#include "cloud/js_api_cloudadapter.h"

#include "cloud/orbitrequest.h"
#include "framework/permission.h"

#include <QCoreApplication>

namespace jsapi {

namespace {

constexpr int MaxMethodBytes = 255;

/// What no page may call by this way: who is signed in is the suite's to report, and uploads and what begins with the prefix
/// take paths of this machine, for which there are members of other categories.
bool isReserved(const std::string& method)
{
    return method == "setCurrentUser" || method == "uploadFileToCloud" || method.starts_with("sync.");
}

} // namespace

struct KJsApiCloudAdapter::RequestOptions {
    std::string method;
    Strings params;
    std::string userId;
    static constexpr auto fields()
    {
        using Self = RequestOptions;
        return strictly(std::tuple(
            required("method", &Self::method, "the service's name of the operation; at most 255 bytes"),
            optional("params", &Self::params, "its arguments by their names, all strings"),
            optional("userId", &Self::userId,
                "for whom, one of the users who are signed in; the current one when left out. It goes to the "
                "service with the arguments")));
    }
};

const MemberList& KJsApiCloudAdapter::members()
{
    using Self = KJsApiCloudAdapter;
    static const MemberList list = MemberList { "Generic requests to the cloud service, with its events.",
        {
            member<&Self::commonRequest>(u"commonRequest", Category::Usual, Type::JsValue, { Type::JsValue },
                "Calls an operation of the cloud service. Resolves with what it replies, also when it refuses: look "
                "at `state`. Rejects when there is no reply. `setCurrentUser`, "
                "`uploadFileToCloud` and what begins with `sync.` is refused: pages may not sign others in, and "
                "`CloudDoc` and `SyncFolder` have members for the rest.",
                { &NotPermitted, &CallFailed, &PromiseServiceError, &CommonRequestFailed }),
        } }.withEvents(AdapterNoticeEvent);
    return list;
}

Answer<Promise<AdapterReply>> KJsApiCloudAdapter::commonRequest(
    const SignedInUser& user, const JSContextEnv& page, const RequestOptions& options)
{
    if (options.method.size() > MaxMethodBytes)
        return WrongParameters;
    if (isReserved(options.method)
        || !isPermitted(page, KPagePermission::RequestCloud, QString::fromStdString(options.method)))
        return NotPermitted;
    LarkIpcArg request;
    request.method = options.method;
    request.argMap = options.params;
    request.argMap["userId"] = options.userId.empty() ? user.id().toStdString() : options.userId;
    return KCloudAdapterRequest::start(page, request);
}

void KJsApiCloudAdapter::prepareEvents()
{
    if (!QCoreApplication::instance())
        return;
    if (!m_handle)
        m_handle = std::make_unique<KCloudAdapterEventHandle>(*this);
    m_handle->follow();
}

void KJsApiCloudAdapter::followServices()
{
    if (m_handle)
        m_handle->follow();
}

Answer<Promise<AdapterReply>> KCloudAdapterRequest::start(const JSContextEnv& page, const LarkIpcArg& request)
{
    return send<AdapterReply>(page, std::make_unique<KCloudAdapterRequest>(), QString::fromUtf16(LarkIpcCall),
        request, "slot_commonRequestFinished");
}

void KCloudAdapterRequest::slot_commonRequestFinished(bool ok, const QString&, const LarkIpcResult& result)
{
    // A request that the service did not get has an empty result.
    if (!ok && result.state == 0)
        return reject(CommonRequestFailed);
    resolve(
        toVariant(AdapterReply { result.state, result.resultString, result.resultMap, result.resultList }));
}

void KCloudAdapterEventHandle::takeActions(const QMap<QString, QString>& actions)
{
    QVariantMap notice { { heapString("action"), heapString("") } };
    for (auto action = actions.begin(); action != actions.end(); ++action)
        notice.insert(action.key(), *action);
    m_adapter.send(AdapterNoticeEvent, notice);
}

} // namespace jsapi

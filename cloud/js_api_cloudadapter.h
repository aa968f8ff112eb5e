#pragma once

#include "cloud/clouddocapicaller.h"
#include "cloud/cloudnoticefollower.h"
#include "cloud/signedinuser.h"
#include "framework/events.h"

namespace jsapi {

/// What the service replied to a request of the general envelope.
struct AdapterReply {
    std::int32_t state = 0;
    std::string resultString;
    Strings resultMap;
    std::vector<std::string> resultList;
    static constexpr auto fields()
    {
        using Self = AdapterReply;
        return std::tuple(property("state", &Self::state, "how the request ended; 0 that it succeeded"),
            property("resultString", &Self::resultString, "a single result, or of a failure a word for it"),
            property("resultMap", &Self::resultMap, "results by their names"),
            property("resultList", &Self::resultList, "a list of results"));
    }
};

struct AdapterNotice {
    QString action;
    static constexpr auto fields()
    {
        return std::tuple(property("action", &AdapterNotice::action,
            "what has happened; the other properties, all strings, depend on it"));
    }
};

inline constexpr Event<AdapterNotice> AdapterNoticeEvent { "cloud.adapter.notify",
    "The cloud service reports something, with all that it says of it." };

class KCloudAdapterEventHandle final : public KCloudNoticeFollower {
    Q_OBJECT

public:
    explicit KCloudAdapterEventHandle(IKJSExtentionApiEvent& adapter)
        : m_adapter(adapter)
    {
    }

private:
    void takeActions(const QMap<QString, QString>& actions) override;

    IKJSExtentionApiEvent& m_adapter;
};

class KCloudAdapterRequest final : public KCloudRequest {
    Q_OBJECT

public:
    static Answer<Promise<AdapterReply>> start(const JSContextEnv& page, const LarkIpcArg& request);

    /// For the service, once.
    Q_SLOT void slot_commonRequestFinished(bool ok, const QString& requestId, const LarkIpcResult& result);
};

/// "NovaExtension.CloudAdapter": generic requests to the cloud service, with its events.
class KJsApiCloudAdapter final : public KJCExtendJsEventObj<KJsApiCloudAdapter> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.CloudAdapter";
    static const MemberList& members();

    struct RequestOptions;

    Answer<Promise<AdapterReply>> commonRequest(
        const SignedInUser& user, const JSContextEnv& page, const RequestOptions& options);

    void prepareEvents() override;
    void followServices();

private:
    std::unique_ptr<KCloudAdapterEventHandle> m_handle;
};

} // namespace jsapi

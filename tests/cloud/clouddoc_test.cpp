// Cloud documents as a page sees them, with a cloud service that replies when the test says so.
#include "host/cloudwire/registry.h"
#include "host/suite/cloud/cloudsvrproxy.h"
#include "tests/support/accounts.h"
#include "tests/support/cloudservice.h"
#include "tests/support/library.h"
#include "tests/support/rows.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <thrift/protocol/TDebugProtocol.h>
#include <thrift/transport/TBufferTransports.h>

namespace {

using support::CloudRequest;

class CloudDoc : public support::LibraryTest {
protected:
    ~CloudDoc() override
    {
        page.close();
        deleteLater();
    }
    static void deleteLater() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    support::FakeCloudService service;
    std::unique_ptr<support::FakeAccounts> accounts = std::make_unique<support::FakeAccounts>("u");
};

/// A request's message as text, without fields that are empty.
std::string textOf(const CloudRequest& request)
{
    QString text;
    if (request.type == "KIpcLoginInfo") {
        const auto& login = *static_cast<const KIpcLoginInfo*>(request.message.get());
        text = login.action + QStringLiteral(" { ");
        for (auto param = login.params.begin(); param != login.params.end(); ++param)
            text += param.key() + QStringLiteral(" = ") + param.value() + QStringLiteral(", ");
        return (text + u'}').toStdString();
    }
    const auto buffer = std::make_shared<apache::thrift::transport::TMemoryBuffer>();
    apache::thrift::protocol::TDebugProtocol protocol(buffer);
    cloudwire::findMessageType(request.type)->write(request.message.get(), protocol);
    text = QString::fromStdString(buffer->getBufferAsString());
    const QRegularExpression notation(
        QStringLiteral(R"("|(map|list)<[^>]*>\[\d+\] |\[\d+\] = |\d+: | \(\w+\))"));
    const QRegularExpression emptyField(QStringLiteral(R"( \w+ = (0|false|\{ \})?,)"));
    return text.remove(notation).simplified().remove(emptyField).toStdString();
}

using Reply = std::function<void(const CloudRequest&, bool ok, std::int32_t state)>;

template <typename Result> Reply result(std::function<void(Result&)> fill = {})
{
    return [=](const CloudRequest& request, bool ok, std::int32_t state) {
        Result result;
        if constexpr (requires { result.state; })
            result.state = state;
        else
            result.code = state;
        if (fill)
            fill(result);
        request.reply(ok, result);
    };
}

Reply mode(const char* mode)
{
    return result<KRpcResponse>([=](KRpcResponse& result) {
        result.values[QStringLiteral("roamingMode")] = QString::fromLatin1(mode);
    });
}

Reply text(const char* text)
{
    return result<LarkIpcResult>([=](auto& result) { result.resultString = text; });
}

struct RequestRow {
    const char* name;
    const char* member;
    const char* given;
    const char* procedure;
    const char* request;
    Reply reply;
    const char* resolved;
    const char* failure;
    bool looksAtState = true;
};

// clang-format off: what a request is, what it is sent as, and what its reply becomes are a line each.
const RequestRow Requests[] {
    { "CachedFile", "getCloudCachedFile", R"("/a b")", "getCloudFileCachePath",
        "GetCloudFileCachePathArg { userId = u, cloudPath = /a b, }",
        result<GetCloudFileCachePathResult>([](auto& to) { to.localPath = "/local"; }), R"("/local")",
        "Get file cache info failed.", false },
    { "Upload", "uploadFile2CloudFolder",
        R"({"cloudPath": "/c", "files": ["/x", "/y"], "createWhenNoExists": false,
            "userData": "d", "uploadFrom": "p", "extraParam": {"k": "5"}})",
        "uploadFilesToCloud",
        "UploadFilesToCloudArg { userId = u, cloudPath = /c, srcFiles = { /x, /y, }, "
        "userData = d, uploadFrom = p, extraParam = { k -> 5, }, }",
        result<UploadFilesToCloudResult>([](auto& to) {
            to.userData = "u";
            to.extraParam["r"] = "v";
        }),
        R"({"extraParam":{"r":"v"},"userData":"u"})", "Sync files failed." },
    { "UploadMakesFolders", "uploadFile2CloudFolder", R"({"cloudPath": "/c", "files": ["/x"]})",
        "uploadFilesToCloud",
        "UploadFilesToCloudArg { userId = u, cloudPath = /c, srcFiles = { /x, }, createWhenNoExists = true, "
        "}",
        result<UploadFilesToCloudResult>(), R"({"extraParam":{},"userData":""})", "Sync files failed." },
    { "OpenFolder", "openCloudFolder",
        R"({"fileId": "f", "cloudPath": "/c", "openFrom": "p", "entryIdentifier": "e",
            "createWhenNoExists": true})",
        "openVirtualCloudDisk",
        "OpenVirtualCloudDiskArg { userId = u, openFrom = p, fileId = f, cloudPath = /c, "
        "createWhenNoExists = true, entryIdentifier = e, }",
        result<OpenVirtualCloudDiskResult>(), R"({"extraParam":{}})", "open folder failed." },
    { "DefaultWorkspace", "getDefaultWorkSpace", "", "getDefaultWorkspace",
        "GetDefaultWorkspaceArg { callFrom = jsapi, }", result<GetDefaultWorkspaceResult>([](auto& to) {
            to.cloudPath = "/up";
            to.virtualPath = "/shown";
            to.groupId = "g";
            to.extraParam["isEnterpriseIP"] = "true";
        }),
        R"({"groupId":"g","isEnterpriseIP":true,"showCloudPath":"/shown","uploadCloudPath":"/up"})",
        "Get default workspace failed." },
    { "SaveToDirectory", "saveToCloudDir", R"({"groupId": "g", "fileId": "f", "fname": "n", "itemType": 2})",
        "saveToCloudDir",
        "SaveToCloudDirArg { groupId = g, userId = u, fileId = f, fname = n, itemType = 2, }",
        result<SaveToCloudDirResult>([](auto& to) { to.cloudPath = "/g/n"; }),
        R"({"cloudPath":"/g/n","extraParam":{}})", "Save to cloud dir failed." },
    { "SyncFolder", "syncFolder", R"({"userId": "other", "groupId": "g", "folderId": "f", "depth": 3})",
        "syncFolder", "SyncFolderArg { userId = other, groupId = g, fileId = f, depth = 3, }",
        result<SyncFolderResult>(), R"({"extraParam":{}})", "Sync folder failed." },
    { "SyncFolderOfNoUserInParticular", "syncFolder", R"({"userId": "", "groupId": "g", "folderId": "f"})",
        "syncFolder", "SyncFolderArg { userId = u, groupId = g, fileId = f, }", result<SyncFolderResult>(),
        R"({"extraParam":{}})", "Sync folder failed." },
    { "PrivateGroup", "getPersonalPrivateGroup", "", "larkIpcCall",
        "LarkIpcArg { method = getPersonalPrivateGroup, argMap = { userId -> u, }, }",
        result<LarkIpcResult>([](auto& to) { to.resultMap["response"] = "{}"; }), R"("{}")",
        "Get personal private group failed.", false },
    { "DocumentsPath", "getMyCloudDocumentsLocalPath", "", "larkIpcCall",
        "LarkIpcArg { method = getMyCloudDocumentsLocalPath, argMap = { userId -> u, }, }", text("/docs"),
        R"("/docs")", "Get my cloud documents local path failed." },
    { "RoamingMode", "getRoamingMode", "", "larkIpcCall",
        "LarkIpcArg { method = getRoamingMode, argMap = { userId -> u, }, }", text("manual"), R"("manual")",
        "Get roaming mode failed." },
    { "RoamingModeThatIsNone", "getRoamingMode", "", "larkIpcCall",
        "LarkIpcArg { method = getRoamingMode, argMap = { userId -> u, }, }", text("Auto"),
        "rejected: 3 Get roaming mode failed.", "Get roaming mode failed." },
    { "ChangedMode", "changeRoamingMode", R"("auto")", "changeRoamingMode",
        "changeRoamingMode { roamingMode = auto, userId = u, }", result<KRpcResponse>(), R"("auto")",
        "Change roaming mode failed." },
    { "ChangedModeOfTheService", "changeRoamingMode", R"("manual")", "changeRoamingMode",
        "changeRoamingMode { roamingMode = manual, userId = u, }", mode("auto"), R"("auto")",
        "Change roaming mode failed." },
    { "ChangedModeThatIsNone", "changeRoamingMode", R"("manual")", "changeRoamingMode",
        "changeRoamingMode { roamingMode = manual, userId = u, }", mode("x"),
        "rejected: 3 Change roaming mode failed.", "Change roaming mode failed." },
};
// clang-format on

ROW_TEST(CloudDoc, IsSentAndItsReplySettlesThePromise, Requests)
{
    const RequestRow& row = GetParam();
    const std::pair<bool, std::int32_t> replies[] { { true, 0 }, { false, 0 }, { true, 7 } };
    for (const auto& [ok, state] : replies) {
        EXPECT_EQ(page.call("CloudDoc", row.member, row.given), "");
        const CloudRequest request = service.take();
        EXPECT_EQ(request.procedure, QLatin1String(row.procedure));
        EXPECT_EQ(textOf(request), row.request);
        EXPECT_TRUE(page.settled.empty());
        row.reply(request, ok, state);
        row.reply(request, true, 0); // a second reply does nothing
        const bool good = ok && (state == 0 || !row.looksAtState);
        EXPECT_EQ(std::exchange(page.settled, {}),
            std::vector { good ? row.resolved : std::string("rejected: 3 ") + row.failure });
        deleteLater();
        EXPECT_FALSE(request.receiver) << "the request stayed";
    }
    service.onRequest = [](CloudRequest& request) { request.id.clear(); };
    EXPECT_EQ(
        page.call("CloudDoc", row.member, row.given), std::string("3 Call ") + row.procedure + " failed.");
}

TEST_F(CloudDoc, RefusesInTheOrderOfWhatIsMissing)
{
    for (const char* member : { "getCloudCachedFile", "uploadFile2CloudFolder", "openCloudFolder",
             "createUploadFileTask", "syncFolder", "saveToCloudDir", "changeRoamingMode" })
        EXPECT_EQ(page.call("CloudDoc", member, "{}"), "1 wrong parameters.") << member;
    EXPECT_EQ(page.call("CloudDoc", "changeRoamingMode", R"("Auto")"), "1 wrong parameters.");
    EXPECT_EQ(page.call("CloudDoc", "uploadFile2CloudFolder", R"({"cloudPath": "/c", "files": [""]})"),
        "1 wrong parameters.");
    accounts->user.clear();
    EXPECT_EQ(page.call("CloudDoc", "openCloudFolder", "{}"), "3 User not login");
    accounts.reset();
    EXPECT_EQ(page.call("CloudDoc", "openCloudFolder", "{}"), "3 Get account SDK error.");
    support::cloudIpc = nullptr;
    EXPECT_EQ(page.call("CloudDoc", "openCloudFolder", "{}"), "3 Cloud service error.");
    EXPECT_TRUE(service.requests.empty());
}

TEST_F(CloudDoc, ConvertsNothingThatIsSent)
{
    // One of each kind, then what is of none.
    const QVariantList values = support::parse(
        R"("x", true, 5, {"k": "v"}, ["v"], null, 1.5, 2147483648, {"k": 5}, {"k": null}, ["v", 5])");
    std::vector<std::pair<const char*, QByteArray>> calls { { "createUploadFileTask",
        R"({"filePath": "/x", "businessSource": "b", "cloudDir": "c", "autoRename": true})" } };
    for (const RequestRow& row : Requests)
        calls.emplace_back(row.member, row.given);
    for (const auto& [member, options] : calls) {
        if (!options.startsWith('{'))
            continue;
        const QVariantMap valid = support::parse(options).first().toMap();
        for (const QString& property : valid.keys()) {
            for (int i = 0; i < values.size(); ++i) {
                QVariantMap given = valid;
                given[property] = values[i];
                const bool isWrong = i > 4 || values[i].userType() != valid[property].userType();
                EXPECT_EQ(page.call("CloudDoc", member, QJsonDocument::fromVariant(given).toJson()),
                    isWrong ? "1 wrong parameters." : "")
                    << member << ' ' << property.toStdString() << ' ' << i;
            }
        }
        for (const char* none : { "null", "5", "\"x\"", "[]" })
            EXPECT_EQ(page.call("CloudDoc", member, none), "1 wrong parameters.") << none;
    }
}

TEST_F(CloudDoc, RepliesBeforeThePromiseExists)
{
    service.onRequest = [](const CloudRequest& request) {
        request.replyState(true, 0, { { "response", "{}" } }, Qt::QueuedConnection);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
    };
    page.call("CloudDoc", "getPersonalPrivateGroup");
    deleteLater();
    EXPECT_EQ(page.settled, std::vector<std::string> { R"("{}")" });
    EXPECT_FALSE(service.take().receiver);
}

TEST_F(CloudDoc, RepliesAfterThePageHasGone)
{
    page.call("CloudDoc", "getCloudCachedFile", R"("/a")");
    const CloudRequest request = service.take();
    page.close();
    request.reply(true, GetCloudFileCachePathResult());
    deleteLater();
    EXPECT_FALSE(request.receiver);
    EXPECT_TRUE(page.settled.empty());
}

TEST_F(CloudDoc, UploadTasksSayWhichActionHasFailed)
{
    page.call("CloudDoc", "createUploadFileTask", R"({"filePath": "/x"})");
    const vexlite::BoundObject task = page.handedOut();
    const vexlite::BoundObject none = core.bindSubObject(page.context,
        vexlite::Ref<IJSExtentionObject>::adopt(
            vexlite::GetVEXJSCore()->Objects()->Create(
                QStringLiteral("NovaExtension.CloudDoc.UploadFileTask"), page.context, nullptr))
            .get());
    service.onRequest = [](CloudRequest& request) { request.id.clear(); };
    for (const std::string action : { "start", "cancel", "restart" }) {
        EXPECT_EQ(page.call(none, action.c_str()), "3 task is null.");
        EXPECT_EQ(page.call(task, action.c_str()), "3 task " + action + " failed.");
    }
}

TEST_F(CloudDoc, AnUploadIsCancelledThoughItsPageHasGone)
{
    page.call("CloudDoc", "createUploadFileTask", R"({"filePath": "/x"})");
    vexlite::BoundObject task = page.handedOut();
    for (const char* action : { "start", "cancel" })
        EXPECT_EQ(page.call(task, action), "");
    task = {};
    page.close();
    service.take().replyState(true, 0, { { "taskId", "t" } });
    deleteLater();
    const CloudRequest cancel = service.take();
    EXPECT_EQ(cancel.envelope().method, "cancelTransferTask");
    EXPECT_TRUE(cancel.replyState(true, 0, {})) << "nobody is there who would send it again";
    while (service.requests.empty())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    service.take().replyState(true, 0, { { "status", "6" } });
    deleteLater();
    EXPECT_FALSE(cancel.receiver) << "it stays, though it has ended";
}

/// Pages note what they hear, as "<page> <event> <payload>".
class CloudDocEvents : public CloudDoc {
protected:
    CloudDocEvents() { withPayload = true; }
    ~CloudDocEvents() override { support::cloudProxy = nullptr; }

    void listenToAll(support::Page& by, const std::string& name)
    {
        for (const char* event :
            { "clouddoc.loginstatus.changed", "clouddoc.roamingmode.changed", "docCloudSyncStatus" })
            listen(by, "CloudDoc", event, name + ' ' + event);
    }

    /// Has the proxy signal a login, again and again when it `waits` until listeners hear of it.
    std::string heardOf(suite::CloudSvrProxy& proxy, bool waits = false)
    {
        QElapsedTimer patience;
        patience.start();
        do {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            proxy.setLogin(false);
            notes.clear();
            proxy.setLogin(true);
        } while (waits && notes.isEmpty() && patience.elapsed() < 60000);
        return heard();
    }
};

TEST_F(CloudDocEvents, ReachEveryPage)
{
    const struct {
        const char* actions;
        const char* heard;
    } rows[] {
        { R"("action": "roamingModeChanged", "roamingMode": "manual")",
            R"(clouddoc.roamingmode.changed {"roamingMode":"manual"})" },
        { R"("action": "roamingModeChanged", "roamingMode": "Manual")", "" },
        { R"("action": "roamingModeChanged")", "" },
        { R"("action": "docCloudSyncStatus", "fileId": "f", "cloudPath": "/c", "localPath": "/l",
                "status": "3", "taskId": "t", "x": "y")",
            "docCloudSyncStatus "
            R"({"cloudPath":"/c","fileId":"f","localPath":"/l","status":"3","taskId":"t"})" },
        { R"("action": "docCloudSyncStatus")", "docCloudSyncStatus {}" },
        { R"("action": "other", "roamingMode": "auto")", "" },
        { R"("roamingMode": "auto", "status": "1")", "" },
    };
    suite::CloudSvrProxy proxy;
    support::cloudProxy = &proxy;
    support::Page other(core);
    listenToAll(page, "first");
    listenToAll(other, "other");
    for (const auto& row : rows) {
        QMap<QString, QString> actions;
        const QVariantMap given = support::parse(QByteArray("{") + row.actions + "}").first().toMap();
        for (const QString& key : given.keys())
            actions[key] = given[key].toString();
        proxy.notifyActions(actions);
        const std::string event = row.heard;
        EXPECT_EQ(heard(), event.empty() ? event : "first " + event + "; other " + event) << row.actions;
    }
    const std::string login = " clouddoc.loginstatus.changed {\"isLogin\":true}";
    const std::string logout = " clouddoc.loginstatus.changed {\"isLogin\":false}";
    for (const bool isLogin : { false, true, true, false })
        proxy.setLogin(isLogin);
    EXPECT_EQ(heard(), "first" + login + "; other" + login + "; first" + logout + "; other" + logout);
    other.close();
    proxy.setLogin(true);
    EXPECT_EQ(heard(), "first" + login);
}

TEST_F(CloudDocEvents, FollowTheProxyThatThereIs)
{
    const std::string login = "page clouddoc.loginstatus.changed {\"isLogin\":true}";
    suite::CloudSvrProxy former;
    support::cloudProxy = &former;
    listenToAll(page, "page");
    support::cloudProxy = nullptr;
    EXPECT_EQ(heardOf(former), "") << "one that is no longer the suite's";
    auto first = std::make_unique<suite::CloudSvrProxy>();
    support::cloudProxy = first.get();
    EXPECT_EQ(heardOf(*first, true), login) << "one that comes later is found";
    suite::CloudSvrProxy second;
    support::cloudProxy = &second;
    EXPECT_EQ(heardOf(*first), "") << "one that has been replaced";
    EXPECT_EQ(heardOf(second), login);
    support::cloudProxy = first.get();
    page.call("CloudDoc", "getRoamingMode");
    EXPECT_EQ(heardOf(*first), login) << "every use looks which one there is";
    support::cloudProxy = &second;
    first.reset();
    EXPECT_EQ(heardOf(second, true), login) << "found again after the end of another";
}

TEST_F(CloudDocEvents, FollowTheEventObjectThatThereIs)
{
    class Proxy final : public KCloudSvrProxy {
    public:
        QObject* larkEventObject() override { return events.get(); }
        std::unique_ptr<suite::CloudEvents> events;
    } proxy;
    const auto notify = [&](suite::CloudEvents& events) {
        Q_EMIT events.signal_notifyActionsMapDefault(
            { { QStringLiteral("action"), QStringLiteral("docCloudSyncStatus") } });
        return heard();
    };
    support::cloudProxy = &proxy;
    listenToAll(page, "page");
    for (int i = 0; i < 2; ++i) {
        proxy.events = std::make_unique<suite::CloudEvents>();
        page.call("CloudDoc", "getRoamingMode");
        EXPECT_EQ(notify(*proxy.events), "page docCloudSyncStatus {}");
    }
    const auto former = std::exchange(proxy.events, nullptr);
    EXPECT_EQ(notify(*former), "");
    Q_EMIT proxy.loginStatusChanged(true);
    EXPECT_EQ(heard(), "page clouddoc.loginstatus.changed {\"isLogin\":true}");
}

} // namespace

// What a page is told of its cloud documents, with a cloud service that answers when a test says so and the
// stand-in's account service.
#include "cloud/ipc/messagetypes.h"
#include "framework/entry.h"
#include "host/cloudwire/codec.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "host/suite/cloud/cloudsvrproxy.h"
#include "host/vexlite/core.h"
#include "suite/kaccountsdk.h"
#include "suite/kcloudipc.h"
#include "suite/kcoreapplication.h"
#include "tests/vexlite/fakes.h"
#include "vexlite/jsapiutil.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QPointer>
#include <QTemporaryDir>
#include <deque>
#include <gtest/gtest.h>

namespace {

std::string bytesOf(const char* typeName, const void* message)
{
    if (typeName == std::string("KIpcLoginInfo")) {
        const auto& login = *static_cast<const KIpcLoginInfo*>(message);
        return (QStringList { login.action } + login.params.keys() + login.params.values())
            .join(u' ')
            .toStdString();
    }
    cloudwire::MessageCodec codec;
    return std::string(codec.encode(*cloudwire::findMessageType(typeName), message));
}

struct Request {
    QString procedure;
    std::string bytes;
    LarkIpcArg envelope;
    QPointer<QObject> receiver;
    QByteArray slot;
    QString id;

    template <typename Result> void reply(bool ok, const Result& result, const char* typeName) const
    {
        if (receiver)
            QMetaObject::invokeMethod(receiver, slot.constData(), Qt::QueuedConnection, Q_ARG(bool, ok),
                Q_ARG(QString, id), QGenericArgument(typeName, &result));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
    }
    void reply(bool ok, const LarkIpcResult& result) const { reply(ok, result, "LarkIpcResult"); }
    void reply(std::int32_t state, std::map<std::string, std::string> values) const
    {
        LarkIpcResult result;
        result.state = state;
        result.resultMap = std::move(values);
        reply(true, result);
    }
};

class FakeService final : public IKCloudIpcService {
public:
    QString invoke(const QString& procedure, const KCloudIpcArg& argument, QObject* receiver,
        const QString& replySlot) override
    {
        if (refusing)
            return {};
        Request request { procedure, bytesOf(argument.typeName, argument.message), {}, receiver,
            replySlot.toLatin1(), QString::number(++m_ids) };
        if (argument.typeName == std::string("LarkIpcArg"))
            request.envelope = *static_cast<const LarkIpcArg*>(argument.message);
        if (repliesWithin)
            request.reply(0, { { "response", "{}" } });
        requests.push_back(request);
        return request.id;
    }

    Request take()
    {
        EXPECT_FALSE(requests.empty()) << "nothing was sent";
        Request request = requests.empty() ? Request() : requests.front();
        if (!requests.empty())
            requests.pop_front();
        return request;
    }

    std::deque<Request> requests;
    bool refusing = false;
    bool repliesWithin = false;

private:
    int m_ids = 0;
};

FakeService* offered = nullptr;
KCloudSvrProxy* proxied = nullptr;

} // namespace

IKCloudIpcService* KCoreApplication::cloudIpcService()
{
    return offered;
}

KCloudSvrProxy* KCoreApplication::cloudSvrProxy()
{
    return proxied;
}

namespace {

/// Notes how promises end, as "resolved <value>" or "rejected <code> <text>".
class NotingPage final : public vexlite::ScriptPage {
public:
    bool createPromise(std::int64_t) override { return true; }
    void settlePromise(std::int64_t, JSPromiseState state, const KJSVariant& value) override
    {
        QVariant read;
        KJSApiUtil::ConvertJSVariantToQVariant(value, read);
        const QVariantMap map = read.toMap();
        settled << (state == JSPromiseState::Resolved
                ? read
                : QVariant(QStringLiteral("%1 %2").arg(map.value(QStringLiteral("code")).toString(),
                    map.value(QStringLiteral("msg")).toString())));
    }
    QVariantList settled;
};

class CloudDoc : public testing::Test {
protected:
    CloudDoc()
        : core(vexlite::Core::start({}))
    {
        profile::setDataDirectory(directory.path());
        // As it is by default, whatever the test before has switched off.
        QFile file(directory.filePath(QStringLiteral("profile.json")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly)
            && file.write(
                   R"({"dialogs": {"answers": [{"dialog": "login", "values": {"userId": "user-1"}}]}})")
                > 0);
        file.close();
        EXPECT_EQ(profile::load(file.fileName()), QString());
        offered = &service;
        ExtensionFactoryMap factories;
        GetNovaExtensionJsApiObj(&factories);
        core.setFactories(factories);
        context = core.openPage(&page, {});
        object = core.bindObject(context, QStringLiteral("CloudDoc"));
        kacctoutsdk::KAccountSdkProxy* accounts = KCoreApplication::getAccountSDK();
        for (int turn = 0; turn < 10 && !accounts->getAccount({})->isLoggedIn(); ++turn) {
            accounts->login({});
            QCoreApplication::processEvents();
        }
        userId = accounts->getAccount({})->userInfo().userId;
    }
    ~CloudDoc() override
    {
        offered = nullptr;
        object = {};
        core.closePage(context);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        vexlite::Core::stop();
    }

    /// Calls a member; what it throws is answered as "<code> <text>", a promise as nothing.
    QVariant call(const vexlite::BoundObject& of, const char16_t* member, const QVariant& argument = {})
    {
        KJSVariant value;
        KJSApiUtil::ConvertQVariantToJSVariant(argument, value);
        const KJSVariant exception = call(of, context, member, { value });
        QVariant read;
        if (exception.isEmpty()) {
            KJSApiUtil::ConvertJSVariantToQVariant(result, read);
            return read.toMap().value(QStringLiteral("data"));
        }
        KJSApiUtil::ConvertJSVariantToQVariant(exception, read);
        return QStringLiteral("%1 %2").arg(read.toMap().value(QStringLiteral("code")).toString(),
            read.toMap().value(QStringLiteral("msg")).toString());
    }

    /// Calls a member for a page; answers what it throws.
    KJSVariant call(const vexlite::BoundObject& of, const JSContextEnv& by, const char16_t* member,
        const std::vector<KJSVariant>& values)
    {
        std::int32_t index = 0;
        while (of.members->Name(index) != std::u16string_view(member))
            ++index;
        KJSVariant exception;
        JSApiArguments arguments(values.data(), values.size());
        core.call(of.object.get(), by, of.members->Id(index), JSAccess::Method, arguments, result, exception);
        return exception;
    }

    QTemporaryDir directory;
    vexlite::Core& core;
    FakeService service;
    NotingPage page;
    JSContextEnv context {};
    vexlite::BoundObject object;
    KJSVariant result;
    QString userId;
};

using Map = QVariantMap;

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

/// The first of them: the library tells its classes to one core, which a suite does not change.
TEST_F(CloudDoc, TellsWhichActionOfATaskHasFailed)
{
    const auto actions = { std::pair(u"start", "3 task start failed."),
        std::pair(u"cancel", "3 task cancel failed."), std::pair(u"restart", "3 task restart failed.") };
    const vexlite::BoundObject none = core.bindSubObject(
        context, core.createUninitialised(text("NovaExtension.CloudDoc.UploadFileTask")).get());
    EXPECT_EQ(call(object, u"createUploadFileTask", Map { { text("filePath"), text("/x") } })
                  .toString()
                  .toStdString(),
        "");
    auto* handle = dynamic_cast<IJSSubObject*>(result.raw().punkVal);
    ASSERT_TRUE(handle);
    const vexlite::BoundObject task = core.bindSubObject(context, handle->Object());
    service.refusing = true;
    for (const auto& [member, failure] : actions) {
        EXPECT_EQ(call(none, member), text("3 task is null."));
        EXPECT_EQ(call(task, member), text(failure));
    }
}

struct RequestCase {
    const char* name;
    const char16_t* member;
    QVariant given;
    QString procedure;
    std::function<std::string(const std::string& userId)> expected; ///< the request's bytes
    std::function<void(const Request&, bool ok, std::int32_t state)> reply;
    QVariant resolved;
    QString failure;
    bool looksAtState = true;
};

template <typename Message> auto with(const char* typeName, std::function<void(Message&)> fill)
{
    return [=](const std::string& userId) {
        Message message;
        if constexpr (requires { message.userId; })
            message.userId = userId;
        fill(message);
        return bytesOf(typeName, &message);
    };
}

template <typename Result> auto replying(const char* typeName, std::function<void(Result&)> fill = {})
{
    return [=](const Request& request, bool ok, std::int32_t state) {
        Result result;
        result.state = state;
        if (fill)
            fill(result);
        request.reply(ok, result, typeName);
    };
}

auto envelope(const char* method)
{
    return [=](const std::string& userId) {
        LarkIpcArg message;
        message.method = method;
        message.argMap["userId"] = userId;
        return bytesOf("LarkIpcArg", &message);
    };
}

auto changingTo(const char* mode)
{
    return [=](const std::string& userId) {
        return std::string("changeRoamingMode roamingMode userId ") + mode + " " + userId;
    };
}

auto responding(const char* mode = nullptr)
{
    return [=](const Request& request, bool ok, std::int32_t state) {
        KRpcResponse response { state, {}, {} };
        if (mode)
            response.values.insert(text("roamingMode"), text(mode));
        request.reply(ok, response, "KRpcResponse");
    };
}

const RequestCase Requests[] {
    { "CachedFile", u"getCloudCachedFile", text("/a b"), text("getCloudFileCachePath"),
        with<GetCloudFileCachePathArg>(
            "GetCloudFileCachePathArg", [](auto& message) { message.cloudPath = "/a b"; }),
        replying<GetCloudFileCachePathResult>(
            "GetCloudFileCachePathResult", [](auto& result) { result.localPath = "/local"; }),
        text("/local"), text("Get file cache info failed."), false },
    { "Upload", u"uploadFile2CloudFolder",
        Map { { text("cloudPath"), text("/c") }, { text("files"), QStringList { text("/x"), text("/y") } },
            { text("createWhenNoExists"), false }, { text("userData"), text("d") },
            { text("uploadFrom"), text("p") }, { text("extraParam"), Map { { text("k"), 5 } } } },
        text("uploadFilesToCloud"),
        with<UploadFilesToCloudArg>("UploadFilesToCloudArg",
            [](auto& message) {
                message.cloudPath = "/c";
                message.srcFiles = { "/x", "/y" };
                message.userData = "d";
                message.uploadFrom = "p";
                message.extraParam["k"] = "5";
            }),
        replying<UploadFilesToCloudResult>("UploadFilesToCloudResult",
            [](auto& result) {
                result.userData = "u";
                result.extraParam["r"] = "v";
            }),
        Map { { text("userData"), text("u") }, { text("extraParam"), Map { { text("r"), text("v") } } } },
        text("Sync files failed.") },
    { "UploadMakesFolders", u"uploadFile2CloudFolder",
        Map { { text("cloudPath"), text("/c") }, { text("files"), QStringList { text("/x") } } },
        text("uploadFilesToCloud"),
        with<UploadFilesToCloudArg>("UploadFilesToCloudArg",
            [](auto& message) {
                message.cloudPath = "/c";
                message.srcFiles = { "/x" };
                message.createWhenNoExists = true;
            }),
        replying<UploadFilesToCloudResult>("UploadFilesToCloudResult"),
        Map { { text("userData"), QString() }, { text("extraParam"), Map() } }, text("Sync files failed.") },
    { "OpenFolder", u"openCloudFolder",
        Map { { text("fileId"), text("f") }, { text("cloudPath"), text("/c") },
            { text("openFrom"), text("p") }, { text("entryIdentifier"), text("e") },
            { text("createWhenNoExists"), true } },
        text("openVirtualCloudDisk"),
        with<OpenVirtualCloudDiskArg>("OpenVirtualCloudDiskArg",
            [](auto& message) {
                message.fileId = "f";
                message.cloudPath = "/c";
                message.openFrom = "p";
                message.entryIdentifier = "e";
                message.createWhenNoExists = true;
            }),
        replying<OpenVirtualCloudDiskResult>("OpenVirtualCloudDiskResult"),
        Map { { text("extraParam"), Map() } }, text("open folder failed.") },
    { "DefaultWorkspace", u"getDefaultWorkSpace", {}, text("getDefaultWorkspace"),
        with<GetDefaultWorkspaceArg>(
            "GetDefaultWorkspaceArg", [](auto& message) { message.callFrom = "jsapi"; }),
        replying<GetDefaultWorkspaceResult>("GetDefaultWorkspaceResult",
            [](auto& result) {
                result.cloudPath = "/up";
                result.virtualPath = "/shown";
                result.groupId = "g";
                result.extraParam["isEnterpriseIP"] = "true";
            }),
        Map { { text("isEnterpriseIP"), true }, { text("uploadCloudPath"), text("/up") },
            { text("showCloudPath"), text("/shown") }, { text("groupId"), text("g") } },
        text("Get default workspace failed.") },
    { "SaveToDirectory", u"saveToCloudDir",
        Map { { text("groupId"), text("g") }, { text("fileId"), text("f") }, { text("fname"), text("n") },
            { text("itemType"), 2 } },
        text("saveToCloudDir"),
        with<SaveToCloudDirArg>("SaveToCloudDirArg",
            [](auto& message) {
                message.groupId = "g";
                message.fileId = "f";
                message.fname = "n";
                message.itemType = 2;
            }),
        replying<SaveToCloudDirResult>(
            "SaveToCloudDirResult", [](auto& result) { result.cloudPath = "/g/n"; }),
        Map { { text("cloudPath"), text("/g/n") }, { text("extraParam"), Map() } },
        text("Save to cloud dir failed.") },
    { "SyncFolder", u"syncFolder",
        Map { { text("userId"), text("other") }, { text("groupId"), text("g") },
            { text("folderId"), text("f") }, { text("depth"), 3 } },
        text("syncFolder"),
        with<SyncFolderArg>("SyncFolderArg",
            [](auto& message) {
                message.userId = "other";
                message.groupId = "g";
                message.fileId = "f";
                message.depth = 3;
            }),
        replying<SyncFolderResult>("SyncFolderResult"), Map { { text("extraParam"), Map() } },
        text("Sync folder failed.") },
    { "SyncFolderOfNoUserInParticular", u"syncFolder",
        Map {
            { text("userId"), QString() }, { text("groupId"), text("g") }, { text("folderId"), text("f") } },
        text("syncFolder"),
        with<SyncFolderArg>("SyncFolderArg",
            [](auto& message) {
                message.groupId = "g";
                message.fileId = "f";
            }),
        replying<SyncFolderResult>("SyncFolderResult"), Map { { text("extraParam"), Map() } },
        text("Sync folder failed.") },
    { "PrivateGroup", u"getPersonalPrivateGroup", {}, text("larkIpcCall"),
        envelope("getPersonalPrivateGroup"),
        replying<LarkIpcResult>("LarkIpcResult", [](auto& result) { result.resultMap["response"] = "{}"; }),
        text("{}"), text("Get personal private group failed."), false },
    { "DocumentsPath", u"getMyCloudDocumentsLocalPath", {}, text("larkIpcCall"),
        envelope("getMyCloudDocumentsLocalPath"),
        replying<LarkIpcResult>("LarkIpcResult", [](auto& result) { result.resultString = "/docs"; }),
        text("/docs"), text("Get my cloud documents local path failed.") },
    { "RoamingMode", u"getRoamingMode", {}, text("larkIpcCall"), envelope("getRoamingMode"),
        replying<LarkIpcResult>("LarkIpcResult", [](auto& result) { result.resultString = "manual"; }),
        text("manual"), text("Get roaming mode failed.") },
    { "RoamingModeThatIsNone", u"getRoamingMode", {}, text("larkIpcCall"), envelope("getRoamingMode"),
        replying<LarkIpcResult>("LarkIpcResult", [](auto& result) { result.resultString = "Auto"; }),
        text("3 Get roaming mode failed."), text("Get roaming mode failed.") },
    { "ChangedMode", u"changeRoamingMode", text("auto"), text("changeRoamingMode"), changingTo("auto"),
        responding(), text("auto"), text("Change roaming mode failed.") },
    { "ChangedModeOfTheService", u"changeRoamingMode", text("manual"), text("changeRoamingMode"),
        changingTo("manual"), responding("auto"), text("auto"), text("Change roaming mode failed.") },
    { "ChangedModeThatIsNone", u"changeRoamingMode", text("manual"), text("changeRoamingMode"),
        changingTo("manual"), responding("x"), text("3 Change roaming mode failed."),
        text("Change roaming mode failed.") },
};

class CloudDocRequest : public CloudDoc, public testing::WithParamInterface<RequestCase> { };

TEST_P(CloudDocRequest, IsSentAndItsReplySettlesThePromise)
{
    const RequestCase& row = GetParam();
    const QVariant failed = QStringLiteral("3 ") + row.failure;
    const std::pair<bool, std::int32_t> replies[] { { true, 0 }, { false, 0 }, { true, 7 } };
    for (const auto& [ok, state] : replies) {
        EXPECT_EQ(call(object, row.member, row.given), QVariant());
        const Request request = service.take();
        EXPECT_EQ(request.procedure, row.procedure);
        EXPECT_EQ(request.bytes, row.expected(userId.toStdString()));
        EXPECT_TRUE(page.settled.isEmpty());
        row.reply(request, ok, state);
        row.reply(request, true, 0); // a second reply does nothing
        EXPECT_EQ(
            page.settled, QVariantList({ ok && (state == 0 || !row.looksAtState) ? row.resolved : failed }));
        page.settled.clear();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_FALSE(request.receiver) << "the request stayed";
    }
    service.refusing = true;
    EXPECT_EQ(call(object, row.member, row.given), QStringLiteral("3 Call %1 failed.").arg(row.procedure));
}

INSTANTIATE_TEST_SUITE_P(
    Members, CloudDocRequest, testing::ValuesIn(Requests), [](const auto& info) { return info.param.name; });

TEST_F(CloudDoc, RefusesInTheOrderOfWhatIsMissing)
{
    for (const char16_t* member : { u"getCloudCachedFile", u"uploadFile2CloudFolder", u"openCloudFolder",
             u"createUploadFileTask", u"syncFolder", u"saveToCloudDir", u"changeRoamingMode" })
        EXPECT_EQ(call(object, member, Map()), text("1 wrong parameters."));
    EXPECT_EQ(call(object, u"changeRoamingMode", text("Auto")), text("1 wrong parameters."));
    EXPECT_EQ(call(object, u"uploadFile2CloudFolder",
                  Map { { text("cloudPath"), text("/c") }, { text("files"), QStringList { QString() } } }),
        text("1 wrong parameters."));
    KCoreApplication::getAccountSDK()->logout({});
    QCoreApplication::processEvents();
    EXPECT_EQ(call(object, u"openCloudFolder", Map()), text("3 User not login"));
    profile::switchOff(text("accountSdk"), nullptr);
    EXPECT_EQ(call(object, u"openCloudFolder", Map()), text("3 Get account SDK error."));
    offered = nullptr;
    EXPECT_EQ(call(object, u"openCloudFolder", Map()), text("3 Cloud service error."));
    EXPECT_TRUE(service.requests.empty());
}

TEST_F(CloudDoc, RepliesBeforeThePromiseExists)
{
    service.repliesWithin = true;
    call(object, u"getPersonalPrivateGroup");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(page.settled, QVariantList { text("{}") });
    EXPECT_FALSE(service.take().receiver);
}

TEST_F(CloudDoc, RepliesAfterThePageHasGone)
{
    call(object, u"getCloudCachedFile", text("/a"));
    const Request request = service.take();
    object = {};
    core.closePage(context);
    request.reply(true, GetCloudFileCachePathResult(), "GetCloudFileCachePathResult");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(request.receiver);
    EXPECT_TRUE(page.settled.isEmpty());
}

/// Pages note what they hear, as "<page> <event> <payload>".
class CloudDocEvents : public CloudDoc {
protected:
    ~CloudDocEvents() override { proxied = nullptr; }

    void listen(const JSContextEnv& by, const char* name)
    {
        for (const char* event :
            { "clouddoc.loginstatus.changed", "clouddoc.roamingmode.changed", "docCloudSyncStatus" }) {
            KJSVariant eventName;
            KJSApiUtil::ConvertQVariantToJSVariant(text(event), eventName);
            const auto note = [this, event, name](const JSApiArguments& payload) {
                QVariant read;
                KJSApiUtil::ConvertJSVariantToQVariant(payload[0], read);
                notes << QStringLiteral("%1 %2 %3")
                             .arg(text(name), text(event),
                                 QString::fromUtf8(
                                     QJsonDocument::fromVariant(read).toJson(QJsonDocument::Compact)));
                return KR_OK;
            };
            call(object, by, u"addEventListener", { eventName, vexlite::test::function(by, 1, note) });
        }
    }
    std::string heard() { return std::exchange(notes, {}).join(u'\n').toStdString(); }

    /// Has the proxy tell a login, in which nothing but "isLogin" differs, until it is heard or `ms` have
    /// passed.
    std::string heardOf(suite::CloudSvrProxy& proxy, bool isLogin, int ms = 0)
    {
        QElapsedTimer timer;
        timer.start();
        do {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            proxy.setLogin(!isLogin);
            notes.clear();
            proxy.setLogin(isLogin);
        } while (notes.isEmpty() && timer.elapsed() < ms);
        return heard();
    }

    QStringList notes;
};

using Texts = QMap<QString, QString>;

Texts withMany(Texts actions)
{
    for (int i = 0; i < 100000; ++i)
        actions.insert(text("key %1").arg(i), text("x"));
    return actions;
}

TEST_F(CloudDocEvents, TellWhatTheServiceDidToEveryPage)
{
    struct Row {
        const char* name;
        Texts actions;
        const char* heard;
    };
    const QString action = text("action");
    const QString mode = text("roamingMode");
    const Texts status { { action, text("docCloudSyncStatus") } };
    const Texts modeChange { { action, text("roamingModeChanged") } };
    const auto plus = [](Texts texts, const Texts& more) {
        for (auto one = more.begin(); one != more.end(); ++one)
            texts.insert(one.key(), one.value());
        return texts;
    };
    const Row rows[] {
        { "mode", plus(modeChange, { { mode, text("manual") } }),
            R"(clouddoc.roamingmode.changed {"roamingMode":"manual"})" },
        { "mode that is none", plus(modeChange, { { mode, text("Manual") } }), "" },
        { "no mode", modeChange, "" },
        { "status",
            plus(status,
                { { text("fileId"), text("f") }, { text("cloudPath"), text("/c") },
                    { text("localPath"), text("/l") }, { text("status"), text("3") },
                    { text("taskId"), text("t") } }),
            R"(docCloudSyncStatus {"cloudPath":"/c","fileId":"f","localPath":"/l","status":"3","taskId":"t"})" },
        { "status of nothing", status, "docCloudSyncStatus {}" },
        { "status with many strangers", withMany(plus(status, { { text("taskId"), text("t") } })),
            R"(docCloudSyncStatus {"taskId":"t"})" },
        { "another action", plus({ { action, text("other") } }, { { mode, text("auto") } }), "" },
        { "no action", { { mode, text("auto") }, { text("status"), text("1") } }, "" },
    };
    suite::CloudSvrProxy proxy;
    proxied = &proxy;
    NotingPage otherPage;
    const JSContextEnv other = core.openPage(&otherPage, {});
    listen(context, "first");
    listen(other, "other");
    for (const Row& row : rows) {
        proxy.notifyActions(row.actions);
        const std::string told = row.heard;
        EXPECT_EQ(heard(), told.empty() ? told : "first " + told + "\nother " + told) << row.name;
    }
    for (const bool isLogin : { false, true, true, false })
        proxy.setLogin(isLogin);
    EXPECT_EQ(heard(),
        "first clouddoc.loginstatus.changed {\"isLogin\":true}\n"
        "other clouddoc.loginstatus.changed {\"isLogin\":true}\n"
        "first clouddoc.loginstatus.changed {\"isLogin\":false}\n"
        "other clouddoc.loginstatus.changed {\"isLogin\":false}");
    core.closePage(other);
    proxy.setLogin(true);
    EXPECT_EQ(heard(), "first clouddoc.loginstatus.changed {\"isLogin\":true}");
}

TEST_F(CloudDocEvents, FollowTheProxyThatThereIs)
{
    const std::string told = "page clouddoc.loginstatus.changed {\"isLogin\":true}";
    constexpr int FoundWithinMs = 3000;
    suite::CloudSvrProxy former;
    proxied = &former;
    listen(context, "page");
    proxied = nullptr;
    EXPECT_EQ(heardOf(former, true), "") << "one that is no longer the suite's";

    auto first = std::make_unique<suite::CloudSvrProxy>();
    proxied = first.get();
    EXPECT_EQ(heardOf(*first, true, FoundWithinMs), told) << "one that comes later is found";

    suite::CloudSvrProxy second;
    proxied = &second;
    EXPECT_EQ(heardOf(*first, true), "") << "one that has been replaced";
    EXPECT_EQ(heardOf(second, true), told);
    proxied = first.get();
    call(object, u"getRoamingMode");
    EXPECT_EQ(heardOf(*first, true), told) << "every use looks which one there is";

    proxied = &second;
    first.reset();
    EXPECT_EQ(heardOf(second, true, FoundWithinMs), told) << "found again after the end of another";
}

TEST_F(CloudDocEvents, FollowTheEventObjectThatThereIs)
{
    class Proxy final : public KCloudSvrProxy {
    public:
        QObject* larkEventObject() override { return events.get(); }
        std::unique_ptr<suite::CloudEvents> events;
    } proxy;
    const auto tell = [&](suite::CloudEvents& events) {
        Q_EMIT events.signal_notifyActionsMapDefault({ { text("action"), text("docCloudSyncStatus") } });
        return heard();
    };
    proxied = &proxy;
    listen(context, "page");
    for (int i = 0; i < 2; ++i) {
        proxy.events = std::make_unique<suite::CloudEvents>();
        call(object, u"getRoamingMode");
        EXPECT_EQ(tell(*proxy.events), "page docCloudSyncStatus {}");
    }
    const auto former = std::exchange(proxy.events, nullptr);
    EXPECT_EQ(tell(*former), "");
    Q_EMIT proxy.loginStatusChanged(true);
    EXPECT_EQ(heard(), "page clouddoc.loginstatus.changed {\"isLogin\":true}");
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

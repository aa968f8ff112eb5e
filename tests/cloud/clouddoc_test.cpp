// What a page is told of its cloud documents, with a cloud service that answers when a test says so and the
// stand-in's account service.
#include "cloud/ipc/messagetypes.h"
#include "cloud/schema/codec.h"
#include "framework/entry.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "host/vexlite/core.h"
#include "suite/kaccountsdk.h"
#include "suite/kcloudipc.h"
#include "suite/kcoreapplication.h"
#include "vexlite/jsapiutil.h"

#include <QApplication>
#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <deque>
#include <gtest/gtest.h>

namespace {

std::string bytesOf(const char* typeName, const void* message)
{
    cloud::MessageCodec codec;
    return std::string(codec.encode(*cloud::findMessageType(typeName), message));
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
            QMetaObject::invokeMethod(receiver, slot.constData(), Qt::DirectConnection, Q_ARG(bool, ok),
                Q_ARG(QString, id), QGenericArgument(typeName, &result));
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

private:
    int m_ids = 0;
};

FakeService* offered = nullptr;

} // namespace

IKCloudIpcService* KCoreApplication::cloudIpcService()
{
    return offered;
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
        std::int32_t index = 0;
        while (of.members->Name(index) != std::u16string_view(member))
            ++index;
        KJSVariant value, exception;
        KJSApiUtil::ConvertQVariantToJSVariant(argument, value);
        JSApiArguments arguments(&value, 1);
        core.call(
            of.object.get(), context, of.members->Id(index), JSAccess::Method, arguments, result, exception);
        QVariant read;
        if (exception.isEmpty()) {
            KJSApiUtil::ConvertJSVariantToQVariant(result, read);
            return read.toMap().value(QStringLiteral("data"));
        }
        KJSApiUtil::ConvertJSVariantToQVariant(exception, read);
        return QStringLiteral("%1 %2").arg(read.toMap().value(QStringLiteral("code")).toString(),
            read.toMap().value(QStringLiteral("msg")).toString());
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

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
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
            { text("extraParam"), Map { { text("k"), 5 } } } },
        text("uploadFilesToCloud"),
        with<UploadFilesToCloudArg>("UploadFilesToCloudArg",
            [](auto& message) {
                message.cloudPath = "/c";
                message.srcFiles = { "/x", "/y" };
                message.createWhenNoExists = true;
                message.extraParam["k"] = "5";
            }),
        replying<UploadFilesToCloudResult>(
            "UploadFilesToCloudResult", [](auto& result) { result.userData = "u"; }),
        Map { { text("userData"), text("u") }, { text("extraParam"), Map() } }, text("Sync files failed.") },
    { "OpenFolder", u"openCloudFolder", Map { { text("fileId"), text("f") } }, text("openVirtualCloudDisk"),
        with<OpenVirtualCloudDiskArg>("OpenVirtualCloudDiskArg", [](auto& message) { message.fileId = "f"; }),
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
    { "PrivateGroup", u"getPersonalPrivateGroup", {}, text("larkIpcCall"),
        envelope("getPersonalPrivateGroup"),
        replying<LarkIpcResult>("LarkIpcResult", [](auto& result) { result.resultMap["response"] = "{}"; }),
        text("{}"), text("Get personal private group failed."), false },
    { "DocumentsPath", u"getMyCloudDocumentsLocalPath", {}, text("larkIpcCall"),
        envelope("getMyCloudDocumentsLocalPath"),
        replying<LarkIpcResult>("LarkIpcResult", [](auto& result) { result.resultString = "/docs"; }),
        text("/docs"), text("Get my cloud documents local path failed.") },
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
             u"createUploadFileTask", u"syncFolder", u"saveToCloudDir" })
        EXPECT_EQ(call(object, member, Map()), text("1 wrong parameters."));
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

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

#include "cloud/js_api_clouddoc.h"

#include "cloud/clouddocapicaller.h"
#include "cloud/roamingmode.h"
#include "cloud/signedinuser.h"
#include "framework/kjsonvalue.h"
#include "framework/libraryowner.h"
#include "vexlite/jsapiutil.h"

#include <QCoreApplication>
#include <algorithm>

const MemberList& KJsApiCloudDoc::members()
{
    // clang-format off
    static const MemberList list = MemberList {
        // member                                                                                  category                answer        parameters
        property<&KJsApiCloudDoc::orbitapi>(u"Orbitapi",                                           Category::CloudRequest, Type::Object),
        method<&KJsApiCloudDoc::getCloudCachedFile>(u"getCloudCachedFile",                         Category::CloudRead,    Type::Object, { Type::String }),
        method<&KJsApiCloudDoc::uploadFile2CloudFolder>(u"uploadFile2CloudFolder",                 Category::CloudWrite,   Type::Object, { Type::JsValue }),
        method<&KJsApiCloudDoc::openCloudFolder>(u"openCloudFolder",                               Category::CloudOpen,    Type::Object, { Type::JsValue }),
        method<&KJsApiCloudDoc::getDefaultWorkSpace>(u"getDefaultWorkSpace",                       Category::CloudRead,    Type::Object),
        method<&KJsApiCloudDoc::createUploadFileTask>(u"createUploadFileTask",                     Category::CloudWrite,   Type::Object, { Type::JsValue }),
        method<&KJsApiCloudDoc::getMyCloudDocumentsLocalPath>(u"getMyCloudDocumentsLocalPath",     Category::CloudRead,    Type::Object),
        method<&KJsApiCloudDoc::syncFolder>(u"syncFolder",                                         Category::CloudWrite,   Type::Object, { Type::JsValue }),
        method<&KJsApiCloudDoc::saveToCloudDir>(u"saveToCloudDir",                                 Category::CloudWrite,   Type::Object, { Type::JsValue }),
        method<&KJsApiCloudDoc::getRoamingMode>(u"getRoamingMode",                                 Category::CloudRead,    Type::Object),
        method<&KJsApiCloudDoc::changeRoamingMode>(u"changeRoamingMode",                           Category::CloudWrite,   Type::Object, { Type::String }),
        method<&KJsApiCloudDoc::getPersonalPrivateGroup>(u"getPersonalPrivateGroup",               Category::CloudRead,    Type::Object),
    }.withEvents<KJsApiCloudDoc>().handingOut<KJsApiOrbitapi>().handingOut<KJsApiUploadFileTask>();
    // clang-format on
    return list;
}

const MemberList& KJsApiOrbitapi::members()
{
    // clang-format off
    static const MemberList list {
        // member                 category                answer        parameters
        unbuilt(u"commonRequest", Category::CloudRequest, Type::Object, { Type::JsValue, Type::Object }),
    };
    // clang-format on
    return list;
}

const MemberList& KJsApiUploadFileTask::members()
{
    // clang-format off
    static const MemberList list = MemberList {
        // member                                          category              answer
        method<&KJsApiUploadFileTask::start>(u"start",     Category::CloudWrite, Type::JsValue),
        method<&KJsApiUploadFileTask::cancel>(u"cancel",   Category::CloudWrite, Type::JsValue),
        method<&KJsApiUploadFileTask::restart>(u"restart", Category::CloudWrite, Type::JsValue),
    }.withEvents<KJsApiUploadFileTask>();
    // clang-format on
    return list;
}

void KJsApiCloudDoc::prepareEvents()
{
    if (!QCoreApplication::instance())
        return;
    if (!m_handle)
        m_handle = std::make_unique<KCloudDocEventHandle>(*this);
    m_handle->follow();
}

Reply KJsApiCloudDoc::orbitapi(Call& call)
{
    return call.handOutKept(m_orbitapi, KJsApiOrbitapi::ScriptName);
}

namespace {

/// The texts of a request, as messages have them: UTF-8.
class RequestTexts {
public:
    explicit RequestTexts(const Options& options)
        : m_options(options)
    {
    }

    std::string operator()(const QString& text)
    {
        m_areUnicode = m_areUnicode && text.isValidUtf16();
        return text.toStdString();
    }
    std::string operator()(const char* name) { return (*this)(m_options.string(name)); }
    std::map<std::string, std::string> extraParam()
    {
        const Options object = m_options.object("extraParam");
        std::map<std::string, std::string> map;
        for (const QString& name : object.names())
            map.emplace((*this)(name), (*this)(object.string(name)));
        return map;
    }

    /// False when one of them had half a surrogate pair, in place of which UTF-8 would have something else.
    bool areUnicode() const { return m_areUnicode; }

private:
    const Options& m_options;
    bool m_areUnicode = true;
};

Reply wrongParameters(Call& call)
{
    return call.fail(ErrorCode::BadArgument, WrongParameters);
}

} // namespace

template <typename Action> Reply KJsApiCloudDoc::withUser(Call& call, Action action)
{
    if (m_handle)
        m_handle->follow();
    return withSignedInUser(call, action);
}

Reply KJsApiCloudDoc::getCloudCachedFile(Call& call)
{
    return withUser(call, [&](const QString& userId) {
        const QString path = convertedText(call.argument(0));
        if (path.isEmpty() || !path.isValidUtf16())
            return wrongParameters(call);
        GetCloudFileCachePathArg request;
        request.userId = userId.toStdString();
        request.cloudPath = path.toStdString();
        return KCloudDocApiCaller::getFileCachePath(call, request);
    });
}

Reply KJsApiCloudDoc::uploadFile2CloudFolder(Call& call)
{
    return withUser(call, [&](const QString& userId) {
        const Options options = call.options();
        RequestTexts text(options);
        UploadFilesToCloudArg request;
        request.userId = text(userId);
        request.cloudPath = text("cloudPath");
        QVariant files;
        KJSApiUtil::ConvertJSVariantToQVariant(options.any("files"), files);
        for (const QVariant& file : files.toList())
            request.srcFiles.push_back(text(file.toString()));
        request.createWhenNoExists = options.boolean("createWhenNoExists", true);
        request.userData = text("userData");
        request.uploadFrom = text("uploadFrom");
        request.extraParam = text.extraParam();
        const bool anyEmpty = std::find(request.srcFiles.begin(), request.srcFiles.end(), std::string())
            != request.srcFiles.end();
        if (!text.areUnicode() || request.cloudPath.empty() || request.srcFiles.empty() || anyEmpty)
            return wrongParameters(call);
        return KCloudDocApiCaller::uploadFiles(call, request);
    });
}

Reply KJsApiCloudDoc::openCloudFolder(Call& call)
{
    return withUser(call, [&](const QString& userId) {
        const Options options = call.options();
        RequestTexts text(options);
        OpenVirtualCloudDiskArg request;
        request.userId = text(userId);
        request.openFrom = text("openFrom");
        request.fileId = text("fileId");
        request.cloudPath = text("cloudPath");
        request.createWhenNoExists = options.boolean("createWhenNoExists", false);
        request.entryIdentifier = text("entryIdentifier");
        request.extraParam = text.extraParam();
        if (!text.areUnicode() || (request.cloudPath.empty() && request.fileId.empty()))
            return wrongParameters(call);
        return KCloudDocApiCaller::openFolder(call, request);
    });
}

Reply KJsApiCloudDoc::getDefaultWorkSpace(Call& call)
{
    return withUser(call, [&](const QString&) {
        GetDefaultWorkspaceArg request;
        request.callFrom = "jsapi";
        return KCloudDocApiCaller::getDefaultWorkspace(call, request);
    });
}

Reply KJsApiCloudDoc::createUploadFileTask(Call& call)
{
    return withUser(call, [&](const QString& userId) {
        const Options options = call.options();
        const KRef<KJSONValue> arguments(new KJSONValue);
        arguments->SetString(QString::fromLatin1("userId"), userId);
        for (const char* name : { "filePath", "businessSource", "cloudDir" }) {
            const QString text = options.string(name);
            if (!text.isValidUtf16())
                return wrongParameters(call);
            arguments->SetString(QString::fromLatin1(name), text);
        }
        if (options.string("filePath").isEmpty())
            return wrongParameters(call);
        arguments->SetString(QString::fromLatin1("autoRename"),
            QString::fromLatin1(options.boolean("autoRename", false) ? "true" : "false"));
        return call.handOutNew(
            KJsApiUploadFileTask::ScriptName, arguments.get(), "Create upload file task failed.");
    });
}

Reply KJsApiCloudDoc::getMyCloudDocumentsLocalPath(Call& call)
{
    return withUser(call, [&](const QString& userId) {
        return KCloudDocApiCaller::getMyCloudDocumentsLocalPath(call, userId);
    });
}

Reply KJsApiCloudDoc::syncFolder(Call& call)
{
    return withUser(call, [&](const QString& userId) {
        const Options options = call.options();
        RequestTexts text(options);
        SyncFolderArg request;
        const QString otherUser = options.string("userId");
        request.userId = text(otherUser.isEmpty() ? userId : otherUser);
        request.groupId = text("groupId");
        request.fileId = text("folderId");
        request.depth = options.integer("depth", 0);
        request.extraParam = text.extraParam();
        if (!text.areUnicode() || request.groupId.empty() || request.fileId.empty() || request.depth < 0)
            return wrongParameters(call);
        return KCloudDocApiCaller::syncFolder(call, request);
    });
}

Reply KJsApiCloudDoc::saveToCloudDir(Call& call)
{
    return withUser(call, [&](const QString& userId) {
        const Options options = call.options();
        RequestTexts text(options);
        SaveToCloudDirArg request;
        request.groupId = text("groupId");
        request.userId = text(userId);
        request.fileId = text("fileId");
        request.fname = text("fname");
        request.itemType = options.integer("itemType", 0);
        request.extraParam = text.extraParam();
        if (!text.areUnicode() || request.groupId.empty() || request.fileId.empty() || request.fname.empty())
            return wrongParameters(call);
        return KCloudDocApiCaller::saveToCloudDir(call, request);
    });
}

Reply KJsApiCloudDoc::getRoamingMode(Call& call)
{
    return withUser(
        call, [&](const QString& userId) { return KCloudDocApiCaller::getRoamingMode(call, userId); });
}

Reply KJsApiCloudDoc::changeRoamingMode(Call& call)
{
    return withUser(call, [&](const QString& userId) {
        const QString mode = call.string(0);
        return isRoamingMode(mode) ? KCloudDocApiCaller::changeRoamingMode(call, userId, mode)
                                   : wrongParameters(call);
    });
}

Reply KJsApiCloudDoc::getPersonalPrivateGroup(Call& call)
{
    return withUser(call,
        [&](const QString& userId) { return KCloudDocApiCaller::getPersonalPrivateGroup(call, userId); });
}

KJsApiUploadFileTask::~KJsApiUploadFileTask()
{
    if (!m_task)
        return;
    // The object may go while a listener of its own is called.
    m_task->disconnect();
    m_task->deleteLater();
}

void KJsApiUploadFileTask::Initialise(IJSONValue* options)
{
    QMap<QString, QString> arguments;
    QStringList names;
    if (options)
        options->Keys(names);
    for (const QString& name : names)
        arguments.insert(name, options->GetString(name, {}));
    if (arguments.isEmpty())
        return;
    m_task = new KUploadFileTask(arguments);
    m_task->setParent(libraryOwner());
    const auto forward = [&](auto signal, const char* event) {
        QObject::connect(m_task, signal, [this, event](const QVariantMap& task) { send(event, task); });
    };
    forward(&KUploadFileTask::sigStarted, "cloud.upload.started");
    forward(&KUploadFileTask::sigProgressChanged, "cloud.upload.progressChanged");
    forward(&KUploadFileTask::sigFinished, "cloud.upload.finished");
    QObject::connect(m_task, &QObject::destroyed, [this] { keepWhile(false); });
}

void KJsApiUploadFileTask::send(const char* event, const QVariantMap& task)
{
    // A listener may let go of the last other reference.
    AddRef();
    const KRef<IJSExtentionObject> held(this);
    tell(event, task);
    keepWhile(m_task && m_task->isRunning() && hasListeners());
}

/// Without this the collector would decide whether a page that has let the object go hears the end.
void KJsApiUploadFileTask::keepWhile(bool isNeeded)
{
    if (isNeeded == static_cast<bool>(m_self))
        return;
    if (isNeeded)
        AddRef();
    m_self = KRef<IJSExtentionObject>(isNeeded ? this : nullptr);
}

Reply KJsApiUploadFileTask::act(Call& call, bool (KUploadFileTask::*action)(), const char* failure)
{
    if (!m_task)
        return call.fail(ErrorCode::OperationFailed, "task is null.");
    const bool done = (m_task->*action)();
    keepWhile(m_task->isRunning());
    return done ? call.succeed() : call.fail(ErrorCode::OperationFailed, failure);
}

Reply KJsApiUploadFileTask::start(Call& call)
{
    return act(call, &KUploadFileTask::start, "task start failed.");
}

Reply KJsApiUploadFileTask::cancel(Call& call)
{
    return act(call, &KUploadFileTask::cancel, "task cancel failed.");
}

Reply KJsApiUploadFileTask::restart(Call& call)
{
    return act(call, &KUploadFileTask::restart, "task restart failed.");
}

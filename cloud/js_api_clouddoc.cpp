#include "cloud/js_api_clouddoc.h"

#include "cloud/clouddocapicaller.h"
#include "cloud/roamingmode.h"
#include "cloud/signedinuser.h"
#include "framework/kjsonvalue.h"
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

std::map<std::string, std::string> texts(const Options& object)
{
    std::map<std::string, std::string> map;
    for (const QString& name : object.names())
        map.emplace(name.toStdString(), object.string(name).toStdString());
    return map;
}

std::map<std::string, std::string> extraParam(const Options& options)
{
    return texts(options.object("extraParam"));
}

std::string text(const Options& options, const char* name)
{
    return options.string(name).toStdString();
}

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
        GetCloudFileCachePathArg request;
        request.userId = userId.toStdString();
        request.cloudPath = convertedText(call.argument(0)).toStdString();
        return request.cloudPath.empty() ? wrongParameters(call)
                                         : KCloudDocApiCaller::getFileCachePath(call, request);
    });
}

Reply KJsApiCloudDoc::uploadFile2CloudFolder(Call& call)
{
    return withUser(call, [&](const QString& userId) {
        const Options options = call.options();
        UploadFilesToCloudArg request;
        request.userId = userId.toStdString();
        request.cloudPath = text(options, "cloudPath");
        QVariant files;
        KJSApiUtil::ConvertJSVariantToQVariant(options.any("files"), files);
        for (const QVariant& file : files.toList())
            request.srcFiles.push_back(file.toString().toStdString());
        request.createWhenNoExists = options.boolean("createWhenNoExists", true);
        request.userData = text(options, "userData");
        request.uploadFrom = text(options, "uploadFrom");
        request.extraParam = extraParam(options);
        const bool anyEmpty = std::find(request.srcFiles.begin(), request.srcFiles.end(), std::string())
            != request.srcFiles.end();
        if (request.cloudPath.empty() || request.srcFiles.empty() || anyEmpty)
            return wrongParameters(call);
        return KCloudDocApiCaller::uploadFiles(call, request);
    });
}

Reply KJsApiCloudDoc::openCloudFolder(Call& call)
{
    return withUser(call, [&](const QString& userId) {
        const Options options = call.options();
        OpenVirtualCloudDiskArg request;
        request.userId = userId.toStdString();
        request.openFrom = text(options, "openFrom");
        request.fileId = text(options, "fileId");
        request.cloudPath = text(options, "cloudPath");
        request.createWhenNoExists = options.boolean("createWhenNoExists", false);
        request.entryIdentifier = text(options, "entryIdentifier");
        request.extraParam = extraParam(options);
        if (request.cloudPath.empty() && request.fileId.empty())
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
        if (options.string("filePath").isEmpty())
            return wrongParameters(call);
        const KRef<KJSONValue> arguments(new KJSONValue);
        arguments->SetString(QString::fromLatin1("userId"), userId);
        for (const char* name : { "filePath", "businessSource", "cloudDir" })
            arguments->SetString(QString::fromLatin1(name), options.string(name));
        arguments->SetString(QString::fromLatin1("autoRename"),
            QString::fromLatin1(options.boolean("autoRename", false) ? "true" : "false"));
        IVEXJSCore* core = vexlite::GetVEXJSCore();
        if (!core || !core->Objects())
            return call.fail(ErrorCode::OperationFailed, "Create upload file task failed.");
        return call.handOutNew(KJsApiUploadFileTask::ScriptName, arguments.get());
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
        SyncFolderArg request;
        request.userId = options.string("userId", userId).toStdString();
        request.groupId = text(options, "groupId");
        request.fileId = text(options, "folderId");
        request.depth = options.integer("depth", 0);
        request.extraParam = extraParam(options);
        if (request.groupId.empty() || request.fileId.empty() || request.depth < 0)
            return wrongParameters(call);
        return KCloudDocApiCaller::syncFolder(call, request);
    });
}

Reply KJsApiCloudDoc::saveToCloudDir(Call& call)
{
    return withUser(call, [&](const QString& userId) {
        const Options options = call.options();
        SaveToCloudDirArg request;
        request.groupId = text(options, "groupId");
        request.userId = userId.toStdString();
        request.fileId = text(options, "fileId");
        request.fname = text(options, "fname");
        request.itemType = options.integer("itemType", 0);
        request.extraParam = extraParam(options);
        if (request.groupId.empty() || request.fileId.empty() || request.fname.empty())
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

void KJsApiUploadFileTask::Initialise(IJSONValue* options)
{
    QMap<QString, QString> arguments;
    QStringList names;
    if (options)
        options->Keys(names);
    for (const QString& name : names)
        arguments.insert(name, options->GetString(name, {}));
    m_task.reset(arguments.isEmpty() ? nullptr : new KUploadFileTask(arguments));
    if (!m_task)
        return;
    const auto forward = [&](auto signal, const char* event) {
        QObject::connect(m_task.get(), signal, m_task.get(),
            [this, event](const QVariantMap& task) { tell(event, task); });
    };
    forward(&KUploadFileTask::sigStarted, "cloud.upload.started");
    forward(&KUploadFileTask::sigProgressChanged, "cloud.upload.progressChanged");
    forward(&KUploadFileTask::sigFinished, "cloud.upload.finished");
}

Reply KJsApiUploadFileTask::act(Call& call, bool (KUploadFileTask::*action)(), const char* failure)
{
    if (!m_task)
        return call.fail(ErrorCode::OperationFailed, "task is null.");
    return (m_task.get()->*action)() ? call.succeed() : call.fail(ErrorCode::OperationFailed, failure);
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

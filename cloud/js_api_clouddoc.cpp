#include "cloud/js_api_clouddoc.h"

#include "cloud/js_api_orbitapi.h"
#include "framework/libraryowner.h"

#include <QCoreApplication>
#include <algorithm>

namespace jsapi {

namespace {

constexpr Failure CreateTaskFailed { ErrorCode::OperationFailed, "Create upload file task failed." };
constexpr Failure TaskIsNull { ErrorCode::OperationFailed, "task is null." };
constexpr Failure StartFailed { ErrorCode::OperationFailed, "task start failed." };
constexpr Failure CancelFailed { ErrorCode::OperationFailed, "task cancel failed." };
constexpr Failure RestartFailed { ErrorCode::OperationFailed, "task restart failed." };

constexpr Event<UploadBegin> UploadStarted { "cloud.upload.started", "The service has begun the upload." };
constexpr Event<UploadState> UploadProgressChanged { "cloud.upload.progressChanged",
    "How the upload stands, about once a second." };
constexpr Event<UploadState> UploadFinished { "cloud.upload.finished",
    "The upload has ended, once: with status `1`, `2` or `6`, or with `-1` when the service did not begin "
    "it or reports nothing of it any more." };

} // namespace

// Strings go to the service as UTF-8: std::string refuses what UTF-8 can not spell.
struct KJsApiCloudDoc::UploadFilesOptions {
    std::string cloudPath;
    std::vector<std::string> files;
    bool createWhenNoExists = true;
    std::string userData;
    std::string uploadFrom;
    Strings extraParam;
    static constexpr auto fields()
    {
        using Self = UploadFilesOptions;
        return strictly(std::tuple(
            required("cloudPath", &Self::cloudPath, "the cloud folder", WrongParameters),
            required("files", &Self::files, "the paths of files on this machine", WrongParameters),
            optional("createWhenNoExists", &Self::createWhenNoExists, "make the folder where there is none"),
            optional("userData", &Self::userData, "comes back with the answer"),
            optional("uploadFrom", &Self::uploadFrom, "who uploads"),
            optional("extraParam", &Self::extraParam, "what the service is to know besides")));
    }
};

struct KJsApiCloudDoc::OpenFolderOptions {
    std::string cloudPath;
    std::string fileId;
    std::string openFrom;
    std::string entryIdentifier;
    bool createWhenNoExists = false;
    Strings extraParam;
    static constexpr auto fields()
    {
        using Self = OpenFolderOptions;
        return strictly(std::tuple(
            optional("cloudPath", &Self::cloudPath, "the cloud folder; this or `fileId` must be given"),
            optional("fileId", &Self::fileId, "the same by its id"),
            optional("openFrom", &Self::openFrom, "who opens it"),
            optional("entryIdentifier", &Self::entryIdentifier, "what in the folder is shown first"),
            optional("createWhenNoExists", &Self::createWhenNoExists, "make the folder where there is none"),
            optional("extraParam", &Self::extraParam, "what the service is to know besides")));
    }
};

struct KJsApiCloudDoc::UploadTaskOptions {
    std::string filePath;
    std::string businessSource;
    std::string cloudDir;
    bool autoRename = false;
    static constexpr auto fields()
    {
        using Self = UploadTaskOptions;
        return strictly(std::tuple(
            required("filePath", &Self::filePath, "the path of a file on this machine", WrongParameters),
            optional("businessSource", &Self::businessSource, "who uploads"),
            optional("cloudDir", &Self::cloudDir, "the cloud folder; without one the user's own"),
            optional("autoRename", &Self::autoRename,
                "take another name where the folder has such a file, instead of replacing it")));
    }
};

struct KJsApiCloudDoc::SyncFolderOptions {
    std::string groupId;
    std::string folderId;
    std::string userId;
    std::int32_t depth = 0;
    Strings extraParam;
    static constexpr auto fields()
    {
        using Self = SyncFolderOptions;
        return strictly(std::tuple(required("groupId", &Self::groupId, "the folder's group", WrongParameters),
            required("folderId", &Self::folderId, "the folder", WrongParameters),
            optional("userId", &Self::userId, "whose; without one the signed-in user's"),
            optional("depth", &Self::depth, "how many levels below the folder; not negative"),
            optional("extraParam", &Self::extraParam, "what the service is to know besides")));
    }
};

struct KJsApiCloudDoc::SaveOptions {
    std::string groupId;
    std::string fileId;
    std::string fname;
    std::int32_t itemType = 0;
    Strings extraParam;
    static constexpr auto fields()
    {
        using Self = SaveOptions;
        return strictly(
            std::tuple(required("groupId", &Self::groupId, "the directory's group", WrongParameters),
                required("fileId", &Self::fileId, "the target directory", WrongParameters),
                required("fname", &Self::fname, "the file's name", WrongParameters),
                optional("itemType", &Self::itemType, "the kind of file, as the service numbers it"),
                optional("extraParam", &Self::extraParam, "what the service is to know besides")));
    }
};

const MemberList& KJsApiCloudDoc::members()
{
    using Self = KJsApiCloudDoc;
    using namespace CloudOperations;
    static const MemberList list =
        MemberList { "The signed-in user's cloud documents, and what happens to them. Listeners of every "
                     "page get the events.",
            {
                getter<&Self::orbitapi>(u"Orbitapi", Category::CloudRequest, Type::Object,
                    "Generic requests to the cloud service.", { &EmptyHandle }),
                member<&Self::getCloudCachedFile>(u"getCloudCachedFile", Category::CloudRead, Type::Object,
                    { { Type::String, "cloudPath", "the cloud file's path or id" } },
                    "Resolves with the path of the file's local copy.",
                    { &WrongParameters, &CallFailed, &PromiseServiceError, &FileCachePath.failure }),
                member<&Self::uploadFile2CloudFolder>(u"uploadFile2CloudFolder", Category::CloudWrite,
                    Type::Object, { Type::JsValue },
                    "Uploads files into a cloud folder: any that the user can read and the suite does not close "
                    "to uploads.",
                    { &CallFailed, &PromiseServiceError, &UploadFiles.failure }),
                member<&Self::openCloudFolder>(u"openCloudFolder", Category::CloudOpen, Type::Object,
                    { Type::JsValue }, "Shows a cloud folder in the suite.",
                    { &CallFailed, &PromiseServiceError, &OpenFolder.failure }),
                member<&Self::getDefaultWorkSpace>(u"getDefaultWorkSpace", Category::CloudRead, Type::Object,
                    "Resolves with where the user's documents go when nothing else is said.",
                    { &CallFailed, &PromiseServiceError, &DefaultWorkspace.failure }),
                member<&Self::createUploadFileTask>(u"createUploadFileTask", Category::CloudWrite,
                    Type::Object, { Type::JsValue },
                    "Returns an UploadFileTask, which has not been started yet. A page may upload any file that "
                    "the user can read and the suite does not close to uploads.",
                    { &CreateTaskFailed }),
                member<&Self::getMyCloudDocumentsLocalPath>(u"getMyCloudDocumentsLocalPath",
                    Category::CloudRead, Type::Object,
                    "Resolves with the path of the folder in which cloud documents are kept on this machine.",
                    { &CallFailed, &PromiseServiceError, &MyCloudDocumentsLocalPath.failure }),
                member<&Self::syncFolder>(u"syncFolder", Category::CloudWrite, Type::Object,
                    { Type::JsValue }, "Brings the local copy of a cloud folder up to date.",
                    { &CallFailed, &PromiseServiceError, &SyncFolder.failure }),
                member<&Self::saveToCloudDir>(u"saveToCloudDir", Category::CloudWrite, Type::Object,
                    { Type::JsValue }, "Saves a file into a directory of the cloud.",
                    { &CallFailed, &PromiseServiceError, &SaveToCloudDir.failure }),
                member<&Self::getRoamingMode>(u"getRoamingMode", Category::CloudRead, Type::Object,
                    "Resolves with whether the user's documents follow to other machines by themselves.",
                    { &CallFailed, &PromiseServiceError, &GetRoamingMode.failure }),
                member<&Self::changeRoamingMode>(u"changeRoamingMode", Category::CloudWrite, Type::Object,
                    { { Type::String, "mode" } },
                    "Changes the mode. Resolves with the one that is in force now.",
                    { &CallFailed, &PromiseServiceError, &ChangeRoamingMode.failure }),
                member<&Self::getPersonalPrivateGroup>(u"getPersonalPrivateGroup", Category::CloudRead,
                    Type::Object, "Resolves with the user's own group, as the service describes it.",
                    { &CallFailed, &PromiseServiceError, &PersonalPrivateGroup.failure }),
            } }
            .withEvents(LoginStatusEvent, RoamingModeEvent, SyncStatusEvent)
            .handingOut<KJsApiOrbitapi>()
            .handingOut<KJsApiUploadFileTask>();
    return list;
}

const MemberList& KJsApiUploadFileTask::members()
{
    using Self = KJsApiUploadFileTask;
    static const MemberList list = MemberList {
        "One upload. The object stays while its upload is under way, whether the page keeps it and listens or "
        "not.",
        {
            member<&Self::start>(u"start", Category::CloudWrite, Type::JsValue,
                "Starts the upload. Fails as well while it is under way.", { &TaskIsNull, &StartFailed }),
            member<&Self::cancel>(u"cancel", Category::CloudWrite, Type::JsValue,
                "Cancels the upload. Fails as well when none is under way, unless the last one ended with `-1`.",
                { &TaskIsNull, &CancelFailed }),
            member<&Self::restart>(u"restart", Category::CloudWrite, Type::JsValue,
                "Cancels the upload, if one is under way or ended with `-1`, and starts it afresh.",
                { &TaskIsNull, &RestartFailed }),
        }
    }.withEvents(UploadStarted, UploadProgressChanged, UploadFinished);
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

void KJsApiCloudDoc::followServices()
{
    if (m_handle)
        m_handle->follow();
}

Answer<Handle<KJsApiOrbitapi>> KJsApiCloudDoc::orbitapi(const JSContextEnv& page)
{
    return handOutKept<KJsApiOrbitapi>(page, m_orbitapi);
}

Answer<Promise<std::string>> KJsApiCloudDoc::getCloudCachedFile(
    const SignedInUser& user, const JSContextEnv& page, const std::string& cloudPath)
{
    if (cloudPath.empty())
        return WrongParameters;
    GetCloudFileCachePathArg request;
    request.userId = user.id().toStdString();
    request.cloudPath = cloudPath;
    return KCloudDocApiCaller::send(page, CloudOperations::FileCachePath, request);
}

Answer<Promise<UploadReport>> KJsApiCloudDoc::uploadFile2CloudFolder(
    const SignedInUser& user, const JSContextEnv& page, const UploadFilesOptions& options)
{
    const auto& files = options.files;
    if (std::find(files.begin(), files.end(), std::string()) != files.end())
        return WrongParameters;
    UploadFilesToCloudArg request;
    request.userId = user.id().toStdString();
    request.cloudPath = options.cloudPath;
    request.srcFiles = files;
    request.createWhenNoExists = options.createWhenNoExists;
    request.userData = options.userData;
    request.uploadFrom = options.uploadFrom;
    request.extraParam = options.extraParam;
    return KCloudDocApiCaller::send(page, CloudOperations::UploadFiles, request);
}

Answer<Promise<ServiceReport>> KJsApiCloudDoc::openCloudFolder(
    const SignedInUser& user, const JSContextEnv& page, const OpenFolderOptions& options)
{
    if (options.cloudPath.empty() && options.fileId.empty())
        return WrongParameters;
    OpenVirtualCloudDiskArg request;
    request.userId = user.id().toStdString();
    request.openFrom = options.openFrom;
    request.fileId = options.fileId;
    request.cloudPath = options.cloudPath;
    request.createWhenNoExists = options.createWhenNoExists;
    request.entryIdentifier = options.entryIdentifier;
    request.extraParam = options.extraParam;
    return KCloudDocApiCaller::send(page, CloudOperations::OpenFolder, request);
}

Answer<Promise<Workspace>> KJsApiCloudDoc::getDefaultWorkSpace(const SignedInUser&, const JSContextEnv& page)
{
    GetDefaultWorkspaceArg request;
    request.callFrom = "jsapi";
    return KCloudDocApiCaller::send(page, CloudOperations::DefaultWorkspace, request);
}

namespace {

/// What a task is made of: strings, which go to the service as they are.
struct UploadArguments {
    QString userId;
    std::string filePath;
    std::string businessSource;
    std::string cloudDir;
    QString autoRename;
    static constexpr auto fields()
    {
        using Self = UploadArguments;
        return std::tuple(property("userId", &Self::userId, ""), property("filePath", &Self::filePath, ""),
            property("businessSource", &Self::businessSource, ""), property("cloudDir", &Self::cloudDir, ""),
            property("autoRename", &Self::autoRename, ""));
    }
};

} // namespace

Answer<Handle<KJsApiUploadFileTask>> KJsApiCloudDoc::createUploadFileTask(
    const SignedInUser& user, const JSContextEnv& page, const UploadTaskOptions& options)
{
    const UploadArguments arguments { user.id(), options.filePath, options.businessSource, options.cloudDir,
        heapString(options.autoRename ? "true" : "false") };
    return handOutNew<KJsApiUploadFileTask>(page, arguments, CreateTaskFailed);
}

Answer<Promise<std::string>> KJsApiCloudDoc::getMyCloudDocumentsLocalPath(
    const SignedInUser& user, const JSContextEnv& page)
{
    return KCloudDocApiCaller::send(page, CloudOperations::MyCloudDocumentsLocalPath, user.id());
}

Answer<Promise<ServiceReport>> KJsApiCloudDoc::syncFolder(
    const SignedInUser& user, const JSContextEnv& page, const SyncFolderOptions& options)
{
    if (options.depth < 0)
        return WrongParameters;
    SyncFolderArg request;
    request.userId = options.userId.empty() ? user.id().toStdString() : options.userId;
    request.groupId = options.groupId;
    request.fileId = options.folderId;
    request.depth = options.depth;
    request.extraParam = options.extraParam;
    return KCloudDocApiCaller::send(page, CloudOperations::SyncFolder, request);
}

Answer<Promise<SaveReport>> KJsApiCloudDoc::saveToCloudDir(
    const SignedInUser& user, const JSContextEnv& page, const SaveOptions& options)
{
    SaveToCloudDirArg request;
    request.groupId = options.groupId;
    request.userId = user.id().toStdString();
    request.fileId = options.fileId;
    request.fname = options.fname;
    request.itemType = options.itemType;
    request.extraParam = options.extraParam;
    return KCloudDocApiCaller::send(page, CloudOperations::SaveToCloudDir, request);
}

Answer<Promise<RoamingMode>> KJsApiCloudDoc::getRoamingMode(
    const SignedInUser& user, const JSContextEnv& page)
{
    return KCloudDocApiCaller::send(page, CloudOperations::GetRoamingMode, user.id());
}

Answer<Promise<RoamingMode>> KJsApiCloudDoc::changeRoamingMode(
    const SignedInUser& user, const JSContextEnv& page, RoamingMode mode)
{
    return KCloudDocApiCaller::changeRoamingMode(page, user.id(), mode);
}

Answer<Promise<std::string>> KJsApiCloudDoc::getPersonalPrivateGroup(
    const SignedInUser& user, const JSContextEnv& page)
{
    return KCloudDocApiCaller::send(page, CloudOperations::PersonalPrivateGroup, user.id());
}

KJsApiUploadFileTask::~KJsApiUploadFileTask()
{
    if (!m_task)
        return;
    // The object may go while a listener of its own is called.
    m_task->disconnect();
    m_task->release();
}

void KJsApiUploadFileTask::Initialise(IJSONValue* options)
{
    QMap<QString, QString> arguments;
    QStringList names;
    if (options)
        options->Keys(names);
    for (const QString& name : names) {
        KJSVariant value;
        options->Get(name, value);
        arguments.insert(name, convertToString(value.raw()).value_or(QString()));
    }
    if (arguments.isEmpty())
        return;
    m_task = new KUploadFileTask(arguments);
    m_task->setParent(libraryOwner());
    const auto follow = [&](auto signal, const auto& event) {
        QObject::connect(m_task, signal, [this, &event](const QVariantMap& task) { forward(event, task); });
    };
    follow(&KUploadFileTask::sigStarted, UploadStarted);
    follow(&KUploadFileTask::sigProgressChanged, UploadProgressChanged);
    follow(&KUploadFileTask::sigFinished, UploadFinished);
    QObject::connect(m_task, &QObject::destroyed, [this] { keepWhile(false); });
}

template <typename Payload>
void KJsApiUploadFileTask::forward(const Event<Payload>& event, const QVariantMap& task)
{
    // A listener may let go of the last other reference.
    const KRef<KJsApiUploadFileTask> held = hold(*this);
    send(event, task);
    keepWhile(m_task && m_task->isRunning());
}

/// Without this the collector would decide whether the end reaches a page that has let the object go.
void KJsApiUploadFileTask::keepWhile(bool isRunning)
{
    if (isRunning == static_cast<bool>(m_self))
        return;
    m_self = isRunning ? hold<IJSExtentionObject>(*this) : KRef<IJSExtentionObject>();
}

Answer<void> KJsApiUploadFileTask::act(bool (KUploadFileTask::*action)(), const Failure& failure)
{
    if (!m_task)
        return TaskIsNull;
    const bool done = (m_task->*action)();
    keepWhile(m_task->isRunning());
    if (!done)
        return failure;
    return {};
}

Answer<void> KJsApiUploadFileTask::start()
{
    return act(&KUploadFileTask::start, StartFailed);
}

Answer<void> KJsApiUploadFileTask::cancel()
{
    return act(&KUploadFileTask::cancel, CancelFailed);
}

Answer<void> KJsApiUploadFileTask::restart()
{
    return act(&KUploadFileTask::restart, RestartFailed);
}

} // namespace jsapi

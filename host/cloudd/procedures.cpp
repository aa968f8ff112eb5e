#include "host/cloudd/procedures.h"

#include "host/cloudd/envelope.h"
#include "host/cloudd/localjobs.h"
#include "host/cloudd/names.h"
#include "host/cloudd/orbitapi.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <algorithm>
#include <iterator>

namespace cloudd {

namespace {

using namespace nova::lark;

constexpr size_t MaxSources = 10'000;
constexpr int MaxCopies = 1'000;
/// Of one string that is returned with the reply.
constexpr size_t MaxEchoedBytes = 64 << 10;
/// Of those strings of all requests under way, including those whose connection has ended.
constexpr size_t MaxEchoedBytesTogether = 64 << 20;
/// Of the list of failed uploads: a reply must stay below 4 MiB.
constexpr size_t MaxFailedBytes = 1 << 20;
constexpr int FolderItem = 1;

/// Replies to a request with a result, at once or later.
template <typename Result> class Answer {
public:
    explicit Answer(Service::Reply reply)
        : m_reply(std::move(reply))
    {
    }

    void succeed(const Result& result) const { end(State::Ok, result); }
    void fail(State state) const { end(state, {}); }
    void end(State state, Result result) const
    {
        result.state = static_cast<int>(state);
        m_reply(state == State::Ok, &result);
    }

private:
    Service::Reply m_reply;
};

const std::string& checkEcho(const std::string& text)
{
    if (text.size() > MaxEchoedBytes)
        throw Error(State::WrongArguments);
    return text;
}

void addCopy(Core& core, std::shared_ptr<Job> job)
{
    if (core.copies.size() >= MaxCopies)
        throw Error(State::Busy);
    core.copies.add(std::move(job));
}

void requireOwnGroup(const Member& member, const std::string& groupId)
{
    if (!groupId.empty() && decodeUtf8(groupId) != member.groupId)
        throw Error(State::NotFound);
}

void getCloudFileCachePath(Core& core, const Member& member, const GetCloudFileCachePathArg& request,
    const Answer<GetCloudFileCachePathResult>& answer)
{
    const Item file = core.store.findItem(member, decodeUtf8(request.cloudPath));
    if (file.isFolder)
        throw Error(State::NotFound);
    GetCloudFileCachePathResult result;
    result.localPath = core.places.cachePath(file.id, file.name).toStdString();
    addCopy(core,
        std::make_shared<CacheJob>(
            core.store, core.contents, core.places, file.id, [answer, result](State state) {
                answer.end(state, state == State::Ok ? result : GetCloudFileCachePathResult());
            }));
}

/// The uploads of one request, which gets its reply when all of them have ended.
struct Batch {
    Batch(Core& core, const Answer<UploadFilesToCloudResult>& answer, const std::string& userData)
        : core(core)
        , answer(answer)
    {
        result.userData = checkEcho(userData);
        if (core.echoedBytes + userData.size() > MaxEchoedBytesTogether)
            throw Error(State::Busy);
        core.echoedBytes += userData.size();
    }
    ~Batch() { core.echoedBytes -= result.userData.size(); }

    Core& core;
    const Answer<UploadFilesToCloudResult> answer;
    UploadFilesToCloudResult result; ///< filled as the uploads end
    size_t left = 0;
    int uploaded = 0;
    int failedCount = 0;
    size_t failedBytes = 0;
    QJsonArray failed;       ///< as many as fit into the reply
    State state = State::Ok; ///< of the first failure

    void count(const Task& task)
    {
        --left;
        if (task.state == State::Ok) {
            ++uploaded;
            return;
        }
        ++failedCount;
        if (state == State::Ok)
            state = task.state;
        // JSON may need six bytes for a character.
        failedBytes += 6 * static_cast<size_t>(task.source.size()) + 3;
        if (failedBytes <= MaxFailedBytes)
            failed.append(task.source);
    }

    void end()
    {
        result.extraParam = { { "uploaded", std::to_string(uploaded) },
            { "failedCount", std::to_string(failedCount) },
            { "failed", QJsonDocument(failed).toJson(QJsonDocument::Compact).toStdString() } };
        answer.end(state, result);
    }
};

void uploadFilesToCloud(Core& core, const Member& member, const UploadFilesToCloudArg& request,
    const Answer<UploadFilesToCloudResult>& answer)
{
    if (request.srcFiles.empty() || request.srcFiles.size() > MaxSources)
        throw Error(State::WrongArguments);
    const auto batch = std::make_shared<Batch>(core, answer, request.userData);
    Store::Transaction transaction(core.store);
    const Item folder = findUploadFolder(core, member, decodeUtf8(request.cloudPath),
        request.createWhenNoExists ? Store::Missing::Create : Store::Missing::Fail);
    std::vector<Task> tasks;
    QSet<QString> names;
    for (const std::string& source : request.srcFiles) {
        tasks.push_back(makeTask(member, folder, checkSourcePath(source), Task::InternalKind));
        // Files of one request must not replace each other.
        tasks.back().autoRename = names.contains(tasks.back().name);
        names.insert(tasks.back().name);
    }
    core.transfers.record(tasks);
    transaction.commit();

    batch->left = tasks.size();
    core.transfers.start(tasks, [batch](const Task& task) {
        batch->count(task);
        if (batch->left == 0)
            batch->end();
    });
}

void openVirtualCloudDisk(Core& core, const Member& member, const OpenVirtualCloudDiskArg& request,
    const Answer<OpenVirtualCloudDiskResult>& answer)
{
    const bool byPath = request.fileId.empty();
    // If the local folder can not be made, neither is the cloud folder.
    Store::Transaction transaction(core.store);
    const Item folder = core.store.findFolder(member, decodeUtf8(byPath ? request.cloudPath : request.fileId),
        byPath && request.createWhenNoExists ? Store::Missing::Create : Store::Missing::Fail);
    const QString path = core.store.findPath(folder);
    core.places.openDocumentsFolder(member.userId, path);
    transaction.commit();
    OpenVirtualCloudDiskResult result;
    result.extraParam = { { "fileId", folder.id.toStdString() }, { "groupId", folder.groupId.toStdString() },
        { "cloudPath", path.toStdString() },
        { "localPath", core.places.documentsPath(member.userId, path).toStdString() } };
    answer.succeed(result);
}

/// For the current user: the request has no user id.
void getDefaultWorkspace(Core& core, const Session& session, const GetDefaultWorkspaceArg& request,
    const Answer<GetDefaultWorkspaceResult>& answer)
{
    if (session.currentUser.isEmpty())
        throw Error(State::NotSignedIn);
    const Member member = findSignedInMember(core, session, session.currentUser.toStdString());
    const std::string& caller = checkEcho(request.callFrom);
    const Item folder = findUploadFolder(core, member, {}, Store::Missing::Create);
    GetDefaultWorkspaceResult result;
    result.cloudPath = core.store.findPath(folder).toStdString();
    result.virtualPath = member.groupName.toStdString() + '/' + result.cloudPath;
    result.groupId = member.groupId.toStdString();
    result.parentId = folder.id.toStdString();
    result.extraParam = { { "isEnterpriseIP", session.companyId.isEmpty() ? "false" : "true" },
        { "callFrom", caller } };
    answer.succeed(result);
}

SaveToCloudDirResult makeSaveResult(Core& core, const QString& itemId)
{
    SaveToCloudDirResult result;
    result.cloudPath = core.store.findPath(core.store.findItemById(itemId)).toStdString();
    result.extraParam = { { "fileId", itemId.toStdString() } };
    return result;
}

QString ensureFolder(Core& core, const Item& parent, const QString& name)
{
    const auto known = core.store.findChild(parent.id, name);
    if (known && known->isFolder)
        return known->id;
    Store::Transaction transaction(core.store);
    const Item made = core.store.addFolder(parent, core.store.findFreeName(parent, name));
    transaction.commit();
    return made.id;
}

QString makeEmptyFile(Core& core, const Item& folder, const QString& name)
{
    Incoming empty(core.contents);
    core.contents.store(empty);
    Store::Transaction transaction(core.store);
    const Item made = core.store.putFile(folder, core.store.findFreeName(folder, name), 0, empty.sha256());
    transaction.commit();
    return made.id;
}

void saveToCloudDir(Core& core, const Member& member, const SaveToCloudDirArg& request,
    const Answer<SaveToCloudDirResult>& answer)
{
    requireOwnGroup(member, request.groupId);
    const QString name = checkItemName(decodeUtf8(request.fname));
    if (request.itemType != 0 && request.itemType != FolderItem)
        throw Error(State::WrongArguments);
    const auto source = request.extraParam.find("localPath");
    const bool uploads = request.itemType == 0 && source != request.extraParam.end();
    const QString sourceFile = uploads ? checkSourcePath(source->second) : QString();
    const Item folder = findUploadFolder(core, member, decodeUtf8(request.fileId), Store::Missing::Fail);
    if (!uploads) {
        const QString made = request.itemType == FolderItem ? ensureFolder(core, folder, name)
                                                            : makeEmptyFile(core, folder, name);
        answer.succeed(makeSaveResult(core, made));
        return;
    }
    Task task = makeTask(member, folder, sourceFile, Task::InternalKind);
    task.name = name;
    task.autoRename = true;
    Store::Transaction transaction(core.store);
    core.transfers.record({ task });
    transaction.commit();
    core.transfers.start({ task }, [&core, answer](const Task& ended) {
        SaveToCloudDirResult result;
        State state = ended.state;
        try {
            if (state == State::Ok)
                result = makeSaveResult(core, ended.itemId);
        } catch (const Error& error) {
            state = error.state;
        }
        answer.end(state, result);
    });
}

std::map<std::string, std::string> toStrings(const SyncReport& report)
{
    std::map<std::string, std::string> strings { { "uploaded", std::to_string(report.uploaded) },
        { "downloaded", std::to_string(report.downloaded) }, { "removed", std::to_string(report.removed) },
        { "conflicts", std::to_string(report.conflicts) }, { "skipped", std::to_string(report.skipped) },
        { "failed", std::to_string(report.failed) }, { "bytes", std::to_string(report.bytes) } };
    if (report.error)
        strings["reason"] = report.error;
    return strings;
}

void syncFolder(
    Core& core, const Member& member, const SyncFolderArg& request, const Answer<SyncFolderResult>& answer)
{
    if (const auto id = request.extraParam.find("syncFolderId"); id != request.extraParam.end()) {
        const auto end = [answer](const SyncReport& report) {
            SyncFolderResult result;
            result.extraParam = toStrings(report);
            answer.end(report.state, result);
        };
        try {
            core.syncFolders.sync(member, decodeUtf8(id->second), end);
        } catch (const Error& error) {
            SyncReport report;
            report.state = error.state;
            report.error = error.reason;
            end(report);
        }
        return;
    }
    requireOwnGroup(member, request.groupId);
    if (request.depth < 0)
        throw Error(State::WrongArguments);
    const Item folder = core.store.findFolder(member, decodeUtf8(request.fileId), Store::Missing::Fail);
    const std::string place =
        core.places.documentsPath(member.userId, core.store.findPath(folder)).toStdString();
    addCopy(core,
        std::make_shared<SyncJob>(core.store, core.contents, core.places, member.userId, folder.id,
            request.depth, [answer, place](const SyncJob::Result& done) {
                SyncFolderResult result;
                result.extraParam = { { "files", std::to_string(done.files) },
                    { "bytes", std::to_string(done.bytes) }, { "kept", std::to_string(done.kept) },
                    { "localPath", place } };
                answer.end(done.state, result);
            }));
}

void larkIpcCall(Core& core, Session& session, const LarkIpcArg& request, const Answer<LarkIpcResult>& answer)
{
    callMethod(core, session, request,
        [answer](State state, const LarkIpcResult& result) { answer.end(state, result); });
}

/// Calls a handler with the user of the request, or, if it takes one, with the session.
template <typename Caller, typename Argument, typename Result>
void call(void (*handler)(Core&, Caller&, const Argument&, const Answer<Result>&), Core& core,
    Session& session, const void* argument, Service::Reply reply)
{
    const Answer<Result> answer(std::move(reply));
    try {
        const auto& request = *static_cast<const Argument*>(argument);
        if constexpr (std::is_same_v<Caller, const Member>)
            handler(core, findSignedInMember(core, session, request.userId), request, answer);
        else
            handler(core, session, request, answer);
    } catch (const Error& error) {
        answer.fail(error.state);
    }
}

/// The SDK's requests, whose replies have their state elsewhere.
void orbitApiCall(Core& core, Session& session, const void* argument, Service::Reply given)
{
    const Service::Reply reply = std::move(given);
    const orbitapi::OrbitApiResult result =
        callOrbitApi(core, session, *static_cast<const orbitapi::CommonRequestArg*>(argument));
    reply(result.resultState == static_cast<int>(State::Ok), &result);
}

template <auto Handler> void run(Core& core, Session& session, const void* argument, Service::Reply reply)
{
    call(Handler, core, session, argument, std::move(reply));
}

constexpr Procedure Procedures[] = {
    { "larkIpcCall", run<larkIpcCall> },
    { "getCloudFileCachePath", run<getCloudFileCachePath> },
    { "uploadFilesToCloud", run<uploadFilesToCloud> },
    { "openVirtualCloudDisk", run<openVirtualCloudDisk> },
    { "getDefaultWorkspace", run<getDefaultWorkspace> },
    { "saveToCloudDir", run<saveToCloudDir> },
    { "syncFolder", run<syncFolder> },
    { "orbitApiCall", orbitApiCall },
};

} // namespace

const Procedure* findProcedure(std::string_view name)
{
    const auto* found = std::find_if(std::begin(Procedures), std::end(Procedures),
        [&](const Procedure& procedure) { return procedure.name == name; });
    return found == std::end(Procedures) ? nullptr : found;
}

} // namespace cloudd

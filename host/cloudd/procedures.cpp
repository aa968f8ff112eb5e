#include "host/cloudd/procedures.h"

#include "host/cloudd/envelope.h"
#include "host/cloudd/localjobs.h"
#include "host/cloudd/names.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <algorithm>
#include <iterator>

namespace cloudd {

namespace {

using namespace nova::lark;
using Texts = std::map<std::string, std::string>;

constexpr size_t MostSources = 10'000;
constexpr int MostCopies = 1'000;
/// Of a text that is sent back, which is kept until then.
constexpr size_t MostEchoedBytes = 64 << 10;
/// The same of all requests together, whose connections may have ended.
constexpr size_t MostEchoedBytesTogether = 64 << 20;
/// Of the list of failed uploads, so that a reply stays below 4 MiB.
constexpr size_t MostFailedBytes = 1 << 20;
constexpr int FolderItem = 1;

/// Replies with a result, at once or later.
template <typename Result> class Answer {
public:
    explicit Answer(Service::Reply reply)
        : m_reply(std::move(reply))
    {
    }

    void succeed(const Result& result) const { end(State::Ok, result); }
    void refuse(State state) const { end(state, {}); }
    void end(State state, Result result) const
    {
        result.state = static_cast<int>(state);
        m_reply(state == State::Ok, &result);
    }

private:
    Service::Reply m_reply;
};

const std::string& echoed(const std::string& text)
{
    if (text.size() > MostEchoedBytes)
        throw Refusal(State::WrongArguments);
    return text;
}

void addCopy(Core& core, std::shared_ptr<Job> job)
{
    if (core.copies.size() >= MostCopies)
        throw Refusal(State::Busy);
    core.copies.add(std::move(job));
}

void requireOwnGroup(const Member& member, const std::string& groupId)
{
    if (!groupId.empty() && text(groupId) != member.groupId)
        throw Refusal(State::NotFound);
}

void getCloudFileCachePath(Core& core, const Member& member, const GetCloudFileCachePathArg& request,
    const Answer<GetCloudFileCachePathResult>& answer)
{
    const Item file = core.store.item(member, text(request.cloudPath));
    if (file.isFolder)
        throw Refusal(State::NotFound);
    GetCloudFileCachePathResult result;
    result.localPath = core.places.cachePath(file.id, file.name).toStdString();
    addCopy(core,
        std::make_shared<CacheJob>(
            core.store, core.contents, core.places, file.id, [answer, result](State state) {
                answer.end(state, state == State::Ok ? result : GetCloudFileCachePathResult());
            }));
}

/// The uploads of one request, and its answer when all of them have ended. They share it.
struct Batch {
    Batch(Core& core, const Answer<UploadFilesToCloudResult>& answer, const std::string& userData)
        : core(core)
        , answer(answer)
    {
        result.userData = echoed(userData);
        if (core.echoedBytes + userData.size() > MostEchoedBytesTogether)
            throw Refusal(State::Busy);
        core.echoedBytes += userData.size();
    }
    ~Batch() { core.echoedBytes -= result.userData.size(); }

    Core& core;
    const Answer<UploadFilesToCloudResult> answer;
    UploadFilesToCloudResult result; ///< as far as it is known
    size_t left = 0;
    int uploaded = 0;
    int failedCount = 0;
    size_t failedBytes = 0;
    QJsonArray failed;       ///< as many as may be told
    State state = State::Ok; ///< the first failure's

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
        // In JSON a character may take six bytes.
        failedBytes += 6 * static_cast<size_t>(task.source.size()) + 3;
        if (failedBytes <= MostFailedBytes)
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
    if (request.srcFiles.empty() || request.srcFiles.size() > MostSources)
        throw Refusal(State::WrongArguments);
    const auto batch = std::make_shared<Batch>(core, answer, request.userData);
    Store::Transaction transaction(core.store);
    const Item folder = uploadFolder(core, member, text(request.cloudPath),
        request.createWhenNoExists ? Store::Missing::Make : Store::Missing::Refuse);
    std::vector<Task> tasks;
    QSet<QString> names;
    for (const std::string& source : request.srcFiles) {
        tasks.push_back(newTask(member, folder, sourcePath(source), Task::UnkeptKind));
        // Files of one request do not replace each other.
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
    // Without a local place no folder is made in the cloud, either.
    Store::Transaction transaction(core.store);
    const Item folder = core.store.folder(member, text(byPath ? request.cloudPath : request.fileId),
        byPath && request.createWhenNoExists ? Store::Missing::Make : Store::Missing::Refuse);
    const QString path = core.store.pathOf(folder);
    core.places.documentsFolder(member.userId, path);
    transaction.commit();
    OpenVirtualCloudDiskResult result;
    result.extraParam = { { "fileId", folder.id.toStdString() }, { "groupId", folder.groupId.toStdString() },
        { "cloudPath", path.toStdString() },
        { "localPath", core.places.documentsPath(member.userId, path).toStdString() } };
    answer.succeed(result);
}

/// Of the current user: the request names none.
void getDefaultWorkspace(Core& core, const Session& session, const GetDefaultWorkspaceArg& request,
    const Answer<GetDefaultWorkspaceResult>& answer)
{
    if (session.currentUser.isEmpty())
        throw Refusal(State::NotSignedIn);
    const Member member = admitted(core, session, session.currentUser.toStdString());
    const std::string& caller = echoed(request.callFrom);
    const Item folder = uploadFolder(core, member, {}, Store::Missing::Make);
    GetDefaultWorkspaceResult result;
    result.cloudPath = core.store.pathOf(folder).toStdString();
    result.virtualPath = member.groupName.toStdString() + '/' + result.cloudPath;
    result.groupId = member.groupId.toStdString();
    result.parentId = folder.id.toStdString();
    result.extraParam = { { "isEnterpriseIP", session.companyId.isEmpty() ? "false" : "true" },
        { "callFrom", caller } };
    answer.succeed(result);
}

SaveToCloudDirResult saved(Core& core, const QString& itemId)
{
    SaveToCloudDirResult result;
    result.cloudPath = core.store.pathOf(core.store.itemOfId(itemId)).toStdString();
    result.extraParam = { { "fileId", itemId.toStdString() } };
    return result;
}

QString madeFolder(Core& core, const Item& parent, const QString& name)
{
    const auto known = core.store.child(parent.id, name);
    if (known && known->isFolder)
        return known->id;
    Store::Transaction transaction(core.store);
    const Item made = core.store.addFolder(parent, core.store.freeName(parent, name));
    transaction.commit();
    return made.id;
}

QString madeEmptyFile(Core& core, const Item& folder, const QString& name)
{
    Incoming empty(core.contents);
    core.contents.keep(empty);
    Store::Transaction transaction(core.store);
    const Item made = core.store.putFile(folder, core.store.freeName(folder, name), 0, empty.sha256());
    transaction.commit();
    return made.id;
}

void saveToCloudDir(Core& core, const Member& member, const SaveToCloudDirArg& request,
    const Answer<SaveToCloudDirResult>& answer)
{
    requireOwnGroup(member, request.groupId);
    const QString name = itemName(text(request.fname));
    if (request.itemType != 0 && request.itemType != FolderItem)
        throw Refusal(State::WrongArguments);
    const auto source = request.extraParam.find("localPath");
    const bool uploads = request.itemType == 0 && source != request.extraParam.end();
    const QString sourceFile = uploads ? sourcePath(source->second) : QString();
    const Item folder = uploadFolder(core, member, text(request.fileId), Store::Missing::Refuse);
    if (!uploads) {
        const QString made = request.itemType == FolderItem ? madeFolder(core, folder, name)
                                                            : madeEmptyFile(core, folder, name);
        answer.succeed(saved(core, made));
        return;
    }
    Task task = newTask(member, folder, sourceFile, Task::UnkeptKind);
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
                result = saved(core, ended.itemId);
        } catch (const Refusal& refusal) {
            state = refusal.state;
        }
        answer.end(state, result);
    });
}

void syncFolder(
    Core& core, const Member& member, const SyncFolderArg& request, const Answer<SyncFolderResult>& answer)
{
    requireOwnGroup(member, request.groupId);
    if (request.depth < 0)
        throw Refusal(State::WrongArguments);
    const Item folder = core.store.folder(member, text(request.fileId), Store::Missing::Refuse);
    const std::string place =
        core.places.documentsPath(member.userId, core.store.pathOf(folder)).toStdString();
    addCopy(core,
        std::make_shared<SyncJob>(core.store, core.contents, core.places, member.userId, folder.id,
            request.depth, [answer, place](const SyncJob::Result& done) {
                SyncFolderResult result;
                result.extraParam = { { "files", std::to_string(done.files) },
                    { "bytes", std::to_string(done.bytes) }, { "localPath", place } };
                answer.end(done.state, result);
            }));
}

void larkIpcCall(Core& core, Session& session, const LarkIpcArg& request, const Answer<LarkIpcResult>& answer)
{
    answer.succeed(callMethod(core, session, request));
}

/// A handler is given the user that its message names, or else the session.
template <typename Caller, typename Argument, typename Result>
void call(void (*handler)(Core&, Caller&, const Argument&, const Answer<Result>&), Core& core,
    Session& session, const void* argument, Service::Reply reply)
{
    const Answer<Result> answer(std::move(reply));
    try {
        const auto& request = *static_cast<const Argument*>(argument);
        if constexpr (std::is_same_v<Caller, const Member>)
            handler(core, admitted(core, session, request.userId), request, answer);
        else
            handler(core, session, request, answer);
    } catch (const Refusal& refusal) {
        answer.refuse(refusal.state);
    }
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
};

} // namespace

const Procedure* findProcedure(std::string_view name)
{
    const auto* found = std::find_if(std::begin(Procedures), std::end(Procedures),
        [&](const Procedure& procedure) { return procedure.name == name; });
    return found == std::end(Procedures) ? nullptr : found;
}

} // namespace cloudd

#include "cloud/syncfolderrequest.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTimer>
#include <fcntl.h>

namespace jsapi {

namespace {

constexpr int MaxReasonBytes = 100;

QString key(const char* name)
{
    return heapString(name);
}

PathCheck closedPath()
{
    return { false, key("closed") };
}

} // namespace

bool KSyncFolderRequest::start(const JSContextEnv& page, const char* method, const Arguments& arguments)
{
    FileDescriptor folder(open(QFile::encodeName(arguments.value(key("localPath"))).constData(),
        O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    // A folder can be measured whatever is in it.
    if (!folder || qstrcmp(method, "sync.measure") == 0)
        return invoke(method, arguments);
    m_look = std::make_unique<GuardedPlaceLook>(std::move(folder));
    takeTurns(page, this, [this, watch = PageWatch(page), method, arguments](QByteArray&) {
        return lookOn(watch, method, arguments);
    });
    return true;
}

Slice KSyncFolderRequest::lookOn(const PageWatch& watch, const char* method, const Arguments& arguments)
{
    constexpr int SliceMs = 5;
    QElapsedTimer spent;
    spent.start();
    std::optional<bool> holdsClosedPlace = watch.isGone() ? std::optional(true) : std::nullopt;
    while (!holdsClosedPlace && !spent.hasExpired(SliceMs))
        holdsClosedPlace = m_look->step();
    if (!holdsClosedPlace)
        return Slice::Worked;
    m_look.reset();
    if (!*holdsClosedPlace && !invoke(method, arguments))
        fail("noReply");
    else if (*holdsClosedPlace && m_refuse)
        m_refuse(*this);
    else if (*holdsClosedPlace)
        reject(HoldsClosedPlace);
    return Slice::Ended;
}

bool KSyncFolderRequest::invoke(const char* method, const Arguments& arguments)
{
    return !invokeCloud(QString::fromUtf16(LarkIpcCall), larkIpcArg(heapString(method), arguments), this,
        "slot_requestFinished")
                .isEmpty();
}

bool KSyncFolderRequest::invokeSync(const QString& userId, const QString& id)
{
    m_id = id;
    SyncFolderArg request;
    request.userId = userId.toStdString();
    request.extraParam["syncFolderId"] = id.toStdString();
    return !invokeCloud(heapString("syncFolder"), request, this, "onSyncFolderFinished").isEmpty();
}

Answer<Promise<PathCheck>> KSyncFolderRequest::checkPath(const JSContextEnv& page, const Arguments& arguments)
{
    auto request = std::make_unique<KSyncFolderRequest>();
    request->m_finish = [](KSyncFolderRequest& self, const LarkIpcResult& result) {
        self.resolve(toVariant(fromJson<PathCheck>(result.resultString)));
    };
    // The check never refuses a path: a word for it is what the page wants.
    request->m_refuse = [](KSyncFolderRequest& self) { self.resolve(toVariant(closedPath())); };
    return begin<PathCheck>(page, std::move(request), "sync.checkPath", arguments);
}

Answer<Promise<PathCheck>> KSyncFolderRequest::refusePath(const JSContextEnv& page)
{
    auto request = std::make_unique<KSyncFolderRequest>();
    QTimer::singleShot(0, request.get(), [self = request.get()] { self->resolve(toVariant(closedPath())); });
    return promise<PathCheck>(page, std::move(request), PromiseServiceError);
}

Answer<Promise<SyncSummary>> KSyncFolderRequest::sync(
    const JSContextEnv& page, const QString& userId, const QString& id)
{
    auto request = std::make_unique<KSyncFolderRequest>();
    if (!request->invokeSync(userId, id))
        return CallFailed / heapString("syncFolder");
    return promise<SyncSummary>(page, std::move(request), PromiseServiceError);
}

Answer<Promise<SyncSummary>> KSyncFolderRequest::addAndSync(
    const JSContextEnv& page, const QString& userId, const Arguments& arguments)
{
    auto request = std::make_unique<KSyncFolderRequest>();
    request->m_finish = [userId](KSyncFolderRequest& self, const LarkIpcResult& result) {
        if (!self.invokeSync(userId, fromJson<SyncFolderInfo>(result.resultString).id))
            self.fail("noReply");
    };
    return begin<SyncSummary>(page, std::move(request), "sync.addFolder", arguments);
}

Answer<Promise<bool>> KSyncFolderRequest::removeDesktop(const JSContextEnv& page, const QString& userId)
{
    auto request = std::make_unique<KSyncFolderRequest>();
    request->m_finish = [userId](KSyncFolderRequest& self, const LarkIpcResult& result) {
        for (const std::string& json : result.resultList) {
            const auto folder = fromJson<SyncFolderInfo>(json);
            if (folder.kind != key("desktop"))
                continue;
            self.m_finish = [](KSyncFolderRequest& removed, const LarkIpcResult&) { removed.resolve(true); };
            if (!self.invoke("sync.removeFolder", { { key("userId"), userId }, { key("id"), folder.id } }))
                self.fail("noReply");
            return;
        }
        self.resolve(false);
    };
    return begin<bool>(page, std::move(request), "sync.listFolders", { { key("userId"), userId } });
}

void KSyncFolderRequest::slot_requestFinished(bool ok, const QString&, const LarkIpcResult& result)
{
    if (!ok || result.state != 0)
        return fail(result.resultString);
    const auto finish = m_finish;
    finish(*this, result);
}

void KSyncFolderRequest::onSyncFolderFinished(bool ok, const QString&, const SyncFolderResult& result)
{
    const auto read = [&](const char* name) {
        const auto found = result.extraParam.find(name);
        return found == result.extraParam.end() ? std::string() : found->second;
    };
    if (!ok || result.state != 0)
        return fail(read("reason"));
    const auto count = [&](const char* name) { return QString::fromStdString(read(name)).toDouble(); };
    resolve(toVariant(SyncSummary { m_id, count("uploaded"), count("downloaded"), count("removed"),
        count("conflicts"), count("skipped"), count("bytes") }));
}

void KSyncFolderRequest::fail(const std::string& reason)
{
    reject(SyncRequestFailed
        / QString::fromStdString(reason.empty() ? std::string("noReply") : reason.substr(0, MaxReasonBytes)));
}

void KSyncDialogRequest::slot_dialogEnded(bool confirmed, const QVariantMap& values)
{
    m_turn.reset(); // for the next one, which script may open at once
    resolve(m_read(confirmed, values));
}

} // namespace jsapi

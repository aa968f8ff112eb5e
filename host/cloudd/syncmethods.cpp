#include "host/cloudd/method.h"
#include "host/cloudd/syncmarks.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <sys/statvfs.h>

namespace cloudd {

namespace {

using nova::lark::LarkIpcResult;
using Result = std::optional<LarkIpcResult>;

constexpr int MaxRecentFiles = 200;
constexpr auto Mode = "twoWay";

QString key(const char* name)
{
    return QString::fromLatin1(name);
}

LarkIpcResult makeJsonResult(const QJsonObject& object)
{
    LarkIpcResult result;
    result.resultString = toJson(object);
    return result;
}

QJsonObject describe(MethodCall& call, const SyncFolder& folder)
{
    const char* fault = call.core.syncFolders.checkFolder(folder);
    return { { key("id"), folder.id }, { key("localPath"), folder.localPath },
        { key("cloudFolderId"), folder.cloudFolderId },
        { key("cloudPath"), call.core.store.findPath(call.core.store.findItemById(folder.cloudFolderId)) },
        { key("kind"), folder.kind }, { key("mode"), key(Mode) },
        { key("state"),
            key(call.core.syncFolders.isSyncing(folder.id) ? "syncing"
                    : fault                                ? fault
                    : folder.lastError.isEmpty()           ? "idle"
                                                           : "failed") },
        { key("lastSyncTime"), folder.lastSyncTime }, { key("lastError"), folder.lastError } };
}

SyncFolder findFolder(MethodCall& call)
{
    return call.core.syncFolders.records().find(call.member.userId, call.readString("id"));
}

Store::Missing readMissing(const MethodCall& call)
{
    return call.readFlag("create") ? Store::Missing::Create : Store::Missing::Fail;
}

Result addFolder(MethodCall& call)
{
    const QString mode = call.readString("mode");
    const QString kind = call.readString("kind");
    if ((!mode.isEmpty() && mode != key(Mode)) || (kind != key("folder") && kind != key("desktop"))
        || call.readString("cloudFolder").isEmpty())
        throw Error(State::WrongArguments);
    const QString path = call.readString("localPath");
    const char* reason =
        call.core.syncFolders.checkPath(call.member.userId, path, {}, call.readFlag("makeLocal"));
    if (reason)
        throw Error(State::WrongPlace, reason);
    if (readMissing(call) == Store::Missing::Fail)
        call.core.store.findFolder(call.member, call.readString("cloudFolder"), Store::Missing::Fail);
    if (call.readFlag("makeLocal") && !openFolder(QFile::encodeName(path)))
        throw Error(State::StorageFailed);
    return makeJsonResult(describe(call,
        call.core.syncFolders.add(
            call.member, path, call.readString("cloudFolder"), readMissing(call), kind)));
}

Result removeFolder(MethodCall& call)
{
    call.core.syncFolders.remove(findFolder(call));
    return LarkIpcResult();
}

Result moveFolder(MethodCall& call)
{
    return makeJsonResult(describe(
        call, call.core.syncFolders.move(call.member, findFolder(call), call.readString("localPath"))));
}

Result listFolders(MethodCall& call)
{
    LarkIpcResult result;
    for (const SyncFolder& folder : call.core.syncFolders.records().list(call.member.userId))
        result.resultList.push_back(toJson(describe(call, folder)));
    return result;
}

LarkIpcResult makeCheckResult(const char* reason)
{
    return makeJsonResult({ { key("valid"), !reason }, { key("reason"), key(reason ? reason : "") } });
}

Result checkPath(MethodCall& call)
{
    return makeCheckResult(call.core.syncFolders.checkPath(
        call.member.userId, call.readString("localPath"), call.readString("id"), call.readFlag("makeLocal")));
}

Result checkFolder(MethodCall& call)
{
    return makeCheckResult(call.core.syncFolders.checkFolder(findFolder(call)));
}

QJsonObject describe(const SyncReport& report)
{
    QJsonArray changes;
    for (const SyncReport::Change& change : report.changes)
        changes.append(QJsonObject { { key("path"), change.path }, { key("action"), key(change.action) } });
    const qint64 all = report.uploaded + report.downloaded + report.removed + report.conflicts;
    return { { key("files"), report.files }, { key("folders"), report.folders },
        { key("size"), report.localBytes }, { key("uploads"), report.uploaded },
        { key("downloads"), report.downloaded }, { key("removals"), report.removed },
        { key("conflicts"), report.conflicts }, { key("skipped"), report.skipped },
        { key("bytes"), report.bytes }, { key("changes"), changes },
        { key("hasMore"), all > static_cast<qint64>(report.changes.size()) } };
}

FolderSync::Ended replyWith(MethodCall& call, const std::function<QJsonObject(const SyncReport&)>& describe)
{
    return [reply = call.reply, describe](const SyncReport& report) {
        if (report.state == State::Ok)
            return reply(State::Ok, makeJsonResult(describe(report)));
        LarkIpcResult failed;
        failed.resultString = report.error;
        reply(report.state, failed);
    };
}

/// The sync folder `id`, or what a sync of `localPath` with the cloud folder would be.
SyncFolder findScanned(MethodCall& call)
{
    if (!call.readString("id").isEmpty())
        return findFolder(call);
    SyncFolder folder;
    folder.userId = call.member.userId;
    folder.localPath = checkSourcePath(call.readBytes("localPath"));
    if (const QString cloud = call.readString("cloudFolder"); !cloud.isEmpty()) {
        try {
            folder.cloudFolderId = call.core.store.findFolder(call.member, cloud, Store::Missing::Fail).id;
        } catch (const Error& error) {
            if (error.state != State::NotFound)
                throw;
        }
    }
    return folder;
}

Result scan(MethodCall& call)
{
    call.core.syncFolders.scan(call.member, findScanned(call),
        replyWith(call, [](const SyncReport& report) { return describe(report); }));
    return std::nullopt;
}

Result measure(MethodCall& call)
{
    if (const QString cloud = call.readString("cloudFolder"); !cloud.isEmpty()) {
        const Usage usage =
            call.core.store.measure(call.core.store.findFolder(call.member, cloud, Store::Missing::Fail));
        return makeJsonResult({ { key("files"), usage.files }, { key("folders"), usage.folders },
            { key("size"), usage.bytes } });
    }
    call.core.syncFolders.scan(call.member, findScanned(call), replyWith(call, [](const SyncReport& report) {
        return QJsonObject { { key("files"), report.files }, { key("folders"), report.folders },
            { key("size"), report.localBytes } };
    }));
    return std::nullopt;
}

qint64 findFreeBytes(const QString& path)
{
    struct statvfs disk { };
    const QString there = QFileInfo::exists(path) ? path : QFileInfo(path).path();
    return statvfs(QFile::encodeName(there).constData(), &disk) == 0
        ? static_cast<qint64>(disk.f_bavail) * static_cast<qint64>(disk.f_frsize)
        : 0;
}

/// Whether a local folder may become a sync folder, and what there is to be transferred.
Result precheck(MethodCall& call)
{
    const QString path = call.readString("localPath");
    const bool makesLocal = call.readFlag("makeLocal");
    const char* reason = call.core.syncFolders.checkPath(call.member.userId, path, {}, makesLocal);
    const qint64 free = findFreeBytes(path);
    const auto describe = [free](const char* fault, qint64 files, qint64 bytes) {
        return QJsonObject { { key("allowed"), !fault }, { key("reason"), key(fault ? fault : "") },
            { key("files"), files }, { key("size"), bytes }, { key("freeBytes"), free } };
    };
    if (makesLocal) {
        const Usage usage = call.core.store.measure(
            call.core.store.findFolder(call.member, call.readString("cloudFolder"), Store::Missing::Fail));
        if (!reason && usage.bytes > free)
            reason = "diskFull";
        return makeJsonResult(describe(reason, usage.files, usage.bytes));
    }
    if (reason)
        return makeJsonResult(describe(reason, 0, 0));
    call.core.syncFolders.scan(
        call.member, findScanned(call), replyWith(call, [describe](const SyncReport& report) {
            return describe(nullptr, report.uploaded + report.downloaded, report.bytes);
        }));
    return std::nullopt;
}

Result checkMarks(MethodCall& call)
{
    call.core.syncFolders.add(std::make_shared<MarkJob>(call.core.store, call.member.userId,
        call.readFlag("repair"), [reply = call.reply](State state, const MarkJob::Result& result) {
            reply(state,
                makeJsonResult({ { key("supported"), result.isSupported }, { key("missing"), result.missing },
                    { key("repaired"), result.repaired } }));
        }));
    return std::nullopt;
}

/// Where a cloud file is in one of the sync folders; empty when it is in none.
QString findLocalPath(const std::vector<std::pair<QString, QString>>& places, const QString& cloudPath)
{
    for (const auto& [cloud, local] : places) {
        if (cloud.isEmpty())
            return local + QLatin1Char('/') + cloudPath;
        if (cloudPath.startsWith(cloud + QLatin1Char('/')))
            return local + cloudPath.mid(cloud.size());
    }
    return {};
}

Result listRecentFiles(MethodCall& call)
{
    bool isNumber = false;
    const int count = call.readString("count").toInt(&isNumber);
    if (!isNumber || count < 1 || count > MaxRecentFiles)
        throw Error(State::WrongArguments);
    std::vector<std::pair<QString, QString>> places;
    for (const SyncFolder& folder : call.core.syncFolders.records().list(call.member.userId))
        places.emplace_back(
            call.core.store.findPath(call.core.store.findItemById(folder.cloudFolderId)), folder.localPath);
    LarkIpcResult result;
    for (const ChangedFile& recent : call.core.store.listChangedFiles(call.member, {}, count)) {
        const QString path = call.core.store.findPath(recent.file);
        const QString local = findLocalPath(places, path);
        result.resultList.push_back(toJson({ { key("fileId"), recent.file.id },
            { key("name"), recent.file.name }, { key("cloudPath"), path },
            { key("localPath"), QFileInfo::exists(local) ? local : QString() },
            { key("size"), recent.file.size }, { key("changeTime"), recent.changeTime } }));
    }
    return result;
}

Result listModes(MethodCall&)
{
    LarkIpcResult result;
    result.resultList = { Mode };
    return result;
}

constexpr Method Methods[] = {
    { "sync.addFolder", addFolder },
    { "sync.removeFolder", removeFolder },
    { "sync.moveFolder", moveFolder },
    { "sync.listFolders", listFolders },
    { "sync.checkPath", checkPath },
    { "sync.checkFolder", checkFolder },
    { "sync.scan", scan },
    { "sync.measure", measure },
    { "sync.precheck", precheck },
    { "sync.checkMarks", checkMarks },
    { "sync.listRecentFiles", listRecentFiles },
    { "sync.listModes", listModes },
};

} // namespace

std::span<const Method> syncMethods()
{
    return Methods;
}

} // namespace cloudd

// Requests about sync folders, from the call until the reply.
#pragma once

#include "cloud/clouddocapicaller.h"
#include "cloud/jsonvalues.h"
#include "cloud/syncfoldervalues.h"
#include "local/filedialogs.h"
#include "local/guardedplaces.h"
#include "local/pageturns.h"
#include "local/pathcheck.h"
#include "suite/ksyncfolderui.h"

namespace jsapi {

/// With a word of the service's for the reason, or "noReply".
inline constexpr Failure SyncRequestFailed =
    Failure { ErrorCode::OperationFailed, "Sync folder request failed: %1." }.rejected();
/// The folder holds what is closed to pages.
inline constexpr Failure HoldsClosedPlace = NewPathIsIllegal.rejected();
inline constexpr Failure NoSyncFolderUi { ErrorCode::OperationFailed,
    "Sync folder dialogs are not available." };

/// One or two requests to the cloud service: the second, a sync, is made of the reply to the first. A folder that is to be
/// synced is looked through before; one that holds what is closed to pages is refused, since it would be written to.
class KSyncFolderRequest final : public KJsRequest {
    Q_OBJECT

public:
    using Arguments = QMap<QString, QString>;

    /// A method of the general envelope, whose result is read by `read`.
    template <typename Value>
    static Answer<Promise<Value>> send(const JSContextEnv& page, const char* method,
        const Arguments& arguments, Value (*read)(const LarkIpcResult& result))
    {
        auto request = std::make_unique<KSyncFolderRequest>();
        request->m_finish = [read](KSyncFolderRequest& self, const LarkIpcResult& result) {
            self.resolve(toVariant(read(result)));
        };
        return begin<Value>(page, std::move(request), method, arguments);
    }
    /// The same where the result is one JSON value.
    template <typename Value>
    static Answer<Promise<Value>> send(
        const JSContextEnv& page, const char* method, const Arguments& arguments)
    {
        return send<Value>(
            page, method, arguments,
            +[](const LarkIpcResult& result) { return fromJson<Value>(result.resultString); });
    }
    /// Whether a folder can be synced.
    static Answer<Promise<PathCheck>> checkPath(const JSContextEnv& page, const Arguments& arguments);
    /// What that is of a path that is closed to pages.
    static Answer<Promise<PathCheck>> refusePath(const JSContextEnv& page);
    /// Syncs a folder.
    static Answer<Promise<SyncSummary>> sync(
        const JSContextEnv& page, const QString& userId, const QString& id);
    /// Adds one, and syncs it.
    static Answer<Promise<SyncSummary>> addAndSync(
        const JSContextEnv& page, const QString& userId, const Arguments& arguments);
    /// Removes the one that is the desktop. Resolves with whether there was one.
    static Answer<Promise<bool>> removeDesktop(const JSContextEnv& page, const QString& userId);

    // For the service, once each.
    Q_SLOT void slot_requestFinished(bool ok, const QString& requestId, const LarkIpcResult& result);
    Q_SLOT void onSyncFolderFinished(bool ok, const QString& requestId, const SyncFolderResult& result);

private:
    template <typename Value>
    static Answer<Promise<Value>> begin(const JSContextEnv& page, std::unique_ptr<KSyncFolderRequest> request,
        const char* method, const Arguments& arguments)
    {
        if (!request->start(page, method, arguments))
            return CallFailed / QString::fromUtf16(LarkIpcCall);
        return promise<Value>(page, std::move(request), PromiseServiceError);
    }
    /// Looks through the folder first, if there is one to be synced.
    bool start(const JSContextEnv& page, const char* method, const Arguments& arguments);
    Slice lookOn(const PageWatch& watch, const char* method, const Arguments& arguments);
    bool invoke(const char* method, const Arguments& arguments);
    bool invokeSync(const QString& userId, const QString& id);
    void fail(const std::string& reason);

    std::function<void(KSyncFolderRequest&, const LarkIpcResult&)> m_finish;
    std::function<void(KSyncFolderRequest&)> m_refuse; ///< in place of HoldsClosedPlace
    std::unique_ptr<GuardedPlaceLook> m_look;
    QString m_id; ///< of the folder that is synced
};

/// A dialog of the suite's, from the call until its end. While another dialog of the page is open it ends at once, as one
/// that the user cancels does.
class KSyncDialogRequest final : public KJsRequest {
    Q_OBJECT

public:
    template <typename Value>
    static Answer<Promise<Value>> show(const JSContextEnv& page, KSyncFolderDialog dialog,
        const QVariantMap& options, Value (*read)(bool confirmed, const QVariantMap& values))
    {
        auto request = std::make_unique<KSyncDialogRequest>(page);
        request->m_read = [read](bool confirmed, const QVariantMap& values) {
            return toVariant(read(confirmed, values));
        };
        KSyncFolderUi* ui = KSyncFolderUi::getInstance();
        if (!ui)
            return NoSyncFolderUi;
        if (!*request->m_turn)
            request->slot_dialogEnded(false, {});
        else if (!ui->show(dialog, page, options, request.get(), heapString("slot_dialogEnded")))
            return NoSyncFolderUi;
        return promise<Value>(page, std::move(request), PromiseServiceError);
    }

    explicit KSyncDialogRequest(const JSContextEnv& page)
        : m_turn(std::in_place, page)
    {
    }

    /// For the suite, once.
    Q_SLOT void slot_dialogEnded(bool confirmed, const QVariantMap& values);

private:
    std::optional<DialogTurn> m_turn;
    std::function<QVariant(bool, const QVariantMap&)> m_read;
};

} // namespace jsapi

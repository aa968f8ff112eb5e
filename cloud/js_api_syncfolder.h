#pragma once

#include "cloud/cloudnoticefollower.h"
#include "cloud/signedinuser.h"
#include "cloud/syncfolderrequest.h"

#include <memory>

namespace jsapi {

class KSyncFolderEventHandle final : public KCloudNoticeFollower {
    Q_OBJECT

public:
    explicit KSyncFolderEventHandle(IKJSExtentionApiEvent& syncFolder)
        : m_syncFolder(syncFolder)
    {
    }

private:
    void takeActions(const QMap<QString, QString>& actions) override;

    IKJSExtentionApiEvent& m_syncFolder;
};

/// "NovaExtension.SyncFolder": folders of this machine that are kept in step with the cloud.
class KJsApiSyncFolder final : public KJCExtendJsEventObj<KJsApiSyncFolder> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.SyncFolder";
    static const MemberList& members();

    struct PathDialogOptions;
    struct EntryOptions;
    struct MessageOptions;
    struct PrivilegeOptions;
    struct SizeOptions;
    struct FolderOptions;
    struct DesktopOptions;
    struct ToLocalOptions;
    struct SyncOptions;
    struct MoveOptions;
    struct PathOptions;
    struct IdOptions;
    struct RecentOptions;
    struct ScanOptions;

    Answer<Promise<DialogEnd>> openSyncFolderListDlg(
        const SignedInUser& user, const JSContextEnv& page, const EntryOptions& options);
    Answer<Promise<QString>> showSyncFolderPathWidget(
        const SignedInUser& user, const JSContextEnv& page, const PathDialogOptions& options);
    Answer<Promise<DialogEnd>> openCloudSpacePage(
        const SignedInUser& user, const JSContextEnv& page, const EntryOptions& options);
    Answer<Promise<FolderSize>> getFolderSize(
        const SignedInUser& user, const JSContextEnv& page, const SizeOptions& options);
    Answer<Promise<SyncModes>> getSupportSelectSyncFolderMode(
        const SignedInUser& user, const JSContextEnv& page);
    Answer<Promise<SyncPrecheck>> syncFolderPrecheck(
        const SignedInUser& user, const JSContextEnv& page, const FolderOptions& options);
    Answer<Promise<SyncPrecheck>> desktopSyncPreCheck(
        const SignedInUser& user, const JSContextEnv& page, const DesktopOptions& options);
    Answer<Promise<SyncPrecheck>> syncToLocalPrecheck(
        const SignedInUser& user, const JSContextEnv& page, const ToLocalOptions& options);
    Answer<Promise<SyncFolderInfo>> setPersonalDesktopSync(
        const SignedInUser& user, const JSContextEnv& page, const DesktopOptions& options);
    Answer<Promise<bool>> cancelPersonalDesktopSync(
        const SignedInUser& user, const JSContextEnv& page, const EntryOptions& options);
    Answer<Promise<OverlayIcons>> getIsNeedRepairOverlayIcon(
        const SignedInUser& user, const JSContextEnv& page);
    Answer<Promise<OverlayIcons>> doRepairOverlayIcon(const SignedInUser& user, const JSContextEnv& page);
    Answer<Promise<SyncSummary>> syncFolder(
        const SignedInUser& user, const JSContextEnv& page, const SyncOptions& options);
    Answer<Promise<SyncSummary>> syncToLocal(
        const SignedInUser& user, const JSContextEnv& page, const ToLocalOptions& options);
    Answer<Promise<SyncFolderInfo>> changeSyncPath(
        const SignedInUser& user, const JSContextEnv& page, const MoveOptions& options);
    Answer<Promise<PathCheck>> checkSyncFolderPathValid(
        const SignedInUser& user, const JSContextEnv& page, const PathOptions& options);
    Answer<Promise<PathCheck>> checkSyncFolderValid(
        const SignedInUser& user, const JSContextEnv& page, const IdOptions& options);
    Answer<Promise<std::vector<RecentFile>>> getRecentFileList(
        const SignedInUser& user, const JSContextEnv& page, const RecentOptions& options);
    Answer<Promise<FolderScan>> scanFolder(
        const SignedInUser& user, const JSContextEnv& page, const ScanOptions& options);
    Answer<Promise<SyncFolderList>> getSyncFolderCount(const SignedInUser& user, const JSContextEnv& page);
    Answer<Promise<std::int32_t>> showNovaBox(
        const SignedInUser& user, const JSContextEnv& page, const MessageOptions& options);
    Answer<std::vector<UserType>> getUserTypeList(const SignedInUser& user);
    Answer<Promise<DialogEnd>> showCompanyPrivilegeDlg(
        const SignedInUser& user, const JSContextEnv& page, const PrivilegeOptions& options);

    void prepareEvents() override;
    void followServices();

private:
    std::unique_ptr<KSyncFolderEventHandle> m_handle;
};

} // namespace jsapi

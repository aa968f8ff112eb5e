#pragma once

#include "cloud/clouddoceventhandle.h"
#include "cloud/uploadfiletask.h"
#include "framework/events.h"

#include <QPointer>
#include <memory>

/// "NovaExtension.CloudDoc": the signed-in user's cloud documents, and what happens to them: the events of
/// KCloudDocEventHandle, which go to the listeners of every page.
///
/// Every method but the event members fails with, in this order: 3 "Cloud service error." (the suite has no
/// cloud service), 3 "Get account SDK error.", 3 "User not login", 1 "wrong parameters.". Those that answer a
/// promise fail with 3 "Call %1 failed." (%1 the procedure: the service refused the request) and 3 "Promise
/// Service error.", and reject, code 3, with the text named below when the service answers that it failed.
class KJsApiCloudDoc final : public KJCExtendJsEventObj<KJsApiCloudDoc> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.CloudDoc";
    static const MemberList& members();

    /// Property: the Orbitapi object.
    Reply orbitapi(Call& call);
    /// (cloudPath: string, the cloud file's path or id) -> promise of the path of its local copy. "Get file
    /// cache info failed.".
    Reply getCloudCachedFile(Call& call);
    /// {cloudPath: string, files: string[] (not empty), createWhenNoExists = true, userData?: string,
    /// uploadFrom?: string, extraParam?: object of texts} -> promise of {userData, extraParam}. "Sync files
    /// failed.".
    Reply uploadFile2CloudFolder(Call& call);
    /// {cloudPath: string, or fileId: string, openFrom?, entryIdentifier?: strings, createWhenNoExists =
    /// false, extraParam?: object of texts} -> promise of {extraParam}. "open folder failed.".
    Reply openCloudFolder(Call& call);
    /// () -> promise of {isEnterpriseIP: boolean, uploadCloudPath, showCloudPath, groupId: strings}. "Get
    /// default workspace failed.".
    Reply getDefaultWorkSpace(Call& call);
    /// {filePath: string, businessSource?, cloudDir?: strings, autoRename = false} -> an UploadFileTask.
    /// Failure: 3 "Create upload file task failed.".
    Reply createUploadFileTask(Call& call);
    /// () -> promise of the path of the folder in which cloud documents are kept on this machine. "Get my
    /// cloud documents local path failed.".
    Reply getMyCloudDocumentsLocalPath(Call& call);
    /// {groupId: string, folderId: string, userId = the signed-in user's, depth = 0, extraParam?: object of
    /// texts}
    /// -> promise of {extraParam}. "Sync folder failed.".
    Reply syncFolder(Call& call);
    /// {groupId: string, fileId: string (the target directory), fname: string (the file's name), itemType =
    /// 0, extraParam?: object of texts} -> promise of {cloudPath, extraParam}. "Save to cloud dir failed.".
    Reply saveToCloudDir(Call& call);
    /// () -> promise of "auto" or "manual". "Get roaming mode failed.".
    Reply getRoamingMode(Call& call);
    /// ("auto" or "manual") -> promise of the mode now in force. "Change roaming mode failed.".
    Reply changeRoamingMode(Call& call);
    /// () -> promise of a text, the group as the service describes it. "Get personal private group failed.".
    Reply getPersonalPrivateGroup(Call& call);

protected:
    /// Listeners of any kind have the handle follow the proxy.
    void prepareEvents() override;

private:
    template <typename Action> Reply withUser(Call& call, Action action);

    KRef<IJSExtentionObject> m_orbitapi;
    std::unique_ptr<KCloudDocEventHandle> m_handle;
};

/// "NovaExtension.CloudDoc.Orbitapi": generic requests to the cloud service.
class KJsApiOrbitapi final : public KJCExtendJsObj<KJsApiOrbitapi> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.CloudDoc.Orbitapi";
    static const MemberList& members();
};

/// "NovaExtension.CloudDoc.UploadFileTask": one upload, with events of its own: "cloud.upload.started"
/// {taskId}, "cloud.upload.progressChanged" about once a second, and "cloud.upload.finished" once, both
/// {taskId, status, data, uploadErrorCode, type}, all texts as the service tells them. An upload has ended
/// with status "1", "2" or "6", or with "-1" when the service did not begin it or tells nothing of it any
/// more. The object stays while its upload is under way and somebody listens, whether the page keeps it or
/// not.
class KJsApiUploadFileTask final : public KJCExtendJsObj_InstanceLevelEvent<KJsApiUploadFileTask>,
                                   public IJSCreatable {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.CloudDoc.UploadFileTask";
    static const MemberList& members();

    ~KJsApiUploadFileTask() override;
    /// Makes the task of the texts in `options`.
    void Initialise(IJSONValue* options) override;

    // () -> undefined. Failures, all 3: "task is null.", and each its own: "task start failed." (also while
    // the upload is under way), "task cancel failed." (also when there is no upload), "task restart failed.".
    Reply start(Call& call);
    Reply cancel(Call& call);
    Reply restart(Call& call);

private:
    Reply act(Call& call, bool (KUploadFileTask::*action)(), const char* failure);
    void send(const char* event, const QVariantMap& task);
    void keepWhile(bool isNeeded);

    QPointer<KUploadFileTask> m_task;
    KRef<IJSExtentionObject> m_self; ///< set while somebody is to hear of the upload
};

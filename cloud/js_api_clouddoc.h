#pragma once

#include "cloud/clouddocapicaller.h"
#include "cloud/clouddoceventhandle.h"
#include "cloud/signedinuser.h"
#include "cloud/uploadfiletask.h"
#include "framework/events.h"

#include <QPointer>
#include <memory>

namespace jsapi {

class KJsApiOrbitapi;
class KJsApiUploadFileTask;

/// "NovaExtension.CloudDoc": the signed-in user's cloud documents, and what happens to them: the events of
/// KCloudDocEventHandle, which go to the listeners of every page.
class KJsApiCloudDoc final : public KJCExtendJsEventObj<KJsApiCloudDoc> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.CloudDoc";
    static const MemberList& members();

    struct UploadFilesOptions;
    struct OpenFolderOptions;
    struct UploadTaskOptions;
    struct SyncFolderOptions;
    struct SaveOptions;

    Answer<Handle<KJsApiOrbitapi>> orbitapi(const JSContextEnv& page);
    Answer<Promise<std::string>> getCloudCachedFile(
        const SignedInUser& user, const JSContextEnv& page, const std::string& cloudPath);
    Answer<Promise<UploadReport>> uploadFile2CloudFolder(
        const SignedInUser& user, const JSContextEnv& page, const UploadFilesOptions& options);
    Answer<Promise<ServiceReport>> openCloudFolder(
        const SignedInUser& user, const JSContextEnv& page, const OpenFolderOptions& options);
    Answer<Promise<Workspace>> getDefaultWorkSpace(const SignedInUser& user, const JSContextEnv& page);
    Answer<Handle<KJsApiUploadFileTask>> createUploadFileTask(
        const SignedInUser& user, const JSContextEnv& page, const UploadTaskOptions& options);
    Answer<Promise<std::string>> getMyCloudDocumentsLocalPath(
        const SignedInUser& user, const JSContextEnv& page);
    Answer<Promise<ServiceReport>> syncFolder(
        const SignedInUser& user, const JSContextEnv& page, const SyncFolderOptions& options);
    Answer<Promise<SaveReport>> saveToCloudDir(
        const SignedInUser& user, const JSContextEnv& page, const SaveOptions& options);
    Answer<Promise<RoamingMode>> getRoamingMode(const SignedInUser& user, const JSContextEnv& page);
    Answer<Promise<RoamingMode>> changeRoamingMode(
        const SignedInUser& user, const JSContextEnv& page, RoamingMode mode);
    Answer<Promise<std::string>> getPersonalPrivateGroup(const SignedInUser& user, const JSContextEnv& page);

    /// Has the handle follow the proxy as soon as there may be listeners.
    void prepareEvents() override;
    /// Has the handle look whether the suite has replaced the proxy.
    void followServices();

private:
    KRef<IJSExtentionObject> m_orbitapi;
    std::unique_ptr<KCloudDocEventHandle> m_handle;
};

/// "NovaExtension.CloudDoc.UploadFileTask": one upload, with events of its own. The object stays while its
/// upload is under way, whether the page keeps it and anybody listens or not.
class KJsApiUploadFileTask final : public KJCExtendJsObj_InstanceLevelEvent<KJsApiUploadFileTask>,
                                   public IJSCreatable {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.CloudDoc.UploadFileTask";
    static const MemberList& members();

    ~KJsApiUploadFileTask() override;
    /// Makes the task of the strings in `options`.
    void Initialise(IJSONValue* options) override;

    Answer<void> start();
    Answer<void> cancel();
    Answer<void> restart();

private:
    Answer<void> act(bool (KUploadFileTask::*action)(), const Failure& failure);
    template <typename Payload> void forward(const Event<Payload>& event, const QVariantMap& task);
    void keepWhile(bool isNeeded);

    QPointer<KUploadFileTask> m_task;
    KRef<IJSExtentionObject> m_self; ///< set while the upload is under way
};

} // namespace jsapi

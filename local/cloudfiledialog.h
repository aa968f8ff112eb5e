// "selectFolderx": the suite's dialog for files on this machine and in the cloud.
#pragma once

#include "framework/answer.h"
#include "krt/krt.h"

namespace jsapi {

/// A field that is also an option of the dialog, under `key`; null for one that is not.
template <typename Base> struct DialogField : Base {
    const char* key;
};
template <typename Base> DialogField(Base, const char*) -> DialogField<Base>;

/// In the order in which the dialog gets them. Those without a name of their own are not script's to choose.
struct CloudFileDialogOptions {
    QString caption;
    QString confirmButton;
    QString dir;
    QString initialName;
    QString filter;
    QString appName = krt::appName();
    bool allowMultiSel = false;
    bool cloudAsInitial = false;
    bool isCloudCmdTag = false;
    bool isShowRecentTab = false;
    bool isShowCloudTab = false;
    bool isShowShareFolderTab = false;
    bool allowSelRoot = false;
    bool saveNewCloudFile = false;
    bool isOpenDirDialog = false;
    bool returnFilePath = false;
    bool isHideLocalTab = false;
    bool isShowFavoriteTab = false;
    bool isConfirmOverwrite = false;
    QString businessFrom = heapString("FD_JSAPI_OpenFile");
    bool isShowCompanyCloudTab = false;
    bool isOpenDialog = false;

    static constexpr auto fields()
    {
        using Self = CloudFileDialogOptions;
        return std::tuple(DialogField { optional("caption", &Self::caption, "the dialog's title"), "Title" },
            DialogField {
                optional("confirmButton", &Self::confirmButton, "the text of the button that confirms"),
                "ConfirmButton" },
            DialogField { optional("dir", &Self::dir, "the directory to begin in"), "InitialDir" },
            DialogField {
                optional("initialName", &Self::initialName, "the file name to begin with"), "InitialName" },
            DialogField { optional("filter", &Self::filter, "which files are shown"), "Filters" },
            DialogField { constant(&Self::appName), "AppName" },
            DialogField { optional("allowMultiSel", &Self::allowMultiSel, "more than one may be chosen"),
                "AllowMultiSel" },
            DialogField { optional("cloudAsInitial", &Self::cloudAsInitial, "begin in the cloud"),
                "CloudAsInitialDir" },
            DialogField { optional("isCloudCmdTag", &Self::isCloudCmdTag, "for a command of the cloud's"),
                "IsCloudCmdTag" },
            DialogField {
                optional("isShowRecentTab", &Self::isShowRecentTab, "show recent files"), "IsShowRecentTab" },
            DialogField {
                optional("isShowCloudTab", &Self::isShowCloudTab, "show the cloud"), "IsShowCloudTab" },
            DialogField {
                optional("isShowShareFolderTab", &Self::isShowShareFolderTab, "show shared folders"),
                "IsShowShareFolderTab" },
            DialogField { optional("allowSelRoot", &Self::allowSelRoot, "the cloud's root may be chosen"),
                "AllowSelRoot" },
            DialogField {
                optional("saveNewCloudFile", &Self::saveNewCloudFile, "a new file of the cloud is saved"),
                "SaveNewCloudFile" },
            DialogField { optional("isOpenDirDialog", &Self::isOpenDirDialog, "directories are chosen"),
                "IsOpenDirDialog" },
            DialogField {
                optional("returnFilePath", &Self::returnFilePath, "return the path of a local copy"),
                "returnFilePath" },
            DialogField { optional("isHideLocalTab", &Self::isHideLocalTab, "do not show this machine"),
                "IsHideLocalTab" },
            DialogField { optional("isShowFavoriteTab", &Self::isShowFavoriteTab, "show favourites"),
                "IsShowFavoriteTab" },
            DialogField {
                optional("isConfirmOverwrite", &Self::isConfirmOverwrite, "ask before a file is replaced"),
                "IsConfirmOverwrite" },
            DialogField { constant(&Self::businessFrom), "BusinessFrom" },
            DialogField {
                optional("isShowCompanyCloudTab", &Self::isShowCompanyCloudTab, "show the company's cloud"),
                "IsShowCompanyCloudTab" },
            DialogField {
                optional("isOpenDialog", &Self::isOpenDialog, "choose what is there, not where to save"),
                nullptr });
    }
};

/// What was chosen. The values other than `files` are the dialog's own, and undefined when it gives none.
struct CloudFileChoice {
    QStringList files;
    QVariant cloudFilePath;
    QVariant cloudGroupIds;
    QVariant cloudParentId;
    QVariant duplicateCloudFileId;
    QVariant duplicateAction;

    static constexpr auto fields()
    {
        using Self = CloudFileChoice;
        return std::tuple(DialogField { property("files", &Self::files, "paths on this machine"), nullptr },
            DialogField {
                property("cloudFilePath", &Self::cloudFilePath, "a path in the cloud"), "CloudFilePath" },
            DialogField { property("cloudGroupIds", &Self::cloudGroupIds, "the groups of what was chosen"),
                "CloudGroupIds" },
            DialogField { property("cloudParentId", &Self::cloudParentId, "the folder that it is in"),
                "CloudParentId" },
            DialogField { property("duplicateCloudFileId", &Self::duplicateCloudFileId,
                              "the file that it would replace"),
                "DuplicateCloudFileId" },
            DialogField { property("duplicateAction", &Self::duplicateAction, "what to do with that file"),
                "DuplicateAction" });
    }
};

inline constexpr Failure NoInputBox { ErrorCode::OperationFailed, "inputBox is null" };

/// Shows the dialog and returns what was chosen. [GUI thread]
Answer<CloudFileChoice> chooseOnMachineOrInCloud(
    const JSContextEnv& page, const CloudFileDialogOptions& options);

} // namespace jsapi

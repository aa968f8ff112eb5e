#include "local/cloudfiledialog.h"

#include "krt/krt.h"
#include "local/filedialogs.h"
#include "suite/kcloudfiledialog.h"

namespace {

/// One option of the dialog, in the order in which they are set, and where its value comes from.
struct DialogOption {
    enum Source { Text, Flag, AppName, Constant };

    Source source;
    const char* from; ///< the script property's name, or the constant itself
    const char* key;
};

constexpr DialogOption DialogOptions[] {
    { DialogOption::Text, "caption", "Title" },
    { DialogOption::Text, "confirmButton", "ConfirmButton" },
    { DialogOption::Text, "dir", "InitialDir" },
    { DialogOption::Text, "initialName", "InitialName" },
    { DialogOption::Text, "filter", "Filters" },
    { DialogOption::AppName, nullptr, "AppName" },
    { DialogOption::Flag, "allowMultiSel", "AllowMultiSel" },
    { DialogOption::Flag, "cloudAsInitial", "CloudAsInitialDir" },
    { DialogOption::Flag, "isCloudCmdTag", "IsCloudCmdTag" },
    { DialogOption::Flag, "isShowRecentTab", "IsShowRecentTab" },
    { DialogOption::Flag, "isShowCloudTab", "IsShowCloudTab" },
    { DialogOption::Flag, "isShowShareFolderTab", "IsShowShareFolderTab" },
    { DialogOption::Flag, "allowSelRoot", "AllowSelRoot" },
    { DialogOption::Flag, "saveNewCloudFile", "SaveNewCloudFile" },
    { DialogOption::Flag, "isOpenDirDialog", "IsOpenDirDialog" },
    { DialogOption::Flag, "returnFilePath", "returnFilePath" },
    { DialogOption::Flag, "isHideLocalTab", "IsHideLocalTab" },
    { DialogOption::Flag, "isShowFavoriteTab", "IsShowFavoriteTab" },
    { DialogOption::Flag, "isConfirmOverwrite", "IsConfirmOverwrite" },
    { DialogOption::Constant, "FD_JSAPI_OpenFile", "BusinessFrom" },
    { DialogOption::Flag, "isShowCompanyCloudTab", "IsShowCompanyCloudTab" },
};

/// What the dialog says of a choice in the cloud, and what script finds it as.
struct CloudField {
    const char* key;
    const char* property;
};

constexpr CloudField CloudFields[] {
    { "CloudFilePath", "cloudFilePath" },
    { "CloudGroupIds", "cloudGroupIds" },
    { "CloudParentId", "cloudParentId" },
    { "DuplicateCloudFileId", "duplicateCloudFileId" },
    { "DuplicateAction", "duplicateAction" },
};

QVariant valueOf(const DialogOption& option, const Options& given)
{
    switch (option.source) {
    case DialogOption::Text:
        return given.string(option.from);
    case DialogOption::Flag:
        return given.boolean(option.from, false);
    case DialogOption::AppName:
        return krt::appName();
    case DialogOption::Constant:
        break;
    }
    return QString::fromLatin1(option.from);
}

struct Destroyer {
    void operator()(IKCloudFileDialog* dialog) const { dialog->Destroy(); }
};

} // namespace

Reply askOnMachineOrInCloud(Call& call)
{
    const Options given = call.options();
    const std::unique_ptr<IKCloudFileDialog, Destroyer> dialog(
        CreateCloudFileDialog(given.boolean("isOpenDialog", false)));
    if (!dialog)
        return call.fail(ErrorCode::OperationFailed, "inputBox is null");
    for (const DialogOption& option : DialogOptions)
        dialog->SetOption(QString::fromLatin1(option.key), valueOf(option, given));
    const DialogTurn turn(call.context());
    const bool chosen = turn && dialog->Exec(turn.owner());
    QVariantMap answer { { QString::fromLatin1("files"), chosen ? dialog->Files() : QStringList() } };
    for (const CloudField& field : CloudFields)
        answer.insert(QString::fromLatin1(field.property),
            chosen ? dialog->Value(QString::fromLatin1(field.key)) : QVariant());
    return call.succeed(QVariant(answer));
}

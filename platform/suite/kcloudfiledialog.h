// The dialog that chooses files or folders, on this machine or in the cloud.
#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

class QWidget;

/// One use of the dialog. [GUI thread] for all.
class IKCloudFileDialog {
public:
    /// Sets an option before the dialog is shown: strings "Title", "ConfirmButton", "InitialDir",
    /// "InitialName", "Filters" (as QFileDialog has them), "AppName" and "BusinessFrom"; booleans
    /// "AllowMultiSel", "CloudAsInitialDir", "IsCloudCmdTag", "IsShowRecentTab", "IsShowCloudTab",
    /// "IsShowShareFolderTab", "AllowSelRoot", "SaveNewCloudFile", "IsOpenDirDialog", "returnFilePath",
    /// "IsHideLocalTab", "IsShowFavoriteTab", "IsConfirmOverwrite", "IsShowCompanyCloudTab". An empty string,
    /// and false, are as if the option had not been set. Keys that the dialog does not know are ignored.
    virtual void SetOption(const QString& key, const QVariant& value) = 0;
    /// Shows the dialog above `owner` (may be null) and returns when it has ended; the event loop runs
    /// meanwhile. True when something was chosen, false when the user cancelled or the owner has gone. Once.
    virtual bool Exec(QWidget* owner) = 0;
    /// The chosen paths; empty when nothing was chosen.
    virtual QStringList Files() const = 0;
    /// A part of the answer, invalid when the dialog does not give it: "CloudFilePath", "CloudGroupIds",
    /// "CloudParentId", "DuplicateCloudFileId", "DuplicateAction".
    virtual QVariant Value(const QString& key) const = 0;
    /// Ends the dialog object; its owner calls it once.
    virtual void Destroy() = 0;

protected:
    ~IKCloudFileDialog() = default;
};

/// Makes a dialog that opens what is there, or one that chooses where to save. The caller owns it. Null when
/// the suite can not show one. [GUI thread]
IKCloudFileDialog* CreateCloudFileDialog(bool open);

#pragma once

#include "framework/extensionobject.h"

/// "NovaExtension.FileSystem": guarded access to local files and to the suite's file dialogs.
///
/// Where a member writes or removes, its path must be absolute or begin with an environment variable (see
/// checkedPath). "%1" in a failure's text is the path concerned. A dialog runs until the user has ended it; a
/// page has one at a time, and one that it asks for meanwhile is answered as cancelled, as is the dialog of a
/// page that goes.
class KJsApiFileSystem final : public KJCExtendJsObj<KJsApiFileSystem> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.FileSystem";
    static const MemberList& members();

    /// {path: string} -> a File object. Failures, all 3: "Path is empty.", "Path is illegal." (not an
    /// existing regular file).
    Reply file(Call& call);
    /// (path: string) -> boolean: something has that path.
    Reply exists(Call& call);
    /// {path: string, newPath: string, overwrite = false} -> boolean: copied. A file that is replaced stays
    /// as it was until the copy is whole. Failures, all 3: "Path is empty.", "Path is illegal." (not an
    /// existing regular file, or of a kind that pages may not copy), "New path is illegal.", "override
    /// existing file failed".
    Reply copy(Call& call);

    // () -> string: a directory, empty when the system has none.
    Reply officeData(Call& call);
    Reply officeHome(Call& call);
    Reply tempPath(Call& call);
    Reply desktopPath(Call& call);
    Reply homePath(Call& call);
    Reply documentsPath(Call& call);
    Reply downloadPath(Call& call);

    /// {path: string, fileName?: string} -> boolean: the desktop's file manager was started with the
    /// directory `path`, or with the file in it. Failures: 1 "missing required parameters.", 3 "%1 is not
    /// existed", 3 "%1 is not dir", 3 "file %1 is not exists".
    Reply openLocalLocation(Call& call);
    /// (name: string) -> "": Linux has no work directory of libraries. Failure: 1 "missing required
    /// parameters.".
    Reply getDllWorkPath(Call& call);
    /// {caption?: string, dir: string} -> string: the chosen directory, "" when cancelled. Failure:
    /// 1 "missing required parameters." (no `dir`).
    Reply selectLocalFolder(Call& call);
    /// {caption, confirmButton, dir, initialName, filter: strings, allowMultiSel, cloudAsInitial,
    /// isCloudCmdTag, isShowRecentTab, isShowCloudTab, isShowShareFolderTab, allowSelRoot, saveNewCloudFile,
    /// isOpenDirDialog, returnFilePath, isHideLocalTab, isShowFavoriteTab, isConfirmOverwrite,
    /// isShowCompanyCloudTab, isOpenDialog: booleans}, all optional -> {files: string[], cloudFilePath,
    /// cloudGroupIds, cloudParentId, duplicateCloudFileId, duplicateAction}. Failure: 3 "inputBox is null".
    Reply selectFolderx(Call& call);
    /// (path: string) -> boolean: made, with all directories above it. Failures: 1 "Path is empty.",
    /// 3 "New path is illegal.", 3 "the directory already exist".
    Reply mkpath(Call& call);
    /// (path: string) -> boolean: the directory and all in it are gone. Of a link to a directory the link
    /// goes, not what it leads to. Failures: 1 "Path is empty.", 3 "New path is illegal." (also for a
    /// directory that is or holds the home directory, or holds a directory closed to pages), 1 "%1 is not
    /// existed", 1 "%1 is not dir".
    Reply remove(Call& call);
    /// (path: string) -> undefined: the desktop was told to open the file. Failures: 1 "Path is empty.",
    /// 3 "%1 is not existed", 3 "%1 is not file", 3 "Failed to open file : %1 ".
    Reply open(Call& call);
    /// (path: string) -> boolean: the file could be opened for writing, so no other program holds it locked.
    /// Failure: 1 "%1 is not existed".
    Reply getFileStatus(Call& call);
    /// {caption, dir, filter: strings} -> string: a name that can be written to, "" when cancelled.
    Reply getWritableSaveFileName(Call& call);
    /// {caption?: string, dir: string} -> string: the chosen directory, "" when cancelled. Failures: 1 "%1 is
    /// not existed", 1 "%1 is not dir".
    Reply getExistingDirectory(Call& call);
    /// {caption?: string, dir: string, filter?: string} -> string[]: the chosen files. Failures as
    /// getExistingDirectory.
    Reply getOpenFileNames(Call& call);
    /// As getOpenFileNames -> string: the chosen file, "" when cancelled.
    Reply getOpenFileName(Call& call);
    /// (options?: object for the suite's file panel) -> the panel's answer, an object; {} when cancelled.
    /// Failures: 3 "empty handle", 1 "wrong parameters." (options that hold a function or a native object).
    Reply showSelectFilePanel(Call& call);
    /// (path: string) -> promise of the file's MD5, 32 lower-case hexadecimal digits. Rejections, all 3:
    /// "Path is empty.", "%1 is not existed", "%1 can't been opened" (also when it changed while it was
    /// read). Failure: 3 "PromiseServiceNull".
    Reply getFileMd5(Call& call);
    /// {path: string, requestIfNoPermission = true, accessType = 2, showRequestFailedTip = true} -> boolean:
    /// the suite may use the file. False when the suite guards no access.
    Reply startAccess(Call& call);
    /// (path: string) -> boolean.
    Reply isDir(Call& call);
    /// (path: string) -> boolean: an existing directory that can be written to, and is neither closed to
    /// pages nor in the plugin pool.
    Reply isDirWritable(Call& call);
};

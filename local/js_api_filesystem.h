#pragma once

#include "local/cloudfiledialog.h"
#include "local/filedialogs.h"
#include "local/filemd5.h"
#include "local/js_api_file.h"
#include "local/pathcheck.h"
#include "suite/kfilepanel.h"

namespace jsapi {

/// "NovaExtension.FileSystem": guarded access to local files and to the suite's file dialogs.
///
/// A dialog runs until the user has ended it; a page has one at a time, and one that it opens meanwhile is
/// cancelled at once, as is the dialog of a page that goes.
class KJsApiFileSystem final : public KJCExtendJsObj<KJsApiFileSystem> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.FileSystem";
    static const MemberList& members();

    struct PathOptions;
    struct CopyOptions;
    struct PlaceOptions;
    struct AccessOptions;

    Answer<Handle<KJsApiFile>> file(const JSContextEnv& page, const PathOptions& options);
    Answer<bool> exists(const QString& path);
    Answer<bool> copy(const CopyOptions& options);
    Answer<QString> officeData();
    Answer<QString> officeHome();
    Answer<QString> tempPath();
    Answer<QString> desktopPath();
    Answer<QString> homePath();
    Answer<QString> documentsPath();
    Answer<bool> openLocalLocation(const PlaceOptions& options);
    Answer<QString> getDllWorkPath(const QString& name);
    Answer<QString> downloadPath();
    Answer<QString> selectLocalFolder(const JSContextEnv& page, const FolderDialogOptions& options);
    Answer<CloudFileChoice> selectFolderx(const JSContextEnv& page, const CloudFileDialogOptions& options);
    Answer<bool> mkpath(const WritablePath& path);
    Answer<bool> remove(const WritablePath& path);
    Answer<void> open(const QString& path);
    Answer<bool> getFileStatus(const QString& path);
    Answer<QString> getWritableSaveFileName(const JSContextEnv& page, const FileDialogOptions& options);
    Answer<QString> getExistingDirectory(const JSContextEnv& page, const OpenDialogOptions& options);
    Answer<QStringList> getOpenFileNames(const JSContextEnv& page, const OpenDialogOptions& options);
    Answer<QString> getOpenFileName(const JSContextEnv& page, const OpenDialogOptions& options);
    Answer<QVariantMap> showSelectFilePanel(
        IKFilePanel& panel, const JSContextEnv& page, const QVariant& options);
    Answer<Promise<QString>> getFileMd5(const JSContextEnv& page, const QString& path);
    Answer<bool> startAccess(const JSContextEnv& page, const AccessOptions& options);
    Answer<bool> isDir(const QString& path);
    Answer<bool> isDirWritable(const QString& path);
};

} // namespace jsapi

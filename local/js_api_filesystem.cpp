#include "local/js_api_filesystem.h"

#include "kbase/file.h"
#include "krt/dirs.h"
#include "krt/ksafe.h"
#include "krt/product.h"
#include "local/treechanges.h"
#include "suite/kaccessmanager.h"
#include "suite/kdownloadfiledialog.h"

#include <QDesktopServices>
#include <QDir>
#include <QStandardPaths>
#include <QUrl>

namespace jsapi {

namespace {

constexpr ErrorCode BadArgument = ErrorCode::BadArgument;
constexpr ErrorCode OperationFailed = ErrorCode::OperationFailed;

constexpr Failure FileIsEmpty { OperationFailed, "Path is empty." };
constexpr Failure PathIsIllegal { OperationFailed, "Path is illegal." };
constexpr Failure OverrideFailed { OperationFailed, "override existing file failed" };
constexpr Failure AlreadyExists { OperationFailed, "the directory already exist" };
constexpr Failure FileNotExisting { OperationFailed, "file %1 is not exists" };
constexpr Failure NotFile { OperationFailed, "%1 is not file" };
constexpr Failure OpenFailed { OperationFailed, "Failed to open file : %1 " };
constexpr Failure NoPanel { OperationFailed, "empty handle" };

// The same under both codes.
constexpr Failure NotExisting { OperationFailed, "%1 is not existed" };
constexpr Failure NotDirectory { OperationFailed, "%1 is not dir" };
constexpr Failure ArgumentNotExisting { BadArgument, "%1 is not existed" };
constexpr Failure ArgumentNotDirectory { BadArgument, "%1 is not dir" };

} // namespace

template <> struct Argument<IKFilePanel> : ServiceArgument<IKFilePanel, GetFilePanel, NoPanel> {
};

struct KJsApiFileSystem::PathOptions {
    QString path;
    static constexpr auto fields()
    {
        return std::tuple(required("path", &PathOptions::path, "an existing regular file", FileIsEmpty));
    }
};

struct KJsApiFileSystem::CopyOptions {
    QString path;
    QString newPath;
    bool overwrite = false;
    static constexpr auto fields()
    {
        return strictly(
            std::tuple(required("path", &CopyOptions::path,
                           "an existing regular file, of a kind that pages may copy", FileIsEmpty),
                expected("newPath", &CopyOptions::newPath, "where to"),
                optional("overwrite", &CopyOptions::overwrite, "replace what is there")));
    }
};

struct KJsApiFileSystem::PlaceOptions {
    QString path;
    QString fileName;
    static constexpr auto fields()
    {
        return strictly(std::tuple(required("path", &PlaceOptions::path, "the directory"),
            optional("fileName", &PlaceOptions::fileName, "a file in it")));
    }
};

struct KJsApiFileSystem::AccessOptions {
    QString path;
    bool requestIfNoPermission = true;
    std::int32_t accessType = 2;
    bool showRequestFailedTip = true;
    static constexpr auto fields()
    {
        return std::tuple(optional("path", &AccessOptions::path, "the file"),
            optional("requestIfNoPermission", &AccessOptions::requestIfNoPermission,
                "ask the user where access is not granted yet"),
            optional("accessType", &AccessOptions::accessType, "what for, as the suite numbers it"),
            optional("showRequestFailedTip", &AccessOptions::showRequestFailedTip,
                "show the user that access was refused"));
    }
};

const MemberList& KJsApiFileSystem::members()
{
    using Self = KJsApiFileSystem;
    static const MemberList list = MemberList {
        "Guarded access to local files and to the suite's file dialogs. Where a member writes or removes, "
        "its path must be absolute or begin with an environment variable between percent signs "
        "(`%HOME%/a.txt`). A dialog runs until the user has ended it; a page has one at a time, and one "
        "that it opens meanwhile is cancelled at once.",
        {
            member<&Self::file>(u"File", Category::Usual, Type::Object, { Type::JsValue },
                "Returns a File object for a path.", { &PathIsIllegal, &EmptyHandle }),
            member<&Self::exists>(u"exists", Category::Usual, Type::JsValue, { { Type::String, "path" } },
                "Returns whether something has that path."),
            member<&Self::copy>(u"copy", Category::Usual, Type::JsValue, { Type::JsValue },
                "Copies a file. Returns whether it was copied: `false` when something is there already and "
                "may not be replaced, or the system refused. A file that is replaced stays as it was until "
                "the copy is whole.",
                { &PathIsIllegal, &NewPathIsIllegal, &OverrideFailed }),
            member<&Self::officeData>(
                u"officeData", Category::Usual, Type::JsValue, "Returns the suite's data directory."),
            member<&Self::officeHome>(
                u"officeHome", Category::Usual, Type::JsValue, "Returns the suite's home directory."),
            member<&Self::tempPath>(
                u"tempPath", Category::Usual, Type::JsValue, "Returns the directory for temporary files."),
            member<&Self::desktopPath>(u"desktopPath", Category::Usual, Type::JsValue,
                "Returns the user's desktop directory, empty when the system has none."),
            member<&Self::homePath>(
                u"homePath", Category::Usual, Type::JsValue, "Returns the user's home directory."),
            member<&Self::documentsPath>(u"documentsPath", Category::Usual, Type::JsValue,
                "Returns the user's directory for documents, empty when the system has none."),
            member<&Self::openLocalLocation>(u"openLocalLocation", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Shows a directory, or a file in it, in the desktop's file manager. Returns whether that "
                "was started.",
                { &NotExisting, &NotDirectory, &FileNotExisting }),
            member<&Self::getDllWorkPath>(u"getDllWorkPath", Category::Usual, Type::JsValue,
                { { Type::String, "name" } },
                "Returns an empty string: Linux has no work directory of libraries.", { &MissingParameters }),
            member<&Self::downloadPath>(u"downloadPath", Category::Usual, Type::JsValue,
                "Returns the user's directory for downloads, empty when the system has none."),
            member<&Self::selectLocalFolder>(u"selectLocalFolder", Category::None, Type::JsValue,
                { Type::JsValue },
                "Has the user choose a directory. Returns its path, empty when cancelled."),
            member<&Self::selectFolderx>(u"selectFolderx", Category::None, Type::JsValue, { Type::JsValue },
                "Has the user choose files or folders, on this machine or in the cloud. Without a choice "
                "`files` is empty.",
                { &NoInputBox }),
            member<&Self::mkpath>(u"mkpath", Category::Usual, Type::JsValue, { { Type::String, "path" } },
                "Makes a directory with all directories above it. Returns whether the system did it.",
                { &AlreadyExists }),
            member<&Self::remove>(u"remove", Category::Usual, Type::JsValue, { { Type::String, "path" } },
                "Removes a directory and all that is in it; of a link to a directory the link. Returns "
                "whether all of it is gone. The home directory, directories closed to pages, and those that"
                " hold one of them are refused as illegal.",
                { &ArgumentNotExisting, &ArgumentNotDirectory }),
            member<&Self::open>(u"open", Category::Launch, Type::JsValue, { { Type::String, "path" } },
                "Has the desktop open a file with the program for it.",
                { &FileIsEmpty, &NotExisting, &NotFile, &OpenFailed }),
            member<&Self::getFileStatus>(u"getFileStatus", Category::Usual, Type::JsValue,
                { { Type::String, "path" } },
                "Returns whether the file can be opened for writing, so no other program holds it locked.",
                { &ArgumentNotExisting }),
            member<&Self::getWritableSaveFileName>(u"getWritableSaveFileName", Category::None, Type::JsValue,
                { Type::JsValue },
                "Has the user choose a name to save to. Returns it, empty when cancelled."),
            member<&Self::getExistingDirectory>(u"getExistingDirectory", Category::None, Type::JsValue,
                { Type::JsValue }, "Has the user choose a directory. Returns its path, empty when cancelled.",
                { &ArgumentNotExisting, &ArgumentNotDirectory }),
            member<&Self::getOpenFileNames>(u"getOpenFileNames", Category::None, Type::JsValue,
                { Type::JsValue },
                "Has the user choose existing files. Returns their paths, none when cancelled.",
                { &ArgumentNotExisting, &ArgumentNotDirectory }),
            member<&Self::getOpenFileName>(u"getOpenFileName", Category::None, Type::JsValue,
                { Type::JsValue },
                "Has the user choose an existing file. Returns its path, empty when cancelled.",
                { &ArgumentNotExisting, &ArgumentNotDirectory }),
            member<&Self::showSelectFilePanel>(u"showSelectFilePanel", Category::None, Type::JsValue,
                { { Type::JsValue, "options", "what the panel is to show; it knows which keys" } },
                "Shows the suite's file panel. Returns what it returns, `{}` when cancelled."),
            member<&Self::getFileMd5>(u"getFileMd5", Category::Usual, Type::JsValue,
                { { Type::String, "path" } },
                "Resolves with the MD5 of a file's content, 32 lower-case hexadecimal digits. A file that "
                "can not be read, is no regular file, or changes meanwhile is rejected.",
                { &Md5PathIsEmpty, &Md5NotExisting, &Md5NotOpened, &PromiseServiceNull }),
            member<&Self::startAccess>(u"startAccess", Category::Usual, Type::JsValue, { Type::JsValue },
                "Returns whether the suite may use a file; `false` as well when it guards no access."),
            member<&Self::isDir>(u"isDir", Category::Usual, Type::JsValue, { { Type::String, "path" } },
                "Returns whether the path is that of a directory."),
            member<&Self::isDirWritable>(u"isDirWritable", Category::Usual, Type::JsValue,
                { { Type::String, "path" } },
                "Returns whether the path is that of a directory that can be written to and is neither "
                "closed to pages nor in the plugin pool."),
        }
    }.handingOut<KJsApiFile>();
    return list;
}

namespace {

/// Why a path is no directory; nothing for an existing one.
std::optional<Refusal> refuseUnlessDirectory(
    const QString& path, const Failure& notExisting, const Failure& notDirectory)
{
    const QString native = QDir::toNativeSeparators(path);
    const QFileInfo info(native);
    if (!info.exists())
        return notExisting / native;
    if (!info.isDir())
        return notDirectory / native;
    return std::nullopt;
}

QString writableLocation(QStandardPaths::StandardLocation location)
{
    return QStandardPaths::writableLocation(location);
}

} // namespace

Answer<Handle<KJsApiFile>> KJsApiFileSystem::file(const JSContextEnv& page, const PathOptions& options)
{
    if (!QFileInfo(options.path).isFile())
        return PathIsIllegal;
    return handOutNew<KJsApiFile>(page, FileOptions { options.path });
}

Answer<bool> KJsApiFileSystem::exists(const QString& path)
{
    return QFileInfo::exists(path);
}

Answer<bool> KJsApiFileSystem::copy(const CopyOptions& options)
{
    const FileDescriptor source = openRegularFile(options.path);
    // The suite looks at what has the path now, which must be what was opened.
    if (!source || !krt::dirs::isFileFormatSafe(options.path) || !source.isAt(options.path))
        return PathIsIllegal;
    const std::optional<WritablePath> newPath = WritablePath::check(options.newPath);
    if (!newPath)
        return NewPathIsIllegal;
    if (!options.overwrite || !newPath->look(true))
        return copyFile(source, *newPath);
    const Replacement replacement = replaceFile(source, *newPath);
    if (replacement == Replacement::Refused)
        return OverrideFailed;
    return replacement == Replacement::Done;
}

Answer<QString> KJsApiFileSystem::officeData()
{
    return krt::dirs::officeData();
}

Answer<QString> KJsApiFileSystem::officeHome()
{
    return krt::dirs::officeHome();
}

Answer<QString> KJsApiFileSystem::tempPath()
{
    return QDir::toNativeSeparators(QDir::tempPath());
}

Answer<QString> KJsApiFileSystem::desktopPath()
{
    return writableLocation(QStandardPaths::DesktopLocation);
}

Answer<QString> KJsApiFileSystem::homePath()
{
    return QDir::toNativeSeparators(QDir::homePath());
}

Answer<QString> KJsApiFileSystem::documentsPath()
{
    return QDir::toNativeSeparators(
        QStandardPaths::standardLocations(QStandardPaths::DocumentsLocation).value(0));
}

Answer<bool> KJsApiFileSystem::openLocalLocation(const PlaceOptions& options)
{
    QString place = options.path;
    if (const auto refusal = refuseUnlessDirectory(place, NotExisting, NotDirectory))
        return *refusal;
    if (!options.fileName.isEmpty()) {
        if (!place.endsWith(QLatin1Char('\\')) && !place.endsWith(QLatin1Char('/')))
            place += QLatin1Char('/');
        place = QDir::toNativeSeparators(place + options.fileName);
        if (!QFileInfo::exists(place))
            return FileNotExisting / place;
    }
    // Absolute, for no name to be taken for an option or an address.
    place = QFileInfo(place).absoluteFilePath();
    // A quote of the name's own must not end the quoted word.
    place.replace(QLatin1Char('"'), QLatin1String("\"\"\""));
    return krt::ksafe::KProcess::StartDetach(heapString("/bin/bash xdg-open \"%1\"").arg(place));
}

Answer<QString> KJsApiFileSystem::getDllWorkPath(const QString& name)
{
    if (name.isEmpty())
        return MissingParameters;
    return QString();
}

Answer<QString> KJsApiFileSystem::downloadPath()
{
    return QDir::toNativeSeparators(writableLocation(QStandardPaths::DownloadLocation));
}

Answer<QString> KJsApiFileSystem::selectLocalFolder(
    const JSContextEnv& page, const FolderDialogOptions& options)
{
    const QStringList chosen =
        chooseFiles(page, { options.caption, options.dir, {} }, QFileDialog::Directory);
    return QDir::toNativeSeparators(chosen.value(0));
}

Answer<CloudFileChoice> KJsApiFileSystem::selectFolderx(
    const JSContextEnv& page, const CloudFileDialogOptions& options)
{
    return chooseOnMachineOrInCloud(page, options);
}

Answer<bool> KJsApiFileSystem::mkpath(const WritablePath& path)
{
    if (path.names().empty() || path.look(true))
        return AlreadyExists;
    return makeDirectory(path);
}

Answer<bool> KJsApiFileSystem::remove(const WritablePath& path)
{
    if (const auto refusal = refuseUnlessDirectory(path.string(), ArgumentNotExisting, ArgumentNotDirectory))
        return *refusal;
    const Removal removal = removeTree(path);
    if (removal == Removal::Refused)
        return NewPathIsIllegal;
    return removal == Removal::Done;
}

Answer<void> KJsApiFileSystem::open(const QString& path)
{
    if (path.isEmpty())
        return FileIsEmpty;
    const QFileInfo info(path);
    if (!info.exists())
        return NotExisting / path;
    if (!info.isFile())
        return NotFile / path;
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(info.absoluteFilePath())))
        return OpenFailed / path;
    return {};
}

Answer<bool> KJsApiFileSystem::getFileStatus(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return ArgumentNotExisting / path;
    // Opening a pipe would take from whoever writes to it, opening a device may do anything.
    if (!info.isFile())
        return false;
    const XHANDLE file = _XCreateFileW(path.toStdU16String().c_str(), X_GENERIC_WRITE, X_FILE_SHARE_READ,
        nullptr, X_OPEN_EXISTING, 0, nullptr);
    if (file == X_INVALID_HANDLE)
        return false;
    _XCloseHandle(file);
    return true;
}

Answer<QString> KJsApiFileSystem::getWritableSaveFileName(
    const JSContextEnv& page, const FileDialogOptions& options)
{
    const DialogTurn turn(page);
    if (!turn)
        return QString();
    return KDownloadFileDialog::getWritableFileName(nullptr, options.caption, options.dir, options.filter);
}

namespace {

/// The files that the user chooses, beginning in an existing directory.
Answer<QStringList> chooseInDirectory(
    const JSContextEnv& page, const FileDialogOptions& options, QFileDialog::FileMode mode)
{
    if (const auto refusal = refuseUnlessDirectory(options.dir, ArgumentNotExisting, ArgumentNotDirectory))
        return *refusal;
    return chooseFiles(page, options, mode);
}

Answer<QString> takeFirst(Answer<QStringList> chosen)
{
    if (chosen.isRefused())
        return chosen.refusal();
    return chosen.value().value(0);
}

} // namespace

Answer<QString> KJsApiFileSystem::getExistingDirectory(
    const JSContextEnv& page, const OpenDialogOptions& options)
{
    return takeFirst(chooseInDirectory(page, options, QFileDialog::Directory));
}

Answer<QStringList> KJsApiFileSystem::getOpenFileNames(
    const JSContextEnv& page, const OpenDialogOptions& options)
{
    return chooseInDirectory(page, options, QFileDialog::ExistingFiles);
}

Answer<QString> KJsApiFileSystem::getOpenFileName(const JSContextEnv& page, const OpenDialogOptions& options)
{
    return takeFirst(chooseInDirectory(page, options, QFileDialog::ExistingFile));
}

Answer<QVariantMap> KJsApiFileSystem::showSelectFilePanel(
    IKFilePanel& panel, const JSContextEnv& page, const QVariant& options)
{
    const DialogTurn turn(page);
    if (!turn)
        return QVariantMap();
    return panel.Show(heapString("FileDialog"), { { heapString("IsOpen"), heapString("1") } },
        options.toMap(), turn.owner());
}

Answer<Promise<QString>> KJsApiFileSystem::getFileMd5(const JSContextEnv& page, const QString& path)
{
    return KFileMd5Request::start(page, path);
}

Answer<bool> KJsApiFileSystem::startAccess(const JSContextEnv& page, const AccessOptions& options)
{
    IKAccessManager* manager = GetAccessManager();
    const DialogTurn turn(page);
    return manager
        && manager->StartAccess(options.path.toStdU16String().c_str(), turn && options.requestIfNoPermission,
            options.accessType, turn && options.showRequestFailedTip);
}

Answer<bool> KJsApiFileSystem::isDir(const QString& path)
{
    return QFileInfo(path).isDir();
}

namespace {

/// Where the plugins of all products are kept, with a slash at its end.
const QString& pluginPool()
{
    static const QString pool = [] {
        QString product = krt::kcmc::value(heapString("PluginPlatformProductName"), heapString("value"));
        if (product.isEmpty())
            product = heapString("nova");
        const QStringList parts { krt::dirs::velmoraHome(), product, heapString("linux-x64"),
            heapString("addons/pool") };
        return QDir::cleanPath(parts.join(QLatin1Char('/'))) + QLatin1Char('/');
    }();
    return pool;
}

} // namespace

Answer<bool> KJsApiFileSystem::isDirWritable(const QString& given)
{
    const QString path = QDir::toNativeSeparators(QDir::cleanPath(given)).trimmed();
    const QDir here;
    if (krt::dirs::inBlackDownloadDir(here.absoluteFilePath(given))
        || krt::dirs::inBlackDownloadDir(here.absoluteFilePath(path))
        || (path + QLatin1Char('/')).startsWith(pluginPool(), Qt::CaseInsensitive))
        return false;
    const QFileInfo info(path);
    return info.isDir() && info.isWritable();
}

} // namespace jsapi

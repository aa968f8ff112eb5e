#include "local/js_api_filesystem.h"

#include "framework/kjsonvalue.h"
#include "kbase/file.h"
#include "krt/dirs.h"
#include "krt/ksafe.h"
#include "krt/product.h"
#include "local/cloudfiledialog.h"
#include "local/filedialogs.h"
#include "local/filemd5.h"
#include "local/js_api_file.h"
#include "local/pathcheck.h"
#include "local/treechanges.h"
#include "suite/kaccessmanager.h"
#include "suite/kdownloadfiledialog.h"
#include "suite/kfilepanel.h"
#include "vexlite/jsapiutil.h"

#include <QDesktopServices>
#include <QDir>
#include <QStandardPaths>
#include <QUrl>

const MemberList& KJsApiFileSystem::members()
{
    // clang-format off
    static const MemberList list = MemberList {
        // member                                                                      category          answer         parameters
        method<&KJsApiFileSystem::file>(u"File",                                       Category::Usual,  Type::Object,  { Type::JsValue }),
        method<&KJsApiFileSystem::exists>(u"exists",                                   Category::Usual,  Type::JsValue, { Type::String }),
        method<&KJsApiFileSystem::copy>(u"copy",                                       Category::Usual,  Type::JsValue, { Type::JsValue }),
        method<&KJsApiFileSystem::officeData>(u"officeData",                           Category::Usual,  Type::JsValue),
        method<&KJsApiFileSystem::officeHome>(u"officeHome",                           Category::Usual,  Type::JsValue),
        method<&KJsApiFileSystem::tempPath>(u"tempPath",                               Category::Usual,  Type::JsValue),
        method<&KJsApiFileSystem::desktopPath>(u"desktopPath",                         Category::Usual,  Type::JsValue),
        method<&KJsApiFileSystem::homePath>(u"homePath",                               Category::Usual,  Type::JsValue),
        method<&KJsApiFileSystem::documentsPath>(u"documentsPath",                     Category::Usual,  Type::JsValue),
        method<&KJsApiFileSystem::openLocalLocation>(u"openLocalLocation",             Category::Usual,  Type::JsValue, { Type::JsValue }),
        method<&KJsApiFileSystem::getDllWorkPath>(u"getDllWorkPath",                   Category::Usual,  Type::JsValue, { Type::String }),
        method<&KJsApiFileSystem::downloadPath>(u"downloadPath",                       Category::Usual,  Type::JsValue),
        method<&KJsApiFileSystem::selectLocalFolder>(u"selectLocalFolder",             Category::None,   Type::JsValue, { Type::JsValue }),
        method<&KJsApiFileSystem::selectFolderx>(u"selectFolderx",                     Category::None,   Type::JsValue, { Type::JsValue }),
        method<&KJsApiFileSystem::mkpath>(u"mkpath",                                   Category::Usual,  Type::JsValue, { Type::String }),
        method<&KJsApiFileSystem::remove>(u"remove",                                   Category::Usual,  Type::JsValue, { Type::String }),
        method<&KJsApiFileSystem::open>(u"open",                                       Category::Launch, Type::JsValue, { Type::String }),
        method<&KJsApiFileSystem::getFileStatus>(u"getFileStatus",                     Category::Usual,  Type::JsValue, { Type::String }),
        method<&KJsApiFileSystem::getWritableSaveFileName>(u"getWritableSaveFileName", Category::None,   Type::JsValue, { Type::JsValue }),
        method<&KJsApiFileSystem::getExistingDirectory>(u"getExistingDirectory",       Category::None,   Type::JsValue, { Type::JsValue }),
        method<&KJsApiFileSystem::getOpenFileNames>(u"getOpenFileNames",               Category::None,   Type::JsValue, { Type::JsValue }),
        method<&KJsApiFileSystem::getOpenFileName>(u"getOpenFileName",                 Category::None,   Type::JsValue, { Type::JsValue }),
        method<&KJsApiFileSystem::showSelectFilePanel>(u"showSelectFilePanel",         Category::None,   Type::JsValue, { Type::JsValue }),
        method<&KJsApiFileSystem::getFileMd5>(u"getFileMd5",                           Category::Usual,  Type::JsValue, { Type::String }),
        method<&KJsApiFileSystem::startAccess>(u"startAccess",                         Category::Usual,  Type::JsValue, { Type::JsValue }),
        method<&KJsApiFileSystem::isDir>(u"isDir",                                     Category::Usual,  Type::JsValue, { Type::String }),
        method<&KJsApiFileSystem::isDirWritable>(u"isDirWritable",                     Category::Usual,  Type::JsValue, { Type::String }),
    }.handingOut<KJsApiFile>();
    // clang-format on
    return list;
}

namespace {

constexpr char PathIsEmpty[] = "Path is empty.";
constexpr char PathIsIllegal[] = "Path is illegal.";
constexpr char NewPathIsIllegal[] = "New path is illegal.";
constexpr char IsNotExisted[] = "%1 is not existed";

/// A failure's text about a path.
QString about(const char* text, const QString& path)
{
    return QString::fromLatin1(text).arg(path);
}

/// Why a path is no directory; empty for an existing one.
QString directoryFault(const QString& path)
{
    const QString native = QDir::toNativeSeparators(path);
    const QFileInfo info(native);
    if (!info.exists())
        return about(IsNotExisted, native);
    return info.isDir() ? QString() : about("%1 is not dir", native);
}

Reply succeedNative(Call& call, const QString& path)
{
    return call.succeed(QDir::toNativeSeparators(path));
}

QString writableLocation(QStandardPaths::StandardLocation location)
{
    return QStandardPaths::writableLocation(location);
}

} // namespace

Reply KJsApiFileSystem::file(Call& call)
{
    const QString path = call.options().string("path");
    if (path.isEmpty())
        return call.fail(ErrorCode::OperationFailed, PathIsEmpty);
    if (!QFileInfo(path).isFile())
        return call.fail(ErrorCode::OperationFailed, PathIsIllegal);
    const KRef<KJSONValue> options(new KJSONValue);
    options->SetString(QString::fromLatin1("path"), path);
    return call.handOutNew(KJsApiFile::ScriptName, options.get());
}

Reply KJsApiFileSystem::exists(Call& call)
{
    return call.succeed(QFileInfo::exists(call.string(0)));
}

Reply KJsApiFileSystem::copy(Call& call)
{
    const Options options = call.options();
    const QString path = options.string("path");
    if (path.isEmpty())
        return call.fail(ErrorCode::OperationFailed, PathIsEmpty);
    if (!QFileInfo(path).isFile() || !krt::dirs::isFileFormatSafe(path))
        return call.fail(ErrorCode::OperationFailed, PathIsIllegal);
    const std::optional<QString> newPath = checkedPath(options.string("newPath"));
    if (!newPath)
        return call.fail(ErrorCode::OperationFailed, NewPathIsIllegal);
    if (!options.boolean("overwrite", false) || !QFileInfo::exists(*newPath))
        return call.succeed(QFile::copy(path, *newPath));
    switch (replaceFile(path, *newPath)) {
    case Replacement::Done:
        return call.succeed(true);
    case Replacement::CopyFailed:
        return call.succeed(false);
    case Replacement::Refused:
        break;
    }
    return call.fail(ErrorCode::OperationFailed, "override existing file failed");
}

Reply KJsApiFileSystem::officeData(Call& call)
{
    return call.succeed(krt::dirs::officeData());
}

Reply KJsApiFileSystem::officeHome(Call& call)
{
    return call.succeed(krt::dirs::officeHome());
}

Reply KJsApiFileSystem::tempPath(Call& call)
{
    return succeedNative(call, QDir::tempPath());
}

Reply KJsApiFileSystem::desktopPath(Call& call)
{
    return call.succeed(writableLocation(QStandardPaths::DesktopLocation));
}

Reply KJsApiFileSystem::homePath(Call& call)
{
    return succeedNative(call, QDir::homePath());
}

Reply KJsApiFileSystem::documentsPath(Call& call)
{
    return succeedNative(call, QStandardPaths::standardLocations(QStandardPaths::DocumentsLocation).value(0));
}

Reply KJsApiFileSystem::downloadPath(Call& call)
{
    return succeedNative(call, writableLocation(QStandardPaths::DownloadLocation));
}

Reply KJsApiFileSystem::openLocalLocation(Call& call)
{
    const Options options = call.options();
    QString place = options.string("path");
    if (place.isEmpty())
        return call.fail(ErrorCode::BadArgument, MissingParameters);
    const QString fault = directoryFault(place);
    if (!fault.isEmpty())
        return call.fail(ErrorCode::OperationFailed, fault);
    const QString fileName = options.string("fileName");
    if (!fileName.isEmpty()) {
        if (!place.endsWith(QLatin1Char('\\')) && !place.endsWith(QLatin1Char('/')))
            place += QLatin1Char('/');
        place = QDir::toNativeSeparators(place + fileName);
        if (!QFileInfo::exists(place))
            return call.fail(ErrorCode::OperationFailed, about("file %1 is not exists", place));
    }
    // Absolute, for no name to be taken for an option or an address.
    place = QFileInfo(place).absoluteFilePath();
    // A quote of the name's own must not end the quoted word.
    place.replace(QLatin1Char('"'), QLatin1String("\"\"\""));
    return call.succeed(
        krt::ksafe::KProcess::StartDetach(QString::fromLatin1("/bin/bash xdg-open \"%1\"").arg(place)));
}

Reply KJsApiFileSystem::getDllWorkPath(Call& call)
{
    if (call.string(0).isEmpty())
        return call.fail(ErrorCode::BadArgument, MissingParameters);
    return call.succeed(QString());
}

Reply KJsApiFileSystem::selectLocalFolder(Call& call)
{
    const Options options = call.options();
    if (options.string("dir").isEmpty())
        return call.fail(ErrorCode::BadArgument, MissingParameters);
    return succeedNative(call, askForFiles(call, QFileDialog::Directory).value(0));
}

Reply KJsApiFileSystem::selectFolderx(Call& call)
{
    return askOnMachineOrInCloud(call);
}

namespace {

/// Has `action` answer with the path that is to be changed, resolved and allowed.
template <typename Action> Reply withPathToChange(Call& call, Action action)
{
    const QString given = call.string(0);
    if (given.isEmpty())
        return call.fail(ErrorCode::BadArgument, PathIsEmpty);
    const std::optional<QString> path = checkedPath(given);
    return path ? action(*path) : call.fail(ErrorCode::OperationFailed, NewPathIsIllegal);
}

} // namespace

Reply KJsApiFileSystem::mkpath(Call& call)
{
    return withPathToChange(call, [&](const QString& path) {
        if (QFileInfo::exists(path))
            return call.fail(ErrorCode::OperationFailed, "the directory already exist");
        return call.succeed(QDir(QString::fromLatin1(".")).mkpath(path));
    });
}

Reply KJsApiFileSystem::remove(Call& call)
{
    return withPathToChange(call, [&](const QString& path) {
        const QString fault = directoryFault(path);
        if (!fault.isEmpty())
            return call.fail(ErrorCode::BadArgument, fault);
        if (holdsGuardedDirectory(path))
            return call.fail(ErrorCode::OperationFailed, NewPathIsIllegal);
        return call.succeed(removeTree(path));
    });
}

Reply KJsApiFileSystem::open(Call& call)
{
    const QString path = call.string(0);
    if (path.isEmpty())
        return call.fail(ErrorCode::BadArgument, PathIsEmpty);
    const QFileInfo info(path);
    if (!info.exists())
        return call.fail(ErrorCode::OperationFailed, about(IsNotExisted, path));
    if (!info.isFile())
        return call.fail(ErrorCode::OperationFailed, about("%1 is not file", path));
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(info.absoluteFilePath())))
        return call.fail(ErrorCode::OperationFailed, about("Failed to open file : %1 ", path));
    return call.succeed();
}

Reply KJsApiFileSystem::getFileStatus(Call& call)
{
    const QString path = call.string(0);
    if (!QFileInfo::exists(path))
        return call.fail(ErrorCode::BadArgument, about(IsNotExisted, path));
    const XHANDLE file = _XCreateFileW(path.toStdU16String().c_str(), X_GENERIC_WRITE, X_FILE_SHARE_READ,
        nullptr, X_OPEN_EXISTING, 0, nullptr);
    if (file == X_INVALID_HANDLE)
        return call.succeed(false);
    _XCloseHandle(file);
    return call.succeed(true);
}

Reply KJsApiFileSystem::getWritableSaveFileName(Call& call)
{
    const DialogTurn turn(call.context());
    if (!turn)
        return call.succeed(QString());
    const Options options = call.options();
    return call.succeed(KDownloadFileDialog::getWritableFileName(
        nullptr, options.string("caption"), options.string("dir"), options.string("filter")));
}

namespace {

/// Answers with the files that the user chooses, beginning in an existing directory.
template <typename Answer> Reply askInDirectory(Call& call, QFileDialog::FileMode mode, Answer answer)
{
    const QString fault = directoryFault(call.options().string("dir"));
    if (!fault.isEmpty())
        return call.fail(ErrorCode::BadArgument, fault);
    return answer(askForFiles(call, mode));
}

} // namespace

Reply KJsApiFileSystem::getExistingDirectory(Call& call)
{
    return askInDirectory(call, QFileDialog::Directory,
        [&](const QStringList& chosen) { return call.succeed(chosen.value(0)); });
}

Reply KJsApiFileSystem::getOpenFileNames(Call& call)
{
    return askInDirectory(call, QFileDialog::ExistingFiles,
        [&](const QStringList& chosen) { return call.succeed(QVariant(chosen)); });
}

Reply KJsApiFileSystem::getOpenFileName(Call& call)
{
    return askInDirectory(call, QFileDialog::ExistingFile,
        [&](const QStringList& chosen) { return call.succeed(chosen.value(0)); });
}

Reply KJsApiFileSystem::showSelectFilePanel(Call& call)
{
    IKFilePanel* panel = GetFilePanel();
    if (!panel)
        return call.fail(ErrorCode::OperationFailed, "empty handle");
    QVariant options;
    if (!KJSApiUtil::ConvertJSVariantToQVariant(call.copiedArgument(0), options))
        return call.fail(ErrorCode::BadArgument, WrongParameters);
    const DialogTurn turn(call.context());
    if (!turn)
        return call.succeed(QVariant(QVariantMap()));
    return call.succeed(QVariant(panel->Show(QString::fromLatin1("FileDialog"),
        { { QString::fromLatin1("IsOpen"), QString::fromLatin1("1") } }, options.toMap(), turn.owner())));
}

Reply KJsApiFileSystem::getFileMd5(Call& call)
{
    return KFileMd5Request::start(call, call.string(0));
}

Reply KJsApiFileSystem::startAccess(Call& call)
{
    const Options options = call.options();
    IKAccessManager* manager = GetAccessManager();
    const DialogTurn turn(call.context());
    return call.succeed(manager
        && manager->StartAccess(options.string("path").toStdU16String().c_str(),
            turn && options.boolean("requestIfNoPermission", true), options.integer("accessType", 2),
            turn && options.boolean("showRequestFailedTip", true)));
}

Reply KJsApiFileSystem::isDir(Call& call)
{
    return call.succeed(QFileInfo(call.string(0)).isDir());
}

namespace {

/// Where the plugins of all products are kept, with a slash at its end.
const QString& pluginPool()
{
    static const QString pool = [] {
        QString product =
            krt::kcmc::value(QString::fromLatin1("PluginPlatformProductName"), QString::fromLatin1("value"));
        if (product.isEmpty())
            product = QString::fromLatin1("nova");
        const QStringList parts { krt::dirs::velmoraHome(), product, QString::fromLatin1("linux-x64"),
            QString::fromLatin1("addons/pool") };
        return QDir::cleanPath(parts.join(QLatin1Char('/'))) + QLatin1Char('/');
    }();
    return pool;
}

} // namespace

Reply KJsApiFileSystem::isDirWritable(Call& call)
{
    const QString given = call.string(0);
    const QString path = QDir::toNativeSeparators(QDir::cleanPath(given)).trimmed();
    const QDir here;
    if (krt::dirs::inBlackDownloadDir(here.absoluteFilePath(given))
        || krt::dirs::inBlackDownloadDir(here.absoluteFilePath(path))
        || (path + QLatin1Char('/')).startsWith(pluginPool(), Qt::CaseInsensitive))
        return call.succeed(false);
    const QFileInfo info(path);
    return call.succeed(info.isDir() && info.isWritable());
}

#include "cloud/js_api_syncfolder.h"

#include "cloud/syncfolderoptions.h"
#include "local/pathcheck.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>

namespace jsapi {

namespace {

using Arguments = KSyncFolderRequest::Arguments;

constexpr std::int32_t MostRecentFiles = 200;

/// For listeners: a count that the service reports as a string.
double readCount(const QMap<QString, QString>& actions, const char* name)
{
    return actions.value(heapString(name)).toDouble();
}

QString flag(bool value)
{
    return heapString(value ? "true" : "false");
}

QString toQString(const std::string& utf8)
{
    return QString::fromStdString(utf8);
}

Arguments makeArguments(const SignedInUser& user)
{
    return { { heapString("userId"), user.id() } };
}

/// Those of a request for a local folder; nothing when the path is closed to pages.
std::optional<Arguments> makeLocalArguments(const SignedInUser& user, const QString& localPath)
{
    const std::optional<WritablePath> path = WritablePath::check(localPath);
    if (!path)
        return std::nullopt;
    Arguments arguments = makeArguments(user);
    arguments.insert(heapString("localPath"), path->string());
    return arguments;
}

/// The user's desktop as a folder to be added.
Arguments makeDesktopArguments(const SignedInUser& user, const std::string& cloudPath)
{
    Arguments arguments = makeArguments(user);
    arguments.insert(
        heapString("localPath"), QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));
    arguments.insert(
        heapString("cloudFolder"), cloudPath.empty() ? heapString("Desktop") : toQString(cloudPath));
    arguments.insert(heapString("kind"), heapString("desktop"));
    arguments.insert(heapString("create"), flag(true));
    return arguments;
}

DialogEnd readDialogEnd(bool confirmed, const QVariantMap&)
{
    return { confirmed };
}

} // namespace

const MemberList& KJsApiSyncFolder::members()
{
    using Self = KJsApiSyncFolder;
    // What a request may fail with.
    const FailureList request { &CallFailed, &PromiseServiceError, &SyncRequestFailed };
    const FailureList local { &NewPathIsIllegal, &CallFailed, &PromiseServiceError, &SyncRequestFailed };
    const FailureList synced { &NewPathIsIllegal, &HoldsClosedPlace, &CallFailed, &PromiseServiceError,
        &SyncRequestFailed };
    const FailureList desktop { &HoldsClosedPlace, &CallFailed, &PromiseServiceError, &SyncRequestFailed };
    const FailureList dialog { &NoSyncFolderUi, &PromiseServiceError };
    static const MemberList list = MemberList {
        "Folders of this machine that are kept in step with a folder of the cloud. `syncFolder` makes a folder one of "
        "them; from then on it is looked at every few seconds, and changes of either side go to the other. Of a file "
        "that has changed on both sides both versions are kept; one that was removed on one side is removed on the "
        "other only when it has not changed there. `getSyncFolderCount` lists them, the listeners learn what is done. While "
        "another dialog of the page is open, its dialogs end at once as if the user had cancelled them.",
        {
            listeners<Self, SyncNoticeEvent>(u"addNotifyListener", u"removeNotifyListener", Category::None),
            member<&Self::openSyncFolderListDlg>(u"openSyncFolderListDlg", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Shows the user's sync folders, where they can be ended: files then stay on both sides. Resolves when "
                "the dialog is closed.",
                dialog),
            member<&Self::showSyncFolderPathWidget>(u"showSyncFolderPathWidget", Category::Usual,
                Type::JsValue, { Type::JsValue },
                "Has the user choose a local folder. Resolves with its path, empty when the user cancelled; whether it "
                "can be a sync folder is for `checkSyncFolderPathValid` to say.",
                dialog),
            member<&Self::openCloudSpacePage>(u"openCloudSpacePage", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Shows how much space the user has in the cloud. Resolves when that is closed.", dialog),
            member<&Self::getFolderSize>(u"getFolderSize", Category::Usual, Type::JsValue, { Type::JsValue },
                "Resolves with the size of a folder. Of a local one, links and what is on other disks do not count; one "
                "with more than 200000 entries is refused (`tooManyFiles`).",
                local),
            member<&Self::getSupportSelectSyncFolderMode>(u"getSupportSelectSyncFolderMode", Category::Usual,
                Type::JsValue, "Resolves with the ways in which folders can be synced.", request),
            member<&Self::syncFolderPrecheck>(u"syncFolderPrecheck", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Resolves with whether `syncFolder` would take a local folder, and what it would transfer.",
                synced),
            member<&Self::desktopSyncPreCheck>(u"desktopSyncPreCheck", Category::Usual, Type::JsValue,
                { Type::JsValue }, "The same for `setPersonalDesktopSync`.", desktop),
            member<&Self::syncToLocalPrecheck>(u"syncToLocalPrecheck", Category::Usual, Type::JsValue,
                { Type::JsValue }, "The same for `syncToLocal`, and whether the disk has the space.", synced),
            member<&Self::setPersonalDesktopSync>(u"setPersonalDesktopSync", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Makes the user's desktop a sync folder, which is synced within some seconds. Fails with "
                "`alreadySynced` when it is one.",
                desktop),
            member<&Self::cancelPersonalDesktopSync>(u"cancelPersonalDesktopSync", Category::Usual,
                Type::JsValue, { Type::JsValue },
                "Ends that; the files stay on both sides. Resolves with whether the desktop was a sync folder.",
                request),
            member<&Self::getIsNeedRepairOverlayIcon>(u"getIsNeedRepairOverlayIcon", Category::Usual,
                Type::JsValue,
                "Resolves with whether synced files have lost the mark that file managers show as an overlay icon: the "
                "extended attribute `user.nova.sync-state`.",
                request),
            member<&Self::doRepairOverlayIcon>(
                u"doRepairOverlayIcon", Category::Usual, Type::JsValue, "Gives it to them again.", request),
            member<&Self::syncFolder>(u"syncFolder", Category::Usual, Type::JsValue, { Type::JsValue },
                "Syncs a sync folder now, or makes a local folder one and syncs it. Resolves when that is done. When the "
                "folder is being synced already, it is synced once more.",
                synced),
            member<&Self::syncToLocal>(u"syncToLocal", Category::Usual, Type::JsValue, { Type::JsValue },
                "Makes a folder of the cloud a local one, too, as a sync folder. Resolves when it has been synced.",
                synced),
            member<&Self::changeSyncPath>(u"changeSyncPath", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Moves a sync folder on this machine, or takes note that the user has moved it. To another disk nothing "
                "is moved: its files are downloaded there, and the old ones stay. A sync under way ends with "
                "`cancelled`.",
                synced),
            member<&Self::checkSyncFolderPathValid>(u"checkSyncFolderPathValid", Category::Usual,
                Type::JsValue, { Type::JsValue },
                "Resolves with whether a local folder can become a sync folder. Reasons against it: `closed` "
                "(to pages; or it holds what is, or the home folder), `root`, `home`, `missing`, `link`, `notFolder`, `notWritable`, `closedToUploads`, "
                "`withinSyncFolder`, `containsSyncFolder`.",
                request),
            member<&Self::checkSyncFolderValid>(u"checkSyncFolderValid", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Resolves with whether a sync folder can be synced at present. Reasons against it: `missing` and "
                "`otherFolder`, as in its `state`.",
                request),
            member<&Self::getRecentFileList>(u"getRecentFileList", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Resolves with the user's files of the cloud that were changed last, the latest first.",
                request),
            member<&Self::scanFolder>(u"scanFolder", Category::Usual, Type::JsValue, { Type::JsValue },
                "Resolves with what a sync of a folder would do. Changes nothing.", synced),
            member<&Self::getSyncFolderCount>(u"getSyncFolderCount", Category::Usual, Type::JsValue,
                "Resolves with the user's sync folders and how many there are.", request),
            member<&Self::showNovaBox>(u"showNovaBox", Category::Usual, Type::JsValue, { Type::JsValue },
                "Shows a message. Resolves with the index of the button that the user clicked, -1 for none.",
                dialog),
            member<&Self::getUserTypeList>(u"getUserTypeList", Category::Usual, Type::JsValue,
                "As whom the user can sync: for himself or herself, and as a member of a company."),
            member<&Self::showCompanyPrivilegeDlg>(u"showCompanyPrivilegeDlg", Category::Usual, Type::JsValue,
                { Type::JsValue },
                "Shows what members of a company may have more. Resolves when that is closed.", dialog),
        }
    }.withEvents(SyncNoticeEvent);
    return list;
}

void KJsApiSyncFolder::prepareEvents()
{
    if (!QCoreApplication::instance())
        return;
    if (!m_handle)
        m_handle = std::make_unique<KSyncFolderEventHandle>(*this);
    m_handle->follow();
}

void KJsApiSyncFolder::followServices()
{
    if (m_handle)
        m_handle->follow();
}

void KSyncFolderEventHandle::takeActions(const QMap<QString, QString>& actions)
{
    if (actions.value(heapString("action")) != heapString("syncFolderChanged"))
        return;
    m_syncFolder.send(SyncNoticeEvent,
        { actions.value(heapString("id")), actions.value(heapString("state")),
            actions.value(heapString("localPath")), readCount(actions, "uploaded"),
            readCount(actions, "downloaded"), readCount(actions, "removed"), readCount(actions, "conflicts"),
            readCount(actions, "failed"), actions.value(heapString("reason")) });
}

Answer<Promise<DialogEnd>> KJsApiSyncFolder::openSyncFolderListDlg(
    const SignedInUser&, const JSContextEnv& page, const EntryOptions& options)
{
    return KSyncDialogRequest::show(
        page, KSyncFolderDialog::FolderList, { { heapString("from"), options.from } }, readDialogEnd);
}

Answer<Promise<QString>> KJsApiSyncFolder::showSyncFolderPathWidget(
    const SignedInUser&, const JSContextEnv& page, const PathDialogOptions& options)
{
    return KSyncDialogRequest::show(
        page, KSyncFolderDialog::FolderPath,
        { { heapString("title"), shorten(options.title, MaxTitle) },
            { heapString("localPath"), options.localPath } },
        +[](bool confirmed, const QVariantMap& values) {
            return confirmed ? values.value(heapString("localPath")).toString() : heapString("");
        });
}

Answer<Promise<DialogEnd>> KJsApiSyncFolder::openCloudSpacePage(
    const SignedInUser&, const JSContextEnv& page, const EntryOptions& options)
{
    return KSyncDialogRequest::show(
        page, KSyncFolderDialog::CloudSpace, { { heapString("from"), options.from } }, readDialogEnd);
}

Answer<Promise<FolderSize>> KJsApiSyncFolder::getFolderSize(
    const SignedInUser& user, const JSContextEnv& page, const SizeOptions& options)
{
    if (options.localPath.isEmpty() == options.cloudPath.empty())
        return WrongParameters;
    std::optional<Arguments> arguments =
        options.localPath.isEmpty() ? makeArguments(user) : makeLocalArguments(user, options.localPath);
    if (!arguments)
        return NewPathIsIllegal;
    arguments->insert(heapString("cloudFolder"), toQString(options.cloudPath));
    return KSyncFolderRequest::send<FolderSize>(page, "sync.measure", *arguments);
}

Answer<Promise<SyncModes>> KJsApiSyncFolder::getSupportSelectSyncFolderMode(
    const SignedInUser& user, const JSContextEnv& page)
{
    return KSyncFolderRequest::send<SyncModes>(
        page, "sync.listModes", makeArguments(user), +[](const LarkIpcResult& result) {
            SyncModes modes { result.resultList.size() > 1, {} };
            for (const std::string& mode : result.resultList)
                modes.modes.push_back(toQString(mode));
            return modes;
        });
}

Answer<Promise<SyncPrecheck>> KJsApiSyncFolder::syncFolderPrecheck(
    const SignedInUser& user, const JSContextEnv& page, const FolderOptions& options)
{
    std::optional<Arguments> arguments = makeLocalArguments(user, options.localPath);
    if (!arguments)
        return NewPathIsIllegal;
    const QString name = QFileInfo(arguments->value(heapString("localPath"))).fileName();
    arguments->insert(
        heapString("cloudFolder"), options.cloudPath.empty() ? name : toQString(options.cloudPath));
    return KSyncFolderRequest::send<SyncPrecheck>(page, "sync.precheck", *arguments);
}

Answer<Promise<SyncPrecheck>> KJsApiSyncFolder::desktopSyncPreCheck(
    const SignedInUser& user, const JSContextEnv& page, const DesktopOptions& options)
{
    return KSyncFolderRequest::send<SyncPrecheck>(
        page, "sync.precheck", makeDesktopArguments(user, options.cloudPath));
}

Answer<Promise<SyncPrecheck>> KJsApiSyncFolder::syncToLocalPrecheck(
    const SignedInUser& user, const JSContextEnv& page, const ToLocalOptions& options)
{
    std::optional<Arguments> arguments = makeLocalArguments(user, options.localPath);
    if (!arguments)
        return NewPathIsIllegal;
    arguments->insert(heapString("cloudFolder"), toQString(options.cloudPath));
    arguments->insert(heapString("makeLocal"), flag(true));
    return KSyncFolderRequest::send<SyncPrecheck>(page, "sync.precheck", *arguments);
}

Answer<Promise<SyncFolderInfo>> KJsApiSyncFolder::setPersonalDesktopSync(
    const SignedInUser& user, const JSContextEnv& page, const DesktopOptions& options)
{
    return KSyncFolderRequest::send<SyncFolderInfo>(
        page, "sync.addFolder", makeDesktopArguments(user, options.cloudPath));
}

Answer<Promise<bool>> KJsApiSyncFolder::cancelPersonalDesktopSync(
    const SignedInUser& user, const JSContextEnv& page, const EntryOptions&)
{
    return KSyncFolderRequest::removeDesktop(page, user.id());
}

Answer<Promise<OverlayIcons>> KJsApiSyncFolder::getIsNeedRepairOverlayIcon(
    const SignedInUser& user, const JSContextEnv& page)
{
    return KSyncFolderRequest::send<OverlayIcons>(page, "sync.checkMarks", makeArguments(user));
}

Answer<Promise<OverlayIcons>> KJsApiSyncFolder::doRepairOverlayIcon(
    const SignedInUser& user, const JSContextEnv& page)
{
    Arguments arguments = makeArguments(user);
    arguments.insert(heapString("repair"), flag(true));
    return KSyncFolderRequest::send<OverlayIcons>(page, "sync.checkMarks", arguments);
}

Answer<Promise<SyncSummary>> KJsApiSyncFolder::syncFolder(
    const SignedInUser& user, const JSContextEnv& page, const SyncOptions& options)
{
    if (options.id.empty() == options.localPath.isEmpty())
        return WrongParameters;
    if (!options.id.empty())
        return KSyncFolderRequest::sync(page, user.id(), toQString(options.id));
    std::optional<Arguments> arguments = makeLocalArguments(user, options.localPath);
    if (!arguments)
        return NewPathIsIllegal;
    const QString name = QFileInfo(arguments->value(heapString("localPath"))).fileName();
    arguments->insert(
        heapString("cloudFolder"), options.cloudPath.empty() ? name : toQString(options.cloudPath));
    arguments->insert(heapString("mode"), toQString(options.mode));
    arguments->insert(heapString("kind"), heapString("folder"));
    arguments->insert(heapString("create"), flag(true));
    return KSyncFolderRequest::addAndSync(page, user.id(), *arguments);
}

Answer<Promise<SyncSummary>> KJsApiSyncFolder::syncToLocal(
    const SignedInUser& user, const JSContextEnv& page, const ToLocalOptions& options)
{
    std::optional<Arguments> arguments = makeLocalArguments(user, options.localPath);
    if (!arguments)
        return NewPathIsIllegal;
    arguments->insert(heapString("cloudFolder"), toQString(options.cloudPath));
    arguments->insert(heapString("kind"), heapString("folder"));
    arguments->insert(heapString("makeLocal"), flag(true));
    return KSyncFolderRequest::addAndSync(page, user.id(), *arguments);
}

Answer<Promise<SyncFolderInfo>> KJsApiSyncFolder::changeSyncPath(
    const SignedInUser& user, const JSContextEnv& page, const MoveOptions& options)
{
    std::optional<Arguments> arguments = makeLocalArguments(user, options.localPath);
    if (!arguments)
        return NewPathIsIllegal;
    arguments->insert(heapString("id"), toQString(options.id));
    return KSyncFolderRequest::send<SyncFolderInfo>(page, "sync.moveFolder", *arguments);
}

Answer<Promise<PathCheck>> KJsApiSyncFolder::checkSyncFolderPathValid(
    const SignedInUser& user, const JSContextEnv& page, const PathOptions& options)
{
    const std::optional<Arguments> arguments = makeLocalArguments(user, options.localPath);
    return arguments ? KSyncFolderRequest::checkPath(page, *arguments) : KSyncFolderRequest::refusePath(page);
}

Answer<Promise<PathCheck>> KJsApiSyncFolder::checkSyncFolderValid(
    const SignedInUser& user, const JSContextEnv& page, const IdOptions& options)
{
    Arguments arguments = makeArguments(user);
    arguments.insert(heapString("id"), toQString(options.id));
    return KSyncFolderRequest::send<PathCheck>(page, "sync.checkFolder", arguments);
}

Answer<Promise<std::vector<RecentFile>>> KJsApiSyncFolder::getRecentFileList(
    const SignedInUser& user, const JSContextEnv& page, const RecentOptions& options)
{
    if (options.count < 1 || options.count > MostRecentFiles)
        return WrongParameters;
    Arguments arguments = makeArguments(user);
    arguments.insert(heapString("count"), QString::number(options.count));
    return KSyncFolderRequest::send<std::vector<RecentFile>>(
        page, "sync.listRecentFiles", arguments, +[](const LarkIpcResult& result) {
            std::vector<RecentFile> files;
            for (const std::string& json : result.resultList)
                files.push_back(fromJson<RecentFile>(json));
            return files;
        });
}

Answer<Promise<FolderScan>> KJsApiSyncFolder::scanFolder(
    const SignedInUser& user, const JSContextEnv& page, const ScanOptions& options)
{
    if (options.id.empty() == options.localPath.isEmpty())
        return WrongParameters;
    std::optional<Arguments> arguments =
        options.localPath.isEmpty() ? makeArguments(user) : makeLocalArguments(user, options.localPath);
    if (!arguments)
        return NewPathIsIllegal;
    arguments->insert(heapString("id"), toQString(options.id));
    arguments->insert(heapString("cloudFolder"), toQString(options.cloudPath));
    return KSyncFolderRequest::send<FolderScan>(page, "sync.scan", *arguments);
}

Answer<Promise<SyncFolderList>> KJsApiSyncFolder::getSyncFolderCount(
    const SignedInUser& user, const JSContextEnv& page)
{
    return KSyncFolderRequest::send<SyncFolderList>(
        page, "sync.listFolders", makeArguments(user), +[](const LarkIpcResult& result) {
            SyncFolderList list { static_cast<double>(result.resultList.size()), {} };
            for (const std::string& json : result.resultList)
                list.folders.push_back(fromJson<SyncFolderInfo>(json));
            return list;
        });
}

Answer<Promise<std::int32_t>> KJsApiSyncFolder::showNovaBox(
    const SignedInUser&, const JSContextEnv& page, const MessageOptions& options)
{
    constexpr std::size_t MostButtons = 4;
    if (options.buttons.size() > MostButtons)
        return WrongParameters;
    QStringList buttons;
    for (const std::string& button : options.buttons)
        buttons.append(shorten(toQString(button), MaxButton));
    return KSyncDialogRequest::show(
        page, KSyncFolderDialog::Message,
        { { heapString("title"), shorten(options.title, MaxTitle) },
            { heapString("text"), shorten(options.text, MaxText, MaxTextLines) },
            { heapString("buttons"), buttons } },
        +[](bool confirmed, const QVariantMap& values) -> std::int32_t {
            return confirmed ? values.value(heapString("button")).toInt() : -1;
        });
}

Answer<std::vector<UserType>> KJsApiSyncFolder::getUserTypeList(const SignedInUser& user)
{
    const kacctoutsdk::IKAccount* account = findAccount();
    if (!account)
        return NoAccountSdk;
    std::vector<UserType> types { { heapString("personal"), user.id(), account->userInfo().nickName } };
    const kacctoutsdk::KCompanyInfo company = account->companyInfo();
    if (!company.companyId.isEmpty())
        types.push_back({ heapString("company"), company.companyId, company.name });
    return types;
}

Answer<Promise<DialogEnd>> KJsApiSyncFolder::showCompanyPrivilegeDlg(
    const SignedInUser&, const JSContextEnv& page, const PrivilegeOptions& options)
{
    return KSyncDialogRequest::show(page, KSyncFolderDialog::CompanyPrivilege,
        { { heapString("privilege"), options.privilege } }, readDialogEnd);
}

} // namespace jsapi

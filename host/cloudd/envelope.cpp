#include "host/cloudd/envelope.h"

#include "host/cloudd/names.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <iterator>

namespace cloudd {

namespace {

using nova::lark::LarkIpcArg;
using nova::lark::LarkIpcResult;

struct MethodCall {
    Core& core;
    Session& session;
    const LarkIpcArg& request;
    Member member; ///< the user; empty for a method with needsUser false

    /// Empty when the request has no such argument.
    std::string readBytes(const char* name) const
    {
        const auto found = request.argMap.find(name);
        return found == request.argMap.end() ? std::string() : found->second;
    }
    QString readString(const char* name) const { return decodeUtf8(readBytes(name)); }
    bool readFlag(const char* name) const
    {
        const std::string value = readBytes(name);
        if (!value.empty() && value != "true" && value != "false")
            throw Error(State::WrongArguments);
        return value == "true";
    }
};

struct Method {
    std::string_view name;
    LarkIpcResult (*run)(MethodCall& call);
    bool needsUser = true;
};

LarkIpcResult makeMapResult(std::map<std::string, std::string> values)
{
    LarkIpcResult result;
    result.resultMap = std::move(values);
    return result;
}

LarkIpcResult makeStringResult(const QString& string)
{
    LarkIpcResult result;
    result.resultString = string.toStdString();
    return result;
}

std::string toJson(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

LarkIpcResult setCurrentUser(MethodCall& call)
{
    Session session;
    if (const std::string user = call.readBytes("userId"); !user.empty())
        session.currentUser = checkUserId(user);
    session.signedIn = checkUserIds(call.readBytes("signedIn"));
    if (const std::string company = call.readBytes("companyId"); !company.empty())
        session.companyId = checkUserId(company);
    session.hasReportedUsers = true;
    call.session = session;
    return makeMapResult({ { "isLogin", session.currentUser.isEmpty() ? "false" : "true" } });
}

LarkIpcResult uploadFileToCloud(MethodCall& call)
{
    const QString source = checkSourcePath(call.readBytes("filePath"));
    Store::Transaction transaction(call.core.store);
    const Item folder =
        findUploadFolder(call.core, call.member, call.readString("cloudDir"), Store::Missing::Create);
    Task task = makeTask(call.member, folder, source, Task::PublicKind);
    task.autoRename = call.readFlag("autoRename");
    call.core.transfers.record({ task });
    transaction.commit();
    call.core.transfers.start({ task });
    return makeMapResult({ { "taskId", task.id.toStdString() } });
}

LarkIpcResult getTaskState(MethodCall& call)
{
    const Task task = call.core.transfers.findTask(call.member.userId, call.readString("taskId"));
    QJsonObject data { { QStringLiteral("transferred"), task.transferred },
        { QStringLiteral("cloudPath"), call.core.transfers.cloudPath(task) } };
    if (task.total >= 0)
        data.insert(QStringLiteral("total"), task.total);
    if (!task.itemId.isEmpty()) {
        data.insert(QStringLiteral("fileId"), task.itemId);
        data.insert(QStringLiteral("sha256"), task.sha256);
    }
    return makeMapResult({ { "taskId", task.id.toStdString() }, { "type", "upload" },
        { "status", std::to_string(static_cast<int>(task.status)) },
        { "uploadErrorCode", std::to_string(static_cast<int>(task.state)) }, { "data", toJson(data) } });
}

LarkIpcResult cancelTransferTask(MethodCall& call)
{
    call.core.transfers.cancel(call.member.userId, call.readString("taskId"));
    return {};
}

LarkIpcResult getPersonalPrivateGroup(MethodCall& call)
{
    const Member& member = call.member;
    return makeMapResult({ { "response",
        toJson({ { QStringLiteral("groupId"), member.groupId }, { QStringLiteral("name"), member.groupName },
            { QStringLiteral("type"), QStringLiteral("private") },
            { QStringLiteral("rootId"), member.rootId }, { QStringLiteral("ownerId"), member.userId },
            { QStringLiteral("createTime"), member.createTime } }) } });
}

LarkIpcResult getMyCloudDocumentsLocalPath(MethodCall& call)
{
    call.core.places.openDocumentsFolder(call.member.userId, {});
    return makeStringResult(call.core.places.documentsPath(call.member.userId, {}));
}

LarkIpcResult getRoamingMode(MethodCall& call)
{
    return makeStringResult(call.member.roamingMode);
}

LarkIpcResult changeRoamingMode(MethodCall& call)
{
    const QString mode = call.readString("roamingMode");
    if (mode != QLatin1String("auto") && mode != QLatin1String("manual"))
        throw Error(State::WrongArguments);
    if (mode != call.member.roamingMode) {
        call.core.store.setRoamingMode(call.member.userId, mode);
        call.core.notify(call.member.userId,
            { { QStringLiteral("action"), QStringLiteral("roamingModeChanged") },
                { QStringLiteral("roamingMode"), mode } });
    }
    return makeMapResult({ { "roamingMode", mode.toStdString() } });
}

Item findFile(MethodCall& call, const QString& pathOrId)
{
    Item file = call.core.store.findItem(call.member, pathOrId);
    if (file.isFolder)
        throw Error(State::NotFound);
    return file;
}

LarkIpcResult makeLabelResult(const Item& file, const LabelStatus& status)
{
    return makeMapResult({ { "fileId", file.id.toStdString() }, { "label", status.label.toStdString() },
        { "uuid", status.setupId.toStdString() }, { "changeTime", std::to_string(status.changeTime) } });
}

LarkIpcResult updateClassifyLabelStatus(MethodCall& call)
{
    const QJsonObject details = QJsonDocument::fromJson(call.readString("data").toUtf8()).object();
    const auto read = [&](QLatin1String name) {
        return checkLabel(details.value(name).toString().toStdString());
    };
    const QString label = read(QLatin1String("label"));
    const QString setupId = read(QLatin1String("uuid"));
    if (read(QLatin1String("group_id")) != call.member.groupId)
        throw Error(State::NotFound);
    const Item file = findFile(call, read(QLatin1String("file_id")));
    return makeLabelResult(file, call.core.store.recordLabelStatus(file.id, label, setupId));
}

LarkIpcResult getClassifyLabelStatus(MethodCall& call)
{
    const Item file = findFile(call, call.readString("fileId"));
    const auto status = call.core.store.findLabelStatus(file.id);
    if (!status)
        throw Error(State::NotFound);
    return makeLabelResult(file, *status);
}

constexpr Method Methods[] = {
    { "setCurrentUser", setCurrentUser, false },
    { "uploadFileToCloud", uploadFileToCloud },
    { "getTaskState", getTaskState },
    { "cancelTransferTask", cancelTransferTask },
    { "getPersonalPrivateGroup", getPersonalPrivateGroup },
    { "getMyCloudDocumentsLocalPath", getMyCloudDocumentsLocalPath },
    { "getRoamingMode", getRoamingMode },
    { "changeRoamingMode", changeRoamingMode },
    { "updateClassifyLabelStatus", updateClassifyLabelStatus },
    { "getClassifyLabelStatus", getClassifyLabelStatus },
};

} // namespace

LarkIpcResult callMethod(Core& core, Session& session, const LarkIpcArg& request)
{
    const auto* method = std::find_if(std::begin(Methods), std::end(Methods),
        [&](const Method& known) { return known.name == request.method; });
    if (method == std::end(Methods) || !request.nameSpace.empty())
        throw Error(State::UnknownMethod);
    MethodCall call { core, session, request, {} };
    if (method->needsUser)
        call.member = findSignedInMember(core, session, call.readBytes("userId"));
    return method->run(call);
}

} // namespace cloudd

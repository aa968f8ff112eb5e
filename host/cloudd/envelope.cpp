#include "host/cloudd/envelope.h"

#include "host/cloudd/method.h"

#include <algorithm>

namespace cloudd {

namespace {

using nova::lark::LarkIpcArg;
using nova::lark::LarkIpcResult;
using Result = std::optional<LarkIpcResult>;

Result setCurrentUser(MethodCall& call)
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

Result uploadFileToCloud(MethodCall& call)
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

Result getTaskState(MethodCall& call)
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

Result cancelTransferTask(MethodCall& call)
{
    call.core.transfers.cancel(call.member.userId, call.readString("taskId"));
    return LarkIpcResult();
}

Result getPersonalPrivateGroup(MethodCall& call)
{
    const Member& member = call.member;
    return makeMapResult({ { "response",
        toJson({ { QStringLiteral("groupId"), member.groupId }, { QStringLiteral("name"), member.groupName },
            { QStringLiteral("type"), QStringLiteral("private") },
            { QStringLiteral("rootId"), member.rootId }, { QStringLiteral("ownerId"), member.userId },
            { QStringLiteral("createTime"), member.createTime } }) } });
}

Result getMyCloudDocumentsLocalPath(MethodCall& call)
{
    call.core.places.openDocumentsFolder(call.member.userId, {});
    return makeStringResult(call.core.places.documentsPath(call.member.userId, {}));
}

Result getRoamingMode(MethodCall& call)
{
    return makeStringResult(call.member.roamingMode);
}

Result changeRoamingMode(MethodCall& call)
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

Result updateClassifyLabelStatus(MethodCall& call)
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

Result getClassifyLabelStatus(MethodCall& call)
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

const Method* findMethod(std::string_view name)
{
    for (const std::span<const Method> methods : { std::span<const Method>(Methods), syncMethods() }) {
        const auto found = std::find_if(
            methods.begin(), methods.end(), [&](const Method& known) { return known.name == name; });
        if (found != methods.end())
            return &*found;
    }
    return nullptr;
}

} // namespace

void callMethod(Core& core, Session& session, const LarkIpcArg& request, const MethodReply& reply)
{
    try {
        const Method* method = findMethod(request.method);
        if (!method || !request.nameSpace.empty())
            throw Error(State::UnknownMethod);
        MethodCall call { core, session, request, reply };
        if (method->needsUser)
            call.member = findSignedInMember(core, session, call.readBytes("userId"));
        if (const Result result = method->run(call))
            reply(State::Ok, *result);
    } catch (const Error& error) {
        LarkIpcResult failed;
        failed.resultString = error.reason;
        reply(error.state, failed);
    }
}

} // namespace cloudd

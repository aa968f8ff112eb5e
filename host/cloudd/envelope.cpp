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
    Member member; ///< who asks; nobody in a method that needs none

    /// Empty when there is none of that name.
    std::string bytes(const char* name) const
    {
        const auto found = request.argMap.find(name);
        return found == request.argMap.end() ? std::string() : found->second;
    }
    QString argument(const char* name) const { return text(bytes(name)); }
    bool flag(const char* name) const
    {
        const std::string value = bytes(name);
        if (!value.empty() && value != "true" && value != "false")
            throw Refusal(State::WrongArguments);
        return value == "true";
    }
};

struct Method {
    std::string_view name;
    LarkIpcResult (*run)(MethodCall& call);
    bool needsUser = true;
};

LarkIpcResult map(std::map<std::string, std::string> texts)
{
    LarkIpcResult result;
    result.resultMap = std::move(texts);
    return result;
}

LarkIpcResult single(const QString& text)
{
    LarkIpcResult result;
    result.resultString = text.toStdString();
    return result;
}

std::string json(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

LarkIpcResult setCurrentUser(MethodCall& call)
{
    Session session;
    if (const std::string user = call.bytes("userId"); !user.empty())
        session.currentUser = userId(user);
    session.signedIn = userIds(call.bytes("signedIn"));
    if (const std::string company = call.bytes("companyId"); !company.empty())
        session.companyId = userId(company);
    session.isTold = true;
    call.session = session;
    return map({ { "isLogin", session.currentUser.isEmpty() ? "false" : "true" } });
}

LarkIpcResult uploadFileToCloud(MethodCall& call)
{
    const QString source = sourcePath(call.bytes("filePath"));
    Store::Transaction transaction(call.core.store);
    const Item folder = uploadFolder(call.core, call.member, call.argument("cloudDir"), Store::Missing::Make);
    Task task = newTask(call.member, folder, source, Task::KeptKind);
    task.autoRename = call.flag("autoRename");
    call.core.transfers.record({ task });
    transaction.commit();
    call.core.transfers.start({ task });
    return map({ { "taskId", task.id.toStdString() } });
}

LarkIpcResult getTaskState(MethodCall& call)
{
    const Task task = call.core.transfers.task(call.member.userId, call.argument("taskId"));
    QJsonObject data { { QStringLiteral("transferred"), task.transferred },
        { QStringLiteral("cloudPath"), call.core.transfers.cloudPath(task) } };
    if (task.total >= 0)
        data.insert(QStringLiteral("total"), task.total);
    if (!task.itemId.isEmpty()) {
        data.insert(QStringLiteral("fileId"), task.itemId);
        data.insert(QStringLiteral("sha256"), task.sha256);
    }
    return map({ { "taskId", task.id.toStdString() }, { "type", "upload" },
        { "status", std::to_string(static_cast<int>(task.status)) },
        { "uploadErrorCode", std::to_string(static_cast<int>(task.state)) }, { "data", json(data) } });
}

LarkIpcResult cancelTransferTask(MethodCall& call)
{
    call.core.transfers.cancel(call.member.userId, call.argument("taskId"));
    return {};
}

LarkIpcResult getPersonalPrivateGroup(MethodCall& call)
{
    const Member& member = call.member;
    return map({ { "response",
        json({ { QStringLiteral("groupId"), member.groupId }, { QStringLiteral("name"), member.groupName },
            { QStringLiteral("type"), QStringLiteral("private") },
            { QStringLiteral("rootId"), member.rootId }, { QStringLiteral("ownerId"), member.userId },
            { QStringLiteral("createTime"), member.createTime } }) } });
}

LarkIpcResult getMyCloudDocumentsLocalPath(MethodCall& call)
{
    call.core.places.documentsFolder(call.member.userId, {});
    return single(call.core.places.documentsPath(call.member.userId, {}));
}

LarkIpcResult getRoamingMode(MethodCall& call)
{
    return single(call.member.roamingMode);
}

LarkIpcResult changeRoamingMode(MethodCall& call)
{
    const QString mode = call.argument("roamingMode");
    if (mode != QLatin1String("auto") && mode != QLatin1String("manual"))
        throw Refusal(State::WrongArguments);
    if (mode != call.member.roamingMode) {
        call.core.store.setRoamingMode(call.member.userId, mode);
        call.core.notify(call.member.userId,
            { { QStringLiteral("action"), QStringLiteral("roamingModeChanged") },
                { QStringLiteral("roamingMode"), mode } });
    }
    return map({ { "roamingMode", mode.toStdString() } });
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
};

} // namespace

LarkIpcResult callMethod(Core& core, Session& session, const LarkIpcArg& request)
{
    const auto* method = std::find_if(std::begin(Methods), std::end(Methods),
        [&](const Method& known) { return known.name == request.method; });
    if (method == std::end(Methods) || !request.nameSpace.empty())
        throw Refusal(State::UnknownMethod);
    MethodCall call { core, session, request, {} };
    if (method->needsUser)
        call.member = admitted(core, session, call.bytes("userId"));
    return method->run(call);
}

} // namespace cloudd

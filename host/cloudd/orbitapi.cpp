#include "host/cloudd/orbitapi.h"

#include "host/cloudd/names.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <iterator>

namespace cloudd {

namespace {

using orbitapi::CommonRequestArg;
using orbitapi::OrbitApiResult;

constexpr int MostFiles = 200;

struct OrbitCall {
    Core& core;
    Member member;
    const CommonRequestArg& request;

    QString readString(const char* name) const
    {
        const auto found = request.extraParam.find(name);
        return found == request.extraParam.end() ? QString() : decodeUtf8(found->second);
    }
};

QJsonObject describeItem(OrbitCall& call, const Item& item)
{
    return { { QStringLiteral("fileId"), item.id }, { QStringLiteral("name"), item.name },
        { QStringLiteral("cloudPath"), call.core.store.findPath(item) },
        { QStringLiteral("isFolder"), item.isFolder }, { QStringLiteral("size"), item.size },
        { QStringLiteral("sha256"), item.sha256 } };
}

QJsonObject listFiles(OrbitCall& call, const QString& part)
{
    bool isNumber = true;
    const QString given = call.readString("count");
    const int count = given.isEmpty() ? 20 : given.toInt(&isNumber);
    if (!isNumber || count < 1 || count > MostFiles)
        throw Error(State::WrongArguments);
    QJsonArray files;
    for (const ChangedFile& found : call.core.store.listChangedFiles(call.member, part, count)) {
        QJsonObject file = describeItem(call, found.file);
        file.insert(QStringLiteral("changeTime"), found.changeTime);
        files.append(file);
    }
    return { { QStringLiteral("files"), files } };
}

QJsonObject getSpace(OrbitCall& call)
{
    const Usage usage = call.core.store.measure(call.core.store.findItemById(call.member.rootId));
    return { { QStringLiteral("usedBytes"), usage.bytes }, { QStringLiteral("files"), usage.files },
        { QStringLiteral("folders"), usage.folders } };
}

QJsonObject getFileInfo(OrbitCall& call)
{
    return describeItem(call, call.core.store.findItem(call.member, call.readString("cloudPath")));
}

QJsonObject searchFiles(OrbitCall& call)
{
    const QString part = call.readString("name");
    if (part.isEmpty())
        throw Error(State::WrongArguments);
    return listFiles(call, part);
}

QJsonObject listRecent(OrbitCall& call)
{
    return listFiles(call, {});
}

constexpr struct {
    std::string_view key;
    QJsonObject (*run)(OrbitCall& call);
} Requests[] = {
    { "user.space", getSpace },
    { "file.info", getFileInfo },
    { "file.search", searchFiles },
    { "recent.list", listRecent },
};

/// What a server would reply in place of the state.
int toHttpStatus(State state)
{
    switch (state) {
    case State::Ok:
        return 200;
    case State::NotSignedIn:
        return 401;
    case State::NotFound:
    case State::UnknownMethod:
        return 404;
    case State::StorageFailed:
        return 500;
    default:
        return 400;
    }
}

} // namespace

OrbitApiResult callOrbitApi(Core& core, const Session& session, const CommonRequestArg& request)
{
    QElapsedTimer timer;
    timer.start();
    OrbitApiResult result;
    State state = State::Ok;
    result.message = toString(state);
    try {
        const auto found = std::find_if(std::begin(Requests), std::end(Requests),
            [&](const auto& known) { return known.key == request.baseInfo.requestKey; });
        if (found == std::end(Requests))
            throw Error(State::UnknownMethod);
        result.api = found->key;
        const auto user = request.extraParam.find("userId");
        const std::string userId =
            user == request.extraParam.end() ? session.currentUser.toStdString() : user->second;
        if (userId.empty())
            throw Error(State::NotSignedIn);
        OrbitCall call { core, findSignedInMember(core, session, userId), request };
        result.userId = userId;
        result.resultData = QJsonDocument(found->run(call)).toJson(QJsonDocument::Compact).toStdString();
    } catch (const Error& error) {
        state = error.state;
        result.message = error.reason;
    }
    result.resultState = static_cast<int>(state);
    result.httpStatusCode = toHttpStatus(state);
    result.replyTimestamp = QDateTime::currentMSecsSinceEpoch();
    result.duration = timer.elapsed();
    return result;
}

} // namespace cloudd

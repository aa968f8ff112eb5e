#include "host/cloudd/core.h"

#include "host/cloudd/names.h"

#include <algorithm>

namespace cloudd {

bool Core::isSignedIn(const QString& userId)
{
    std::erase_if(sessions, [](const std::weak_ptr<Session>& session) { return session.expired(); });
    return std::any_of(sessions.begin(), sessions.end(), [&](const std::weak_ptr<Session>& session) {
        const auto held = session.lock();
        return held && held->signedIn.contains(userId);
    });
}

Member findSignedInMember(Core& core, const Session& session, const std::string& id)
{
    const QString user = checkUserId(id);
    if (!session.signedIn.contains(user))
        throw Error(State::NotSignedIn);
    return core.store.ensureMember(user);
}

Item findUploadFolder(Core& core, const Member& member, const QString& pathOrId, Store::Missing missing)
{
    if (pathOrId.isEmpty())
        return core.store.ensureWorkspace(member);
    return core.store.findFolder(member, pathOrId, missing);
}

Task makeTask(const Member& member, const Item& folder, const QString& source, char kind)
{
    Task task;
    task.id = makeId(kind);
    task.userId = member.userId;
    task.source = source;
    task.folderId = folder.id;
    task.name = source.mid(source.lastIndexOf(QLatin1Char('/')) + 1);
    return task;
}

} // namespace cloudd

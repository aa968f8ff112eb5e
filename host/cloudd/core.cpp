#include "host/cloudd/core.h"

#include "host/cloudd/names.h"

namespace cloudd {

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

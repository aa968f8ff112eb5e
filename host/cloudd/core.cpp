#include "host/cloudd/core.h"

#include "host/cloudd/names.h"

namespace cloudd {

Member admitted(Core& core, const Session& session, const std::string& id)
{
    const QString user = userId(id);
    if (!session.signedIn.contains(user))
        throw Refusal(State::NotSignedIn);
    return core.store.member(user);
}

Item uploadFolder(Core& core, const Member& member, const QString& pathOrId, Store::Missing missing)
{
    if (pathOrId.isEmpty())
        return core.store.workspace(member);
    return core.store.folder(member, pathOrId, missing);
}

Task newTask(const Member& member, const Item& folder, const QString& source, char kind)
{
    Task task;
    task.id = newId(kind);
    task.userId = member.userId;
    task.source = source;
    task.folderId = folder.id;
    task.name = source.mid(source.lastIndexOf(QLatin1Char('/')) + 1);
    return task;
}

} // namespace cloudd

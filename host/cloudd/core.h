// What the procedures work on.
#pragma once

#include "host/cloudd/localplaces.h"
#include "host/cloudd/service.h"
#include "host/cloudd/transfers.h"

namespace cloudd {

struct Core {
    explicit Core(qint64 uploadBytesPerSecond)
        : transfers(store, contents, uploadBytesPerSecond)
    {
    }

    size_t echoedBytes = 0; ///< that requests without an answer have left to be sent back
    Store store;
    Contents contents;
    LocalPlaces places;
    Transfers transfers;
    Rounds copies; ///< to local places
    std::function<void(const QString& userId, const QMap<QString, QString>& actions)> notify;
};

/// The signed-in user of a request. Throws Refusal: WrongArguments, NotSignedIn.
Member admitted(Core& core, const Session& session, const std::string& userId);
/// The folder that uploads go to: of a cloud path or an id, or without one the default workspace's.
Item uploadFolder(Core& core, const Member& member, const QString& pathOrId, Store::Missing missing);
/// An upload that is to be recorded. `kind`: one of Task's.
Task newTask(const Member& member, const Item& folder, const QString& source, char kind);

} // namespace cloudd

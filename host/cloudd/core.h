// The state that all procedures share.
#pragma once

#include "host/cloudd/localplaces.h"
#include "host/cloudd/service.h"
#include "host/cloudd/syncfolders.h"
#include "host/cloudd/transfers.h"

namespace cloudd {

struct Core {
    explicit Core(const Settings& settings)
        : transfers(store, contents, places, settings)
        , syncFolders(store, contents, transfers, settings.syncIntervalMs,
              [this](const QString& userId) { return isSignedIn(userId); })
    {
    }

    /// In one of the suites that are connected.
    bool isSignedIn(const QString& userId);

    size_t echoedBytes = 0; ///< of strings to be returned with the replies of requests under way
    Store store;
    Contents contents;
    LocalPlaces places;
    Transfers transfers;
    SyncFolders syncFolders;
    JobQueue copies; ///< of cloud files to local ones
    std::vector<std::weak_ptr<Session>> sessions;
    std::function<void(const QString& userId, const QMap<QString, QString>& actions)> notify;
};

/// The signed-in user of a request. Throws Error: WrongArguments, NotSignedIn.
Member findSignedInMember(Core& core, const Session& session, const std::string& userId);
/// The target folder of an upload, by its cloud path or id; the default workspace when that is empty.
Item findUploadFolder(Core& core, const Member& member, const QString& pathOrId, Store::Missing missing);
/// An upload, not recorded yet. `kind`: PublicKind or InternalKind.
Task makeTask(const Member& member, const Item& folder, const QString& source, char kind);

} // namespace cloudd

// How a request or a transfer ended: the `state` of every result, and in decimal the "uploadErrorCode" of a
// transfer. Code that fails throws an Error; the service turns it into the reply, a transfer into its end.
#pragma once

#include <exception>

namespace cloudd {

enum class State {
    Ok = 0,
    WrongArguments = 1,
    NotFound = 2,
    NotSignedIn = 3,      ///< the user is not signed in in the suite that sent the request
    NameTaken = 4,        ///< by an item that may not be replaced
    SourceUnreadable = 5, ///< or changed while it was read
    StorageFailed = 6,    ///< the disk is full, or the disk or the store failed
    Busy = 7,             ///< too many requests or transfers are under way
    UnknownMethod = 8,
    Damaged = 9, ///< a stored content has changed
    Cancelled = 10,
    Closed = 11,     ///< the suite lets nobody upload this file
    WrongPlace = 12, ///< a local folder that can not be a sync folder, or is not the one that it was
};

/// A word for it, which pages get: "notFound".
const char* toString(State state);

class Error final : public std::exception {
public:
    /// `reason`: a word that says more than the state; must stay.
    explicit Error(State state, const char* reason = nullptr)
        : state(state)
        , reason(reason ? reason : toString(state))
    {
    }
    const char* what() const noexcept override { return "cloud service error"; }

    const State state;
    const char* const reason;
};

} // namespace cloudd

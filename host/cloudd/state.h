// How a request or a transfer ended: the `state` of every result, and as a decimal text the "uploadErrorCode"
// of a transfer. Whatever can not go on throws a Refusal; the service turns it into the answer, a transfer
// into its end.
#pragma once

#include <exception>

namespace cloudd {

enum class State {
    Ok = 0,
    WrongArguments = 1,
    NotFound = 2,
    NotSignedIn = 3,      ///< the user is not signed in in the suite that asks
    NameTaken = 4,        ///< by something that may not be replaced
    SourceUnreadable = 5, ///< or it changed while it was read
    StorageFailed = 6,    ///< no space, or the disk or the records failed
    Busy = 7,             ///< too much is waiting already
    UnknownMethod = 8,
    Damaged = 9, ///< a stored content is not what it was
    Cancelled = 10,
};

class Refusal final : public std::exception {
public:
    explicit Refusal(State state)
        : state(state)
    {
    }
    const char* what() const noexcept override { return "refused"; }

    const State state;
};

} // namespace cloudd

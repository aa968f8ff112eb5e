#include "host/cloudd/state.h"

namespace cloudd {

const char* toString(State state)
{
    switch (state) {
    case State::Ok:
        return "ok";
    case State::WrongArguments:
        return "wrongArguments";
    case State::NotFound:
        return "notFound";
    case State::NotSignedIn:
        return "notSignedIn";
    case State::NameTaken:
        return "nameTaken";
    case State::SourceUnreadable:
        return "sourceUnreadable";
    case State::StorageFailed:
        return "storageFailed";
    case State::Busy:
        return "busy";
    case State::UnknownMethod:
        return "unknownMethod";
    case State::Damaged:
        return "damaged";
    case State::Cancelled:
        return "cancelled";
    case State::Closed:
        return "closedToUploads";
    case State::WrongPlace:
        return "wrongPlace";
    }
    return "";
}

} // namespace cloudd

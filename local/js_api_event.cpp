#include "local/js_api_event.h"

namespace jsapi {

const MemberList& KJsApiEvent::members()
{
    static const MemberList list = MemberList {
        "A channel between pages, with nothing but the four generic event members.", {}
    }.withEvents();
    return list;
}

} // namespace jsapi

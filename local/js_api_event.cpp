#include "local/js_api_event.h"

const MemberList& KJsApiEvent::members()
{
    static const MemberList list = MemberList {}.withEvents<KJsApiEvent>();
    return list;
}

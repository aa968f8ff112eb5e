#include "framework/pagewatch.h"

IVEXBrowser* browserOf(const JSContextEnv& page)
{
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    return core ? core->Browser(page.browserId) : nullptr;
}

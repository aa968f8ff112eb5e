// What pages may do beyond their own window: the permissions in the profile's policy, by the page's origin.
#include "suite/kpagepermission.h"

#include "host/profile/profile.h"
#include "host/vexlite/core.h"

bool kpagepermission::isGranted(const JSContextEnv& page, KPagePermission permission, const QString& subject)
{
    const vexlite::Core* core = vexlite::Core::instance();
    return core
        && engine::Policy(profile::current()->policy).of(core->originOf(page)).permits(permission, subject);
}

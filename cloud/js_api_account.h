#pragma once

#include "framework/events.h"

/// "NovaExtension.Account": the signed-in user, login and logout, and their changes.
class KJsApiAccount final : public KJCExtendJsEventObj<KJsApiAccount> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Account";
    static const MemberList& members();

    /// Property: the Privilege object.
    Reply privilege(Call& call);

private:
    KRef<IJSExtentionObject> m_privilege;
};

/// "NovaExtension.Account.Privilege": changes of the user's membership privileges.
class KJsApiPrivilege final : public KJCExtendJsEventObj<KJsApiPrivilege> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Account.Privilege";
    static const MemberList& members();
};

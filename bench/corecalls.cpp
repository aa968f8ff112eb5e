#include "bench/dispatchrivals.h"
#include "vexlite/jscore.h"

#include <string>

namespace bench {

namespace {

KResult empty(IJSExtentionObject*, const JSContextEnv&, JSApiArguments&, KJSVariant&, KJSVariant&)
{
    return KR_OK;
}

class CoreCalls final : public Dispatch {
public:
    CoreCalls()
    {
        IJSRegistry* registry = vexlite::GetVEXJSCore()->Registry();
        for (std::int32_t id = 0; id < MemberCount; ++id) {
            const std::u16string name(static_cast<std::size_t>(id) + 1, u'm');
            registry->AddMember(m_table, name.c_str(), 0, 0, 0, reinterpret_cast<JSMemberInvoke>(&empty), 0);
        }
    }

    KResult invoke(const JSContextEnv& context, std::int32_t id, JSApiArguments& arguments,
        KJSVariant& result, KJSVariant& exception) override
    {
        IVEXJSCore* core = vexlite::GetVEXJSCore();
        const JSMemberEntry* entry = core->Registry()->FindMember(m_table, id, JSAccess::Method);
        if (core->TraceHook())
            return KR_REJECTED;
        const KResult status =
            reinterpret_cast<JSMethodInvoke>(entry->invoke)(nullptr, context, arguments, result, exception);
        vexlite::GetVEXJSCore()->Registry()->CallCompleted(context, result, 0);
        return status;
    }

private:
    JSMemberTable m_table;
};

} // namespace

std::unique_ptr<Dispatch> makeCoreCalls()
{
    return std::make_unique<CoreCalls>();
}

} // namespace bench

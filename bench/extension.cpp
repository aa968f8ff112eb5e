#include "bench/extension.h"

#include "framework/extensionobject.h"
#include "framework/factory.h"

#include <chrono>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

Clock::time_point began;
Clock::time_point ended;
std::int32_t answers = 0;

class BenchExtension final : public KJCExtendJsObj<BenchExtension> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Bench";
    static const MemberList& members();

    Reply empty(Call& call);
    Reply enveloped(Call& call);
    Reply begin(Call& call);
    Reply end(Call& call);
};

const MemberList& BenchExtension::members()
{
    static const MemberList list {
        method<&BenchExtension::begin>(u"begin", Category::Usual, Type::JsValue),
        method<&BenchExtension::end>(u"end", Category::Usual, Type::JsValue),
        method<&BenchExtension::empty>(u"other1", Category::Usual, Type::JsValue),
        method<&BenchExtension::empty>(u"other2", Category::Usual, Type::JsValue),
        method<&BenchExtension::empty>(u"other3", Category::Usual, Type::JsValue),
        method<&BenchExtension::empty>(u"other4", Category::Usual, Type::JsValue),
        method<&BenchExtension::empty>(u"empty", Category::Usual, Type::None),
        method<&BenchExtension::enveloped>(u"enveloped", Category::Usual, Type::JsValue),
        method<&BenchExtension::empty>(u"other5", Category::Usual, Type::JsValue),
        method<&BenchExtension::empty>(u"other6", Category::Usual, Type::JsValue),
    };
    return list;
}

Reply BenchExtension::empty(Call& call)
{
    return call.status(KR_OK);
}

Reply BenchExtension::enveloped(Call& call)
{
    return call.succeed(++answers);
}

Reply BenchExtension::begin(Call& call)
{
    began = Clock::now();
    return call.status(KR_OK);
}

Reply BenchExtension::end(Call& call)
{
    ended = Clock::now();
    return call.status(KR_OK);
}

} // namespace

KResult extensionFactory(std::int64_t creationContext, std::int64_t creationTarget)
{
    return sharedObjectFactory<BenchExtension>(creationContext, creationTarget);
}

double scriptSeconds()
{
    return std::chrono::duration<double>(ended - began).count();
}

} // namespace bench

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
std::int64_t sum = 0; ///< of what was read, so that the compiler leaves the reading in

struct ViewOptions {
    QString name;
    bool visible = false;
    std::int32_t width = 0;
    static constexpr auto fields()
    {
        return std::tuple(jsapi::required("name", &ViewOptions::name, "a string"),
            jsapi::optional("visible", &ViewOptions::visible, "a boolean"),
            jsapi::optional("width", &ViewOptions::width, "an integer"));
    }
};

class BenchExtension final : public KJCExtendJsObj<BenchExtension> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Bench";
    static const jsapi::MemberList& members();

    using Nothing = jsapi::Answer<jsapi::Plain<void>>;

    Nothing empty() { return jsapi::Plain<void> { KR_OK }; }
    jsapi::Answer<std::int32_t> enveloped() { return ++answers; }
    Nothing options(const ViewOptions& options)
    {
        sum += options.name.size() + options.visible + options.width;
        return jsapi::Plain<void> { KR_OK };
    }
    Nothing begin()
    {
        began = Clock::now();
        return jsapi::Plain<void> { KR_OK };
    }
    Nothing end()
    {
        ended = Clock::now();
        return jsapi::Plain<void> { KR_OK };
    }
};

const jsapi::MemberList& BenchExtension::members()
{
    using jsapi::Category;
    using jsapi::member;
    using jsapi::Type;
    using Self = BenchExtension;
    static const jsapi::MemberList list { "Members to measure.",
        {
            member<&Self::begin>(u"begin", Category::Usual, Type::JsValue, ""),
            member<&Self::end>(u"end", Category::Usual, Type::JsValue, ""),
            member<&Self::options>(u"options", Category::Usual, Type::None, { Type::JsValue }, ""),
            member<&Self::empty>(u"other2", Category::Usual, Type::JsValue, ""),
            member<&Self::empty>(u"other3", Category::Usual, Type::JsValue, ""),
            member<&Self::empty>(u"other4", Category::Usual, Type::JsValue, ""),
            member<&Self::empty>(u"empty", Category::Usual, Type::None, ""),
            member<&Self::enveloped>(u"enveloped", Category::Usual, Type::JsValue, ""),
            member<&Self::empty>(u"other5", Category::Usual, Type::JsValue, ""),
            member<&Self::empty>(u"other6", Category::Usual, Type::JsValue, ""),
        } };
    return list;
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

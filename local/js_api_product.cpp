#include "local/js_api_product.h"

#include "framework/kjsonvalue.h"
#include "krt/krt.h"
#include "krt/product.h"

const MemberList& KJsApiProduct::members()
{
    // clang-format off
    static const MemberList list {
        // member                                                       category         answer         parameters
        method<&KJsApiProduct::isPDFStandAlone>(u"isPDFStandAlone",     Category::Usual, Type::JsValue),
        method<&KJsApiProduct::getProductString>(u"getProductString",   Category::Usual, Type::JsValue, { Type::JsValue }),
        method<&KJsApiProduct::getConfigString>(u"getConfigString",     Category::Usual, Type::JsValue, { Type::String }),
        method<&KJsApiProduct::getConfigInt>(u"getConfigInt",           Category::Usual, Type::JsValue, { Type::String }),
        method<&KJsApiProduct::language>(u"language",                   Category::Usual, Type::JsValue, { Type::JsValue }),
        method<&KJsApiProduct::getAppVersionInfo>(u"getAppVersionInfo", Category::Usual, Type::JsValue),
    };
    // clang-format on
    return list;
}

namespace {
/// The set of product configuration that all of the suite reads.
constexpr int ConfigurationSelector = 37;
} // namespace

Reply KJsApiProduct::isPDFStandAlone(Call& call)
{
    return call.succeed(krt::kcmc::support(QString::fromLatin1("OnlyFocusOnPDF")));
}

Reply KJsApiProduct::getProductString(Call& call)
{
    const Options options = call.options();
    const int option = options.integer("option", ConfigurationSelector);
    return call.succeed(krt::kcmc::value(options.string("key"), QString::number(option)));
}

Reply KJsApiProduct::getConfigString(Call& call)
{
    return call.succeed(krt::configs::getString(call.string(0), ConfigurationSelector));
}

Reply KJsApiProduct::getConfigInt(Call& call)
{
    return call.succeed(krt::configs::getInt(call.string(0), ConfigurationSelector));
}

Reply KJsApiProduct::language(Call& call)
{
    const Options options = call.options();
    const int format = options.has("format") ? options.integer("format", 0) : 1;
    return call.succeed(krt::i18n::language(format, options.boolean("bUseCache", false)));
}

Reply KJsApiProduct::getAppVersionInfo(Call& call)
{
    KRef<KJSONValue> info(new KJSONValue);
    info->SetString(QStringLiteral("platform"), krt::info::platform());
    info->SetString(QStringLiteral("product"),
        krt::kcmc::value(QString::fromLatin1("BaseApiProduct"), QString::fromLatin1("productName")));
    return call.succeed(std::move(info));
}

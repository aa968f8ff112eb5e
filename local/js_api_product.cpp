#include "local/js_api_product.h"

#include "krt/krt.h"
#include "krt/product.h"

namespace jsapi {

namespace {
/// The set of product configuration that all of the suite reads.
constexpr std::int32_t ConfigurationSelector = 37;
} // namespace

struct KJsApiProduct::StringOptions {
    QString key;
    std::int32_t option = ConfigurationSelector;
    static constexpr auto fields()
    {
        return std::tuple(optional("key", &StringOptions::key, "the string's name"),
            optional("option", &StringOptions::option, "selects the product configuration"));
    }
};

struct KJsApiProduct::LanguageOptions {
    std::int32_t format = 1;
    bool bUseCache = false;
    static constexpr auto fields()
    {
        return std::tuple(optional("format", &LanguageOptions::format,
                              "1 names the language with its region; what is no integer stands for 0", 0),
            optional("bUseCache", &LanguageOptions::bUseCache, "as it was when the suite last looked"));
    }
};

struct KJsApiProduct::AppVersionInfo {
    QString platform;
    QString product;
    static constexpr auto fields()
    {
        return std::tuple(property("platform", &AppVersionInfo::platform, "the operating system"),
            property("product", &AppVersionInfo::product, "the product's name"));
    }
};

const MemberList& KJsApiProduct::members()
{
    using Self = KJsApiProduct;
    static const MemberList list {
        "The product's fixed strings, switches and configuration. What is not there is an empty string or 0.",
        {
            member<&Self::isPDFStandAlone>(u"isPDFStandAlone", Category::Usual, Type::JsValue,
                "Returns whether the product is a PDF program only."),
            member<&Self::getProductString>(u"getProductString", Category::Usual, Type::JsValue,
                { Type::JsValue }, "Returns a string of the product's."),
            member<&Self::getConfigString>(u"getConfigString", Category::Usual, Type::JsValue,
                { { Type::String, "name" } }, "Returns a string of the configuration."),
            member<&Self::getConfigInt>(u"getConfigInt", Category::Usual, Type::JsValue,
                { { Type::String, "name" } }, "Returns an integer of the configuration."),
            member<&Self::language>(u"language", Category::Usual, Type::JsValue, { Type::JsValue },
                "Returns the language of the suite's user interface."),
            member<&Self::getAppVersionInfo>(u"getAppVersionInfo", Category::Usual, Type::JsValue,
                "Returns what the product is and runs on."),
        }
    };
    return list;
}

Answer<bool> KJsApiProduct::isPDFStandAlone()
{
    return krt::kcmc::support(heapString("OnlyFocusOnPDF"));
}

Answer<QString> KJsApiProduct::getProductString(const StringOptions& options)
{
    return krt::kcmc::value(options.key, QString::number(options.option));
}

Answer<QString> KJsApiProduct::getConfigString(const QString& name)
{
    return krt::configs::getString(name, ConfigurationSelector);
}

Answer<std::int32_t> KJsApiProduct::getConfigInt(const QString& name)
{
    return krt::configs::getInt(name, ConfigurationSelector);
}

Answer<QString> KJsApiProduct::language(const LanguageOptions& options)
{
    return krt::i18n::language(options.format, options.bUseCache);
}

Answer<KJsApiProduct::AppVersionInfo> KJsApiProduct::getAppVersionInfo()
{
    return AppVersionInfo { krt::info::platform(),
        krt::kcmc::value(heapString("BaseApiProduct"), heapString("productName")) };
}

} // namespace jsapi

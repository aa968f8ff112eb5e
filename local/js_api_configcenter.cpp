#include "local/js_api_configcenter.h"

#include "framework/stayloaded.h"
#include "krt/kcc.h"

namespace jsapi {

struct KJsApiConfigCenter::KeyOptions {
    QString key;
    QString userId;
    static constexpr auto fields()
    {
        return std::tuple(required("key", &KeyOptions::key, "the value's name"),
            optional("userId", &KeyOptions::userId, "whose value; without one it is everybody's"));
    }
};

struct KJsApiConfigCenter::ReadOptions : KeyOptions {
    QVariant defaultValue;
    static constexpr auto fields()
    {
        return std::tuple_cat(KeyOptions::fields(),
            std::tuple(optional(
                "defaultValue", &ReadOptions::defaultValue, "what is returned where there is no value")));
    }
};

struct KJsApiConfigCenter::WriteOptions : KeyOptions {
    QVariant value;
    static constexpr auto fields()
    {
        return std::tuple_cat(KeyOptions::fields(),
            std::tuple(required(
                "value", &WriteOptions::value, "anything but null, a function, a native object or bytes")));
    }
};

const MemberList& KJsApiConfigCenter::members()
{
    using Self = KJsApiConfigCenter;
    static const MemberList list { "Named values that outlive the process, for everybody or for one user.",
        {
            member<&Self::setValue>(u"setValue", Category::SharedWrite, Type::JsValue, { Type::JsValue },
                "Stores a value. Returns whether it was stored."),
            member<&Self::value>(
                u"value", Category::SharedRead, Type::JsValue, { Type::JsValue }, "Returns a stored value."),
            member<&Self::remove>(u"remove", Category::SharedWrite, Type::JsValue, { Type::JsValue },
                "Removes a value. Returns whether there was one and it is gone."),
            member<&Self::flushRead>(u"flushRead", Category::SharedRead, Type::JsValue, { Type::JsValue },
                "Returns a stored value, read from the disk again."),
            member<&Self::flushWrite>(u"flushWrite", Category::SharedWrite, Type::JsValue,
                { Type::JsValue,
                    { Type::Object, "callback", "is called when the value is on the disk, or is not" } },
                "Stores a value and writes it to the disk. Returns whether the write was accepted."),
            member<&Self::flushRemove>(u"flushRemove", Category::SharedWrite, Type::JsValue,
                { Type::JsValue,
                    { Type::Object, "callback",
                        "is called when the value is gone from the disk, or is not" } },
                "Removes a value from the disk. Returns whether the removal was accepted."),
        } };
    return list;
}

namespace {

constexpr char CallbackKey[] = "jsCBFunc";

/// The context of a flush: the script function to call, with one reference, or 0. Whatever becomes of the
/// library, the suite calls completeFlush.
QVariantMap makeFlushContext(Callback<FlushReport>& callback)
{
    stayLoaded();
    return { { heapString(CallbackKey),
        static_cast<qulonglong>(reinterpret_cast<quintptr>(callback.release())) } };
}

void completeFlush(bool success, const QString& key, const QVariant& value, const QVariantMap& context)
{
    const qulonglong handle = context.value(heapString(CallbackKey)).toULongLong();
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the suite keeps the function for us as a number
    KRef<IJSFunction> function(reinterpret_cast<IJSFunction*>(static_cast<quintptr>(handle)));
    if (function)
        Callback<FlushReport>(std::move(function))({ key, value, success });
}

} // namespace

Answer<bool> KJsApiConfigCenter::setValue(const WriteOptions& options)
{
    return krt::kcc::setValue(options.key, options.value, { 0, options.userId });
}

Answer<QVariant> KJsApiConfigCenter::value(const ReadOptions& options)
{
    return krt::kcc::value(options.key, options.defaultValue, { 0, options.userId });
}

Answer<bool> KJsApiConfigCenter::remove(const KeyOptions& options)
{
    return krt::kcc::remove(options.key, { 0, options.userId });
}

Answer<QVariant> KJsApiConfigCenter::flushRead(const ReadOptions& options)
{
    return krt::kcc::flushRead(options.key, options.defaultValue, { 0, options.userId });
}

Answer<bool> KJsApiConfigCenter::flushWrite(const WriteOptions& options, Callback<FlushReport>& callback)
{
    return krt::kcc::flushWrite(
        options.key, options.value, completeFlush, makeFlushContext(callback), { 0, options.userId });
}

Answer<bool> KJsApiConfigCenter::flushRemove(const KeyOptions& options, Callback<FlushReport>& callback)
{
    return krt::kcc::flushRemove(
        options.key, completeFlush, makeFlushContext(callback), { 0, options.userId });
}

} // namespace jsapi

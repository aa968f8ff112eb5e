#include "framework/call.h"

#include "framework/extensionobject.h"
#include "framework/kjsonvalue.h"
#include "vexlite/jsapiutil.h"

namespace {

/// What a handler answers for a sub-object: it holds the object's reference and the registry's token.
class SubObject final : public KJCUnknownWarp<IJSSubObject> {
public:
    SubObject(IJSExtentionObject* object, std::int64_t token)
        : m_object(object)
        , m_token(token)
    {
    }
    IJSExtentionObject* Object() const override { return m_object.get(); }
    std::int64_t Token() const override { return m_token; }

private:
    KRef<IJSExtentionObject> m_object;
    std::int64_t m_token;
};

QString latin1(const char* name)
{
    return QString::fromLatin1(name);
}

constexpr MVARIANT MissingArgument {};

} // namespace

template <> bool answersTo<IJSSubObject>(const KIID& iid)
{
    return iid == IID_IJSSubObject;
}

bool Options::has(const char* name) const
{
    const KJSVariant* value = m_object ? m_object->Find(latin1(name)) : nullptr;
    return value && followed(value->raw()).vt != MV_EMPTY;
}

QString Options::string(const char* name, const QString& fallback) const
{
    return m_object ? m_object->GetString(latin1(name), fallback) : fallback;
}

QString Options::string(const QString& name) const
{
    return m_object ? m_object->GetString(name, {}) : QString();
}

std::int32_t Options::integer(const char* name, std::int32_t fallback) const
{
    return m_object ? m_object->GetInt32(latin1(name), fallback) : fallback;
}

bool Options::boolean(const char* name, bool fallback) const
{
    return m_object ? m_object->GetBoolean(latin1(name), fallback) : fallback;
}

std::optional<std::int32_t> Options::integer(const char* name) const
{
    // Only a property that does not read answers both fallbacks.
    const std::int32_t value = integer(name, 0);
    return value == integer(name, 1) ? std::optional(value) : std::nullopt;
}

std::optional<bool> Options::boolean(const char* name) const
{
    const bool value = boolean(name, false);
    return value == boolean(name, true) ? std::optional(value) : std::nullopt;
}

KJSVariant Options::any(const char* name) const
{
    const KJSVariant* value = m_object ? m_object->Find(latin1(name)) : nullptr;
    return value ? ownedCopy(*value) : KJSVariant();
}

Options Options::object(const char* name) const
{
    const KJSVariant* value = m_object ? m_object->Find(latin1(name)) : nullptr;
    return Options(value ? objectOf(value->raw()) : KRef<IJSONValue>());
}

QStringList Options::names() const
{
    QStringList names;
    if (m_object)
        m_object->Keys(names);
    return names;
}

const MVARIANT& Call::argument(std::size_t index) const
{
    return index < m_arguments.size() ? followed(m_arguments[index].raw()) : MissingArgument;
}

KJSVariant Call::copiedArgument(std::size_t index) const
{
    return index < m_arguments.size() ? ownedCopy(m_arguments[index]) : KJSVariant();
}

Reply Call::succeed(KRef<KJSONValue> object)
{
    return succeed(KJSVariant::fromUnknown(object.release()));
}

Reply Call::succeed(const QVariant& value)
{
    KJSVariant converted;
    KJSApiUtil::ConvertQVariantToJSVariant(value, converted);
    return succeed(std::move(converted));
}

Reply Call::succeed(KJSVariant value, const QString& message)
{
    if (value.type() == MV_UNKNOWN) {
        if (dynamic_cast<IJSPromise*>(value.raw().punkVal))
            return answer(std::move(value));
        if (auto* object = dynamic_cast<KJCExtentionObjBase*>(value.raw().punkVal)) {
            object->AddRef();
            return handOut(object);
        }
    }
    static const QString successKey = QStringLiteral("success");
    static const QString dataKey = QStringLiteral("data");
    static const QString messageKey = QStringLiteral("msg");
    auto* envelope = new KJSONValue;
    m_result = KJSVariant::fromUnknown(envelope);
    envelope->put(dataKey, std::move(value));
    if (!message.isEmpty())
        envelope->SetString(messageKey, message);
    envelope->SetBoolean(successKey, true);
    return Reply(KR_OK);
}

Reply Call::handOut(IJSExtentionObject* object, const char* failure)
{
    KRef<IJSExtentionObject> reference(object);
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    if (!object || !core)
        return fail(ErrorCode::OperationFailed, failure);
    const std::int64_t token = core->Registry()->SubObjectToken(object);
    return answer(KJSVariant::fromUnknown(new SubObject(reference.release(), token)));
}

IJSExtentionObject* Call::made(const char16_t* scriptName, IJSONValue* options) const
{
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    IJSObjectFactory* factory = core ? core->Objects() : nullptr;
    return factory ? factory->Create(QString::fromUtf16(scriptName), m_context, options) : nullptr;
}

Reply Call::handOutNew(const char16_t* scriptName, IJSONValue* options, const char* failure)
{
    return handOut(made(scriptName, options), failure);
}

Reply Call::handOutKept(KRef<IJSExtentionObject>& kept, const char16_t* scriptName)
{
    if (!kept)
        kept = KRef<IJSExtentionObject>(made(scriptName, nullptr));
    if (kept)
        kept->AddRef();
    return handOut(kept.get());
}

Reply Call::fail(ErrorCode code, const QString& message)
{
    auto* failure = new KJSONValue;
    m_exception = KJSVariant::fromUnknown(failure);
    failure->SetBoolean(QStringLiteral("success"), false);
    failure->SetInt32(QStringLiteral("code"), static_cast<std::int32_t>(code));
    if (!message.isEmpty())
        failure->SetString(QStringLiteral("msg"), message);
    return Reply(KR_REJECTED);
}

Reply Call::answer(KJSVariant value)
{
    m_result = std::move(value);
    return Reply(KR_OK);
}

Reply Call::refused(KResult status)
{
    (void)fail(ErrorCode::BadArgument, WrongParameters);
    return Reply(status);
}

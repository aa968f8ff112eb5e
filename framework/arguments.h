// Argument<T>: how a parameter of a handler gets its value. Parameters are read from left to right, and the
// first that is refused ends the call: the order of parameters is the order of refusals.
//
//     // the next argument: a string, empty for any other type
//     Answer<bool> exists(const QString& path);
//     // a struct with fields: the next argument's properties
//     Answer<bool> copy(const CopyOptions& options);
//     // checked because of its type
//     Answer<bool> mkpath(const WritablePath& path);
//     // a service, and the calling page: no arguments of script's
//     Answer<QString> getUserId(const CurrentAccount& current);
//     Answer<Promise<QString>> getFileMd5(const JSContextEnv& page, const QString& path);
#pragma once

#include "framework/answer.h"
#include "framework/call.h"
#include "framework/structs.h"

namespace jsapi {

/// The arguments of one call, in order, and the refusal that ended their reading.
class ArgumentReader {
public:
    explicit ArgumentReader(const Call& call)
        : m_call(call)
    {
    }

    /// The next argument; undefined past the last one.
    const KJSVariant& next();
    /// Whether there is another one.
    bool hasNext() const { return m_next < m_call.arguments().size(); }
    const JSContextEnv& page() const { return m_call.context(); }

    /// Ends the reading; returns false.
    bool refuse(const Refusal& refusal);
    const Refusal& refusal() const { return *m_refusal; }

private:
    const Call& m_call;
    std::size_t m_next = 0;
    std::optional<Refusal> m_refusal;
};

/// A parameter: `bool read(ArgumentReader&)`, which refuses or leaves a value for `get()`. A `read` with a
/// second parameter gets the object whose member is called. `IsScript` says whether it takes an argument of
/// script's.
template <typename T> struct Argument;

// Whatever has a value of its own, and takes one argument.
template <typename T> struct ArgumentValue {
    static constexpr bool IsScript = true;
    T& get() { return value; }
    T value {};
};

/// A string argument: script must pass a string, anything else reads as an empty one.
template <> struct Argument<QString> : ArgumentValue<QString> {
    bool read(ArgumentReader& reader)
    {
        value = readString(reader.next().raw());
        return true;
    }
};

/// Every other type that has a converter: what does not convert leaves the default, what is wrong is refused.
template <typename T>
requires(!HasFields<T>) && requires(const KJSVariant& value, T& target)
{
    Converter<T>::read(value, target);
}
struct Argument<T> : ArgumentValue<T> {
    bool read(ArgumentReader& reader)
    {
        return Converter<T>::read(reader.next(), this->value) != Reading::Wrong
            || reader.refuse(WrongParameters);
    }
};

/// Reads one property. `object` may be null: every property is absent then.
template <typename Value>
[[gnu::noinline]] Reading readProperty(
    ArgumentReader& reader, IJSONValue* object, const QString& name, const FieldFacts& facts, Value& target)
{
    KJSVariant value;
    if (object)
        object->Get(name, value);
    const Reading reading = readValue(value, target, facts.isStrict);
    if (reading == Reading::Wrong) {
        reader.refuse(*facts.wrong);
    } else if (facts.isRequired && (reading != Reading::Done || isMissing(target))) {
        reader.refuse(*facts.missing);
        return Reading::Wrong;
    }
    return reading;
}

template <typename Struct, typename Value>
bool readField(ArgumentReader& reader, IJSONValue* object, const QString& name,
    const Field<Struct, Value>& field, Value& target)
{
    const Reading reading = readProperty(reader, object, name, field, target);
    if constexpr (std::is_arithmetic_v<Value>) {
        if (field.hasFallback && reading == Reading::NotConvertible)
            target = field.fallback;
    }
    return reading != Reading::Wrong;
}

/// Reads all fields of a struct in the order of their declaration.
template <HasFields Struct> bool readFields(ArgumentReader& reader, IJSONValue* object, Struct& target)
{
    return forEachField<Struct>([&](const auto& field, std::size_t index) {
        return !field.name
            || readField(reader, object, fieldName<Struct>(index), field, target.*field.member);
    });
}

/// An options object; no object at all reads as one without properties, unless its fields are strict.
template <HasFields Struct> struct Argument<Struct> : ArgumentValue<Struct> {
    bool read(ArgumentReader& reader)
    {
        const KJSVariant& given = reader.next();
        const KRef<IJSONValue> object = queryJsonObject(given.raw());
        const FieldFacts& first = std::get<0>(FieldList<Struct>);
        if (first.isStrict && !object && isGiven(given))
            return reader.refuse(*first.wrong);
        return readFields(reader, object.get(), this->value);
    }
};

/// The calling page; copy it to use it after the call.
template <> struct Argument<JSContextEnv> {
    static constexpr bool IsScript = false;
    bool read(ArgumentReader& reader)
    {
        page = &reader.page();
        return true;
    }
    const JSContextEnv& get() const { return *page; }
    const JSContextEnv* page = nullptr;
};

/// A function of script's that is called later with one `Payload`, or nothing when script passed none.
template <typename Payload> class Callback {
public:
    Callback() = default;
    explicit Callback(KRef<IJSFunction> function)
        : m_function(std::move(function))
    {
    }
    Callback(const Callback& other)
        : m_function(other.m_function ? hold(*other.m_function) : KRef<IJSFunction>())
    {
    }
    Callback(Callback&&) noexcept = default;
    Callback& operator=(Callback other)
    {
        m_function = std::move(other.m_function);
        return *this;
    }
    ~Callback() = default;

    /// Whether script passed a function.
    explicit operator bool() const { return bool(m_function); }
    /// Calls the function. Returns false when its page has gone: it is never called any more.
    bool operator()(const Payload& payload) const
    {
        if (!m_function)
            return true;
        const KRef<IJSFunction> held = hold(*m_function); // it may have this callback dropped
        const KJSVariant argument = toScript(payload);
        return held->Call(JSApiArguments(&argument, 1), nullptr) != KR_NOT_AVAILABLE;
    }
    /// Gives the reference to the caller; null when script passed no function.
    IJSFunction* release() { return m_function.release(); }

private:
    KRef<IJSFunction> m_function;
};

template <typename Payload> struct Argument<Callback<Payload>> : ArgumentValue<Callback<Payload>> {
    bool read(ArgumentReader& reader)
    {
        this->value = Callback<Payload>(queryFunction(reader.next().raw()));
        return true;
    }
};

/// A function that script must pass: without it the call is refused.
template <typename Payload> class RequiredCallback : public Callback<Payload> {
public:
    using Callback<Payload>::Callback;
};

/// The same for one that is called as often as something happens, until the page goes: nobody waits for it.
template <typename Payload> class Watcher : public RequiredCallback<Payload> {
public:
    using RequiredCallback<Payload>::RequiredCallback;
};

template <typename Function> struct RequiredFunction : ArgumentValue<Function> {
    static constexpr std::array Refusals { &MissingParameters, &WrongParameters };
    bool read(ArgumentReader& reader)
    {
        const KJSVariant& given = reader.next();
        this->value = Function(queryFunction(given.raw()));
        return this->value || reader.refuse(isGiven(given) ? WrongParameters : MissingParameters);
    }
};
template <typename Payload>
struct Argument<RequiredCallback<Payload>> : RequiredFunction<RequiredCallback<Payload>> {
};
template <typename Payload> struct Argument<Watcher<Payload>> : RequiredFunction<Watcher<Payload>> {
};

/// All arguments that are left.
struct Rest {
    std::vector<KJSVariant> values;
};
template <> struct Argument<Rest> : ArgumentValue<Rest> {
    bool read(ArgumentReader& reader);
};

/// An argument that must be given and be of its kind: nothing is converted.
template <typename T> struct Demanded {
    T value;
};
template <typename T> struct Argument<Demanded<T>> : ArgumentValue<Demanded<T>> {
    using ScriptType = T;
    static constexpr std::array Refusals { &MissingParameters, &WrongParameters };
    bool read(ArgumentReader& reader)
    {
        const Reading reading = readValue(reader.next(), this->value.value, true);
        return reading == Reading::Done
            || reader.refuse(reading == Reading::Absent ? MissingParameters : WrongParameters);
    }
};

/// A boolean that is true unless script passes one that converts to false.
struct TrueByDefault {
    bool value = true;
};
template <> struct Argument<TrueByDefault> : ArgumentValue<TrueByDefault> {
    bool read(ArgumentReader& reader)
    {
        value.value = convertToBoolean(reader.next().raw()).value_or(true);
        return true;
    }
};

/// A service of the suite that may be missing: what Argument<Service> derives from.
template <typename Service, Service* (*Find)(), const Failure& Missing> struct ServiceArgument {
    static constexpr bool IsScript = false;
    static constexpr std::array Refusals { &Missing };
    bool read(ArgumentReader& reader)
    {
        service = Find();
        return service || reader.refuse(Missing);
    }
    Service& get() const { return *service; }
    Service* service = nullptr;
};

/// What the object that is called has, or may lack: what Argument<Resource> derives from. `Find` is a member of the
/// object's that is given the calling page and returns an Answer<Resource>; `Missing` are the failures in it.
template <typename Resource, auto Find, const Failure&... Missing>
struct ResourceArgument : ArgumentValue<Resource> {
    static constexpr bool IsScript = false;
    [[maybe_unused]] static constexpr std::array Refusals { &Missing... };
    template <typename Object> bool read(ArgumentReader& reader, Object& object)
    {
        Answer<Resource> found = (object.*Find)(reader.page());
        if (found.isRefused())
            return reader.refuse(found.refusal());
        this->value = std::move(found.value());
        return true;
    }
};

} // namespace jsapi

// An object of three keys, built, read and freed, against the containers that could stand in its place.
#include "framework/values.h"
#include "bench/allocations.h"
#include "framework/kjsonvalue.h"

#include <QJsonObject>
#include <QVariantMap>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <utility>
#include <vector>

namespace bench {

namespace {

// The keys and the text are there already, as a handler's are.
const QString successKey = QStringLiteral("success");
const QString codeKey = QStringLiteral("code");
const QString messageKey = QStringLiteral("msg");
const QString message = QStringLiteral("missing required parameters.");

/// What was read, so that all rivals read the same.
struct Read {
    bool success;
    int code;
    QString text;
};

Read throughInterface()
{
    KRef<IJSONValue> object(new KJSONValue);
    // The compiler must not see which class is behind the interface.
    IJSONValue* value = object.get();
    benchmark::DoNotOptimize(value);
    value->SetBoolean(successKey, true);
    value->SetInt32(codeKey, 3);
    value->SetString(messageKey, message);
    return { value->GetBoolean(successKey, false), value->GetInt32(codeKey, 0),
        value->GetString(messageKey, {}) };
}

Read variantMap()
{
    QVariantMap map;
    map.insert(successKey, true);
    map.insert(codeKey, 3);
    map.insert(messageKey, message);
    return { map.value(successKey).toBool(), map.value(codeKey).toInt(), map.value(messageKey).toString() };
}

Read jsonObject()
{
    QJsonObject object;
    object.insert(successKey, true);
    object.insert(codeKey, 3);
    object.insert(messageKey, message);
    return { object.value(successKey).toBool(), object.value(codeKey).toInt(),
        object.value(messageKey).toString() };
}

/// A vector that is kept in key order, with the same values as the object's.
class SortedVector {
public:
    KJSVariant& operator[](const QString& key)
    {
        auto place = placeOf(key);
        if (place == m_pairs.end() || place->first != key)
            place = m_pairs.insert(place, { key, {} });
        return place->second;
    }

private:
    using Pair = std::pair<QString, KJSVariant>;

    std::vector<Pair>::iterator placeOf(const QString& key)
    {
        return std::lower_bound(m_pairs.begin(), m_pairs.end(), key,
            [](const Pair& pair, const QString& wanted) { return pair.first < wanted; });
    }

    std::vector<Pair> m_pairs;
};

Read sortedVector()
{
    SortedVector object;
    object[successKey] = KJSVariant::fromBool(true);
    object[codeKey] = KJSVariant::fromInt32(3);
    object[messageKey] = makeString(message);
    return { object[successKey].raw().boolVal != 0, object[codeKey].raw().lVal,
        readString(object[messageKey].raw()) };
}

void buildReadFree(benchmark::State& state, Read (*build)())
{
    const Read found = build();
    if (!found.success || found.code != 3 || found.text != message)
        qFatal("The object does not hold what was put in.");
    state.counters["allocations"] = allocationsOf([&] { benchmark::DoNotOptimize(build()); });
    for (auto _ : state)
        benchmark::DoNotOptimize(build());
}

BENCHMARK_CAPTURE(buildReadFree, ours, throughInterface)->Name("value/KJSONValue");
BENCHMARK_CAPTURE(buildReadFree, map, variantMap)->Name("value/QVariantMap");
BENCHMARK_CAPTURE(buildReadFree, json, jsonObject)->Name("value/QJsonObject");
BENCHMARK_CAPTURE(buildReadFree, sorted, sortedVector)->Name("value/sorted_vector");

} // namespace

} // namespace bench

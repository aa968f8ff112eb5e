#include "host/vexlite/conversion.h"
#include "host/vexlite/counted.h"
#include "host/vexlite/ownedtext.h"
#include "host/vexlite/scriptvalues.h"

#include <algorithm>

namespace vexlite {

namespace {

bool isBefore(const ScriptPair& pair, const QString& key)
{
    return pair.first < key;
}

/// The key/value object of the stand-in: pairs sorted by key. Adding keys in order only appends.
constexpr std::size_t FewKeys = 8;

class ScriptObject final : public Counted<IJSONValue, IID_IJSONValue, IID_IJSONValueBase> {
public:
    ScriptObject() = default;
    explicit ScriptObject(std::vector<ScriptPair> pairs)
        : m_values(std::move(pairs))
    {
        // Pages mostly pass few keys, and often in order; sorting would move them nevertheless.
        const auto isLess = [](const ScriptPair& a, const ScriptPair& b) { return a.first < b.first; };
        if (!std::is_sorted(m_values.begin(), m_values.end(), isLess))
            std::sort(m_values.begin(), m_values.end(), isLess);
    }

    std::int32_t Count() const override { return static_cast<std::int32_t>(m_values.size()); }

    std::int32_t CopyOut(std::int32_t max, KJSVariant* keys, KJSVariant* values) const override
    {
        std::int32_t copied = 0;
        for (auto entry = m_values.begin(); entry != m_values.end() && copied < max; ++entry, ++copied) {
            keys[copied] = makeText(entry->first);
            values[copied] = entry->second;
        }
        return copied;
    }

    void Clear() override
    {
        // Destroyed last: destroying a value may run code that uses this object.
        std::exchange(m_values, {});
    }

    void Keys(QStringList& keys) const override
    {
        for (const auto& entry : m_values)
            keys.append(entry.first);
    }

    bool Has(const QString& key) const override { return Find(key); }

    KResult Get(const QString& key, KJSVariant& value) const override
    {
        const KJSVariant* found = Find(key);
        value = found ? *found : KJSVariant();
        return found ? KR_OK : KR_NOT_AVAILABLE;
    }

    const KJSVariant* Find(const QString& key) const override
    {
        // Keys that are not the same mostly differ in length, which is cheaper to see than their order.
        if (m_values.size() <= FewKeys) {
            for (const auto& entry : m_values) {
                if (entry.first == key)
                    return &entry.second;
            }
            return nullptr;
        }
        const auto found = std::lower_bound(m_values.begin(), m_values.end(), key, isBefore);
        return found == m_values.end() || found->first != key ? nullptr : &found->second;
    }

    bool Remove(const QString& key) override
    {
        const auto found = std::lower_bound(m_values.begin(), m_values.end(), key, isBefore);
        if (found == m_values.end() || found->first != key)
            return false;
        const ScriptPair removed = std::move(*found);
        m_values.erase(found);
        return true;
    }

    void SetValue(const QString& key, const KJSVariant& value) override { store(key, value); }
    void SetBoolean(const QString& key, bool value) override { store(key, KJSVariant::fromBool(value)); }
    void SetInt32(const QString& key, std::int32_t value) override
    {
        store(key, KJSVariant::fromInt32(value));
    }
    void SetInt64(const QString& key, std::int64_t value) override
    {
        store(key, KJSVariant::fromInt64(value));
    }
    void SetDouble(const QString& key, double value) override { store(key, KJSVariant::fromDouble(value)); }
    void SetString(const QString& key, const QString& value) override { store(key, makeText(value)); }

    bool GetBoolean(const QString& key, bool fallback) const override
    {
        KJSVariant value;
        return read(key, MV_BOOL, value) ? value.raw().boolVal != 0 : fallback;
    }

    std::int32_t GetInt32(const QString& key, std::int32_t fallback) const override
    {
        KJSVariant value;
        return read(key, MV_INT32, value) ? value.raw().lVal : fallback;
    }

    std::int64_t GetInt64(const QString& key, std::int64_t fallback) const override
    {
        KJSVariant value;
        return read(key, MV_INT64, value) ? value.raw().llVal : fallback;
    }

    double GetDouble(const QString& key, double fallback) const override
    {
        KJSVariant value;
        return read(key, MV_DOUBLE, value) ? value.raw().dblVal : fallback;
    }

    QString GetString(const QString& key, const QString& fallback) const override
    {
        KJSVariant value;
        return read(key, MV_STRING, value) ? textOf(value) : fallback;
    }

    bool At(std::int32_t position, const QString** key, const KJSVariant** value) const override
    {
        if (position < 0 || position >= Count())
            return false;
        const ScriptPair& pair = m_values[static_cast<std::size_t>(position)];
        *key = &pair.first;
        *value = &pair.second;
        return true;
    }

    IJSArray* GetArray(const QString& key) const override
    {
        const KJSVariant* found = Find(key);
        return found ? arrayOf(*found) : nullptr;
    }

private:
    void store(const QString& key, KJSVariant value)
    {
        auto place = m_values.end();
        if (!m_values.empty() && !(m_values.back().first < key))
            place = std::lower_bound(m_values.begin(), m_values.end(), key, isBefore);
        if (place != m_values.end() && place->first == key)
            std::swap(place->second, value);
        else
            m_values.emplace(place, makeOwnedText(key), std::move(value));
    }

    bool read(const QString& key, MVarType type, KJSVariant& out) const
    {
        const KJSVariant* found = Find(key);
        return found && convertVariant(*found, type, out);
    }

    std::vector<ScriptPair> m_values;
};

} // namespace

Ref<IJSONValue> makeScriptObject()
{
    return Ref<IJSONValue>::adopt(new ScriptObject);
}

Ref<IJSONValue> makeScriptObject(std::vector<ScriptPair> pairs)
{
    return Ref<IJSONValue>::adopt(new ScriptObject(std::move(pairs)));
}

} // namespace vexlite

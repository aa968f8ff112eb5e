#include "host/vexlite/conversion.h"
#include "host/vexlite/counted.h"
#include "host/vexlite/ownedtext.h"
#include "host/vexlite/scriptvalues.h"

#include <map>
#include <vector>

namespace vexlite {

namespace {

/// The key/value object of the stand-in.
class ScriptObject final : public Counted<IJSONValue, IID_IJSONValue, IID_IJSONValueBase> {
public:
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
        m_order.clear();
        // A value may end an object that comes back here, so it ends after the map is whole again.
        std::exchange(m_values, {});
    }

    void Keys(QStringList& keys) const override
    {
        for (const auto& entry : m_values)
            keys.append(entry.first);
    }

    bool Has(const QString& key) const override { return m_values.count(key) != 0; }

    KResult Get(const QString& key, KJSVariant& value) const override
    {
        const KJSVariant* found = Find(key);
        value = found ? *found : KJSVariant();
        return found ? KR_OK : KR_NOT_AVAILABLE;
    }

    const KJSVariant* Find(const QString& key) const override
    {
        const auto found = m_values.find(key);
        return found == m_values.end() ? nullptr : &found->second;
    }

    bool Remove(const QString& key) override
    {
        const auto removed = m_values.extract(key);
        if (!removed)
            return false;
        m_order.clear();
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
        if (m_order.empty()) {
            m_order.reserve(m_values.size());
            for (auto entry = m_values.begin(); entry != m_values.end(); ++entry)
                m_order.push_back(entry);
        }
        const auto entry = m_order[static_cast<std::size_t>(position)];
        *key = &entry->first;
        *value = &entry->second;
        return true;
    }

    IJSArray* GetArray(const QString& key) const override
    {
        const KJSVariant* found = Find(key);
        return found ? arrayOf(*found) : nullptr;
    }

private:
    using Values = std::map<QString, KJSVariant>;

    void store(const QString& key, KJSVariant value)
    {
        const auto found = m_values.find(key);
        if (found != m_values.end()) {
            std::swap(found->second, value);
            return;
        }
        m_order.clear();
        m_values.emplace(ownedText(key), std::move(value));
    }

    bool read(const QString& key, MVarType type, KJSVariant& out) const
    {
        const KJSVariant* found = Find(key);
        return found && converted(*found, type, out);
    }

    Values m_values;
    mutable std::vector<Values::const_iterator> m_order; ///< made by At, empty after a key came or went
};

} // namespace

Ref<IJSONValue> makeScriptObject()
{
    return Ref<IJSONValue>::adopt(new ScriptObject);
}

} // namespace vexlite

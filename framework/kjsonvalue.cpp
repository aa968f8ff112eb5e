#include "framework/kjsonvalue.h"

#include "framework/values.h"

template <> bool supportsInterface<IJSONValue>(const KIID& iid)
{
    return iid == IID_IJSONValue || iid == IID_IJSONValueBase;
}

namespace {

/// A typed getter: the value under the key converted to `type` and read from `member`.
template <typename Value, typename Field>
Value convert(const KJSVariant* value, MVarType type, Field MVARIANT::*member, Value fallback)
{
    MVARIANT target {};
    if (!value || _MVariantChangeType(&target, &value->raw(), 0, type) != KR_OK)
        return fallback;
    return static_cast<Value>(target.*member);
}

} // namespace

int KJSONValue::indexOf(const QString& key, bool& found) const
{
    int first = 0;
    int last = m_keys.size();
    while (first < last) {
        const int middle = (first + last) / 2;
        const int order = m_keys[middle].string().compare(key);
        if (order == 0) {
            found = true;
            return middle;
        }
        if (order < 0)
            first = middle + 1;
        else
            last = middle;
    }
    found = false;
    return first;
}

KJSVariant& KJSONValue::insert(int index, const QString& own, const QString* constant)
{
    Key key { own, constant, m_values.size() };
    if (index == m_keys.size())
        m_keys.append(std::move(key));
    else
        m_keys.insert(index, std::move(key));
    m_values.append(KJSVariant());
    return m_values.last();
}

KJSVariant& KJSONValue::slot(const QString& key)
{
    bool found;
    const int index = indexOf(key, found);
    return found ? m_values[m_keys[index].position] : insert(index, key, nullptr);
}

void KJSONValue::putConstant(const QString& key, KJSVariant value)
{
    bool found;
    const int index = indexOf(key, found);
    (found ? m_values[m_keys[index].position] : insert(index, {}, &key)) = std::move(value);
}

std::int32_t KJSONValue::CopyOut(std::int32_t max, KJSVariant* keys, KJSVariant* values) const
{
    const std::int32_t count = qBound(0, max, Count());
    for (std::int32_t i = 0; i < count; ++i) {
        keys[i] = makeString(m_keys[i].string());
        values[i] = m_values[m_keys[i].position];
    }
    return count;
}

void KJSONValue::Clear()
{
    m_keys.clear();
    m_values.clear();
}

void KJSONValue::Keys(QStringList& keys) const
{
    for (const Key& key : m_keys)
        keys.append(key.string());
}

const KJSVariant* KJSONValue::Find(const QString& key) const
{
    bool found;
    const int index = indexOf(key, found);
    return found ? &m_values[m_keys[index].position] : nullptr;
}

KResult KJSONValue::Get(const QString& key, KJSVariant& value) const
{
    const KJSVariant* found = Find(key);
    value = found ? *found : KJSVariant();
    return found ? KR_OK : KR_NOT_AVAILABLE;
}

bool KJSONValue::Remove(const QString& key)
{
    bool found;
    const int index = indexOf(key, found);
    if (!found)
        return false;
    const int position = m_keys[index].position;
    m_keys.remove(index);
    m_values.remove(position);
    for (Key& other : m_keys) {
        if (other.position > position)
            --other.position;
    }
    return true;
}

void KJSONValue::SetString(const QString& key, const QString& value)
{
    slot(key) = makeString(value);
}

bool KJSONValue::GetBoolean(const QString& key, bool fallback) const
{
    return convert(Find(key), MV_BOOL, &MVARIANT::boolVal, fallback);
}

std::int32_t KJSONValue::GetInt32(const QString& key, std::int32_t fallback) const
{
    return convert(Find(key), MV_INT32, &MVARIANT::lVal, fallback);
}

std::int64_t KJSONValue::GetInt64(const QString& key, std::int64_t fallback) const
{
    return convert(Find(key), MV_INT64, &MVARIANT::llVal, fallback);
}

double KJSONValue::GetDouble(const QString& key, double fallback) const
{
    return convert(Find(key), MV_DOUBLE, &MVARIANT::dblVal, fallback);
}

QString KJSONValue::GetString(const QString& key, const QString& fallback) const
{
    const KJSVariant* value = Find(key);
    return value ? convertToString(value->raw()).value_or(fallback) : fallback;
}

bool KJSONValue::At(std::int32_t position, const QString** key, const KJSVariant** value) const
{
    if (position < 0 || position >= Count())
        return false;
    *key = &m_keys[position].string();
    *value = &m_values[m_keys[position].position];
    return true;
}

IJSArray* KJSONValue::GetArray(const QString& key) const
{
    const KJSVariant* value = Find(key);
    if (!value)
        return nullptr;
    const MVARIANT& target = dereference(value->raw());
    return target.vt == MV_ARRAY ? static_cast<IJSArray*>(target.punkVal) : nullptr;
}

// KJSONValue: the key/value object in which the library returns structured values.
#pragma once

#include "framework/refcounted.h"
#include "vexlite/jsonvalue.h"

#include <QVarLengthArray>

/// A reference-counted key/value object: an ordered list of keys, each with the position of its value, and
/// the values in the order of their setting. Up to four pairs need no memory besides the object's own. [GUI
/// thread]
class KJSONValue final : public KJCUnknownWarp<IJSONValue> {
public:
    std::int32_t Count() const override { return m_keys.size(); }
    std::int32_t CopyOut(std::int32_t max, KJSVariant* keys, KJSVariant* values) const override;
    void Clear() override;
    void Keys(QStringList& keys) const override;
    bool Has(const QString& key) const override { return Find(key); }
    KResult Get(const QString& key, KJSVariant& value) const override;
    const KJSVariant* Find(const QString& key) const override;
    bool Remove(const QString& key) override;

    void SetValue(const QString& key, const KJSVariant& value) override { slot(key) = value; }
    void SetBoolean(const QString& key, bool value) override { slot(key) = KJSVariant::fromBool(value); }
    void SetInt32(const QString& key, std::int32_t value) override
    {
        slot(key) = KJSVariant::fromInt32(value);
    }
    void SetInt64(const QString& key, std::int64_t value) override
    {
        slot(key) = KJSVariant::fromInt64(value);
    }
    void SetDouble(const QString& key, double value) override { slot(key) = KJSVariant::fromDouble(value); }
    void SetString(const QString& key, const QString& value) override;

    bool GetBoolean(const QString& key, bool fallback) const override;
    std::int32_t GetInt32(const QString& key, std::int32_t fallback) const override;
    std::int64_t GetInt64(const QString& key, std::int64_t fallback) const override;
    double GetDouble(const QString& key, double fallback) const override;
    QString GetString(const QString& key, const QString& fallback) const override;

    bool At(std::int32_t position, const QString** key, const KJSVariant** value) const override;
    IJSArray* GetArray(const QString& key) const override;

    /// As SetValue, without copying the value.
    void set(const QString& key, KJSVariant value) { slot(key) = std::move(value); }
    /// The same without copying the key, which must live as long as the library: the object refers to it.
    void putConstant(const QString& key, KJSVariant value);
    void putConstant(QString&& key, KJSVariant value) = delete;
    /// The same for a key that orders behind all that are there.
    void appendConstant(const QString& key, KJSVariant value)
    {
        m_keys.append({ {}, &key, m_values.size() });
        m_values.append(std::move(value));
    }
    void appendConstant(QString&& key, KJSVariant value) = delete;

private:
    static constexpr int Inline = 4;

    struct Key {
        const QString& string() const { return constant ? *constant : own; }

        QString own;
        const QString* constant;
        int position;
    };

    /// Where the key stands, or would stand, among the ordered keys.
    int indexOf(const QString& key, bool& found) const;
    /// The value of a key, made when there is none.
    KJSVariant& slot(const QString& key);
    KJSVariant& insert(int index, const QString& own, const QString* constant);

    QVarLengthArray<Key, Inline> m_keys;
    QVarLengthArray<KJSVariant, Inline> m_values;
};

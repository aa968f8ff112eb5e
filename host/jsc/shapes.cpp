#include "host/jsc/shapes.h"

#include "host/jsc/scripttext.h"

#include <cstring>

namespace engine::jsc {

namespace {

std::uint64_t hashKeys(const QString* const* keys, int count)
{
    std::uint64_t hash = static_cast<std::uint64_t>(count);
    for (int i = 0; i < count; ++i) {
        const int size = keys[i]->size();
        std::uint64_t part = static_cast<std::uint64_t>(size);
        if (size) {
            const QChar* units = keys[i]->constData();
            part |= std::uint64_t { units[0].unicode() } << 16
                | std::uint64_t { units[size / 2].unicode() } << 32
                | std::uint64_t { units[size - 1].unicode() } << 48;
        }
        hash = (hash ^ part) * 0x9E3779B97F4A7C15u;
    }
    return hash;
}

bool sameText(const QString& a, const QString& b)
{
    return a.size() == b.size()
        && !std::memcmp(a.constData(), b.constData(), static_cast<std::size_t>(a.size()) * sizeof(QChar));
}

// Longer keys are probably data, which does not repeat.
constexpr int maximumKeyLength = 128;

} // namespace

bool Shapes::Shape::is(const QString* const* wanted, int wantedCount) const
{
    if (count != wantedCount)
        return false;
    for (int i = 0; i < count; ++i) {
        if (!sameText(keys[i], *wanted[i]))
            return false;
    }
    return true;
}

JSObjectRef Shapes::find(JSGlobalContextRef ctx, const QString* const* keys, int count)
{
    for (int i = 0; i < count; ++i) {
        if (keys[i]->size() > maximumKeyLength)
            return nullptr;
    }
    const std::uint64_t hash = hashKeys(keys, count);
    Shape& shape = m_shapes[hash >> 56];
    if (shape.hash == hash && shape.keys && shape.is(keys, count)) {
        if (!shape.factory)
            shape.factory = makeFactory(ctx, keys, count);
        return shape.factory;
    }
    if (shape.factory)
        JSValueUnprotect(ctx, shape.factory);
    shape = { hash, count, nullptr, std::make_unique<QString[]>(static_cast<std::size_t>(count)) };
    for (int i = 0; i < count; ++i)
        shape.keys[static_cast<std::size_t>(i)] = QString(keys[i]->constData(), keys[i]->size());
    return nullptr;
}

JSObjectRef Shapes::makeFactory(JSGlobalContextRef ctx, const QString* const* keys, int count)
{
    QString parameters;
    QString members;
    for (int i = 0; i < count; ++i) {
        const QString value = QStringLiteral("v%1,").arg(i);
        parameters += value;
        members += propertyNameText(*keys[i]) + QLatin1Char(':') + value;
    }
    const QString source = QStringLiteral("(%1)=>({%2})").arg(parameters, members);
    const JSValueRef factory = JSEvaluateScript(ctx, Text(source), nullptr, nullptr, 1, nullptr);
    if (factory)
        JSValueProtect(ctx, factory);
    return asObject(factory);
}

void Shapes::clear(JSGlobalContextRef ctx)
{
    for (Shape& shape : m_shapes) {
        if (shape.factory)
            JSValueUnprotect(ctx, shape.factory);
        shape = {};
    }
}

} // namespace engine::jsc

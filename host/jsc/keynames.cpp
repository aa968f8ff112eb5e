#include "host/jsc/keynames.h"

#include <cstdint>

namespace engine::jsc {

namespace {

// Longer names are probably data, which does not repeat.
constexpr int maximumLength = 128;

} // namespace

KeyNames::Entry& KeyNames::findEntry(JSValueRef name)
{
    const auto bits = reinterpret_cast<std::uintptr_t>(name);
    return m_entries[(bits >> 4 ^ bits >> 12) % m_entries.size()];
}

QString KeyNames::textOf(JSContextRef ctx, JSValueRef name)
{
    Entry& entry = findEntry(name);
    if (entry.name == name && entry.isKept)
        return entry.text;
    QString text = stringOf(ctx, name);
    if (text.size() > maximumLength)
        return text;
    if (entry.isKept)
        JSValueUnprotect(ctx, entry.name);
    const bool isKnown = entry.name == name;
    entry = { name, isKnown, isKnown ? text : QString() };
    if (isKnown)
        JSValueProtect(ctx, name);
    return text;
}

void KeyNames::clear(JSContextRef ctx)
{
    for (Entry& entry : m_entries) {
        if (entry.isKept)
            JSValueUnprotect(ctx, entry.name);
        entry = {};
    }
}

} // namespace engine::jsc

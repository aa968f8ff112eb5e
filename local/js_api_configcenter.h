#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// What a flush calls back with.
struct FlushReport {
    QString key;
    QVariant value;
    bool ok = false;
    static constexpr auto fields()
    {
        return std::tuple(property("key", &FlushReport::key, "the value's key"),
            property("value", &FlushReport::value, "what was written; undefined after a removal"),
            property("ok", &FlushReport::ok, "whether it is on the disk"));
    }
};

/// "NovaExtension.ConfigCenter": named values that outlive the process, for everybody or for one user.
class KJsApiConfigCenter final : public KJCExtendJsObj<KJsApiConfigCenter> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.ConfigCenter";
    static const MemberList& members();

    struct KeyOptions;
    struct ReadOptions;
    struct WriteOptions;

    Answer<bool> setValue(const WriteOptions& options);
    Answer<QVariant> value(const ReadOptions& options);
    Answer<bool> remove(const KeyOptions& options);
    Answer<QVariant> flushRead(const ReadOptions& options);
    Answer<bool> flushWrite(const WriteOptions& options, Callback<FlushReport>& callback);
    Answer<bool> flushRemove(const KeyOptions& options, Callback<FlushReport>& callback);
};

} // namespace jsapi

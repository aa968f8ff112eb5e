#pragma once

#include "framework/extensionobject.h"

/// "NovaExtension.ConfigCenter": named values that outlive the process, for everybody or for one user.
///
/// All take {key: string, userId?: string}; an empty key fails with 1 "missing required parameters.". A value
/// may be anything but a function or a native object, which fail with 1 "wrong parameters.".
class KJsApiConfigCenter final : public KJCExtendJsObj<KJsApiConfigCenter> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.ConfigCenter";
    static const MemberList& members();

    /// {..., value}, neither undefined nor null -> boolean: whether it was stored.
    Reply setValue(Call& call);
    /// {..., defaultValue?} -> the stored value, or defaultValue.
    Reply value(Call& call);
    /// -> boolean: whether there was such a key and it is gone.
    Reply remove(Call& call);
    /// As value, past the cache.
    Reply flushRead(Call& call);
    /// As setValue, to the disk, with a function as second argument: called later with {key, value, ok}.
    /// -> boolean: whether the write was accepted.
    Reply flushWrite(Call& call);
    /// As remove, to the disk, with a function as flushWrite.
    Reply flushRemove(Call& call);
};

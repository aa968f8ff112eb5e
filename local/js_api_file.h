#pragma once

#include "framework/extensionobject.h"

/// "NovaExtension.FileSystem.File": a handle on one path, an existing regular file when FileSystem made it.
class KJsApiFile final : public KJCExtendJsObj<KJsApiFile>, public IJSCreatable {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.FileSystem.File";
    static const MemberList& members();

    /// Takes the path of {path}.
    void Initialise(IJSONValue* options) override;

    /// () -> boolean: the file is still there.
    Reply exists(Call& call);
    /// () -> boolean: removed. Failure: 3 "illegal path".
    Reply remove(Call& call);
    /// () -> integer: bytes. Failures, both 3: "empty path", "invalid path" (no regular file any more).
    Reply size(Call& call);

private:
    QString m_path;
};

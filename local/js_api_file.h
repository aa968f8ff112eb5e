#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// What FileSystem makes a File of.
struct FileOptions {
    QString path;
    static constexpr auto fields() { return std::tuple(property("path", &FileOptions::path, "the file")); }
};

/// "NovaExtension.FileSystem.File".
class KJsApiFile final : public KJCExtendJsObj<KJsApiFile>, public IJSCreatable {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.FileSystem.File";
    static const MemberList& members();

    /// Takes FileOptions.
    void Initialise(IJSONValue* options) override;

    Answer<bool> exists();
    Answer<bool> remove();
    Answer<std::int64_t> size();

private:
    QString m_path;
};

} // namespace jsapi

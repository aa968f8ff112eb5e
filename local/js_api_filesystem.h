#pragma once

#include "framework/extensionobject.h"

/// "NovaExtension.FileSystem": guarded access to local files and to the suite's file dialogs.
class KJsApiFileSystem final : public KJCExtendJsObj<KJsApiFileSystem> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.FileSystem";
    static const MemberList& members();

    /// (path: string) -> promise of the file's MD5, 32 lower-case hexadecimal digits. Rejections: "Path is
    /// empty.",
    /// "%1 is not existed", "%1 can't been opened". Failure: 3 "PromiseServiceNull".
    Reply getFileMd5(Call& call);
};

/// "NovaExtension.FileSystem.File": a handle on one existing regular file.
class KJsApiFile final : public KJCExtendJsObj<KJsApiFile> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.FileSystem.File";
    static const MemberList& members();
};

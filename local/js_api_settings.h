#pragma once

#include "framework/extensionobject.h"
#include "local/settingsfile.h"

namespace jsapi {

/// Which store, as script numbers them.
enum class SettingsFormat : std::int32_t { Suite = 0, File = 1 };
template <>
inline constexpr std::array<Choice<SettingsFormat>, 2> ChoicesOf<SettingsFormat> {
    { { SettingsFormat::Suite }, { SettingsFormat::File } }
};

inline constexpr Failure FormatIsIllegal { ErrorCode::BadArgument, "Format is illegal." };

struct SettingsOptions {
    SettingsFormat format = SettingsFormat::Suite;
    QString path;
    static constexpr auto fields()
    {
        return std::tuple(required("format", &SettingsOptions::format,
                              "0 for the suite's own store, 1 for the INI file of `path`", FormatIsIllegal,
                              FormatIsIllegal),
            optional("path", &SettingsOptions::path,
                "the INI file, made when something is first written; must be given with format 1"));
    }
};

class KJsApiSettings;

/// "NovaExtension.SettingsManager": opens settings stores.
class KJsApiSettingsManager final : public KJCExtendJsObj<KJsApiSettingsManager> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.SettingsManager";
    static const MemberList& members();

    Answer<Handle<KJsApiSettings>> settings(const JSContextEnv& page, const SettingsOptions& options);
};

/// "NovaExtension.SettingsManager.Settings": one store.
class KJsApiSettings final : public KJCExtendJsObj<KJsApiSettings>, public IJSCreatable {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.SettingsManager.Settings";
    static const MemberList& members();

    struct WriteOptions;
    struct ReadOptions;

    /// Opens the store that SettingsOptions name, in place of an open one. A path that is refused, or of what is
    /// no settings file, leaves none.
    void Initialise(IJSONValue* options) override;

    Answer<void> setValue(const WriteOptions& options);
    Answer<QVariant> getValue(const ReadOptions& options);

private:
    /// Stores a value in the suite's store, or leaves that as it was.
    bool storeInSuite(const QString& key, const QVariant& value);

    /// The suite's own store, or a file; neither when there is none.
    std::unique_ptr<QSettings> m_suite;
    std::shared_ptr<KSettingsFile> m_file;
};

} // namespace jsapi

#pragma once

#include "webui/skineventhandle.h"
#include "webui/skinvalues.h"

class KFileFilter;

namespace jsapi {

/// "NovaExtension.Skin": the visual theme, its values and its changes.
class KJsApiSkin final : public KJCExtendJsEventObj<KJsApiSkin> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Skin";
    static const MemberList& members();

    void prepareEvents() override;

    struct ValueNames;
    struct FileTypes;
    struct FileTypeIcon;
    struct IconRequest;
    struct Icons;
    struct Icon;

    Answer<QString> getCurrentSkinName();
    Answer<void> switchSkin(const QString& name);
    Answer<QMap<QString, std::int32_t>> getSkinHintConfig(const ValueNames& names);
    Answer<QMap<QString, SkinGradient>> getSkinGradientConfig(const ValueNames& names);
    Answer<QMap<QString, QString>> getSkinColorConfig(const ValueNames& names);
    Answer<QMap<QString, std::variant<QString, SkinGradient>>> getSkinConfig(const ValueNames& names);
    Answer<QMap<QString, FileTypeIcon>> getFileTypeIconInfo(
        const KFileFilter& filter, const FileTypes& types);
    Answer<std::vector<Icon>> getSkinIconPathInfo(const Icons& icons);

private:
    /// Values that are kept are those of the theme; without a skin service none are, since nobody says when they change.
    void prepareValues();

    std::unique_ptr<KSkinEventHandle> m_handle;
    KSkinValues m_values;
};

} // namespace jsapi

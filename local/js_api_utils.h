#pragma once

#include "framework/extensionobject.h"
#include "framework/permission.h"
#include "local/colordialog.h"
#include "local/screencolor.h"
#include "local/screens.h"

namespace jsapi {

/// "NovaExtension.Utils": clipboard, screens, colours and small helpers.
class KJsApiUtils final : public KJCExtendJsObj<KJsApiUtils> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Utils";
    static const MemberList& members();

    struct ImageOptions;
    struct PictureOptions;
    struct ProgramOptions;
    struct ParamOptions;

    Answer<void> setTextToClipboard(const Demanded<QString>& text);
    Answer<QString> getClipboardText(const Permission<KPagePermission::ReadClipboard>& permission);
    Answer<void> setImageToClipboard(const ImageOptions& options);
    Answer<ScreenGeometry> getPrimaryScreenGeometry();
    Answer<std::vector<ScreenGeometry>> getAllScreenGeometry();
    Answer<ScreenGeometry> getCurrentScreenGeometry(const JSContextEnv& page);
    Answer<bool> pickColor(
        const JSContextEnv& page, const ColorOptions& options, const ColorCallback& callback);
    Answer<QStringList> getPictureFilepath(const JSContextEnv& page, const PictureOptions& options);
    Answer<Plain<bool>> startDetach(const JSContextEnv& page, const ProgramOptions& options);
    Answer<bool> getSnapperColor(const Permission<KPagePermission::ReadScreen>& permission,
        const JSContextEnv& page, const ScreenColorOptions& options, const ColorCallback& callback);
    Answer<QVariant> getParamExtra(const JSContextEnv& page, const ParamOptions& options);
    Answer<bool> inBlackDownloadDir(const QString& path);
    Answer<QString> getCsrf(const Permission<KPagePermission::UseSession>&);
};

} // namespace jsapi

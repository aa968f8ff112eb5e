#pragma once

#include "framework/extensionobject.h"

#include <QSettings>
#include <memory>

/// "NovaExtension.SettingsManager": opens settings stores.
class KJsApiSettingsManager final : public KJCExtendJsObj<KJsApiSettingsManager> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.SettingsManager";
    static const MemberList& members();

    /// {format: 0} -> the suite's own store, {format: 1, path: string} -> the INI file of that path: a
    /// Settings object. Failures, all 1: "Format is illegal.", "missing required parameters." (no path),
    /// "Path is illegal.".
    Reply settings(Call& call);
};

/// "NovaExtension.SettingsManager.Settings": one store. Changes reach the disk when script has returned to
/// the event loop, and when the object goes. A store keeps text: numbers and booleans have become text when
/// the suite starts again.
class KJsApiSettings final : public KJCExtendJsObj<KJsApiSettings>, public IJSCreatable {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.SettingsManager.Settings";
    static const MemberList& members();

    /// Opens the store that {format, path} names, in place of an open one.
    void Initialise(IJSONValue* options) override;

    /// {key: string, value}, neither empty, undefined nor null -> undefined.
    /// Failures: 1 "missing required parameters.", 1 "wrong parameters." (a value that can not be stored),
    /// 3 "Setting is invalid." (no store, or one that can not be written).
    Reply setValue(Call& call);
    /// {key: string, defaultValue?} -> the value, or defaultValue. Failures as setValue.
    Reply getValue(Call& call);

private:
    std::unique_ptr<QSettings> m_store;
};

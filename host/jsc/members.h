// Members: the script functions behind the methods and properties of native classes.
#pragma once

#include "host/jsc/api.h"
#include "host/vexlite/jsmemberlist.h"

#include <memory>
#include <vector>

namespace engine::jsc {

class PageState;
struct NativeClass;

/// One member of a class in one page.
struct NativeMember {
    PageState* page;
    const NativeClass* nativeClass;
    QString name;
    std::int32_t id;
    JSAccess access;
    JSObjectRef function; ///< the native one: the getter, or the one that the script method calls

    /// "NovaExtension.Log.logInfo"
    QString fullName() const;
};

/// A native class in one page: the prototype of its wrappers.
struct NativeClass {
    QString tag; ///< "NovaExtension.Log"
    std::int64_t typeId;
    JSObjectRef prototype = nullptr;
    JSObjectRef factory = nullptr; ///< makes an empty wrapper
    std::vector<std::unique_ptr<NativeMember>> members;
};

/// Makes the class for a list of published members. Its script objects are roots until dropClass(). [GUI
/// thread]
std::unique_ptr<NativeClass> makeClass(
    PageState& page, const QString& tag, std::int64_t typeId, IJSMemberList& members);
/// Releases the roots; functions that script still holds throw when called.
void dropClass(PageState& page, const NativeClass& nativeClass);
/// Has the page remember which member has thrown an error.
void noteRefusal(PageState& page, const QString& member, JSValueRef error);
/// Whether this is the function of a member.
bool isMemberFunction(JSObjectRef function);

} // namespace engine::jsc

// The published members of a class: what IJSExtentionObject::GetMemberTable gives to the JS core, and what only the
// core looks into.
#pragma once

#include "vexlite/jsextension.h"

/// A list in registration order that stays as it is. [GUI thread]
class IJSMemberList : public IUnknown {
public:
    virtual std::int32_t Count() const = 0;
    /// The id for InvokeMethod and InvokePropertyGet. `index` must be below Count(), here and below.
    virtual std::int32_t Id(std::int32_t index) const = 0;
    /// Borrowed for as long as the list lives, as are the parameters' names.
    virtual const char16_t* Name(std::int32_t index) const = 0;
    virtual std::int32_t Kind(std::int32_t index) const = 0;
    virtual std::uint32_t Mask(std::int32_t index) const = 0;
    virtual std::int32_t ResultType(std::int32_t index) const = 0;
    virtual std::int32_t ParameterCount(std::int32_t index) const = 0;
    virtual JSParameter Parameter(std::int32_t index, std::int32_t parameter) const = 0;
    /// The module's function behind the member.
    virtual JSMemberInvoke Invoke(std::int32_t index) const = 0;
};

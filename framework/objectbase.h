// What every object has that script sees, whatever its class.
#pragma once

#include "framework/refcounted.h"
#include "vexlite/jsextension.h"

class IKJSExtentionApiEvent;

/// The part that does not depend on the class; a run-time type check for it recognises extension objects.
class KJCExtentionObjBase : public KJCUnknownWarp<IJSExtentionObject> {
public:
    void* GetHostPointer() final { return m_hostPointer; }
    void Reserved() final { }
    void SetHostPointer(void* value) final { m_hostPointer = value; }
    void GetInstanceMode(std::uint32_t* out) final
    {
        if (out)
            *out = m_instanceMode;
    }
    void SetInstanceMode(std::uint32_t mode) final { m_instanceMode = mode; }

    /// The object's events; null for one without.
    virtual IKJSExtentionApiEvent* GetApiEvent() { return nullptr; }

protected:
    KJCExtentionObjBase() = default;

private:
    void* m_hostPointer = nullptr;
    std::uint32_t m_instanceMode = 0;
};

#include "host/vexlite/counted.h"
#include "host/vexlite/scriptvalues.h"

#include <vector>

namespace vexlite {

namespace {

/// The array implementation of the stand-in.
class ScriptArray final : public Counted<IJSArray, IID_IJSArray> {
public:
    std::int32_t Count() const override { return static_cast<std::int32_t>(m_values.size()); }

    const KJSVariant* At(std::int32_t index) const override
    {
        return index >= 0 && index < Count() ? &m_values[static_cast<std::size_t>(index)] : nullptr;
    }

    void Append(const KJSVariant& value) override { m_values.push_back(value); }

private:
    std::vector<KJSVariant> m_values;
};

} // namespace

Ref<IJSArray> makeScriptArray()
{
    return Ref<IJSArray>::adopt(new ScriptArray);
}

} // namespace vexlite

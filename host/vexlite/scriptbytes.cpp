#include "host/vexlite/counted.h"
#include "host/vexlite/scriptvalues.h"

namespace vexlite {

namespace {

/// The bytes of the stand-in.
class ScriptBytes final : public Counted<IJSBytes, IID_IJSBytes> {
public:
    explicit ScriptBytes(const QByteArray& bytes)
        : m_bytes(bytes)
    {
    }

    const std::uint8_t* Data() const override
    {
        return reinterpret_cast<const std::uint8_t*>(m_bytes.constData());
    }

    std::size_t Size() const override { return static_cast<std::size_t>(m_bytes.size()); }

private:
    QByteArray m_bytes;
};

} // namespace

KJSVariant makeBytes(const QByteArray& bytes)
{
    return KJSVariant::fromUnknown(new ScriptBytes(bytes));
}

} // namespace vexlite

// ToWire: writes native values for a document.
#pragma once

#include "host/web/wire.h"
#include "vexlite/jsextension.h"
#include "vexlite/jsonvalue.h"

namespace engine::web {

class Frame;

/// Writes the values of one reply or message. The limits are for all of them together. [GUI thread]
class ToWire {
public:
    static constexpr std::size_t maximumValues = 16'000'000;
    static constexpr int maximumUnits = 1 << 29;

    /// `name` is for classes of objects that are handed out and have no other.
    ToWire(Frame& frame, QString name)
        : m_frame(frame)
        , m_name(std::move(name))
    {
    }

    /// False when the value can not be written, such as MV_ERROR; then problem() says why.
    bool write(WireWriter& writer, const MVARIANT& value);
    /// The same; what is exactly {data, success: true} takes less.
    bool writeResult(WireWriter& writer, const MVARIANT& value);
    const QString& problem() const { return m_problem; }

private:
    bool writeValue(WireWriter& writer, const MVARIANT& value, int depth);
    bool writeInterface(WireWriter& writer, IUnknown* object, int depth);
    bool writeObject(WireWriter& writer, const IJSONValue& source, int depth);
    bool writeArray(WireWriter& writer, const IJSArray& source, int depth);
    bool writeHandle(WireWriter& writer, IJSExtentionObject* object);
    bool appendJson(QString& json, const MVARIANT& value, int depth);
    bool fail(const QString& problem);
    bool enter(int depth, int units);

    Frame& m_frame;
    QString m_name;
    std::size_t m_values = 0;
    bool m_mayBeJson = true;
    QString m_problem;
};

} // namespace engine::web

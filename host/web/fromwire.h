// FromWire: reads the values that a document sends.
#pragma once

#include "host/web/wire.h"
#include "vexlite/jsonvalue.h"

namespace engine::web {

class Frame;

/// Reads the values of one request. Whatever the document writes, it gets no more than the limits below. [GUI thread]
class FromWire {
public:
    static constexpr std::size_t maximumValues = 1'000'000;

    FromWire(Frame& frame, WireReader& reader)
        : m_frame(frame)
        , m_reader(reader)
    {
    }

    /// False for what is no value, or too much.
    bool read(KJSVariant& out) { return readValue(out, 0); }

private:
    bool readValue(KJSVariant& out, int depth);
    bool readArray(KJSVariant& out, int depth);
    bool readObject(KJSVariant& out, int depth);

    Frame& m_frame;
    WireReader& m_reader;
    std::size_t m_values = 0;
};

} // namespace engine::web

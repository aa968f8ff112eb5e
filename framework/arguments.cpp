#include "framework/arguments.h"

namespace jsapi {

const KJSVariant& ArgumentReader::next()
{
    static const KJSVariant undefined;
    return hasNext() ? m_call.arguments()[m_next++] : undefined;
}

bool ArgumentReader::refuse(const Refusal& refusal)
{
    m_refusal = refusal;
    return false;
}

bool Argument<Rest>::read(ArgumentReader& reader)
{
    while (reader.hasNext())
        value.values.push_back(copyValue(reader.next()));
    return true;
}

} // namespace jsapi

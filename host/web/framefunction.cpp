#include "host/web/framefunction.h"

#include "host/web/frame.h"
#include "host/web/towire.h"

namespace engine::web {

FrameFunction::FrameFunction(Frame& frame, std::int64_t id)
    : m_frame(&frame)
    , m_id(id)
    , m_context(frame.context())
    , m_member(frame.callingMember())
{
    frame.addFunction(*this);
}

FrameFunction::~FrameFunction()
{
    if (m_frame)
        m_frame->removeFunction(*this);
}

Pending FrameFunction::pending() const
{
    const auto kind = event().isEmpty() ? Pending::Kind::Function : Pending::Kind::Listener;
    return { kind, m_member, event(), m_since };
}

KResult FrameFunction::perform(const JSApiArguments& arguments, KJSVariant* result, const QString& event)
{
    if (result)
        *result = {};
    if (!m_frame)
        return KR_NOT_AVAILABLE;
    if (m_frame->isFull())
        return KR_REJECTED;
    WireWriter message;
    message.unit('f');
    message.count(static_cast<std::uint64_t>(m_id));
    message.text(event);
    message.count(arguments.size());
    ToWire toWire(*m_frame, QStringLiteral("NovaExtension"));
    for (const KJSVariant& argument : arguments) {
        if (!toWire.write(message, argument.raw()))
            return KR_REJECTED;
    }
    m_frame->queue(message.take());
    return KR_OK;
}

} // namespace engine::web

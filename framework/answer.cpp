#include "framework/answer.h"

namespace jsapi {

KResult writeAnswer(Call& call, Answer<void>&& answer)
{
    return answer.isRefused() ? call.fail(answer.refusal()) : call.succeed({});
}

KResult writeAnswer(Call& call, Answer<Plain<void>>&& answer)
{
    if (answer.isRefused())
        return call.fail(answer.refusal());
    const KResult status = answer.value().status;
    if (status != KR_OK)
        (void)call.fail(WrongParameters);
    return status;
}

template KResult writeAnswer(Call& call, Answer<bool>&& answer);
template KResult writeAnswer(Call& call, Answer<QString>&& answer);

} // namespace jsapi

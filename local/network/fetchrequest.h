// KFetchRequest: the promise of a response, for "fetch".
#pragma once

#include "framework/request.h"
#include "local/network/httpcall.h"

namespace jsapi {

/// Settles with its call; a call goes on to its end without it. [GUI thread]
class KFetchRequest final : public KJsRequestFor<HttpResponse> {
    Q_OBJECT

public:
    static Answer<Promise<HttpResponse>> start(KHttpCall::CallOptions options);

private:
    void settle(const HttpResult& result);
};

} // namespace jsapi

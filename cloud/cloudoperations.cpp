#include "cloud/cloudoperations.h"

namespace jsapi::CloudOperations {

std::optional<Workspace> readWorkspace(const GetDefaultWorkspaceResult& result)
{
    const auto enterprise = result.extraParam.find("isEnterpriseIP");
    const bool isEnterprise =
        enterprise != result.extraParam.end() && (enterprise->second == "true" || enterprise->second == "1");
    return valueOnSuccess(
        result, Workspace { isEnterprise, result.cloudPath, result.virtualPath, result.groupId });
}

std::optional<std::string> readResponse(const LarkIpcResult& result)
{
    const auto response = result.resultMap.find("response");
    return response != result.resultMap.end() ? std::optional(response->second) : std::nullopt;
}

std::optional<RoamingMode> readRoamingMode(const LarkIpcResult& result)
{
    return result.state == 0 ? findChoice<RoamingMode>(QString::fromStdString(result.resultString))
                             : std::nullopt;
}

std::optional<RoamingMode> readChangedMode(const KRpcResponse& response)
{
    return response.code == 0 ? findChoice<RoamingMode>(response.values.value(heapString("roamingMode")))
                              : std::nullopt;
}

} // namespace jsapi::CloudOperations

// Messages of the cloud SDK: the parts that all its requests and replies share. The rules are those of lark.thrift.

namespace cpp orbitapi

// How the SDK is to send a request.
struct RequestBaseInfo {
    1: string requestKey
    2: string bizSource
    3: i32 timeout
    4: bool canRetry
    5: map<string, string> extraParam
}

// A request that has nothing to say beyond that.
struct CommonRequestArg {
    1: RequestBaseInfo baseInfo
    2: map<string, string> extraParam
}

// What every request ends with: the outcome, and the answer of the server as it came.
struct OrbitApiResult {
    1: i32 resultState
    2: i32 kNetworkError
    3: i32 qNetworkError
    4: i32 httpStatusCode
    5: string result
    6: string message
    7: string resultData
    8: map<string, string> headerMap
    9: i64 replyTimestamp
    10: i64 duration
    11: string host
    12: string api
    13: string userId
}

// An answer that is JSON text.
struct DirectJsonResult {
    1: string jsonValue
    2: map<string, string> extraParam
}

// An answer that is a message for the user, or an error.
struct ResultMsgResult {
    1: string resultMsg
    2: string errMsg
    3: map<string, string> extraParam
}

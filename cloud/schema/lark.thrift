// Messages of the cloud-document service. A request is named after its procedure with the suffix Arg, its reply with
// the suffix Result. docs/cloud-messages.md says how to add one.
//
// No field is marked optional or required, and none has a default: each is always written, in the order of its id.

namespace cpp nova.lark

// The generic envelope: a call of a service operation by name, for procedures without messages of their own.
struct LarkIpcArg {
    1: string nameSpace  // of the operation; the library leaves it empty
    2: string method
    3: map<string, string> argMap
}

struct LarkIpcResult {
    1: i32 state  // the service's code for how the operation ended; all replies begin with it
    2: map<string, string> resultMap
    3: list<string> resultList
    4: string resultString
}

// Where the local copy of a cloud file is.
struct GetCloudFileCachePathArg {
    1: string userId
    2: string cloudPath
    3: map<string, string> extraParam  // named values that have no field; most messages end with it
}

struct GetCloudFileCachePathResult {
    1: i32 state
    2: string localPath
    3: map<string, string> extraParam
}

// Uploads files of this machine to a cloud folder.
struct UploadFilesToCloudArg {
    1: string userId
    2: string cloudPath
    3: list<string> srcFiles
    4: bool createWhenNoExists
    5: string userData
    6: string uploadFrom
    7: map<string, string> extraParam
}

struct UploadFilesToCloudResult {
    1: i32 state
    2: string userData
    3: map<string, string> extraParam
}

// Shows a cloud folder to the user.
struct OpenVirtualCloudDiskArg {
    1: string userId
    2: string openFrom
    3: string fileId
    4: string cloudPath
    5: bool createWhenNoExists
    6: string entryIdentifier
    7: map<string, string> extraParam
}

struct OpenVirtualCloudDiskResult {
    1: i32 state
    2: map<string, string> extraParam
}

// The workspace that new documents go to.
struct GetDefaultWorkspaceArg {
    1: string callFrom
    2: map<string, string> extraParam
}

// A company's workspace. Its fields are not known: what arrives in it is skipped.
struct WorkspaceCompanyItem {
}

struct GetDefaultWorkspaceResult {
    1: i32 state
    2: WorkspaceCompanyItem company
    3: string virtualPath
    4: string cloudPath
    5: string groupId
    6: string parentId
    7: map<string, string> extraParam
}

// Saves a file to a cloud folder.
struct SaveToCloudDirArg {
    1: string groupId
    2: string userId
    3: string fileId
    4: string fname
    5: i32 itemType
    6: map<string, string> extraParam
}

struct SaveToCloudDirResult {
    1: i32 state
    2: string cloudPath
    3: map<string, string> extraParam
}

// Brings the local copy of a cloud folder up to date, so many levels deep.
struct SyncFolderArg {
    1: string userId
    2: string groupId
    3: string fileId
    4: i32 depth
    5: map<string, string> extraParam
}

struct SyncFolderResult {
    1: i32 state
    2: map<string, string> extraParam
}

// The service reports that the channel itself has failed.
struct NotifyLarkRpcExceptionArg {
    1: i32 exceptionNum
    2: map<string, string> extraParam
}

// What the service is asked for at the moment about a file.
struct GetRpcReqStateArg {
    1: string fileId
    2: map<string, string> extraParam
}

// The requests under way. Its fields are not known: what arrives in it is skipped.
struct NotifyRpcRequestStateArg {
}

struct GetRpcReqStateResult {
    1: i32 state
    2: NotifyRpcRequestStateArg requestedrpcs
    3: map<string, string> extraParam
}

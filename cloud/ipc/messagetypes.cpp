#include "cloud/ipc/messagetypes.h"

#include <QMetaType>
#include <vector>

namespace {

class ResultTypes {
public:
    ResultTypes()
    {
        add<GetCloudFileCachePathResult>();
        add<GetDefaultWorkspaceResult>();
        add<KRpcResponse>();
        add<LarkIpcResult>();
        add<OpenVirtualCloudDiskResult>();
        add<SaveToCloudDirResult>();
        add<SyncFolderResult>();
        add<UploadFilesToCloudResult>();
    }

    /// Qt would copy results with code that is no longer there.
    ~ResultTypes()
    {
        for (const int type : m_types)
            QMetaType::unregisterType(type);
    }

    ResultTypes(const ResultTypes&) = delete;
    ResultTypes& operator=(const ResultTypes&) = delete;

private:
    template <typename Result> void add()
    {
        constexpr const char* name = cloudTypeName<Result>;
        // The suite may have registered its own class for the same message.
        if (!QMetaType::isRegistered(QMetaType::type(name)))
            m_types.push_back(qRegisterMetaType<Result>(name));
    }

    std::vector<int> m_types;
};

} // namespace

void registerCloudResultTypes()
{
    static const ResultTypes types;
}

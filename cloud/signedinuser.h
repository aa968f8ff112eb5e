// What every member that requests something of the cloud-document service needs first: the service, and a
// user.
#pragma once

#include "cloud/ipc/invoke.h"
#include "framework/arguments.h"
#include "local/account.h"

namespace jsapi {

inline constexpr Failure NoCloudService { ErrorCode::OperationFailed, "Cloud service error." };

/// The signed-in user, while there is a cloud service. As a parameter it comes first, so that these are
/// refused first.
class SignedInUser {
public:
    explicit SignedInUser(QString id)
        : m_id(std::move(id))
    {
    }
    const QString& id() const noexcept { return m_id; }

private:
    QString m_id;
};

template <> struct Argument<SignedInUser> {
    static constexpr bool IsScript = false;
    static constexpr std::array Refusals { &NoCloudService, &NoAccountSdk, &NotLoggedIn };
    template <typename Object> bool read(ArgumentReader& reader, Object& object)
    {
        if constexpr (requires { object.followServices(); })
            object.followServices();
        return find(reader);
    }
    const SignedInUser& get() const { return *user; }
    std::optional<SignedInUser> user;

private:
    bool find(ArgumentReader& reader)
    {
        if (!cloudIpcService())
            return reader.refuse(NoCloudService);
        const kacctoutsdk::IKAccount* account = findAccount();
        if (!account)
            return reader.refuse(NoAccountSdk);
        if (!account->isLoggedIn())
            return reader.refuse(NotLoggedIn);
        user.emplace(account->userInfo().userId);
        return true;
    }
};

} // namespace jsapi

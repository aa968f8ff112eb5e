// Asking for access to files that the system or the suite guards.
#pragma once

/// [GUI thread] for all.
class IKAccessManager {
public:
    /// Makes sure that the process may use `path` (zero-terminated UTF-16), and returns whether it may. What
    /// `accessType` asks for is the suite's business; 2 is the usual one, reading and writing. Where access
    /// is missing the user is asked when `requestIfNoPermission` is set, in a dialog that ends before this
    /// returns; a refusal is shown to the user when `showRequestFailedTip` is set.
    virtual bool StartAccess(
        const char16_t* path, bool requestIfNoPermission, int accessType, bool showRequestFailedTip) = 0;

protected:
    ~IKAccessManager() = default;
};

/// The access manager, or null when the suite has none. Owned by the suite.
IKAccessManager* GetAccessManager();

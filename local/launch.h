// Starting programs, and having other programs open addresses, for pages.
#pragma once

#include "framework/permission.h"

#include <QUrl>
#include <optional>

namespace jsapi {

inline constexpr Failure NoProgram { ErrorCode::OperationFailed, "%1 is not existed" };
inline constexpr Failure TooManyLaunches { ErrorCode::OperationFailed, "Too many launches." };

/// Whether a page may start, open or show one more thing outside its window now: 20 in ten seconds, and this one counts.
/// Ask last, right before it. [GUI thread]
bool mayLaunch(const JSContextEnv& page);

/// Starts a program that goes on without the suite, by its absolute path. Returns whether it was started; refuses with
/// WrongParameters a path that is not absolute or not clean, and an argument that can not be passed: an empty one, one
/// with a NUL. Otherwise with NotPermitted, NoProgram, TooManyLaunches. [GUI thread]
Answer<bool> launchProgram(
    const JSContextEnv& page, const QString& program, const std::vector<std::string>& arguments);

/// An address as script passes it, if it has one of these schemes, a host, neither a user nor a password, and nothing that
/// other programs could read otherwise.
std::optional<QUrl> readAddress(const std::string& given, std::initializer_list<const char*> schemes);

/// Has the desktop open an address. Returns whether it does; refuses with NotPermitted, TooManyLaunches. [GUI thread]
Answer<bool> openAddress(const JSContextEnv& page, const QUrl& address);

/// A mail to write.
struct Mail {
    std::vector<std::string> to;
    std::vector<std::string> cc;
    std::vector<std::string> bcc;
    std::string subject;
    std::string body;
};

/// What a mailto address says, which is not checked yet; nothing if it has other headers than a Mail.
std::optional<Mail> readMailAddress(const std::string& given);

/// Has the desktop's mail program show a mail for the user to send. Returns whether it does; refuses with WrongParameters
/// what is no mail, otherwise with NotPermitted, TooManyLaunches. [GUI thread]
Answer<bool> composeMail(const JSContextEnv& page, const Mail& mail);

} // namespace jsapi

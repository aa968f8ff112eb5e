#include "kbase/system.h"

#include <QString>
#include <cerrno>
#include <cstring>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace {

QString userName()
{
    std::vector<char> room(1024);
    passwd entry {};
    passwd* found = nullptr;
    int error;
    while ((error = getpwuid_r(geteuid(), &entry, room.data(), room.size(), &found)) == ERANGE)
        room.resize(room.size() * 2);
    return !error && found ? QString::fromLocal8Bit(found->pw_name) : QString();
}

} // namespace

std::uint32_t _XGetOSUserName(char16_t* buffer, std::uint32_t capacity)
{
    const QString name = userName();
    const auto length = static_cast<std::uint32_t>(name.size());
    if (length && buffer && capacity > length)
        std::memcpy(buffer, name.utf16(), (length + 1) * sizeof(char16_t));
    return length;
}

#include "safec/safec.h"

#include <cerrno>
#include <cstring>
#include <string>

int vmemcpy_s(void* target, std::size_t room, const void* source, std::size_t count)
{
    if (!target)
        return EINVAL;
    if (!source || count > room) {
        std::memset(target, 0, room);
        return source ? ERANGE : EINVAL;
    }
    std::memmove(target, source, count);
    return 0;
}

std::size_t c_strnlen_s(const char* text, std::size_t room)
{
    return text ? strnlen(text, room) : 0;
}

int u_strcpy_s(char16_t* target, std::size_t room, const char16_t* source)
{
    if (!target)
        return EINVAL;
    if (!room)
        return source ? ERANGE : EINVAL;
    if (!source) {
        *target = 0;
        return EINVAL;
    }
    const char16_t* end = std::char_traits<char16_t>::find(source, room, u'\0');
    if (!end) {
        *target = 0;
        return ERANGE;
    }
    std::memmove(target, source, static_cast<std::size_t>(end - source + 1) * sizeof(char16_t));
    return 0;
}

#include "exports/newfile.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/random.h>
#include <unistd.h>

namespace jsapi {

namespace {

std::string makeName()
{
    std::array<unsigned char, 16> noise {};
    if (getrandom(noise.data(), noise.size(), 0) < 0)
        return {};
    std::string name = ".";
    for (const unsigned char byte : noise) {
        name += "0123456789abcdef"[byte >> 4];
        name += "0123456789abcdef"[byte & 15];
    }
    return name;
}

} // namespace

NewFile::NewFile(int directory, mode_t permissions)
    : m_directory(directory)
    , m_name(makeName())
    , m_file(
          openat(directory, m_name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, permissions))
{
}

NewFile::NewFile(int directory, std::string name, Descriptor file)
    : m_directory(directory)
    , m_name(std::move(name))
    , m_file(std::move(file))
{
}

NewFile& NewFile::operator=(NewFile&& other) noexcept
{
    std::swap(m_directory, other.m_directory);
    std::swap(m_name, other.m_name);
    std::swap(m_file, other.m_file);
    return *this;
}

NewFile::~NewFile()
{
    if (m_file)
        unlinkat(m_directory, m_name.c_str(), 0);
}

bool NewFile::take(const char* name, bool replaces)
{
    const char* from = m_name.c_str();
    if (renameat2(m_directory, from, m_directory, name, replaces ? 0 : RENAME_NOREPLACE) == 0) {
        keep();
        return true;
    }
    // Some file systems can not rename that way, but can link.
    return !replaces && errno == EINVAL && linkat(m_directory, from, m_directory, name, 0) == 0;
}

} // namespace jsapi

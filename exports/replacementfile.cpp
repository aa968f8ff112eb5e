#include "exports/replacementfile.h"

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

ReplacementFile::ReplacementFile(int directory)
    : m_directory(directory)
    , m_name(makeName())
    , m_descriptor(
          openat(directory, m_name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666))
{
}

ReplacementFile::~ReplacementFile()
{
    if (m_descriptor < 0)
        return;
    close(m_descriptor);
    if (!m_name.empty())
        unlinkat(m_directory, m_name.c_str(), 0);
}

bool ReplacementFile::take(const std::string& name, bool replaces)
{
    const char* from = m_name.c_str();
    bool hasMoved =
        renameat2(m_directory, from, m_directory, name.c_str(), replaces ? 0 : RENAME_NOREPLACE) == 0;
    // Some file systems can not rename that way, but can link.
    if (!hasMoved && errno == EINVAL)
        return linkat(m_directory, from, m_directory, name.c_str(), 0) == 0;
    if (hasMoved)
        m_name.clear();
    return hasMoved;
}

} // namespace jsapi

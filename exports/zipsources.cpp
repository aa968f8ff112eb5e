#include "exports/zipsources.h"

#include "exports/zipfile.h"

#include <algorithm>

namespace jsapi {

namespace {

namespace fs = std::filesystem;

/// The name that an archive has for a source: its last step.
std::string nameOf(const fs::path& source)
{
    std::error_code error;
    fs::path path = source.lexically_normal();
    if (!path.has_filename())
        path = path.parent_path();
    if (path.filename() == "." || path.filename() == ".." || path.empty())
        path = fs::canonical(source, error);
    return path.filename().native();
}

} // namespace

ZipSourceSearch::ZipSourceSearch(std::vector<fs::path> sources)
    : m_sources(std::move(sources))
{
}

std::int32_t ZipSourceSearch::step()
{
    if (m_below != Below()) {
        const fs::path path = m_below->path();
        std::error_code error;
        const fs::file_type type = m_below->symlink_status(error).type();
        std::int32_t result = VEXLITE_ZIP_OK;
        if (type == fs::file_type::regular || type == fs::file_type::directory)
            result = add(path,
                m_rootName + path.native().substr(m_root.native().size())
                    + (type == fs::file_type::directory ? "/" : ""));
        if (result == VEXLITE_ZIP_OK)
            m_below.increment(error);
        if (!error)
            return result;
        m_failed = path;
        return VEXLITE_ZIP_UNREADABLE;
    }
    sortLast();
    return m_next == m_sources.size() ? VEXLITE_ZIP_OK : begin(m_sources[m_next++]);
}

std::int32_t ZipSourceSearch::begin(const fs::path& source)
{
    m_failed = source;
    std::error_code error;
    const fs::file_type type = fs::status(source, error).type();
    if (type == fs::file_type::not_found)
        return VEXLITE_ZIP_NOT_FOUND;
    const bool isDirectory = type == fs::file_type::directory;
    if (!isDirectory && type != fs::file_type::regular)
        return VEXLITE_ZIP_UNREADABLE;
    const std::string name = nameOf(source);
    if (!m_names.insert(name).second)
        return VEXLITE_ZIP_EXISTS;
    if (const std::int32_t refused = add(source, isDirectory ? name + '/' : name))
        return refused;
    if (isDirectory) {
        // Without a slash at its end, so that what is below begins with it.
        m_root = source.has_filename() ? source : source.parent_path();
        m_rootName = name;
        m_below = Below(m_root, error);
    }
    return error ? VEXLITE_ZIP_UNREADABLE : VEXLITE_ZIP_OK;
}

std::int32_t ZipSourceSearch::add(const fs::path& path, const std::string& name)
{
    if (!isEntryName(name)) {
        m_failed = path;
        return VEXLITE_ZIP_BAD_NAME;
    }
    m_found.push_back({ path, name });
    return VEXLITE_ZIP_OK;
}

void ZipSourceSearch::sortLast()
{
    std::sort(m_found.begin() + static_cast<std::ptrdiff_t>(m_sorted), m_found.end(),
        [](const ZipSource& a, const ZipSource& b) { return a.entryName < b.entryName; });
    m_sorted = m_found.size();
}

std::vector<ZipSource> ZipSourceSearch::take()
{
    sortLast();
    return std::move(m_found);
}

} // namespace jsapi

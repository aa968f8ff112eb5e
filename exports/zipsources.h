// What goes into an archive: files, and directories with all that is in them, found one at a time.
#pragma once

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace jsapi {

/// A file or directory, and its name in the archive.
struct ZipSource {
    std::filesystem::path path;
    std::string entryName; ///< that of a directory ends with a slash
};

/// Finds them. Of what is in a directory links are left out, as are sockets, pipes and devices; a source that is a link
/// itself is followed. [any thread]
class ZipSourceSearch {
public:
    explicit ZipSourceSearch(std::vector<std::filesystem::path> sources);

    /// Looks at the next file or directory; VEXLITE_ZIP_OK also when all have been found.
    std::int32_t step();
    bool hasEnded() const { return m_next == m_sources.size() && m_below == Below(); }
    /// Those found, each directory before what is in it, and in the order of their names.
    std::vector<ZipSource> take();
    std::size_t count() const noexcept { return m_found.size(); }
    /// What step() failed with.
    const std::filesystem::path& failed() const noexcept { return m_failed; }

private:
    using Below = std::filesystem::recursive_directory_iterator;

    std::int32_t add(const std::filesystem::path& path, const std::string& name);
    std::int32_t begin(const std::filesystem::path& source);
    void sortLast();

    std::vector<std::filesystem::path> m_sources;
    std::size_t m_next = 0;
    std::filesystem::path m_root; ///< the source that is a directory, which is looked through
    std::string m_rootName;
    Below m_below;
    std::set<std::string> m_names; ///< of the sources
    std::size_t m_sorted = 0;      ///< so many of those found
    std::vector<ZipSource> m_found;
    std::filesystem::path m_failed;
};

} // namespace jsapi

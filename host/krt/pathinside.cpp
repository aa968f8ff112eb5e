#include "host/krt/pathinside.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <climits>
#include <deque>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace krt {

namespace {

namespace fs = std::filesystem;

/// The system follows no more; a path with more of them can not be opened.
constexpr int MaxLinks = 40;

std::deque<std::string> splitPath(const fs::path& path)
{
    std::deque<std::string> names;
    for (const fs::path& part : path.relative_path())
        names.push_back(part.string());
    return names;
}

bool startsWith(const std::vector<std::string>& names, const std::vector<std::string>& directory)
{
    return names.size() >= directory.size() && std::equal(directory.begin(), directory.end(), names.begin());
}

/// The names from the root to where an absolute path leads. Calls `onLink` with the names of each link on the
/// way. Nothing when the way gets longer than a path may be, since links there can not be read.
template <typename OnLink>
std::optional<std::vector<std::string>> resolve(const QString& path, const OnLink& onLink)
{
    std::deque<std::string> ahead = splitPath(QFile::encodeName(path).toStdString());
    std::vector<std::string> names;
    fs::path reached("/");
    int links = 0;
    while (!ahead.empty()) {
        const std::string name = ahead.front();
        ahead.pop_front();
        if (name.empty() || name == ".")
            continue;
        if (name == "..") {
            reached = reached.parent_path();
            if (!names.empty())
                names.pop_back();
            continue;
        }
        fs::path next = reached / name;
        if (next.native().size() >= PATH_MAX)
            return std::nullopt;
        names.push_back(name);
        std::error_code notALink;
        const fs::path target = fs::read_symlink(next, notALink);
        if (notALink || ++links > MaxLinks) {
            reached = std::move(next);
            continue;
        }
        onLink(names);
        names.pop_back();
        if (target.is_absolute()) {
            reached = "/";
            names.clear();
        }
        const std::deque<std::string> steps = splitPath(target);
        ahead.insert(ahead.begin(), steps.begin(), steps.end());
    }
    return names;
}

bool leadsInto(const QString& path, const std::vector<std::string>& directory)
{
    bool throughLinkInside = false;
    const auto names = resolve(path, [&](const std::vector<std::string>& link) {
        throughLinkInside = throughLinkInside || startsWith(link, directory);
    });
    return throughLinkInside || !names || startsWith(*names, directory);
}

} // namespace

bool isPathInside(const QString& path, const QString& directory)
{
    if (!QDir::isAbsolutePath(path) || !QDir::isAbsolutePath(directory))
        return false;
    const auto resolved = resolve(directory, [](const std::vector<std::string>&) {});
    return !resolved || leadsInto(path, *resolved) || leadsInto(QDir::cleanPath(path), *resolved);
}

} // namespace krt

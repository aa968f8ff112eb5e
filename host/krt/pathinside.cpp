#include "host/krt/pathinside.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <deque>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace krt {

namespace {

namespace fs = std::filesystem;

/// As many as the system follows; a path with more of them can not be opened.
constexpr int MaxLinks = 40;

std::deque<std::string> namesOf(const fs::path& path)
{
    std::deque<std::string> names;
    for (const fs::path& part : path.relative_path())
        names.push_back(part.string());
    return names;
}

/// The names from the root to where an absolute path leads.
std::vector<std::string> resolve(const QString& path)
{
    std::deque<std::string> ahead = namesOf(QFile::encodeName(path).toStdString());
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
        std::error_code notALink;
        const fs::path target = fs::read_symlink(reached / name, notALink);
        if (notALink || ++links > MaxLinks) {
            reached /= name;
            names.push_back(name);
            continue;
        }
        if (target.is_absolute()) {
            reached = "/";
            names.clear();
        }
        const std::deque<std::string> steps = namesOf(target);
        ahead.insert(ahead.begin(), steps.begin(), steps.end());
    }
    return names;
}

bool leadsInto(const QString& path, const std::vector<std::string>& directory)
{
    const std::vector<std::string> names = resolve(path);
    return names.size() >= directory.size() && std::equal(directory.begin(), directory.end(), names.begin());
}

} // namespace

bool isPathInside(const QString& path, const QString& directory)
{
    if (!QDir::isAbsolutePath(path) || !QDir::isAbsolutePath(directory))
        return false;
    const std::vector<std::string> resolved = resolve(directory);
    return leadsInto(path, resolved) || leadsInto(QDir::cleanPath(path), resolved);
}

} // namespace krt

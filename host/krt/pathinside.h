// Whether a path leads into one of some places, whatever links, parent steps and mounts it goes through.
#pragma once

#include <QString>
#include <QStringList>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace krt {

/// A file or directory, whatever its name: device, inode, and when it was made in seconds and nanoseconds, which
/// tells it from a later one that got its number.
using FileId = std::tuple<std::uint64_t, std::uint64_t, std::int64_t, std::uint32_t>;

/// Files and directories, which need not exist. Each is known by its names and by where they lead when it is
/// added: by every directory on the way and the names that are left there. Not thread-safe.
class Places {
public:
    /// A place lies in the set with all that is below it; an exception, and what is below, does not. The
    /// innermost decides.
    enum class Kind { Member, Exception };
    /// Ignores a path that is not absolute.
    void add(const QString& path, Kind kind = Kind::Member);
    /// Adds everything in a directory whose name begins with the last one of `path`, which ends in '*'.
    void addBeginning(const QString& path);

    /// True when an absolute path is a place of the set or leads into one. Links are followed as far as the path
    /// exists, broken ones to where they point. Parent steps are resolved in two ways, as the system does (after
    /// a link: from its target) and lexically; one that leads inside is enough. A path through a link that is
    /// itself inside counts as inside, wherever the link leads, since deleting the link changes the directory. So
    /// does one that is too long to be opened.
    bool contain(const QString& path) const;

private:
    /// What is left of the way to a place in one directory.
    struct Way {
        std::vector<std::string> names; ///< none in the place itself
        Kind kind = Kind::Member;
        bool isBeginning = false; ///< of the last name
        bool operator==(const Way&) const = default;
    };
    struct Station;
    class Recorder;
    class Matcher;
    friend class ProfilePlaces;

    Station step(const Station& from, const std::string& name, const std::optional<FileId>& id) const;

    std::map<FileId, std::vector<Way>> m_ways;
};

/// Whether `path` is `directory` or inside it, see Places; false when one of them is not absolute. [any thread]
bool isPathInside(const QString& path, const QString& directory);

/// Places of the profile, as they were when they were first asked for and as they are. [any thread]
class ProfilePlaces {
public:
    ProfilePlaces();
    ~ProfilePlaces();

    /// `entries` and `exceptions` are paths of the profile; "${PATH}" among them stands for the directories in
    /// which the system looks for programs. What other processes change about the links on the way to the
    /// entries is seen after 50 ms.
    bool contain(const QString& path, const QStringList& entries, const QStringList& exceptions = {});

private:
    struct Source {
        QStringList entries;
        QStringList exceptions;
        QString data;
        QByteArray home;
        QByteArray programs;
        bool operator==(const Source&) const = default;
    };

    struct Trail;

    void look(Places& places) const;
    std::optional<bool> containsOnTrail(const QString& path);

    std::mutex m_mutex;
    Source m_source;
    Places m_first;
    Places m_now;
    std::unique_ptr<Trail> m_trail;
    std::chrono::steady_clock::time_point m_looked;
};

} // namespace krt

// A directory full of traps for the path check: closed directories, links into and out of them, broken links,
// loops. And judges that tell from the outside where a path leads, without the code under test.
#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <string>
#include <utility>
#include <vector>

class PathWorld {
public:
    PathWorld();
    ~PathWorld();

    QString root() const { return m_directory.path(); }
    /// A path of a table, in which '@' stands for the root.
    QString placed(QString path) const { return path.replace(QLatin1Char('@'), root()); }

    /// The directories that pages must not write to, all of which must be found closed. "@/later" is not
    /// there.
    QStringList blacklisted() const;
    QString plugins() const { return placed(QStringLiteral("@/plugins")); }

    /// Why writing to or deleting what the path names would reach a closed directory; empty when it would
    /// not.
    std::string trespass(const QString& path) const;

    /// Whether a path leads to a place in this directory, or below.
    bool holds(const QString& path) const;
    /// What is not any more as it was made: a closed place that its name leads to, or a pipe. Empty when all is.
    std::string findLoss() const;

    /// What is on disk: a line for each entry with its number, type, size and times, sorted. Links are not
    /// followed.
    std::string listing() const;

private:
    using Id = std::pair<unsigned long, unsigned long>; ///< device and inode
    struct Closed {
        std::string text;
        std::string place; ///< links followed
        Id id;             ///< when it was made; zeros when it is not there
    };

    QTemporaryDir m_directory;
    std::vector<Closed> m_closed;
};

/// Makes a directory, and in it `depth` directories with long names in each other.
void makeDeepTree(const QString& path, int depth);

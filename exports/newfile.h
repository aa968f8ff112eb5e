// NewFile: a file that is written beside its place, and takes it when it is whole. Needs nothing of a suite, nor Qt.
#pragma once

#include "exports/descriptor.h"

#include <string>
#include <sys/stat.h>

namespace jsapi {

/// A file in an open directory, removed unless it takes a place or is kept. [any thread], one at a time
class NewFile {
public:
    /// Makes the file, to be read and written. The directory stays the caller's and must outlive the object. What takes the
    /// place of a file, or is a copy of one, is for the user alone until its permissions are set: that may be private.
    NewFile(int directory, mode_t permissions);
    /// Takes over a file that has been made there already.
    NewFile(int directory, std::string name, Descriptor file);
    NewFile(NewFile&& other) noexcept = default;
    NewFile& operator=(NewFile&& other) noexcept;
    ~NewFile();

    /// False, with errno, when it could not be made.
    explicit operator bool() const noexcept { return bool(m_file); }
    const Descriptor& file() const noexcept { return m_file; }

    /// Takes the place of whatever has the name, or only one where nothing is. False with errno when that fails.
    bool take(const char* name, bool replaces);
    /// Lets the file stay where it is.
    void keep() { m_file = Descriptor(); }

private:
    int m_directory;
    std::string m_name;
    Descriptor m_file; ///< none when there is nothing to remove
};

} // namespace jsapi

// A file that takes the place of another one when it is whole.
#pragma once

#include <string>

namespace jsapi {

/// A new file in an open directory, removed unless it takes a place. [any thread], one at a time
class ReplacementFile {
public:
    /// `directory` stays the caller's and must outlive the object. The file is readable for all whom the process lets.
    explicit ReplacementFile(int directory);
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// False, with errno, when it could not be made.
    explicit operator bool() const noexcept { return m_descriptor >= 0; }
    int descriptor() const noexcept { return m_descriptor; }
    /// In the directory.
    const std::string& name() const noexcept { return m_name; }

    /// Takes the place of whatever has the name, or only one where nothing is. False with errno when that fails.
    bool take(const std::string& name, bool replaces);

private:
    int m_directory;
    std::string m_name;
    int m_descriptor;
};

} // namespace jsapi

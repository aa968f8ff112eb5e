// What a user's or a company's id may be, for the suite's profile and for the cloud process.
#pragma once

#include <QString>
#include <algorithm>
#include <string>

namespace cloudwire {

/// As a folder's name it may be three times as long, and must be a file name all the same.
constexpr int MaxUserIdBytes = 80;

inline bool containsControls(const QString& text)
{
    return std::any_of(text.begin(), text.end(),
        [](QChar character) { return character.category() == QChar::Other_Control; });
}

/// `utf8` has no errors.
inline bool isUserId(const std::string& utf8)
{
    return !utf8.empty() && utf8.size() <= MaxUserIdBytes && !containsControls(QString::fromStdString(utf8));
}

} // namespace cloudwire

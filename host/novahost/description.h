// What is written down of the members: signatures, documentation, failures. Comes from types/api.json, which
// is compiled in.
#pragma once

#include <QStringList>
#include <nlohmann/json.hpp>
#include <optional>

namespace novahost {

using Json = nlohmann::ordered_json;

QString textOf(const Json& string);

/// Whether `wanted` is the end of a dotted name: the whole of it, or some of its last parts.
bool isNamed(const QString& name, const QString& wanted, Qt::CaseSensitivity sensitivity);

class Description {
public:
    struct Member {
        const Json& object;
        const Json& member;
    };

    static const Description& builtIn();

    /// All objects, in the order of the API.
    const Json& objects() const { return m_api["objects"]; }
    /// The object of that name, which begins with "NovaExtension."; null when there is none.
    const Json* object(const QString& name) const;
    static const Json* member(const Json& object, const QString& name);
    /// The member that a path such as "FileSystem.copy" names, in full or by its last parts: two at least.
    std::optional<Member> member(
        const QString& path, Qt::CaseSensitivity sensitivity = Qt::CaseInsensitive) const;

    /// The names of all objects and, as "FileSystem.copy", of all members, without NovaExtension.
    QStringList names() const;
    /// Advice to whom has written `wanted`, which is no name: "did you mean FileSystem.copy?".
    QString advice(const QString& wanted) const;

    /// The type of an answer {type, form}: Answer<string[]>
    static QString answerText(const Json& answer);
    static QString fullName(const Json& object);
    /// FileSystem.copy(options: CopyOptions): Answer<boolean>
    static QString signature(const Member& member);
    /// The signature, and all that a page should know of the member.
    static QStringList documentation(const Member& member);
    /// What the object is for, and the signatures of its members and events.
    static QStringList overview(const Json& object);

private:
    Description();
    Json m_api;
};

} // namespace novahost

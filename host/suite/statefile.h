// What a service stores in a JSON file of the data directory, for all processes that share it.
#pragma once

#include <QJsonObject>
#include <functional>

namespace suite {

class StateFile {
public:
    explicit StateFile(QString path);

    /// The content. Empty when there is no file; one that can not be understood is set aside, with a warning.
    QJsonObject read() const;
    /// Reads the file, which another process may have changed, and replaces it by the changed content, while no other process
    /// does the same. False, with a warning and the file as it was, when it can not be written, or could not be read again:
    /// what is nested too deep.
    bool update(const std::function<void(QJsonObject& content)>& change) const;

private:
    QString m_path;
};

} // namespace suite

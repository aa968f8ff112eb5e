// OutputFile: a file that the user has named for what a run writes down meanwhile.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTimer>
#include <memory>

namespace novahost {

/// What is written reaches the file when the event loop is entered next, so that it is there when the process dies later.
/// The first error of writing is printed; nothing is written after it. [GUI thread]
class OutputFile {
public:
    /// Makes or empties the file, which others can not read when it is new. Null, with a message in `error`, when that fails;
    /// for anything but a plain file, since a link may lead elsewhere by now than when the user made it; while another one
    /// writes there; and for a file with something else than what begins with `beginning`, such as the page itself.
    static std::unique_ptr<OutputFile> open(
        const QString& option, const QString& path, const QByteArray& beginning, QString& error);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(const QByteArray& text);
    /// Writes what is left. Returns whether everything has been written.
    bool finish();

private:
    OutputFile(QString name, int file);
    void flush();

    QString m_name; ///< "--record FILE", for messages
    int m_file;
    QByteArray m_left;
    QTimer m_timer;
    bool m_failed = false;
};

} // namespace novahost

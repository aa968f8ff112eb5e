// LineEditor: reads inputs of several lines from a terminal, from the event loop.
#pragma once

#include "host/novahost/inputhistory.h"

#include <QObject>
#include <QSocketNotifier>
#include <functional>
#include <histedit.h>
#include <memory>

namespace novahost {

/// [GUI thread] One at a time. Between start() and stop() the terminal is the editor's: what is printed meanwhile goes through
/// print().
class LineEditor {
public:
    struct Host {
        /// Whether more lines belong to a text.
        std::function<bool(const QString& text)> isIncomplete;
        /// An input has been entered. The editor has stopped.
        std::function<void(const QString& input)> entered;
        /// Ctrl-D on an empty line. The editor has stopped.
        std::function<void()> ended;
        struct Completion {
            int from = 0;      ///< where what is replaced begins
            QStringList names; ///< all that it may become
            QString note;      ///< is shown where there are none
        };
        /// What the text before the cursor may become.
        std::function<Completion(const QString& text)> complete;
        /// What is shown below the line while it is typed.
        std::function<QString(const QString& text)> hint;
    };

    explicit LineEditor(Host host);
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    /// Shows the prompt and reads an input.
    void start();
    /// Every line belongs to the input, which Ctrl-D ends.
    void startText();
    void stop();
    /// Stops and drops what is typed, which stays to be seen.
    void drop();
    bool isReading() const { return m_isReading; }
    /// Shows what `write` writes above the prompt and what is typed.
    void print(const std::function<void()>& write);

private:
    struct Place {
        int row = 0;
        int column = 0;
    };

    void bindKeys();
    void readKey();
    void takeLine(const QString& line);
    void insertPasted();
    /// Inserts a text, all but whose last line is entered.
    void insert(const QString& text);
    /// Returns whether the line has changed.
    bool completeWord();
    void list(const QStringList& names);
    void showPrompt(const char* prompt);
    void showHint();
    void clearHint();

    QString line() const;
    QString beforeCursor() const;
    Place placeAfter(const QString& text) const;
    void hide();

    static LineEditor& of(EditLine* line);
    static int readCharacter(EditLine* line, wchar_t* character);

    Host m_host;
    std::unique_ptr<EditLine, void (*)(EditLine*)> m_line;
    std::unique_ptr<History, void (*)(History*)> m_recalled;
    InputHistory m_history;
    QSocketNotifier m_keys;
    const char* m_prompt = "";
    QString m_before; ///< the lines of this input that were entered already
    wchar_t m_lastCharacter = 0;
    bool m_isReading = false;
    bool m_isText = false;
    bool m_isEnded = false;
    bool m_isClosed = false; ///< the terminal has gone
    bool m_isHinted = false;
    bool m_isDumb; ///< the terminal knows no escape sequences
};

} // namespace novahost

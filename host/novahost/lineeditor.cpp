#include "host/novahost/lineeditor.h"

#include <QRegularExpression>
#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cwchar>
#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace novahost {

namespace {

constexpr char FirstPrompt[] = "nova> ";
constexpr char NextPrompt[] = "... ";
constexpr char PasteEnd[] = "\033[201~";

void show(const QByteArray& text)
{
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
    std::fflush(stdout);
}

QByteArray sequence(int count, char command)
{
    return count > 0 ? "\033[" + QByteArray::number(count) + command : QByteArray();
}

int columnsOfTerminal()
{
    winsize size {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

/// The columns that a character takes at a column of the screen.
int widthOf(uint character, int column)
{
    if (character == '\t')
        return 8 - column % 8;
    const int width = wcwidth(static_cast<wchar_t>(character));
    return width >= 0 ? width : 2; // shown as ^A
}

} // namespace

LineEditor::LineEditor(Host host)
    : m_host(std::move(host))
    , m_line(nullptr, el_end)
    , m_recalled(history_init(), history_end)
    , m_keys(STDIN_FILENO, QSocketNotifier::Read)
    , m_isDumb(qgetenv("TERM").isEmpty() || qgetenv("TERM") == "dumb")
{
    m_keys.setEnabled(false);
    QObject::connect(&m_keys, &QSocketNotifier::activated, [this] { readKey(); });
    // Without it no letters but those of ASCII could be typed.
    if (qstrcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        std::setlocale(LC_CTYPE, "C.UTF-8");
    HistEvent event;
    history(m_recalled.get(), &event, H_SETSIZE, InputHistory::Length);
    for (const QString& input : m_history.inputs())
        history(m_recalled.get(), &event, H_ENTER, input.toUtf8().constData());

    m_line.reset(el_init("novahost", stdin, stdout, stderr));
    EditLine* line = m_line.get();
    el_set(line, EL_CLIENTDATA, this);
    el_set(
        line, EL_PROMPT, +[](EditLine* of) { return const_cast<char*>(LineEditor::of(of).m_prompt); });
    el_set(line, EL_EDITOR, "emacs");
    el_set(line, EL_HIST, history, m_recalled.get());
    el_set(line, EL_GETCFN, readCharacter);
    bindKeys();
    el_source(line, nullptr);
}

LineEditor::~LineEditor()
{
    stop();
}

void LineEditor::bindKeys()
{
    EditLine* line = m_line.get();
    using Key = unsigned char (*)(EditLine*, int);
    // The narrow form would leak its strings.
    const auto add = [&](const wchar_t* name, const wchar_t* doc, Key key) {
        el_wset(line, EL_ADDFN, name, doc, key);
    };
    const auto bind = [&](const char* keys, const char* command) {
        el_set(line, EL_BIND, keys, command, nullptr);
    };
    add(L"nova-complete", L"Completes the word",
        [](EditLine* at, int) -> unsigned char { return of(at).completeWord() ? CC_REFRESH : CC_NORM; });
    add(L"nova-paste", L"Inserts what is pasted", [](EditLine* at, int) -> unsigned char {
        of(at).insertPasted();
        return CC_REFRESH;
    });
    add(L"nova-newline", L"Begins another line", [](EditLine* at, int) -> unsigned char {
        of(at).m_lastCharacter = 0;
        of(at).insert(QStringLiteral("\n"));
        return CC_REFRESH;
    });
    add(L"nova-end", L"Deletes a character, or ends", [](EditLine* at, int) -> unsigned char {
        const LineInfo* info = el_line(at);
        LineEditor& editor = of(at);
        if (editor.m_isText || info->buffer == info->lastchar) {
            editor.m_isEnded = true;
            return CC_NORM;
        }
        if (info->cursor == info->lastchar)
            return CC_ERROR;
        el_push(at, "\033[3~");
        return CC_ARGHACK;
    });
    bind("\t", "nova-complete");
    bind("\033[200~", "nova-paste");
    bind("\033\n", "nova-newline");
    bind("\033\r", "nova-newline");
    bind("^D", "nova-end");
    bind("^R", "em-inc-search-prev");
    bind("^W", "ed-delete-prev-word");
    for (const char* keys : { "\033[1~", "\033[7~", "\033[H", "\033OH" })
        bind(keys, "ed-move-to-beg");
    for (const char* keys : { "\033[4~", "\033[8~", "\033[F", "\033OF" })
        bind(keys, "ed-move-to-end");
    bind("\033[3~", "ed-delete-next-char");
    bind("\033[1;5C", "em-next-word");
    bind("\033[1;5D", "ed-prev-word");
}

LineEditor& LineEditor::of(EditLine* line)
{
    void* editor = nullptr;
    el_get(line, EL_CLIENTDATA, &editor);
    return *static_cast<LineEditor*>(editor);
}

/// Reads one character and no more, so that the notifier knows of the others.
int LineEditor::readCharacter(EditLine* line, wchar_t* character)
{
    std::mbstate_t state {};
    for (;;) {
        char byte = 0;
        const ssize_t count = read(STDIN_FILENO, &byte, 1);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) {
            of(line).m_isClosed = true;
            return static_cast<int>(count);
        }
        const std::size_t used = std::mbrtowc(character, &byte, 1, &state);
        if (used == static_cast<std::size_t>(-1)) {
            state = {};
            continue;
        }
        if (used == static_cast<std::size_t>(-2))
            continue;
        of(line).m_lastCharacter = *character;
        return 1;
    }
}

void LineEditor::start()
{
    m_before.clear();
    m_isText = false;
    showPrompt(FirstPrompt);
}

void LineEditor::startText()
{
    m_before.clear();
    m_isText = true;
    showPrompt("");
}

void LineEditor::showPrompt(const char* prompt)
{
    m_prompt = prompt;
    m_isReading = true;
    m_isEnded = false;
    el_set(m_line.get(), EL_UNBUFFERED, 1);
    if (!m_isDumb)
        show("\033[?2004h");
    m_keys.setEnabled(true);
}

void LineEditor::stop()
{
    if (!m_isReading)
        return;
    clearHint();
    m_isReading = false;
    m_keys.setEnabled(false);
    if (!m_isDumb)
        show("\033[?2004l");
    el_set(m_line.get(), EL_UNBUFFERED, 0);
}

void LineEditor::drop()
{
    if (!m_isReading)
        return;
    clearHint();
    show(QByteArray(placeAfter(line()).row - placeAfter(beforeCursor()).row + 1, '\n'));
    stop();
}

void LineEditor::readKey()
{
    clearHint();
    m_lastCharacter = 0;
    const auto isNewline = [this] { return m_lastCharacter == '\n' || m_lastCharacter == '\r'; };
    int count = 0;
    const char* text = el_gets(m_line.get(), &count);
    // The key that ends a search is a command of its own.
    if (isNewline() && !(text && count > 0 && text[count - 1] == '\n'))
        text = el_gets(m_line.get(), &count);
    if (m_isEnded || m_isClosed) {
        const bool isText = m_isText && m_isEnded;
        const QString input = m_before + line();
        stop();
        show("\n");
        return isText ? m_host.entered(input) : m_host.ended();
    }
    if (isNewline() && text && count > 0 && text[count - 1] == '\n')
        return takeLine(QString::fromUtf8(text, count - 1));
    showHint();
}

void LineEditor::takeLine(const QString& line)
{
    const QString input = m_before + line;
    if (m_isText || (!line.trimmed().isEmpty() && m_host.isIncomplete(input))) {
        m_before = input + QLatin1Char('\n');
        m_prompt = m_isText ? "" : NextPrompt;
        // The terminal stays as it is: what is typed meanwhile, Ctrl-D too, is for the next line.
        const LineInfo* info = el_line(m_line.get());
        el_cursor(m_line.get(), static_cast<int>(info->lastchar - info->cursor));
        el_deletestr(m_line.get(), static_cast<int>(info->lastchar - info->buffer));
        el_set(m_line.get(), EL_REFRESH);
        return;
    }
    stop();
    m_before.clear();
    if (!input.trimmed().isEmpty()) {
        const QString error = m_history.error();
        HistEvent event;
        history(m_recalled.get(), &event, H_ENTER, input.toUtf8().constData());
        m_history.add(input);
        if (m_history.error() != error)
            show("novahost: the history is not kept: " + m_history.error().toUtf8() + '\n');
    }
    m_host.entered(input);
}

void LineEditor::insertPasted()
{
    QString pasted;
    wchar_t character = 0;
    while (!pasted.endsWith(QLatin1String(PasteEnd)) && readCharacter(m_line.get(), &character) == 1)
        pasted += QString::fromWCharArray(&character, 1);
    m_lastCharacter = 0;
    if (pasted.endsWith(QLatin1String(PasteEnd)))
        pasted.chop(static_cast<int>(qstrlen(PasteEnd)));
    static const QRegularExpression newline(QStringLiteral("\r\n?")), end(QStringLiteral("\n+$"));
    pasted.replace(newline, QStringLiteral("\n"))
        .remove(end)
        .replace(QLatin1Char('\t'), QLatin1String("    "));
    insert(pasted);
}

void LineEditor::insert(const QString& text)
{
    EditLine* line = m_line.get();
    const int lastNewline = text.lastIndexOf(QLatin1Char('\n'));
    const QByteArray last = text.mid(lastNewline + 1).toUtf8();
    if (lastNewline < 0) {
        el_insertstr(line, last.constData());
        return;
    }
    print([&] {
        const char* next = m_isText ? "" : NextPrompt;
        const QString entered = beforeCursor() + text.left(lastNewline);
        QString shown = entered;
        shown.replace(QLatin1Char('\n'), QLatin1Char('\n') + QLatin1String(next));
        show(m_prompt + shown.toUtf8() + '\n');
        m_before += entered + QLatin1Char('\n');
        m_prompt = next;
        el_deletestr(line, beforeCursor().toUcs4().size());
        el_insertstr(line, last.constData());
    });
}

bool LineEditor::completeWord()
{
    m_keys.setEnabled(false); // the page may take its time
    const QString before = m_before + beforeCursor();
    const Host::Completion found = m_host.complete(before);
    if (!m_isReading)
        return false;
    m_keys.setEnabled(true);
    const QString typed = before.mid(found.from);
    QStringList names;
    for (const QString& name : found.names) {
        if (name.startsWith(typed) && !names.contains(name))
            names.append(name);
    }
    if (names.isEmpty()) {
        if (!found.note.isEmpty())
            print([&] { show(found.note.toUtf8() + '\n'); });
        return false;
    }
    QString common = names.first();
    for (const QString& name : qAsConst(names)) {
        while (!name.startsWith(common))
            common.chop(1);
    }
    if (common.size() > typed.size()) {
        el_insertstr(m_line.get(), common.mid(typed.size()).toUtf8().constData());
        return true;
    }
    if (names.size() > 1) {
        names.sort();
        print([&] { list(names); });
    }
    return false;
}

/// Shows names in columns.
void LineEditor::list(const QStringList& names)
{
    int width = 0;
    for (const QString& name : names)
        width = std::max(width, name.size() + 2);
    const int columns = std::max(1, (columnsOfTerminal() - 1) / width);
    const int rows = (names.size() + columns - 1) / columns;
    QByteArray text;
    for (int row = 0; row < rows; ++row) {
        QString line;
        for (int i = row; i < names.size(); i += rows)
            line += names[i].leftJustified(width);
        text += line.trimmed().toUtf8() + '\n';
    }
    show(text);
}

QString LineEditor::line() const
{
    const LineInfo* info = el_line(m_line.get());
    return QString::fromUtf8(info->buffer, static_cast<int>(info->lastchar - info->buffer));
}

QString LineEditor::beforeCursor() const
{
    const LineInfo* info = el_line(m_line.get());
    return QString::fromUtf8(info->buffer, static_cast<int>(info->cursor - info->buffer));
}

/// Where the cursor is behind a text that follows the prompt.
LineEditor::Place LineEditor::placeAfter(const QString& text) const
{
    const int columns = columnsOfTerminal();
    Place place { 0, static_cast<int>(qstrlen(m_prompt)) };
    for (const uint character : text.toUcs4()) {
        const int width = character == '\n' ? 0 : widthOf(character, place.column);
        if (character == '\n' || place.column + width > columns)
            place = { place.row + 1, 0 };
        place.column += width;
        if (place.column >= columns)
            place = { place.row + 1, 0 };
    }
    return place;
}

void LineEditor::hide()
{
    if (m_isDumb)
        return show("\n");
    show('\r' + sequence(placeAfter(beforeCursor()).row, 'A') + "\033[J");
}

void LineEditor::print(const std::function<void()>& write)
{
    if (!m_isReading)
        return write();
    hide();
    write();
    el_set(m_line.get(), EL_REFRESH);
    m_isHinted = false;
}

void LineEditor::showHint()
{
    if (m_isDumb || m_isText)
        return;
    const QString hint = m_host.hint(m_before + beforeCursor());
    if (hint.isEmpty())
        return;
    const Place cursor = placeAfter(beforeCursor());
    const int down = placeAfter(line()).row - cursor.row + 1;
    const QString shown = hint.left(columnsOfTerminal() - 1);
    show(QByteArray(down, '\n') + "\033[J\033[2m" + shown.toUtf8() + "\033[0m" + sequence(down, 'A') + '\r'
        + sequence(cursor.column, 'C'));
    m_isHinted = true;
}

void LineEditor::clearHint()
{
    if (!std::exchange(m_isHinted, false))
        return;
    const Place cursor = placeAfter(beforeCursor());
    const int down = placeAfter(line()).row - cursor.row + 1;
    show(QByteArray(down, '\n') + "\033[J" + sequence(down, 'A') + '\r' + sequence(cursor.column, 'C'));
}

} // namespace novahost

#include "host/jsc/page.h"

#include "host/jsc/syntaxerror.h"

#include <QRegularExpression>

namespace engine::jsc {

namespace {

// What errors show of a source; `script` is what runs, in which it begins on the first line.
void noteSource(PageState& page, const Text& name, const QString& source, const QString& script)
{
    JSContextRef ctx = page.ctx();
    const int shift = script.indexOf(source);
    page.prelude().call(page.prelude().noteSource, nullptr, JSValueMakeString(ctx, name),
        JSValueMakeString(ctx, name), makeString(ctx, shift < 0 ? QString() : source),
        JSValueMakeNumber(ctx, shift < 0 ? 0 : shift));
}

void noteInput(PageState& page, const Text& known, const QString& name, const PageScript& script)
{
    JSContextRef ctx = page.ctx();
    page.prelude().call(page.prelude().noteInput, nullptr, JSValueMakeString(ctx, known),
        makeString(ctx, name), makeString(ctx, script.typed), makeString(ctx, script.pieces),
        makeString(ctx, script.source));
}

JSValueRef evaluateScript(PageState& page, const QString& source, const Text& fileName, JSValueRef* exception)
{
    return JSEvaluateScript(page.ctx(), Text(source), nullptr, fileName, 1, exception);
}

// Reports an error before the script ran, such as a syntax error.
void failTicket(PageState& page, int ticket, JSValueRef exception)
{
    const Prelude& prelude = page.prelude();
    prelude.call(prelude.fail, nullptr, JSValueMakeNumber(page.ctx(), ticket), exception);
}

} // namespace

JscPage::JscPage(std::shared_ptr<Engine> engine, const PageOptions& options, PageHost host)
    : m_state(std::make_shared<PageState>(std::move(engine), std::move(host)))
{
    m_state->open(options);
}

JscPage::~JscPage()
{
    m_state->forgetHost();
    m_state->close();
}

void JscPage::run(const QString& source, const QString& fileName, Done done)
{
    PageState& page = *m_state;
    const Entry entry(page);
    if (!entry)
        return;
    const int ticket = page.addTicket(std::move(done));
    const Text name(fileName);
    // All on the first line of the source, so that line numbers stay right.
    QString body = source;
    if (body.startsWith(QLatin1String("#!")))
        body.replace(0, 2, QStringLiteral("//"));
    // Checked as a method as well: source that closes one of the two wrappers, "}); ... (function () {", is a
    // syntax error in the other.
    const QString asMethod = QStringLiteral("({ async run() {") + body + QStringLiteral("\n}})");
    const QString wrapped = QStringLiteral("(async function () {") + body + QStringLiteral("\n})");
    JSValueRef exception = nullptr;
    noteSource(page, name, body, asMethod);
    if (!JSCheckScriptSyntax(page.ctx(), Text(asMethod), name, 1, &exception)) {
        placeSyntaxError(page.ctx(), exception, asMethod, body);
        return failTicket(page, ticket, exception);
    }
    noteSource(page, name, body, wrapped);
    const JSValueRef function = evaluateScript(page, wrapped, name, &exception);
    if (!function) {
        placeSyntaxError(page.ctx(), exception, wrapped, body);
        return failTicket(page, ticket, exception);
    }
    page.prelude().call(page.prelude().run, nullptr, JSValueMakeNumber(page.ctx(), ticket), function);
}

void JscPage::evaluate(const PageScript& script, Done done)
{
    PageState& page = *m_state;
    const Entry entry(page);
    if (!entry)
        return;
    const auto isDeclared = std::make_shared<bool>(true);
    const int ticket = page.addTicket([done = std::move(done), isDeclared](Outcome outcome) {
        outcome.isDeclared = *isDeclared;
        done(outcome);
    });
    const QString known = page.inputName() + QString::number(ticket);
    const Text name(known);
    noteInput(page, name, script.name.isEmpty() ? known : script.name, script);
    JSValueRef exception = nullptr;
    JSValueRef value = nullptr;
    *isDeclared = script.declarations.isEmpty()
        || evaluateScript(page, script.declarations, Text(known + QLatin1String("/functions")), &exception);
    if (*isDeclared)
        value = evaluateScript(page, script.source, name, &exception);
    const Prelude& prelude = page.prelude();
    const JSValueRef number = JSValueMakeNumber(page.ctx(), ticket);
    if (value) {
        prelude.call(script.isKept ? prelude.settleKept : prelude.settle, nullptr, number, value);
        return;
    }
    if (*isDeclared)
        placeSyntaxError(page.ctx(), exception, script.source, script.typed);
    prelude.call(script.isKept ? prelude.failKept : prelude.fail, nullptr, number, exception);
}

void JscPage::settle(std::function<void(int exitCode)> done)
{
    m_state->post([this, done = std::move(done)] {
        int exitCode = 0;
        if (const Entry entry(*m_state); entry) {
            const Prelude& prelude = m_state->prelude();
            const JSValueRef code = prelude.call(prelude.exitCode, nullptr);
            exitCode = code ? static_cast<int>(JSValueToInt32(m_state->ctx(), code, nullptr)) : 0;
        }
        done(exitCode);
    });
}

void JscPage::propertyNames(const QStringList& path, std::function<void(const QStringList& names)> found)
{
    found(namesAt(path));
}

QStringList JscPage::namesAt(QStringList steps)
{
    PageState& page = *m_state;
    const Entry entry(page);
    if (!entry)
        return {};
    JSContextRef ctx = page.ctx();
    const bool isNova = !steps.isEmpty() && steps.first() == QLatin1String("NovaExtension");
    JSValueRef start = JSContextGetGlobalObject(ctx);
    static const QRegularExpression identifier(QStringLiteral("^[\\p{L}_$][\\p{L}\\p{N}_$]*$"));
    if (!steps.isEmpty() && identifier.match(steps.first()).hasMatch()
        && !JSObjectHasProperty(ctx, asObject(start), Text(steps.first()))) {
        // Declared with let, const or class, so no property of the global object.
        start = evaluateScript(page, steps.takeFirst(), Text(page.inputName()), nullptr);
        if (!start)
            return {};
    }
    std::vector<JSValueRef> none(static_cast<std::size_t>(steps.size()), JSValueMakeUndefined(ctx));
    JSObjectRef list = JSObjectMakeArray(ctx, none.size(), none.data(), nullptr);
    for (int i = 0; i < steps.size(); ++i)
        JSObjectSetPropertyAtIndex(ctx, list, static_cast<unsigned>(i), makeString(ctx, steps[i]), nullptr);
    const JSValueRef names = page.prelude().call(page.prelude().propertyNames, nullptr, start,
        static_cast<JSValueRef>(list), JSValueMakeBoolean(ctx, isNova));
    if (!names)
        return {};
    QStringList found;
    const double count =
        JSValueToNumber(ctx, JSObjectGetProperty(ctx, asObject(names), Text("length"), nullptr), nullptr);
    for (unsigned i = 0; i < static_cast<unsigned>(count); ++i)
        found += stringOf(ctx, JSObjectGetPropertyAtIndex(ctx, asObject(names), i, nullptr));
    found.sort();
    return found;
}

} // namespace engine::jsc

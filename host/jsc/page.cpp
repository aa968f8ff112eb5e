#include "host/jsc/page.h"

#include "host/engine/replsource.h"

#include <QRegularExpression>

namespace engine::jsc {

namespace {

const Text& replName()
{
    static const Text name("repl");
    return name;
}

bool compiles(JSContextRef ctx, const QString& source)
{
    return JSCheckScriptSyntax(ctx, Text(source), replName(), 1, nullptr);
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
    const Text asMethod(QStringLiteral("({ async run() {") + body + QStringLiteral("\n}})"));
    const QString wrapped = QStringLiteral("(async function () {") + body + QStringLiteral("\n})");
    JSValueRef exception = nullptr;
    if (!JSCheckScriptSyntax(page.ctx(), asMethod, name, 1, &exception))
        return failTicket(page, ticket, exception);
    const JSValueRef function = evaluateScript(page, wrapped, name, &exception);
    if (!function)
        return failTicket(page, ticket, exception);
    page.prelude().call(page.prelude().run, nullptr, JSValueMakeNumber(page.ctx(), ticket), function);
}

void JscPage::evaluate(const QString& source, Done done)
{
    PageState& page = *m_state;
    const Entry entry(page);
    if (!entry)
        return;
    const int ticket = page.addTicket(std::move(done));
    const ReplSource plan =
        planReplSource(source, [&](const QString& script) { return compiles(page.ctx(), script); });
    if (!plan.declaration.isEmpty())
        return declareAwaited(ticket, plan.script, plan.declaration);
    JSValueRef exception = nullptr;
    const JSValueRef value = evaluateScript(page, plan.script, replName(), &exception);
    if (!value)
        return failTicket(page, ticket, exception);
    page.prelude().call(page.prelude().settle, nullptr, JSValueMakeNumber(page.ctx(), ticket), value);
}

// Awaits the initialiser first and then declares the variable in a script of its own: a declaration inside a
// function would be local to it.
void JscPage::declareAwaited(int ticket, const QString& awaited, const QString& declaration)
{
    PageState& page = *m_state;
    JSValueRef exception = nullptr;
    const JSValueRef promise = evaluateScript(page, awaited, replName(), &exception);
    if (!promise)
        return failTicket(page, ticket, exception);
    page.addContinuation(ticket, [&page, ticket, declaration](JSValueRef value) {
        JSContextRef ctx = page.ctx();
        JSObjectRef global = JSContextGetGlobalObject(ctx);
        const Text holder(QString::fromLatin1(ReplSource::awaitedName));
        JSValueRef failure = nullptr;
        JSObjectSetProperty(ctx, global, holder, value, kJSPropertyAttributeDontEnum, nullptr);
        const JSValueRef declared = evaluateScript(page, declaration, replName(), &failure);
        JSObjectDeleteProperty(ctx, global, holder, nullptr);
        if (!declared)
            return failTicket(page, ticket, failure);
        page.prelude().call(
            page.prelude().settle, nullptr, JSValueMakeNumber(ctx, ticket), JSValueMakeUndefined(ctx));
    });
    page.prelude().call(page.prelude().settleWith, nullptr, JSValueMakeNumber(page.ctx(), ticket), promise);
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

QStringList JscPage::propertyNames(const QString& path)
{
    PageState& page = *m_state;
    const Entry entry(page);
    if (!entry)
        return {};
    JSContextRef ctx = page.ctx();
    QStringList steps = path.split(QLatin1Char('.'), Qt::SkipEmptyParts);
    const bool isNova = !steps.isEmpty() && steps.first() == QLatin1String("NovaExtension");
    JSValueRef start = JSContextGetGlobalObject(ctx);
    static const QRegularExpression identifier(QStringLiteral("^[\\p{L}_$][\\p{L}\\p{N}_$]*$"));
    if (!steps.isEmpty() && identifier.match(steps.first()).hasMatch()
        && !JSObjectHasProperty(ctx, asObject(start), Text(steps.first()))) {
        // Declared with let, const or class, so no property of the global object.
        start = evaluateScript(page, steps.takeFirst(), replName(), nullptr);
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

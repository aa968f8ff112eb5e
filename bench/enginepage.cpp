#include "bench/enginepage.h"

#include <QEventLoop>

namespace bench {

namespace {

const QString& objectName()
{
    static const QString name = QStringLiteral("Bench");
    return name;
}

[[noreturn]] void failed(const engine::Outcome& outcome)
{
    qFatal("%s\n%s", qPrintable(outcome.text), qPrintable(outcome.stack));
}

} // namespace

EnginePage::EnginePage(ExtensionFactory factory)
    : m_core(vexlite::Core::start({}))
    , m_engine(engine::makeJscEngine())
{
    m_core.setFactories({ { objectName(), factory } });
    engine::PageHost host;
    host.uncaughtError = failed;
    m_page = m_engine->openPage({}, std::move(host));
}

EnginePage::~EnginePage()
{
    m_page.reset();
    m_engine.reset();
    vexlite::Core::stop();
}

void EnginePage::run(const QString& source)
{
    QEventLoop loop;
    m_page->run(source, QStringLiteral("bench.js"), [&](const engine::Outcome& outcome) {
        if (!outcome.ok)
            failed(outcome);
        loop.quit();
    });
    loop.exec();
}

vexlite::Ref<IJSExtentionObject> EnginePage::object()
{
    return m_core.bindObject(context(), objectName()).object;
}

} // namespace bench

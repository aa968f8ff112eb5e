// A suite that goes on without the library: every object is used by a page, the library is unloaded, and the
// JS core has nothing of it left. Then all of it once more.
#include "host/vexlite/core.h"
#include "host/vexlite/scriptvalues.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryFile>
#include <algorithm>
#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

class SilentPage final : public vexlite::ScriptPage {
public:
    bool createPromise(std::int64_t) override { return true; }
    void settlePromise(std::int64_t, JSPromiseState, const KJSVariant&) override { }
};

/// Has every object published and one of every class that others hand out made, as a page would.
void useAllObjects(vexlite::Core& core)
{
    SilentPage page;
    const JSContextEnv context = core.openPage(&page, {});
    std::vector<vexlite::BoundObject> held;
    for (const QString& name : core.objectNames()) {
        held.push_back(core.bindObject(context, name));
        EXPECT_TRUE(held.back().members) << name.toStdString();
    }
    EXPECT_FALSE(core.creatableClasses().isEmpty());
    for (const QString& name : core.creatableClasses())
        held.push_back(core.bindSubObject(context, core.createUninitialised(name).get()));
    const QString path = QStringLiteral("/proc/self/maps");
    const KJSVariant argument = KJSVariant::fromString(std::u16string_view(path.toStdU16String()));
    JSApiArguments arguments(&argument, 1);
    for (const vexlite::BoundObject& bound : held) {
        for (std::int32_t i = 0; i < bound.members->Count(); ++i) {
            KJSVariant result, exception;
            core.call(bound.object.get(), context, bound.members->Id(i),
                bound.members->Kind(i) == 0 ? JSAccess::Method : JSAccess::PropertyGet, arguments, result,
                exception);
        }
    }
    core.closePage(context);
}

/// A suite without a page of its own, into whose core the library is loaded.
class Suite : public testing::Test {
protected:
    ~Suite() override { vexlite::Core::stop(); }

    void load()
    {
        m_library = dlopen(LIBRARY, RTLD_NOW | RTLD_LOCAL);
        ASSERT_TRUE(m_library) << dlerror();
        void* entry = dlsym(m_library, "GetNovaExtensionJsApiObj");
        ASSERT_TRUE(entry);
        ExtensionFactoryMap factories;
        reinterpret_cast<void (*)(ExtensionFactoryMap*)>(entry)(&factories);
        core.setFactories(factories);
    }
    void unload()
    {
        dlclose(m_library);
        EXPECT_EQ(dlopen(LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr);
    }

private:
    int m_argc = 0;
    void* m_library = nullptr;
    const QCoreApplication m_application { m_argc, nullptr };

protected:
    vexlite::Core& core = vexlite::Core::start({});
    SilentPage page;
};

/// Calls a method that takes one argument.
KJSVariant answerOf(vexlite::Core& core, const JSContextEnv& context, const vexlite::BoundObject& bound,
    std::u16string_view member, const KJSVariant& argument)
{
    std::int32_t at = 0;
    while (bound.members->Name(at) != member)
        ++at;
    JSApiArguments arguments(&argument, 1);
    KJSVariant result, exception;
    EXPECT_EQ(core.call(bound.object.get(), context, bound.members->Id(at), JSAccess::Method, arguments,
                  result, exception),
        KR_OK);
    return result;
}

TEST_F(Suite, HasNothingLeftOfTheLibrary)
{
    for (int round = 0; round < 2; ++round) {
        ASSERT_NO_FATAL_FAILURE(load());
        useAllObjects(core);
        unload();
        EXPECT_EQ(core.creatableClasses(), QStringList());
        const vexlite::LiveCounts left = core.liveCounts();
        EXPECT_EQ(left.pages + left.listeners + left.promises, 0);
        core.setFactories({});
    }
}

/// Whether this process has a file open.
bool isOpen(const QString& file)
{
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    const QStringList names = descriptors.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System);
    return std::any_of(names.begin(), names.end(),
        [&](const QString& name) { return QFile::symLinkTarget(descriptors.filePath(name)) == file; });
}

TEST_F(Suite, ReadsNoFileForAPageThatHasGone)
{
    QTemporaryFile endless;
    ASSERT_TRUE(endless.open() && endless.resize(qint64 { 1 } << 40));
    const QString path = endless.fileName();
    endless.close();
    ASSERT_NO_FATAL_FAILURE(load());
    const JSContextEnv context = core.openPage(&page, {});
    {
        const vexlite::BoundObject files = core.bindObject(context, QStringLiteral("FileSystem"));
        ASSERT_TRUE(files.members);
        answerOf(core, context, files, u"getFileMd5", KJSVariant::fromString(path.toStdU16String()));
        QCoreApplication::processEvents();
        EXPECT_TRUE(isOpen(path));
    }
    core.closePage(context);
    QElapsedTimer patience;
    for (patience.start(); isOpen(path) && patience.elapsed() < 60'000;) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    EXPECT_FALSE(isOpen(path)) << "the file is still being read";
    unload();
}

TEST_F(Suite, GoesOnAfterUploadsThatEndedWithTheLibrary)
{
    ASSERT_NO_FATAL_FAILURE(load());
    const JSContextEnv context = core.openPage(&page, {});
    // One that is under way when the library goes, and one that was let go before.
    for (const bool starts : { true, false }) {
        const vexlite::BoundObject documents = core.bindObject(context, QStringLiteral("CloudDoc"));
        vexlite::Ref<IJSONValue> options = vexlite::makeScriptObject();
        options->SetString(QStringLiteral("filePath"), QStringLiteral("/none"));
        const KJSVariant handle = answerOf(
            core, context, documents, u"createUploadFileTask", KJSVariant::fromUnknown(options.release()));
        auto* sub = dynamic_cast<IJSSubObject*>(handle.raw().punkVal);
        ASSERT_TRUE(sub);
        const vexlite::BoundObject task = core.bindSubObject(context, sub->Object());
        if (starts)
            answerOf(core, context, task, u"start", {});
    }
    core.closePage(context);
    unload();
    QElapsedTimer goingOn;
    for (goingOn.start(); goingOn.elapsed() < 1500;)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
}

} // namespace

// Loads of a plugin that the test has in hand.
#include "suite/kplugin.h"
#include "tests/support/library.h"
#include "tests/support/rows.h"

#include <malloc.h>

namespace {

/// A plugin that is ready, and whose loads go on in the background.
struct FakePlugin final : KPlugin {
    std::function<int(unsigned, unsigned)> onLoad = [](unsigned, unsigned) { return LoadContinues; };
    std::function<void()> onState = [] {};
};

FakePlugin* s_plugin = nullptr;

FakePlugin& whole(KPlugin* plugin)
{
    return *static_cast<FakePlugin*>(plugin);
}

} // namespace

// A program's own definitions come before the suite's.
int KPlugin::load(unsigned option, unsigned mode)
{
    const auto onLoad = whole(this).onLoad; // it may destroy the plugin
    return onLoad(option, mode);
}
int KPlugin::state() const
{
    const auto onState = static_cast<const FakePlugin*>(this)->onState;
    onState();
    return StateReady;
}
QVariant KPlugin::getProp(const QString& name)
{
    return name == QLatin1String("itself") ? QVariant::fromValue<QObject*>(this) : QVariant(name);
}
QString KPlugin::resourceFilePath(const QString& relativePath)
{
    return QStringLiteral("/r/") + relativePath;
}
QString KPlugin::frameworkFilePath(const QString& relativePath)
{
    return QStringLiteral("/f/") + relativePath;
}
KPluginManager* KPluginManager::getInstance()
{
    static KPluginManager manager;
    return &manager;
}
KPlugin* KPluginManager::getPlugin(const QString&)
{
    return s_plugin;
}

namespace {

class Loads : public support::LibraryTest {
protected:
    Loads()
    {
        s_plugin = new FakePlugin;
        page.call("PluginManager", "getPlugin", "\"p\"");
        plugin = page.handedOut();
    }
    ~Loads() override
    {
        destroy();
        settle();
        EXPECT_EQ(handles(), 0);
    }

    static void destroy() { delete std::exchange(s_plugin, nullptr); }
    static void settle() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
    static int handles()
    {
        int count = 0;
        for (const QObject* child : qApp->children())
            count += qstrcmp(child->metaObject()->className(), "KApiPluginHandle") == 0 ? 1 : 0;
        return count;
    }

    /// The status of a load, or what it throws. Reports go to `notes`.
    std::string load(const QByteArray& options = "{}")
    {
        std::vector<KJSVariant> given = support::values(options);
        given.resize(1);
        given.push_back(support::function(page.context, 1, [this](const JSApiArguments& report) {
            notes << QString::fromStdString(support::json(report[0]));
            if (const auto called = std::exchange(onEvent, {}))
                called();
            return KR_OK;
        }));
        return page.call(plugin, "load", given);
    }

    vexlite::BoundObject plugin;
};

const char Progress[] = R"({"receivedBytes":1,"step":"Progress","totalBytes":4294967296})";
const char Failed[] = R"({"step":"Failed"})";

const struct OptionRow {
    const char* name;
    const char* options;
    std::string passed; ///< option and mode, or what is thrown
} OptionRows[] = {
    { "None", "{}", "0 0" },
    { "One", R"({"option": 1, "mode": 1})", "1 1" },
    { "Two", R"({"option": 2, "mode": 0})", "2 0" },
    { "Three", R"({"option": 3, "mode": 2})", "0 0" },
    { "Four", R"({"option": 4})", "4 0" },
    { "Seven", R"({"option": 7, "mode": 5})", "0 0" },
    { "Negative", R"({"option": -1, "mode": -1})", "0 0" },
    { "Large", R"({"option": 4294967297, "mode": 4294967297})", "0 0" },
    { "Strings", R"({"option": "2", "mode": "x"})", "2 0" },
    { "Nothing", "", "1 wrong parameters." },
    { "Null", "null", "1 wrong parameters." },
    { "Number", "2", "1 wrong parameters." },
    { "List", "[[]]", "1 wrong parameters." },
};

ROW_TEST(Loads, ArePassedOn, OptionRows)
{
    std::string passed;
    s_plugin->onLoad = [&](unsigned option, unsigned mode) {
        passed = std::to_string(option) + ' ' + std::to_string(mode);
        return 17; // one that only the suite knows
    };
    const std::string status = load(GetParam().options);
    EXPECT_EQ(status == "17" ? passed : status, GetParam().passed);
    EXPECT_EQ(handles(), 0);
}

const struct EndRow {
    const char* name;
    void (*end)();
    const char* report;
} EndRows[] = {
    { "Succeeded", [] { Q_EMIT s_plugin->sigSucceeded(); }, R"({"step":"Succeeded"})" },
    { "Failed", [] { Q_EMIT s_plugin->sigFailed(); }, Failed },
    { "Canceled", [] { Q_EMIT s_plugin->sigCanceled(); }, R"({"step":"Canceled"})" },
    { "Destroyed", [] { delete std::exchange(s_plugin, nullptr); }, Failed },
};

ROW_TEST(Loads, EndOnce, EndRows)
{
    for (const bool isPageClosed : { false, true }) {
        EXPECT_EQ(load(), "2");
        EXPECT_EQ(load(), "2");
        EXPECT_EQ(handles(), 2);
        if (isPageClosed) {
            plugin = {};
            page.close();
        }
        Q_EMIT s_plugin->sigProgress(1LL << 32, 1);
        // Whoever is notified runs the event loop, in which the plugin ends the load again.
        onEvent = [this] {
            onEvent = [] {
                settle();
                if (s_plugin)
                    Q_EMIT s_plugin->sigCanceled();
            };
        };
        EXPECT_EQ(handles(), 2) << "nothing has ended";
        GetParam().end();
        for (int again = 0; s_plugin && again < 2; ++again) {
            Q_EMIT s_plugin->sigProgress(2, 2);
            GetParam().end();
        }
        settle();
        EXPECT_EQ(handles(), 0);
        EXPECT_EQ(std::count(notes.begin(), notes.end(), QLatin1String(Progress)), 2);
        EXPECT_EQ(notes.size(), 4);
        EXPECT_EQ(notes.value(2).toStdString(), GetParam().report);
        notes.clear();
        if (!s_plugin)
            break;
    }
}

TEST_F(Loads, FailWhenAReportDestroysThePlugin)
{
    load();
    onEvent = [this] {
        destroy();
        EXPECT_EQ(page.call(plugin, "getProp"), "3 invalid plugin");
    };
    Q_EMIT s_plugin->sigProgress(1LL << 32, 1);
    EXPECT_EQ(heard(), std::string(Progress) + "; " + Failed);
}

TEST_F(Loads, OfAPluginThatGoesInACall)
{
    for (const int status : { 0, 2 }) {
        s_plugin->onLoad = [status](unsigned, unsigned) {
            destroy();
            return status;
        };
        EXPECT_EQ(load(), "4");
        EXPECT_EQ(load(), "3 invalid plugin") << "though it has options";
        EXPECT_EQ(load(""), "3 invalid plugin");
        s_plugin = new FakePlugin;
        page.call("PluginManager", "getPlugin", "\"p\"");
        plugin = page.handedOut();
    }
    EXPECT_EQ(page.call(plugin, "frameworkFilePath", support::values("\"a\"")), "\"/f/a\"");
    EXPECT_EQ(page.call(plugin, "getProp", support::values("\"itself\"")), "");
    s_plugin->onState = destroy;
    EXPECT_EQ(page.call(plugin, "resourceFilePath", support::values("\"a\"")), "3 invalid plugin");
}

} // namespace

int main(int argc, char** argv)
{
    // What the library still reads of a plugin that has gone is no longer what it was.
    mallopt(M_PERTURB, 0xa5);
    const QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

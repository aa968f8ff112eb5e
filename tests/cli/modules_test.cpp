// Scripts of other kinds than a file that is run once: modules, standard input, scripts that are watched.
#include "tests/cli/novahost.h"

#include <csignal>

namespace {

void writeModules(const QTemporaryDir& place)
{
    ASSERT_TRUE(QDir(place.path()).mkpath(QStringLiteral("lib")));
    writeFile(place, "lib/twice.js", "export const twice = (n) => 2 * n;\n");
    writeFile(place, "page.mjs", "import { twice } from './lib/twice.js';\nconsole.log(twice(21));\n");
    writeFile(place, "named.js", "export {};\nconsole.log(typeof NovaExtension.Log.logInfo);\n");
    writeFile(place, "later.js", "console.log((await import('./lib/twice.js')).twice(4));\n");
    writeFile(place, "missing.mjs", "import './lib/none.js';\n");
    writeFile(place, "lib/broken.js", "export const a = 1;\n  let = = 2;\n");
    writeFile(place, "lib/thrower.js", "export const f = () => { null.x; };\n");
    writeFile(place, "broken.mjs", "import './lib/broken.js';\n");
    writeFile(place, "inner.mjs", "import { f } from './lib/thrower.js';\nf();\n");
    writeFile(place, "export.mjs", "import { g } from './lib/thrower.js';\n");
    writeFile(place, "rejects.js", "NovaExtension.FileSystem.getFileMd5('/no/such');\n");
    writeFile(place, "thrower.mjs", "\n  throw new Error('of a module');\n");
    writeFile(place, "outside.js", "await import('../elsewhere.js');\n");
    writeFile(place, "words.js", "/*\nimport x from 'y';\n*/\nconsole.log(1);\n");
}

struct Row {
    const char* file;
    int bareCode;
    const char* bareText;
    int code;
    const char* text;
};

const Row Rows[] = {
    { "page.mjs", 2, "is a module", 0, "42" },
    { "named.js", 2, "--browser run", 0, "function" },
    { "later.js", 1, "hint: the bare script engine has no modules", 0, "8" },
    { "missing.mjs", 2, "is a module", 1, "lib/none.js" },
    { "broken.mjs", 2, "is a module", 1, "lib/broken.js:2:3\n  let = = 2;\n  ^\n" },
    { "inner.mjs", 2, "is a module", 1, "lib/thrower.js:1:31\nexport const f = " },
    { "export.mjs", 2, "is a module", 1, "named 'g'" },
    { "rejects.js", 1, "(in promise) Error: ", 1, "(in promise) Error: " },
    { "thrower.mjs", 2, "is a module", 1, "thrower.mjs:2:9" },
    { "outside.js", 1, "hint: ", 1, "Failed to fetch" },
    { "words.js", 0, "1", 0, "1" },
};

TEST(Modules, AreSaidToNeedTheBrowser)
{
    const QTemporaryDir place;
    writeModules(place);
    for (const Row& row : Rows) {
        const Ended ended = novahost({ QStringLiteral("run"), place.filePath(QLatin1String(row.file)) });
        EXPECT_EQ(ended.code, row.bareCode) << row.file;
        EXPECT_TRUE((ended.out + ended.errors).contains(QLatin1String(row.bareText)))
            << row.file << ": " << qPrintable(ended.errors);
    }
}

TEST(Modules, RunInBrowser)
{
    setUpBrowser();
    const QTemporaryDir place;
    writeModules(place);
    for (const Row& row : Rows) {
        const Ended ended = novahost(
            { QStringLiteral("--browser"), QStringLiteral("run"), place.filePath(QLatin1String(row.file)) });
        EXPECT_EQ(ended.code, row.code) << row.file;
        EXPECT_TRUE((ended.out + ended.errors).contains(QLatin1String(row.text)))
            << row.file << ": " << qPrintable(ended.out + ended.errors);
    }
    const QString before = QDir::currentPath();
    QDir::setCurrent(place.path());
    const Ended ended = novahost({ QStringLiteral("--browser"), QStringLiteral("eval"),
        QStringLiteral("import('./lib/twice.js').then((module) => module.twice(3))") });
    QDir::setCurrent(before);
    EXPECT_EQ(ended.out, QStringLiteral("6\n")) << qPrintable(ended.errors);
}

TEST(StandardInput, IsRunWithArguments)
{
    const Ended ended = novahost({ QStringLiteral("run"), QStringLiteral("-"), QStringLiteral("--one") },
        "console.log(process.argv[2]);\nnull.x;\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, QStringLiteral("--one\n"));
    EXPECT_TRUE(ended.errors.contains(QStringLiteral("[stdin]:2:"))) << qPrintable(ended.errors);
}

/// Reads what a process prints to one of its streams until a line is there.
bool waitForLine(QProcess& process, const QByteArray& line)
{
    QByteArray seen;
    while (!seen.contains(line)) {
        if (!process.bytesAvailable() && !process.waitForReadyRead(PatienceMs))
            return false;
        seen += process.readAll();
    }
    return true;
}

TEST(Watching, RunsAgainWhatHasChanged)
{
    const QTemporaryDir place;
    writeFile(place, "script.js", "console.log('first');\n");
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(NOVAHOST),
        { QStringLiteral("run"), QStringLiteral("--watch"), place.filePath(QStringLiteral("script.js")),
            QStringLiteral("--watch") });
    ASSERT_TRUE(waitForLine(process, "ended with exit code 0"));
    // Written anew, with a run that does not end by itself and gets its own argument.
    writeFile(place, "script.js",
        "console.log('second', process.argv[2]); await new Promise(() => setInterval(() => {}, 1000));\n");
    ASSERT_TRUE(waitForLine(process, "second --watch"));
    // Replaced, as many editors do.
    writeFile(place, "other.js", "console.log('third'); exit(3);\n");
    ASSERT_EQ(std::rename(qPrintable(place.filePath(QStringLiteral("other.js"))),
                  qPrintable(place.filePath(QStringLiteral("script.js")))),
        0);
    ASSERT_TRUE(waitForLine(process, "ended with exit code 3"));
    kill(static_cast<pid_t>(process.processId()), SIGINT);
    EXPECT_EQ(endOf(process).code, 130);
}

} // namespace

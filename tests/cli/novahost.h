// novahost as a process: started with its arguments, and how it ended.
#pragma once

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <unistd.h>

constexpr int PatienceMs = 60'000;

struct Ended {
    int code;
    QString out;
    QString errors;
};

/// For the browser engine in all processes from now on: no display, no sandbox where it does not work, nothing of Qt's own.
inline void setUpBrowser()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "default.info=false");
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
}

inline Ended endOf(QProcess& process)
{
    EXPECT_TRUE(process.waitForFinished(PatienceMs));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return { process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
        QString::fromUtf8(process.readAllStandardError()) };
}

/// Words are separated by blanks, but not inside double quotes. SCRIPT and the like stand for files of a
/// place.
inline QStringList wordsOf(const QString& line, const QTemporaryDir& place)
{
    QStringList words = QProcess::splitCommand(line);
    for (const auto& [name, path] : { std::pair("SCRIPT", place.filePath(QStringLiteral("script.js"))),
             std::pair("PROFILE", place.filePath(QStringLiteral("profile.json"))),
             std::pair("TYPO", place.filePath(QStringLiteral("typo.json"))),
             std::pair("DATA", place.filePath(QStringLiteral("data"))),
             std::pair("TOUR", QStringLiteral(TOUR)),
             std::pair("OTHER_LIBRARY", QStringLiteral(OTHER_LIBRARY)) })
        words.replaceInStrings(QLatin1String(name), path);
    return words;
}

inline Ended novahost(const QStringList& arguments, const QByteArray& input = {})
{
    QProcess process;
    process.start(QStringLiteral(NOVAHOST), arguments);
    process.write(input);
    process.closeWriteChannel();
    return endOf(process);
}

inline void writeFile(const QTemporaryDir& place, const char* name, const char* text)
{
    QFile file(place.filePath(QLatin1String(name)));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) == qstrlen(text));
}

inline QByteArray readFile(const QTemporaryDir& place, const char* name)
{
    QFile file(place.filePath(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// novahost as a process: started with its arguments, and how it ended.
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <gtest/gtest.h>

struct Ended {
    int code;
    QString out;
    QString errors;
};

inline Ended endOf(QProcess& process)
{
    EXPECT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return { process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
        QString::fromUtf8(process.readAllStandardError()) };
}

inline Ended novahost(const QStringList& arguments, const QByteArray& input = {})
{
    QProcess process;
    process.start(QStringLiteral(NOVAHOST), arguments);
    process.write(input);
    process.closeWriteChannel();
    return endOf(process);
}

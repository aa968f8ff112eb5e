// ServiceTest: a test with a data directory of its own and the default profile. caseName: the name of a
// table's row.
#pragma once

#include "host/profile/directories.h"
#include "host/profile/profile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <string>

class ServiceTest : public testing::Test {
protected:
    ServiceTest()
    {
        EXPECT_EQ(profile::setDataDirectory(m_directory.path()), QString());
        useProfile("{}");
    }
    ~ServiceTest() override { profile::setDataDirectory({}); }

    QString path(const char* below) const { return m_directory.filePath(QString::fromUtf8(below)); }

    QByteArray read(const char* below) const
    {
        QFile file(path(below));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void write(const char* below, const QByteArray& text) const
    {
        QFile file(path(below));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    }

    /// Loads a profile; the error of it, without the file's name.
    QString loadProfile(const QByteArray& text) const
    {
        write("profile.json", text);
        const QString prefix = QStringLiteral("profile \"%1\": ").arg(path("profile.json"));
        return profile::load(path("profile.json")).remove(prefix);
    }
    void useProfile(const QByteArray& text) const { EXPECT_EQ(loadProfile(text).toStdString(), ""); }

private:
    QTemporaryDir m_directory;
};

template <typename Case> std::string caseName(const testing::TestParamInfo<Case>& info)
{
    return info.param.name;
}

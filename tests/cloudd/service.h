// The service as its callers see it, each test with one of its own.
#pragma once

#include "tests/cloudd/fixture.h"

#include <gtest/gtest.h>

namespace cloudd_test {

constexpr qint64 Slow = 1'000'000; ///< bytes a second: an upload is under way when it is looked at

struct Place {
    const QTemporaryDir temporary { placeTemplate() };
};

class CloudService : public testing::Test, protected Place, protected World {
protected:
    CloudService()
        : World(temporary.path())
    {
        EXPECT_EQ(error, QString());
        onNotice = [this](const std::string&, const QMap<QString, QString>& actions) { last = actions; };
    }

    std::string uploaded(
        const char* name, const std::string& bytes, const char* folder = "/", const char* rename = "false")
    {
        return outcome(upload(source(name, bytes), folder, rename));
    }
    std::shared_ptr<Answered<SyncFolderResult>> beginSync(
        const std::string& folder, int depth, const char* group = "")
    {
        SyncFolderArg request;
        request.userId = "ann";
        request.groupId = group;
        request.fileId = folder;
        request.depth = depth;
        return send<SyncFolderResult>("syncFolder", request);
    }
    Answered<SyncFolderResult> sync(const std::string& folder, int depth, const char* group = "")
    {
        const auto synced = beginSync(folder, depth, group);
        until([&] { return synced->came; });
        return *synced;
    }
    Answered<SaveToCloudDirResult> save(
        const char* folder, const char* name, int type, Texts extra = {}, const char* group = "")
    {
        SaveToCloudDirArg request;
        request.userId = "ann";
        request.groupId = group;
        request.fileId = folder;
        request.fname = name;
        request.itemType = type;
        request.extraParam = std::move(extra);
        return ask<SaveToCloudDirResult>("saveToCloudDir", request);
    }
    Answered<OpenVirtualCloudDiskResult> openFolder(const std::string& path, bool create = false)
    {
        OpenVirtualCloudDiskArg request;
        request.userId = "ann";
        request.cloudPath = path;
        request.createWhenNoExists = create;
        return ask<OpenVirtualCloudDiskResult>("openVirtualCloudDisk", request);
    }

    QMap<QString, QString> last; ///< notice
};

} // namespace cloudd_test

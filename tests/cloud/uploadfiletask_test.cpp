// An upload, with a service that replies to each request from a list.
#include "cloud/uploadfiletask.h"
#include "tests/support/cloudservice.h"
#include "tests/support/rows.h"

#include <QElapsedTimer>

namespace {

using jsapi::KUploadFileTask;

/// `text` so often, with commas between.
std::string times(int count, const std::string& text)
{
    std::string all = text;
    while (--count > 0)
        all += ',' + text;
    return all;
}

/// Replies in the next turn of the event loop; without a reply left it takes requests and never replies.
class Upload : public testing::Test {
protected:
    Upload()
    {
        service.onRequest = [this](support::CloudRequest& request) { onRequest(request); };
        listen(&KUploadFileTask::sigStarted, "started ");
        listen(&KUploadFileTask::sigProgressChanged, "progress ");
        listen(&KUploadFileTask::sigFinished, "finished ");
        EXPECT_EQ(task->findChild<QTimer*>()->interval(), 1000);
        task->findChild<QTimer*>()->setInterval(0);
    }

    void listen(void (KUploadFileTask::*signal)(const QVariantMap&), const char* name)
    {
        QObject::connect(task.get(), signal, [this, name](const QVariantMap& map) {
            const auto text = [&](const char* key) { return map.value(QLatin1String(key)).toString(); };
            const QString error = text("uploadErrorCode");
            events << QLatin1String(name) + text("taskId") + u' ' + text("status")
                    + (error.isEmpty() ? error : QStringLiteral(" error ") + error);
        });
    }

    /// Replies to a method, separated by commas: the id of the task or its status, "!" in front when the
    /// request has failed, "@" and a state other than 0 behind.
    void replies(const char* method, const std::string& texts)
    {
        left[QLatin1String(method)] = QString::fromStdString(texts).split(u',');
    }

    void onRequest(support::CloudRequest& request)
    {
        const LarkIpcArg& envelope = request.envelope();
        const QString method = QString::fromStdString(envelope.method);
        const auto taskId = envelope.argMap.find("taskId");
        asked << method + u' '
                + QString::fromStdString(envelope.argMap.at("userId")
                    + (taskId == envelope.argMap.end() ? "" : " " + taskId->second));
        if (method == refused)
            return request.id.clear();
        QString reply = left.value(method).isEmpty() ? QString() : left[method].takeFirst();
        if (reply.isNull() && (method != QLatin1String("getTaskState") || otherwise.isEmpty()))
            return;
        if (reply.isNull())
            reply = otherwise;
        const bool ok = !reply.startsWith(u'!');
        const QString text = reply.section(u'@', 0, 0).mid(ok ? 0 : 1);
        const std::string key = method == QLatin1String("getTaskState") ? "status" : "taskId";
        request.replyState(
            ok, reply.section(u'@', 1).toInt(), { { key, text.toStdString() } }, Qt::QueuedConnection);
    }

    void runUntil(const std::function<bool()>& done)
    {
        QElapsedTimer patience;
        patience.start();
        while (!done() && patience.elapsed() < 60000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
        for (int turn = 0; turn < 20; ++turn)
            QCoreApplication::processEvents();
    }
    void runToEnd()
    {
        runUntil([this] { return !events.filter(QStringLiteral("finished")).isEmpty(); });
    }
    static std::string joined(QStringList& texts)
    {
        return std::exchange(texts, {}).join(u',').toStdString();
    }

    support::FakeCloudService service;
    std::unique_ptr<KUploadFileTask> task = std::make_unique<KUploadFileTask>(
        QMap<QString, QString> { { QStringLiteral("userId"), QStringLiteral("u") } });
    QMap<QString, QStringList> left; ///< replies by methods
    QString otherwise;               ///< the reply to polls that have none left
    QString refused;                 ///< a method
    QStringList asked;
    QStringList events;
};

struct UploadRow {
    const char* name;
    const char* begun;
    std::string polls;
    std::string events;
};

const UploadRow Uploads[] = {
    { "Done", "t", "0,3,1", "started t ,progress t 0,progress t 3,progress t 1,finished t 1" },
    { "Failed", "t", "2", "started t ,progress t 2,finished t 2" },
    { "Cancelled", "t", "6", "started t ,progress t 6,finished t 6" },
    { "StatusesThatAreNoNumbersInBetween", "t", "x,99999999999,1",
        "started t ,progress t x,progress t 99999999999,progress t 1,finished t 1" },
    { "NeverANumber", "t", times(10, "1x"), "started t ," + times(10, "progress t 1x") + ",finished t -1" },
    { "AnswersInBetween", "t", times(9, "y") + ",3," + times(9, "y") + ",1",
        "started t ," + times(9, "progress t y") + ",progress t 3," + times(9, "progress t y")
            + ",progress t 1,finished t 1" },
    { "APollThatFailsSaysNothing", "t", "!1@3,2",
        "started t ,progress t 1 error 3,progress t 2,finished t 2" },
    { "OnlyPollsThatFail", "t", times(10, "!3"),
        "started t ," + times(10, "progress t 3") + ",finished t -1" },
    { "NotBegun", "t@5", "", "finished t -1 error 5" },
    { "BegunWithoutATask", "", "", "finished  -1" },
    { "RequestFailed", "!t", "", "finished t -1" },
    { "ServiceHangs", "t", "", "started t ,finished t -1" },
};

ROW_TEST(Upload, Ends, Uploads)
{
    replies("uploadFileToCloud", GetParam().begun);
    if (!GetParam().polls.empty())
        replies("getTaskState", GetParam().polls);
    EXPECT_TRUE(task->start());
    EXPECT_FALSE(task->start()) << "it is under way";
    runToEnd();
    EXPECT_EQ(joined(events), GetParam().events);
    EXPECT_FALSE(task->findChild<QTimer*>()->isActive());
    EXPECT_LE(asked.count(QStringLiteral("getTaskState u t")), 20);
}

TEST_F(Upload, IsCancelledAndStartedAfresh)
{
    replies("uploadFileToCloud", "t,t2");
    otherwise = QStringLiteral("3");
    EXPECT_FALSE(task->cancel()) << "there is nothing to cancel";
    EXPECT_TRUE(task->start());
    runUntil([&] { return asked.contains(QStringLiteral("getTaskState u t")); });
    EXPECT_TRUE(task->cancel());
    asked.clear();
    EXPECT_TRUE(task->restart());
    EXPECT_EQ(joined(asked), "cancelTransferTask u t,uploadFileToCloud u");
    replies("getTaskState", "1");
    events.clear();
    runToEnd();
    EXPECT_EQ(joined(events), "started t2 ,progress t2 1,finished t2 1") << "the first one is heard, too";
    EXPECT_FALSE(task->cancel()) << "it has ended";
}

TEST_F(Upload, GoesOnWhenItsRestartIsRefused)
{
    replies("uploadFileToCloud", "t");
    otherwise = QStringLiteral("3");
    task->start();
    runUntil([&] { return events.size() > 1; });
    refused = QStringLiteral("uploadFileToCloud");
    EXPECT_FALSE(task->restart());
    replies("getTaskState", "6");
    runToEnd();
    EXPECT_EQ(events.last(), QStringLiteral("finished t 6"));
    EXPECT_FALSE(task->start());
}

TEST_F(Upload, IsNotLostByWhatComesBeforeItHasBegun)
{
    replies("uploadFileToCloud", "t,t2");
    replies("getTaskState", "6");
    EXPECT_TRUE(task->start());
    EXPECT_TRUE(task->restart());
    EXPECT_TRUE(task->cancel());
    runToEnd();
    EXPECT_EQ(joined(asked),
        "uploadFileToCloud u,uploadFileToCloud u,cancelTransferTask u t,cancelTransferTask u t2,getTaskState "
        "u t2");
    EXPECT_EQ(joined(events), "started t2 ,progress t2 6,finished t2 6");
}

TEST_F(Upload, IsRestartedByAListener)
{
    replies("uploadFileToCloud", "t,t2");
    replies("getTaskState", "2,1");
    bool restarted = false;
    QObject::connect(task.get(), &KUploadFileTask::sigProgressChanged,
        [&](const QVariantMap&) { EXPECT_TRUE(std::exchange(restarted, true) || task->restart()); });
    task->start();
    runToEnd();
    EXPECT_EQ(joined(events), "started t ,progress t 2,started t2 ,progress t2 1,finished t2 1");
}

TEST_F(Upload, EndsWhenTheServiceHasGone)
{
    replies("uploadFileToCloud", "t");
    task->start();
    runUntil([&] { return !events.isEmpty(); });
    support::cloudIpc = nullptr;
    runToEnd();
    EXPECT_EQ(joined(events), "started t ,finished t -1");
    EXPECT_FALSE(task->start());
}

} // namespace

// An upload, with a service that answers each request at once from a list.
#include "cloud/uploadfiletask.h"
#include "suite/kcoreapplication.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <gtest/gtest.h>

namespace {

using Values = std::map<std::string, std::string>;

struct Answer {
    bool ok = true;
    std::int32_t state = 0;
    Values values;
};

/// Replies in the next turn of the event loop; without an answer left it takes requests and never replies.
class ListService final : public IKCloudIpcService {
public:
    QString invoke(
        const QString&, const KCloudIpcArg& argument, QObject* receiver, const QString& replySlot) override
    {
        const auto& envelope = *static_cast<const LarkIpcArg*>(argument.message);
        asked << QString::fromStdString(envelope.method + " " + envelope.argMap.at("userId")
            + (envelope.argMap.count("taskId") ? " " + envelope.argMap.at("taskId") : std::string()));
        if (refused.contains(QString::fromStdString(envelope.method)))
            return {};
        const QString id = QString::number(++m_ids);
        std::vector<Answer>& left = answers[envelope.method];
        if (left.empty() && (!stillRunning || envelope.method != "getTaskState"))
            return id;
        LarkIpcResult result;
        const Answer answer = left.empty() ? Answer { true, 0, { { "status", "3" } } } : left.front();
        result.state = answer.state;
        result.resultMap = answer.values;
        const bool ok = answer.ok;
        if (!left.empty())
            left.erase(left.begin());
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [=, receiver = QPointer<QObject>(receiver), slot = replySlot.toLatin1()] {
                if (receiver)
                    QMetaObject::invokeMethod(receiver, slot.constData(), Q_ARG(bool, ok), Q_ARG(QString, id),
                        Q_ARG(LarkIpcResult, result));
            },
            Qt::QueuedConnection);
        return id;
    }

    std::map<std::string, std::vector<Answer>> answers;
    bool stillRunning = false; ///< what polls are told that have no answer left
    QStringList refused;
    QStringList asked;

private:
    int m_ids = 0;
};

ListService* offered = nullptr;

} // namespace

IKCloudIpcService* KCoreApplication::cloudIpcService()
{
    return offered;
}

namespace {

class Upload : public testing::Test {
protected:
    Upload()
        : m_application(m_argc, nullptr)
        , task(std::make_unique<KUploadFileTask>(
              QMap<QString, QString> { { QStringLiteral("userId"), QStringLiteral("u") } }))
    {
        offered = &service;
        const auto note = [this](auto signal, const char* name) {
            QObject::connect(task.get(), signal, [this, name](const QVariantMap& map) {
                const QString error = map.value(QStringLiteral("uploadErrorCode")).toString();
                events << QStringLiteral("%1 %2 %3%4")
                              .arg(QLatin1String(name), map.value(QStringLiteral("taskId")).toString(),
                                  map.value(QStringLiteral("status")).toString(),
                                  error.isEmpty() ? error : QStringLiteral(" error ") + error);
            });
        };
        note(&KUploadFileTask::sigStarted, "started");
        note(&KUploadFileTask::sigProgressChanged, "progress");
        note(&KUploadFileTask::sigFinished, "finished");
        auto* timer = task->findChild<QTimer*>();
        EXPECT_EQ(timer->interval(), 1000);
        timer->setInterval(0);
    }
    ~Upload() override { offered = nullptr; }

    void runUntil(const std::function<bool()>& done)
    {
        QElapsedTimer patience;
        patience.start();
        while (!done() && patience.elapsed() < 20000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
        for (int turn = 0; turn < 20; ++turn)
            QCoreApplication::processEvents();
    }
    bool hasFinished() const { return events.filter(QStringLiteral("finished")).size() > 0; }

    int m_argc = 0;
    QCoreApplication m_application;
    ListService service;
    std::unique_ptr<KUploadFileTask> task;
    QStringList events;
};

struct UploadCase {
    const char* name;
    Answer begun;
    std::vector<Answer> polls;
    QStringList expected;
};

const Answer Begun { true, 0, { { "taskId", "t" } } };

Answer status(const std::string& text)
{
    return { true, 0, { { "status", text } } };
}

QStringList words(const char* list)
{
    return QString::fromLatin1(list).split(QLatin1Char(','));
}

std::vector<Answer> times(int count, const Answer& answer)
{
    return std::vector<Answer>(static_cast<std::size_t>(count), answer);
}

std::vector<Answer> operator+(std::vector<Answer> first, const std::vector<Answer>& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

QStringList repeated(int count, const QString& text)
{
    QStringList list;
    while (count-- > 0)
        list << text;
    return list;
}

class UploadEnds : public Upload, public testing::WithParamInterface<UploadCase> { };

TEST_P(UploadEnds, WithTheseEvents)
{
    service.answers["uploadFileToCloud"] = { GetParam().begun };
    service.answers["getTaskState"] = GetParam().polls;
    EXPECT_TRUE(task->start());
    EXPECT_FALSE(task->start()) << "it is under way";
    runUntil([&] { return hasFinished(); });
    EXPECT_EQ(events, GetParam().expected) << events.join(QLatin1Char(',')).toStdString();
    EXPECT_FALSE(task->findChild<QTimer*>()->isActive());
}

Answer begun(bool ok, std::int32_t state, Values values)
{
    Answer answer;
    answer.ok = ok;
    answer.state = state;
    answer.values = std::move(values);
    return answer;
}

const std::vector<UploadCase> Cases {
    { "Done", Begun, { status("0"), status("3"), status("1") },
        words("started t ,progress t 0,progress t 3,progress t 1,finished t 1") },
    { "Failed", Begun, { status("2") }, words("started t ,progress t 2,finished t 2") },
    { "Cancelled", Begun, { status("6") }, words("started t ,progress t 6,finished t 6") },
    { "StatusesThatAreNoNumbersInBetween", Begun,
        { status("x"), status(""), status("99999999999"), status("1") },
        words("started t ,progress t x,progress t ,progress t 99999999999,progress t 1,finished t 1") },
    { "NeverANumber", Begun, times(10, status("1x")),
        words("started t ") + repeated(10, QStringLiteral("progress t 1x")) + words("finished t -1") },
    { "AnswersInBetween", Begun,
        times(9, status("")) + std::vector { status("3") } + times(9, status(""))
            + std::vector { status("1") },
        words("started t ") + repeated(9, QStringLiteral("progress t ")) + words("progress t 3")
            + repeated(9, QStringLiteral("progress t ")) + words("progress t 1,finished t 1") },
    { "APollThatFailsSaysNothing", Begun, { begun(false, 3, { { "status", "1" } }), status("2") },
        words("started t ,progress t 1 error 3,progress t 2,finished t 2") },
    { "OnlyPollsThatFail", Begun, times(10, begun(false, 0, { { "status", "3" } })),
        words("started t ") + repeated(10, QStringLiteral("progress t 3")) + words("finished t -1") },
    { "NotBegun", begun(true, 5, { { "taskId", "t" } }), {}, words("finished t -1 error 5") },
    { "BegunWithoutATask", begun(true, 0, {}), {}, words("finished  -1") },
    { "RequestFailed", begun(false, 0, { { "taskId", "t" } }), {}, words("finished t -1") },
};

INSTANTIATE_TEST_SUITE_P(
    Statuses, UploadEnds, testing::ValuesIn(Cases), [](const auto& info) { return info.param.name; });

TEST_F(Upload, IsCancelledAndStartedAfresh)
{
    service.answers["uploadFileToCloud"] = { Begun, { true, 0, { { "taskId", "t2" } } } };
    service.stillRunning = true;
    EXPECT_FALSE(task->cancel()) << "there is nothing to cancel";
    EXPECT_TRUE(task->start());
    runUntil([&] { return service.asked.contains(QStringLiteral("getTaskState u t")); });
    EXPECT_TRUE(task->cancel());
    service.asked.clear();
    EXPECT_TRUE(task->restart());
    EXPECT_EQ(service.asked, words("cancelTransferTask u t,uploadFileToCloud u"));
    service.answers["getTaskState"] = { status("1") };
    events.clear();
    runUntil([&] { return hasFinished(); });
    EXPECT_EQ(events, words("started t2 ,progress t2 1,finished t2 1")) << "the first one is heard, too";
    EXPECT_FALSE(task->cancel()) << "it has ended";
}

TEST_F(Upload, GoesOnWhenItsRestartIsRefused)
{
    service.answers["uploadFileToCloud"] = { Begun };
    service.stillRunning = true;
    task->start();
    runUntil([&] { return events.size() > 1; });
    service.refused << QStringLiteral("uploadFileToCloud");
    EXPECT_FALSE(task->restart());
    service.answers["getTaskState"] = { status("6") };
    runUntil([&] { return hasFinished(); });
    EXPECT_EQ(events.last(), QStringLiteral("finished t 6"));
    EXPECT_FALSE(task->start());
}

TEST_F(Upload, IsNotLostByWhatComesBeforeItHasBegun)
{
    service.answers["uploadFileToCloud"] = { Begun, { true, 0, { { "taskId", "t2" } } } };
    service.answers["getTaskState"] = { status("6") };
    EXPECT_TRUE(task->start());
    EXPECT_TRUE(task->restart());
    EXPECT_TRUE(task->cancel());
    EXPECT_EQ(service.asked, words("uploadFileToCloud u,uploadFileToCloud u"));
    service.asked.clear();
    runUntil([&] { return hasFinished(); });
    EXPECT_EQ(service.asked, words("cancelTransferTask u t,cancelTransferTask u t2,getTaskState u t2"));
    EXPECT_EQ(events, words("started t2 ,progress t2 6,finished t2 6"));
}

TEST_F(Upload, IsRestartedByAListener)
{
    service.answers["uploadFileToCloud"] = { Begun, { true, 0, { { "taskId", "t2" } } } };
    service.answers["getTaskState"] = { status("2"), status("1") };
    bool restarted = false;
    QObject::connect(task.get(), &KUploadFileTask::sigProgressChanged, [&](const QVariantMap&) {
        if (!std::exchange(restarted, true)) {
            EXPECT_TRUE(task->restart());
        }
    });
    task->start();
    runUntil([&] { return hasFinished(); });
    EXPECT_EQ(events, words("started t ,progress t 2,started t2 ,progress t2 1,finished t2 1"));
}

TEST_F(Upload, EndsWhenTheServiceHasGone)
{
    service.answers["uploadFileToCloud"] = { Begun };
    task->start();
    runUntil([&] { return !events.isEmpty(); });
    offered = nullptr;
    runUntil([&] { return hasFinished(); });
    EXPECT_EQ(events, words("started t ,finished t -1"));
    EXPECT_FALSE(task->start());
}

TEST_F(Upload, EndsWhenTheServiceHangs)
{
    service.answers["uploadFileToCloud"] = { Begun };
    task->start();
    runUntil([&] { return hasFinished(); });
    EXPECT_EQ(events, words("started t ,finished t -1"));
    EXPECT_EQ(service.asked.count(QStringLiteral("getTaskState u t")), 10);
}

} // namespace

// SPDX-License-Identifier: MIT
// A worker that does not end when it is killed, or is never ready. Times are zero or endless, so
// that no test waits.
#include "service/worker/supervisor.h"

#include <gmock/gmock.h>

#include <vector>

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace agent::service {

using std::chrono::hours;
using std::chrono::milliseconds;

// A worker that does only what the test makes it do.
class ManualWorker : public Worker {
  public:
    void start(WorkerListener &listener) override
    {
        listener_ = &listener;
        ++starts;
    }
    void send(std::string_view line) override { sent.emplace_back(line); }
    void finish() override { asked.emplace_back("finish"); }
    void terminate() override { asked.emplace_back("terminate"); }
    void kill() override { asked.emplace_back("kill"); }
    bool can_be_killed() const override { return is_process; }

    void say(std::string_view line) { listener_->on_worker_line(line); }
    void be_ready() { say(R"({"id":"ready","result":0,"reply":{}})"); }
    void end() { listener_->on_worker_end({"was killed", 9, std::nullopt}); }

    bool is_process = true;
    int starts = 0;
    std::vector<std::string> sent;
    std::vector<std::string> asked;

  private:
    WorkerListener *listener_ = nullptr;
};

class Listener : public SupervisorListener {
  public:
    void on_answer(std::string_view line) override { answers.emplace_back(line); }
    void on_no_answer(Code code, const std::string &) override
    {
        answers.emplace_back(name_of(code));
    }
    void on_event(std::string_view name, std::string_view) override { events.emplace_back(name); }
    void on_change() override {}
    void on_no_worker(const std::string &, int) override {}
    void on_stopped() override { has_stopped = true; }

    std::vector<std::string> answers;
    std::vector<std::string> events;
    bool has_stopped = false;
};

class SupervisorTest : public testing::Test {
  protected:
    SupervisorTest()
    {
        auto made = std::make_unique<ManualWorker>();
        worker = made.get();
        supervisor.emplace(loop, std::move(made), listener);
    }

    // Runs the loop until the condition holds.
    template <class Condition> void await(Condition condition)
    {
        while (!condition()) {
            loop.restart();
            ASSERT_GT(loop.run_one(), 0U) << "nothing is left to wait for";
        }
    }

    static WorkerTimes endless() { return {hours(24), hours(24), hours(24), hours(24), hours(24)}; }

    static Request request()
    {
        Request request;
        request.id = "1";
        request.name = "STUCK";
        request.line = R"({"id":1,"command":"STUCK"})";
        return request;
    }

    boost::asio::io_context loop;
    Listener listener;
    ManualWorker *worker = nullptr;
    std::optional<Supervisor> supervisor;
};

TEST_F(SupervisorTest, RefusesRequestsWhileAKilledWorkerDoesNotEnd)
{
    WorkerTimes times = endless();
    times.kill = milliseconds(0);
    supervisor->set_times(times);
    supervisor->start();
    worker->be_ready();
    supervisor->run(request(), milliseconds(0));
    await([&] { return !listener.answers.empty(); });
    EXPECT_THAT(listener.answers, ElementsAre("timeout")) << "the client is answered all the same";
    EXPECT_THAT(worker->asked, ElementsAre("kill"));
    EXPECT_EQ(supervisor->refusal(), "");

    await([&] { return !supervisor->refusal().empty(); });
    EXPECT_EQ(supervisor->refusal(), "the worker was killed and has not ended yet");
    EXPECT_EQ(worker->starts, 1) << "never two at a time";

    worker->end();
    EXPECT_EQ(worker->starts, 2);
    worker->be_ready();
    EXPECT_EQ(supervisor->refusal(), "");
    EXPECT_TRUE(supervisor->is_idle());
}

TEST_F(SupervisorTest, EndsWithoutAWorkerThatDoesNotEnd)
{
    WorkerTimes times = endless();
    times.kill = milliseconds(0);
    times.finish = milliseconds(0);
    supervisor->set_times(times);
    supervisor->start();
    worker->be_ready();
    supervisor->run(request(), hours(24));
    supervisor->stop();
    await([&] { return listener.has_stopped; });
    EXPECT_THAT(worker->asked, ElementsAre("finish", "terminate", "kill"));
    EXPECT_THAT(listener.answers, ElementsAre("outcome-unknown"));
    worker->end(); // while the last answers are written
    EXPECT_EQ(worker->starts, 1);
}

TEST_F(SupervisorTest, RefusesRequestsUntilALateWorkerIsReady)
{
    WorkerTimes times = endless();
    times.start = milliseconds(0);
    supervisor->set_times(times);
    supervisor->start();
    await([&] { return !supervisor->refusal().empty(); });
    EXPECT_THAT(supervisor->refusal(), HasSubstr("has not been ready"));
    times.start = hours(24);
    supervisor->set_times(times);
    worker->end();
    EXPECT_EQ(worker->starts, 2);
    EXPECT_THAT(supervisor->refusal(), HasSubstr("has not been ready")) << "until it is";
    worker->be_ready();
    EXPECT_EQ(supervisor->refusal(), "");
    EXPECT_THAT(listener.events, ElementsAre("worker.crashed", "worker.started"));
}

// A second one would run beside it.
TEST_F(SupervisorTest, WaitsForALateWorkerThatCannotBeKilled)
{
    WorkerTimes times = endless();
    times.start = milliseconds(0);
    supervisor->set_times(times);
    worker->is_process = false;
    supervisor->start();
    await([&] { return !supervisor->refusal().empty(); });
    EXPECT_THAT(supervisor->refusal(), EndsWith("has not been ready within 0 seconds"));
    EXPECT_THAT(worker->asked, IsEmpty());
    worker->be_ready();
    EXPECT_EQ(supervisor->refusal(), "");
    EXPECT_TRUE(supervisor->is_idle());
    EXPECT_EQ(worker->starts, 1);
}

TEST_F(SupervisorTest, StopsWithTheAnswerToARequestWithoutAName)
{
    supervisor->set_times(endless());
    supervisor->start();
    worker->be_ready();
    Request notice;
    notice.id = "1";
    notice.subject = Subject::kNotice;
    supervisor->run(notice, hours(24));
    supervisor->stop();
    worker->say(R"({"id":1,"result":0})");
    EXPECT_THAT(listener.answers, ElementsAre(R"({"id":1,"result":0})"));
    worker->end();
    EXPECT_THAT(listener.answers, SizeIs(1));
    EXPECT_TRUE(listener.has_stopped);
}

} // namespace agent::service

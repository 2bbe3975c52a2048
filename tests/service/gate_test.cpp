// SPDX-License-Identifier: MIT
// The gate with a worker that does what a test says: when requests are executed, and what becomes
// of repeated ones.
#include "service/gate/gate.h"

#include <gmock/gmock.h>

#include <boost/asio/io_context.hpp>

#include <cstdlib>
#include <fstream>
#include <unistd.h>

namespace agent::service {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

constexpr char kSet[] = R"({"id":1,"command":"SET_HG_BASE_INFO","params":{"A":"1"}})";
constexpr char kSetAgain[] = R"({"id":2,"command":"SET_HG_BASE_INFO","params":{"A":"1"}})";
constexpr char kSetOther[] = R"({"id":2,"command":"SET_HG_BASE_INFO","params":{"A":"2"}})";
constexpr char kQuery[] = R"({"id":1,"command":"GET_SN_INFO"})";
constexpr char kDone[] = R"({"id":1,"result":0,"reply":{"Status":"0"}})";
constexpr char kDoneAgain[] = R"({"id":2,"result":0,"reply":{"Status":"0"}})";

} // namespace

class FakeWorker : public Worker {
  public:
    explicit FakeWorker(std::vector<std::string> &given) : given_(given) {}

    void start(WorkerListener &listener) override { listener_ = &listener; }
    void send(std::string_view line) override
    {
        if (line.find("\"ready\"") != std::string_view::npos) {
            say(R"({"id":"ready","result":0,"reply":{}})");
        } else {
            given_.emplace_back(line);
        }
    }
    void finish() override {}
    void terminate() override {}
    void kill() override { end(); }

    void say(std::string_view line) { listener_->on_worker_line(line); }
    void end() { listener_->on_worker_end({"was killed by signal 6 (Aborted)", 6, {}}); }

  private:
    WorkerListener *listener_ = nullptr;
    std::vector<std::string> &given_;
};

class FakeClient : public Client {
  public:
    void on_answer(const Answer &answer) override
    {
        answers.push_back((answer.is_duplicate ? "duplicate: " : "") + std::string(answer.line));
        codes.push_back(answer.code);
    }
    void on_event(std::string_view line) override { events.emplace_back(line); }
    bool has_room() const override { return true; }
    void on_less_full() override {}

    std::vector<std::string> answers;
    std::vector<Code> codes;
    std::vector<std::string> events;
};

class GateWithFakeWorker : public testing::Test {
  protected:
    GateWithFakeWorker()
    {
        auto worker = std::make_unique<FakeWorker>(given);
        worker_ = worker.get();
        gate.emplace(loop_, std::move(worker), Gate::Hooks{});
        session = open("mqtt", client);
        other_session = open("mqtt", other_client);
        gate->start();
    }

    Session *open(const std::string &way_in, FakeClient &its_client, bool is_owner = true)
    {
        const Identity alice{way_in, "user:alice", {"user:alice"}, is_owner};
        return gate->open(std::make_shared<Identity>(alice), its_client);
    }

    static Request request(const std::string &line, const std::string &key = "key")
    {
        Request read = read_request(line);
        read.repeat_key = key;
        return read;
    }

    void submit(const char *line) { gate->submit(*session, request(line)); }
    void submit_by_other(const char *line) { gate->submit(*other_session, request(line)); }

    void worker_says(std::string_view line) { worker_->say(line); }
    void crash() { worker_->end(); }

    // Occupies the worker with a request without a key.
    void submit_blocker(Session *by)
    {
        gate->submit(*by, request(R"({"id":9,"command":"GET_SN_INFO"})", ""));
    }
    void end_blocker() { worker_says(R"({"id":9,"result":0})"); }

    std::string epoch()
    {
        FakeClient asking;
        Session *its = open("mqtt", asking);
        gate->submit(*its, read_request(R"({"hello":{}})"));
        gate->close(its);
        const std::string &line = asking.answers.at(0);
        const size_t at = line.find(R"("epoch":")") + 9;
        return line.substr(at, line.find('"', at) - at);
    }

    boost::asio::io_context loop_;
    FakeWorker *worker_ = nullptr; // the gate's

  public:
    std::vector<std::string> given; // to the worker
    FakeClient client;
    FakeClient other_client;
    std::optional<Gate> gate;
    Session *session = nullptr;
    Session *other_session = nullptr;
};

using Ids = GateWithFakeWorker;
using Repetitions = GateWithFakeWorker;
using Epoch = GateWithFakeWorker;
using Expiry = GateWithFakeWorker;

// ---- Ids in the service's own answers ---------------------------------------------------------

TEST_F(Ids, AreRepeatedIfTheyAreJson)
{
    for (const std::string &id : std::vector<std::string>{
             "1e999", R"("\u00e9")", R"([1,{"a":"}"}])", "true", "0.50", "null"}) {
        client.answers.clear();
        gate->submit(*session, read_request(R"({"id":)" + id + R"(,"subscribe":"*"})"));
        EXPECT_THAT(client.answers, ElementsAre(R"({"id":)" + id + R"(,"result":0})"));
    }
}

TEST_F(Ids, AreNotRepeatedIfTheyAreNot)
{
    for (const std::string &id : std::vector<std::string>{"x", "01", "[1,}", "{]", "-", "\"\xff\"",
                                                          R"("\x")", "\"\t\"", R"("\ud800")"}) {
        for (const char *rest : {R"(,"subscribe":"*"})", R"(,"hello":{}})"}) {
            client.answers.clear();
            gate->submit(*session, read_request(R"({"id":)" + id + rest));
            EXPECT_THAT(client.answers, ElementsAre(AllOf(StartsWith(R"({"id":null,"error":")"),
                                                          HasSubstr("bad-request"))))
                << id;
        }
    }
}

// ---- A repetition after the answer ------------------------------------------------------------

TEST_F(Repetitions, GetTheKeptAnswerWithTheirOwnId)
{
    submit(kSet);
    worker_says(kDone);
    submit(kSetAgain);
    submit_by_other(kSetAgain);
    EXPECT_THAT(given, ElementsAre(kSet));
    EXPECT_THAT(client.answers, ElementsAre(kDone, kDoneAgain));
    EXPECT_THAT(other_client.answers, ElementsAre(kDoneAgain));
    EXPECT_EQ(gate->repetitions(), 2U);
    EXPECT_EQ(gate->answers().answers(), 1U);
}

TEST_F(Repetitions, OfAQueryRunAgain)
{
    for (int count = 1; count <= 2; ++count) {
        submit(kQuery);
        EXPECT_THAT(given, SizeIs(count));
        worker_says(kDone);
    }
    EXPECT_EQ(gate->answers().answers(), 0U);
}

TEST_F(Repetitions, WithoutAKeyAreNewRequests)
{
    for (size_t count = 1; count <= 2; ++count) {
        gate->submit(*session, request(kSet, ""));
        EXPECT_THAT(given, SizeIs(count));
        worker_says(kDone);
    }
}

TEST_F(Repetitions, OfACommandWithoutADescriptionAndOfANoticeAreNotExecuted)
{
    for (const char *line : {R"({"id":1,"command":"UNKNOWN"})",
                             R"({"id":1,"notice":{"plugin_name":"a","text":"b"}})"}) {
        given.clear();
        gate->submit(*session, request(line, line));
        worker_says(kDone);
        gate->submit(*session, request(line, line));
        EXPECT_THAT(given, SizeIs(1)) << line;
    }
}

TEST_F(Repetitions, OfAReportRunAgain)
{
    constexpr char kReport[] = R"({"id":1,"report":"topology"})";
    submit(kReport);
    worker_says(kDone);
    submit(kReport);
    EXPECT_THAT(given, SizeIs(2));
}

TEST_F(Repetitions, AreRefusedWhenTheyAskForSomethingElse)
{
    submit(kSet);
    submit_by_other(kSetOther); // the first is running
    worker_says(kDone);
    submit(kSetOther);
    submit(R"({"id":2,"command":"SET_UPNP_STATE","params":{"A":"1"}})");
    EXPECT_THAT(given, ElementsAre(kSet));
    EXPECT_THAT(client.codes, ElementsAre(Code::kNone, Code::kBadRequest, Code::kBadRequest));
    EXPECT_THAT(other_client.codes, ElementsAre(Code::kBadRequest));
    EXPECT_EQ(gate->repetitions(), 0U);
}

TEST_F(Repetitions, OfAnotherTransportAreNewRequests)
{
    FakeClient browser;
    Session *its = open("http", browser);
    submit(kSet);
    worker_says(kDone);
    gate->submit(*its, request(kSet));
    EXPECT_THAT(given, ElementsAre(kSet, kSet));
}

// ---- A repetition before the answer -----------------------------------------------------------

TEST_F(Repetitions, WaitForTheRunningRequest)
{
    submit(kSet);
    submit_by_other(kSetAgain);
    EXPECT_THAT(other_client.answers, IsEmpty());
    worker_says(kDone);
    EXPECT_THAT(given, ElementsAre(kSet));
    EXPECT_THAT(client.answers, ElementsAre(kDone));
    EXPECT_THAT(other_client.answers, ElementsAre(kDoneAgain));
    EXPECT_EQ(gate->repetitions(), 1U);
}

TEST_F(Repetitions, WaitForTheWaitingRequest)
{
    submit_blocker(other_session);
    submit(kSet);
    submit_by_other(kSetAgain);
    end_blocker();
    EXPECT_THAT(given, SizeIs(2));
    worker_says(kDone);
    EXPECT_THAT(given, SizeIs(2));
    EXPECT_THAT(client.answers, ElementsAre(kDone));
    EXPECT_THAT(other_client.answers, ElementsAre(HasSubstr("\"id\":9"), kDoneAgain));
}

TEST_F(Repetitions, InTheSameSessionAreMarkedAsDuplicates)
{
    submit(kSet);
    submit(kSetAgain);
    submit_by_other(kSet);
    submit_by_other(kSetAgain);
    worker_says(kDone);
    EXPECT_THAT(client.answers, ElementsAre(kDone, "duplicate: " + std::string(kDoneAgain)));
    EXPECT_THAT(other_client.answers, ElementsAre(kDone, "duplicate: " + std::string(kDoneAgain)));
    submit(kSetAgain);
    EXPECT_EQ(client.answers.back(), kDoneAgain);
}

TEST_F(Repetitions, GetTheAnswerWhenTheFirstClientHasGone)
{
    submit(kSet);
    submit_by_other(kSetAgain);
    gate->close(session);
    worker_says(kDone);
    EXPECT_THAT(other_client.answers, ElementsAre(kDoneAgain));
    EXPECT_THAT(given, SizeIs(1));
}

TEST_F(Repetitions, GetTheAnswerThatNobodyWaitedFor)
{
    submit(kSet);
    gate->close(session);
    worker_says(kDone);
    submit_by_other(kSetAgain);
    EXPECT_THAT(other_client.answers, ElementsAre(kDoneAgain));
    EXPECT_THAT(given, SizeIs(1));
}

TEST_F(Repetitions, TakeThePlaceOfAWaitingRequestWhoseClientHasGone)
{
    FakeClient blocker;
    submit_blocker(open("socket", blocker));
    submit(kSet);
    submit_by_other(kSetAgain);
    submit_by_other(kSet);
    gate->close(session);
    end_blocker();
    EXPECT_THAT(given, ElementsAre(HasSubstr("\"id\":9"), kSetAgain));
    worker_says(kDoneAgain);
    EXPECT_THAT(other_client.answers, ElementsAre(kDoneAgain, "duplicate: " + std::string(kDone)));
}

TEST_F(Repetitions, TakeThePlaceAtOnceWhenTheWorkerIsIdle)
{
    FakeClient slow;
    submit_blocker(session);
    submit(kSet);
    submit_by_other(kSetAgain);
    gate->close(session); // its blocker is still running
    EXPECT_THAT(given, SizeIs(1));
    end_blocker();
    EXPECT_THAT(given, SizeIs(2));
}

TEST_F(Repetitions, WithoutAFirstRequestAreNewRequests)
{
    submit_blocker(other_session);
    submit(kSet);
    gate->close(session);
    end_blocker();
    submit_by_other(kSetAgain);
    EXPECT_THAT(given, ElementsAre(HasSubstr("\"id\":9"), kSetAgain));
}

TEST_F(Repetitions, LeaveNothingBehindWhenTheirClientGoes)
{
    submit(kSet);
    submit_by_other(kSetAgain);
    gate->close(other_session);
    worker_says(kDone);
    EXPECT_THAT(client.answers, ElementsAre(kDone));
    EXPECT_THAT(other_client.answers, IsEmpty());
}

TEST_F(Repetitions, KeepTheirPlaceAmongTheAnswersOfTheirClient)
{
    submit(kSet);
    submit_by_other(kSetAgain);
    gate->submit(*other_session, request(R"({"id":3,"command":"GET_SN_INFO"})", ""));
    worker_says(kDone);
    worker_says(R"({"id":3,"result":0})");
    EXPECT_THAT(other_client.answers, ElementsAre(kDoneAgain, R"({"id":3,"result":0})"));
}

// ---- What is kept -----------------------------------------------------------------------------

TEST_F(Repetitions, OfARequestWithAnUnknownOutcomeAreNotExecuted)
{
    submit(kSet);
    submit_by_other(kSetAgain);
    crash();
    submit(kSetAgain);
    EXPECT_THAT(given, ElementsAre(kSet));
    EXPECT_THAT(client.codes, ElementsAre(Code::kOutcomeUnknown, Code::kOutcomeUnknown));
    EXPECT_THAT(other_client.codes, ElementsAre(Code::kOutcomeUnknown));
    EXPECT_THAT(client.answers.back(), HasSubstr(R"({"id":2,"error":"the worker was killed)"));
}

TEST_F(Repetitions, GetTheUnknownOutcomeWhenTheFirstClientHasGone)
{
    submit(kSet);
    gate->close(session);
    crash();
    submit_by_other(kSetAgain);
    EXPECT_THAT(given, ElementsAre(kSet));
    EXPECT_THAT(other_client.codes, ElementsAre(Code::kOutcomeUnknown));
}

TEST_F(Repetitions, OfARequestThatTookTooLongAreNotExecuted)
{
    GateOptions options;
    options.time = std::chrono::seconds(0);
    gate->set_options(options);
    submit(kSet);
    while (client.codes.empty() && loop_.run_one() > 0) { // the worker is killed, and started again
    }
    submit(kSetAgain);
    EXPECT_THAT(given, ElementsAre(kSet));
    EXPECT_THAT(client.codes, ElementsAre(Code::kTimeout, Code::kTimeout));
}

TEST_F(Repetitions, OfARequestThatWasNotExecutedRun)
{
    for (const char *answer :
         {R"({"id":1,"error":"e","code":"busy"})", R"({"id":1,"error":"e","code":"rebooting"})",
          R"({"id":1,"error":"e","code":"bad-request"})",
          R"({"id":null,"error":"e","code":"too-large"})"}) {
        submit(kSet);
        worker_says(answer);
    }
    EXPECT_THAT(given, SizeIs(4));
    EXPECT_EQ(gate->answers().answers(), 0U);
}

TEST_F(Repetitions, OfAFailedSettingAreNotExecuted)
{
    submit(kSet);
    worker_says(R"({"id":1,"result":-3})");
    submit(kSetAgain);
    EXPECT_EQ(client.answers.back(), R"({"id":2,"result":-3})");
    EXPECT_THAT(given, SizeIs(1));
}

TEST_F(Repetitions, AreRefusedWithTheirWaitingFirstAndRunLater)
{
    submit_blocker(other_session);
    submit(kSet);
    submit(kSetAgain);
    submit_by_other(kSetAgain);
    worker_says(R"({"event":"reboot.begun","data":{}})");
    EXPECT_THAT(client.codes, ElementsAre(Code::kRebooting, Code::kRebooting));
    end_blocker();
    EXPECT_THAT(other_client.codes, ElementsAre(Code::kNone, Code::kRebooting));
    submit(kSet);
    worker_says(R"({"event":"reboot.ended","data":{}})");
    submit(kSet);
    EXPECT_THAT(given, SizeIs(2));
    worker_says(kDone);
    submit_by_other(kSetAgain);
    EXPECT_EQ(other_client.answers.back(), kDoneAgain);
}

TEST_F(Repetitions, OfTheRunningRequestWaitThroughTheBeginOfAReboot)
{
    submit(kSet);
    submit_by_other(kSetAgain);
    worker_says(R"({"event":"reboot.begun","data":{}})");
    EXPECT_THAT(other_client.answers, IsEmpty());
    worker_says(kDone);
    EXPECT_THAT(other_client.answers, ElementsAre(kDoneAgain));
    submit_by_other(kSetAgain); // while it reboots
    EXPECT_THAT(other_client.answers, ElementsAre(kDoneAgain, kDoneAgain));
}

TEST_F(Repetitions, AreAnsweredWhileTheServiceStops)
{
    submit(kSet);
    worker_says(kDone);
    gate->stop();
    submit(kSetAgain);
    gate->submit(*session, request(kSet, "another key"));
    EXPECT_THAT(client.codes, ElementsAre(Code::kNone, Code::kNone, Code::kBusy));
}

TEST_F(Repetitions, AreAnsweredByAFullCacheThatTakesNoOtherChange)
{
    GateOptions options;
    options.answers = {1, 1000};
    gate->set_options(options);
    submit(kSet);
    worker_says(kDone);
    gate->submit(*session, request(kSet, "another key"));
    submit(kSetAgain);
    gate->submit(*session, request(kQuery, "another key"));
    EXPECT_THAT(given, ElementsAre(kSet, kQuery));
    EXPECT_THAT(client.codes, ElementsAre(Code::kNone, Code::kBusy, Code::kNone));
    EXPECT_THAT(client.answers.at(1), HasSubstr("no room to keep the answer"));
    EXPECT_EQ(client.answers.at(2), kDoneAgain);
}

// ---- Who may have the answer ------------------------------------------------------------------

TEST_F(Repetitions, AreSubjectToThePolicy)
{
    FakeClient alice;
    Session *its = open("mqtt", alice, false);
    const auto use_policy = [&](const char *roles) {
        GateOptions options;
        options.policy = Policy::parse(roles, "policy.toml");
        gate->set_options(options);
    };
    use_policy("[roles.a]\nmembers=[\"user:alice\"]\nallow=[\"*\"]");
    gate->submit(*its, request(kSet));
    use_policy("[roles.a]\nmembers=[\"user:alice\"]\ndeny=[\"SET_*\"]");
    gate->submit(*its, request(kSetAgain)); // waits for nothing
    worker_says(kDone);
    gate->submit(*its, request(kSetAgain));
    EXPECT_THAT(alice.codes, ElementsAre(Code::kNone, Code::kDenied, Code::kDenied));
    use_policy("[roles.a]\nmembers=[\"user:alice\"]\nallow=[\"*\"]\nrate=0.001\nburst=1");
    gate->submit(*its, request(kSetAgain));
    gate->submit(*its, request(kSetAgain));
    EXPECT_EQ(alice.codes.at(3), Code::kNone);
    EXPECT_EQ(alice.codes.at(4), Code::kRateLimited);
    EXPECT_THAT(given, SizeIs(1));
}

TEST_F(GateWithFakeWorker, BoundsTheNameInARefusal)
{
    FakeClient stranger;
    FakeClient watcher;
    Session *its = open("mqtt", stranger, false);
    Gate::follow_events(*open("mqtt", watcher));
    gate->submit(*its, request(R"({"command":")" + std::string(128, 'a') + "\"}"));
    gate->submit(*its, request(R"({"command":")" + std::string(100'000, 'b') + "\"}"));
    EXPECT_THAT(stranger.answers.at(0), HasSubstr(" " + std::string(128, 'a') + " to user:alice"));
    EXPECT_THAT(stranger.answers.at(1),
                HasSubstr(" " + std::string(128, 'b') + " [99872 more bytes] to user:alice"));
    EXPECT_THAT(watcher.events.at(0), HasSubstr(std::string(128, 'a') + "\""));
    EXPECT_THAT(watcher.events.at(1), HasSubstr(std::string(128, 'b') + " [99872 more bytes]\""));
}

TEST_F(GateWithFakeWorker, TakesTokensForWhatATransportAnswers)
{
    const Identity alice{"mqtt", "user:alice", {"user:alice"}};
    const Identity bob{"mqtt", "user:bob", {"user:bob"}};
    const Identity owner{"mqtt", "user:alice", {"user:alice"}, true};
    GateOptions options;
    options.policy = Policy::parse(
        "[roles.a]\nmembers=[\"user:alice\"]\nallow=[\"*\"]\nrate=0.001\nburst=3", "policy.toml");
    gate->set_options(options);
    Session *its = open("mqtt", client, false);
    gate->submit(*its, request(kQuery));
    EXPECT_TRUE(gate->take_token(alice));
    EXPECT_TRUE(gate->take_token(alice));
    EXPECT_FALSE(gate->take_token(alice));
    gate->submit(*its, request(kQuery));
    worker_says(kDone);
    EXPECT_THAT(client.codes, ElementsAre(Code::kNone, Code::kRateLimited));
    for (int asked = 0; asked < 1000; ++asked) {
        ASSERT_TRUE(gate->take_token(owner));
    }
    // Clients without a role share their limit, which fills up again while a slow machine asks.
    int allowed = 0;
    for (int asked = 0; asked < 1000; ++asked) {
        allowed += gate->take_token(bob) ? 1 : 0;
    }
    EXPECT_THAT(allowed, AllOf(testing::Ge(40), testing::Lt(1000)));
}

TEST_F(Repetitions, GetNoSecretsFromTheCache)
{
    FakeClient alice;
    Session *its = open("mqtt", alice, false);
    GateOptions options;
    options.policy = Policy::parse("[roles.a]\nmembers=[\"user:alice\"]\nallow=[\"*\"]", "p");
    gate->set_options(options);
    constexpr char kSecret[] = R"({"id":1,"result":0,"reply":{"PWD":"apfelbaum"}})";
    submit(kSet);
    submit_by_other(kSet);
    gate->submit(*its, request(kSet));
    worker_says(kSecret);
    submit(kSet);
    EXPECT_EQ(client.answers.at(0), kSecret);
    EXPECT_EQ(other_client.answers.at(0), kSecret);
    constexpr char kMasked[] = R"({"id":1,"result":0,"reply":{"PWD":"***"}})";
    EXPECT_EQ(alice.answers.at(0), kMasked);
    EXPECT_EQ(client.answers.at(1), kMasked);
}

TEST_F(GateWithFakeWorker, HidesSecretsFromAnOwnerWhoWantsNone)
{
    for (const bool hide : {true, false}) {
        Request asked = request(R"({"id":1,"command":"GET_WIFI_INFO"})", "");
        asked.hide_secrets = hide;
        gate->submit(*session, asked);
        worker_says(R"({"id":1,"result":0,"reply":{"PWD":"apfelbaum"}})");
    }
    EXPECT_THAT(client.answers,
                ElementsAre(HasSubstr(R"("PWD":"***")"), HasSubstr(R"("PWD":"apfelbaum")")));
}

TEST_F(Repetitions, AreMarkedInTheAudit)
{
    std::string path = testing::TempDir() + "gate_auditXXXXXX";
    close(mkstemp(path.data()));
    GateOptions options;
    options.audit = path;
    gate->set_options(options);
    submit(kSet);
    submit_by_other(kSetAgain);
    worker_says(kDone);
    submit(kSetAgain);
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    constexpr char kRepetition[] = R"("repetition":true)";
    EXPECT_THAT(lines, ElementsAre(Not(HasSubstr(kRepetition)), HasSubstr(kRepetition),
                                   AllOf(HasSubstr(kRepetition), HasSubstr(R"("status":"0")"),
                                         HasSubstr(R"("worked_us":0)"))));
    unlink(path.c_str());
}

// ---- The epoch --------------------------------------------------------------------------------

TEST_F(Epoch, ThatHasEndedMakesTheOutcomeOfChangesUnknown)
{
    for (const char *key : {"key", ""}) {
        Request late = request(kSet, key);
        late.epoch = "0123456789abcdef";
        gate->submit(*session, late);
    }
    EXPECT_THAT(client.codes, ElementsAre(Code::kOutcomeUnknown, Code::kOutcomeUnknown));
    EXPECT_THAT(client.answers.at(0), HasSubstr("the service has started again"));
    EXPECT_THAT(given, IsEmpty());
    submit(kSet); // none is given
    EXPECT_THAT(given, SizeIs(1));
}

TEST_F(Epoch, DoesNotMatterToQueries)
{
    Request query = request(kQuery);
    query.epoch = "0123456789abcdef";
    gate->submit(*session, query);
    EXPECT_THAT(given, SizeIs(1));
}

TEST_F(Epoch, OfTheServiceLetsChangesRun)
{
    Request current = request(kSet);
    current.epoch = epoch();
    gate->submit(*session, current);
    EXPECT_THAT(given, SizeIs(1));
}

// ---- Expiry -----------------------------------------------------------------------------------

TEST_F(Expiry, DropsAWaitingRequest)
{
    submit_blocker(other_session);
    Request late = request(kSet);
    late.expires = std::chrono::steady_clock::now();
    gate->submit(*session, late);
    late.repeat_key.clear();
    gate->submit(*session, late);
    gate->submit(*session, request(kQuery, ""));
    end_blocker();
    EXPECT_THAT(given, ElementsAre(HasSubstr("\"id\":9"), kQuery));
    EXPECT_THAT(client.codes, ElementsAre(Code::kTimeout, Code::kTimeout));
    EXPECT_THAT(client.answers.at(0), HasSubstr("has expired before its turn"));
    EXPECT_EQ(gate->answers().answers(), 0U);
}

TEST_F(Expiry, DropsNoRunningRequest)
{
    Request soon = request(kSet);
    soon.expires = std::chrono::steady_clock::now() + std::chrono::hours(1);
    gate->submit(*session, soon);
    EXPECT_THAT(given, SizeIs(1));
    worker_says(kDone);
    EXPECT_THAT(client.answers, ElementsAre(kDone));
}

TEST_F(Expiry, LetsARepetitionTakeThePlace)
{
    submit_blocker(other_session);
    Request late = request(kSet);
    late.expires = std::chrono::steady_clock::now();
    gate->submit(*session, late);
    submit(kSetAgain); // does not expire
    end_blocker();
    EXPECT_THAT(given, ElementsAre(HasSubstr("\"id\":9"), kSetAgain));
    worker_says(kDoneAgain);
    EXPECT_THAT(client.answers,
                ElementsAre(AllOf(HasSubstr("duplicate: "), HasSubstr("expired")), kDoneAgain));
}

} // namespace agent::service

// SPDX-License-Identifier: MIT
// Look-ups of clients' names that do not end, while others do.
#include "service/ways_in/peer_directory.h"

#include <boost/asio/executor_work_guard.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>

namespace agent::service {

using std::chrono::hours;
using std::chrono::milliseconds;

// A directory server that does not answer about some users until it is released.
class SilentServer {
  public:
    Identity look_up(const Peer &peer)
    {
        ++asked;
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return !is_silent_ || peer.user < 1000; });
        Identity who;
        who.name = "user:" + std::to_string(peer.user);
        return who;
    }

    void release()
    {
        {
            const std::lock_guard lock(mutex_);
            is_silent_ = false;
        }
        changed_.notify_all();
    }

    std::atomic<int> asked = 0;

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool is_silent_ = true;
};

constexpr PeerDirectory::Times kEndless = {hours(24), hours(24)};

class PeerDirectoryTest : public testing::Test {
  protected:
    void make(PeerDirectory::Times times)
    {
        directory.emplace(
            loop, [server = server](const Peer &peer) { return server->look_up(peer); }, times);
    }

    // What identify() calls back with: a name, "none" or, while there is no call, an empty text.
    std::shared_ptr<std::string> ask(uid_t user)
    {
        auto result = std::make_shared<std::string>();
        directory->identify({user, {user}}, [result](const auto &who) {
            *result = who != nullptr ? who->name : "none";
        });
        return result;
    }

    void await(const std::shared_ptr<std::string> &result)
    {
        while (result->empty()) {
            loop.run_one();
        }
    }

    ~PeerDirectoryTest() override
    {
        server->release();
        directory.reset();
    }

    boost::asio::io_context loop;
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> work{
        loop.get_executor()};
    // Shared, because threads outlive the directory.
    std::shared_ptr<SilentServer> server = std::make_shared<SilentServer>();
    std::optional<PeerDirectory> directory;
};

TEST_F(PeerDirectoryTest, KeepsOnlyThoseWaitingThatTheServerIsAskedAbout)
{
    make(kEndless);
    const auto stuck = ask(5000);
    const auto other = ask(7);
    EXPECT_EQ(directory->waiting(), 2U);
    await(other);
    EXPECT_EQ(*other, "user:7");
    EXPECT_EQ(*stuck, "");
    EXPECT_EQ(directory->waiting(), 1U);
    server->release();
    await(stuck);
    EXPECT_EQ(*stuck, "user:5000");
}

TEST_F(PeerDirectoryTest, AsksOnceForSeveralClients)
{
    make(kEndless);
    const auto first = ask(5000);
    const auto second = ask(5000);
    server->release();
    await(first);
    EXPECT_EQ(*second, "user:5000");
    EXPECT_EQ(*ask(5000), "user:5000") << "known, so at once";
    EXPECT_EQ(server->asked, 1);
}

TEST_F(PeerDirectoryTest, AsksAgainAfterSomeTime)
{
    make({milliseconds(0), hours(24)});
    await(ask(7));
    await(ask(7));
    EXPECT_EQ(server->asked, 2);
}

TEST_F(PeerDirectoryTest, GivesALookUpUp)
{
    make({hours(24), milliseconds(0)});
    const auto stuck = ask(5000);
    await(stuck);
    EXPECT_EQ(*stuck, "none");
    EXPECT_EQ(*ask(5000), "none") << "while its thread is still waiting";
    EXPECT_LE(server->asked, 1);
}

TEST_F(PeerDirectoryTest, BoundsItsThreads)
{
    make(kEndless);
    for (uid_t user = 5000; user < 5008; ++user) {
        ask(user);
    }
    auto answer = ask(5008);
    EXPECT_EQ(*answer, "none");
    server->release();
    while (*answer == "none") {
        loop.run_one(); // a thread has returned
        answer = ask(5008);
        await(answer);
    }
    EXPECT_EQ(*answer, "user:5008");
}

TEST_F(PeerDirectoryTest, MayEndBeforeItsThreads)
{
    make(kEndless);
    const auto stuck = ask(5000);
    directory.reset();
    server->release();
    loop.poll();
    EXPECT_EQ(*stuck, "");
}

} // namespace agent::service

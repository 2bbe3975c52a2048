// SPDX-License-Identifier: MIT
#include "core/state_file.h"
#include "system/error.h"
#include "temporary_folder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace linux_gateway;
using testing::HasSubstr;
using testing::ThrowsMessage;

namespace {

State named(const std::string &name)
{
    State state;
    state.name = name;
    return state;
}

TEST(StateFileTest, TheLastStateIsRead)
{
    const TemporaryFolder folder;
    const StateFile file(folder.path("new_folder/state.json"));
    EXPECT_TRUE(file.is_ours());
    EXPECT_EQ(file.read(), State());
    file.write(named("first"));
    file.write(named("second"));
    EXPECT_EQ(file.read().name, "second");
    EXPECT_FALSE(std::filesystem::exists(folder.path("new_folder/state.json.new")));
}

TEST(StateFileTest, ADamagedFileIsKeptAside)
{
    const TemporaryFolder folder;
    folder.write("state.json", "{\"name\": \"fir");
    const StateFile file(folder.path("state.json"));
    EXPECT_EQ(file.read(), State());
    EXPECT_EQ(folder.read("state.json.damaged"), "{\"name\": \"fir");
    EXPECT_FALSE(std::filesystem::exists(folder.path("state.json")));
}

TEST(StateFileTest, ASecondUserOnlyReads)
{
    const TemporaryFolder folder;
    const StateFile first(folder.path("state.json"));
    first.write(named("first"));
    const StateFile second(folder.path("state.json"));
    EXPECT_FALSE(second.is_ours());
    EXPECT_EQ(second.read().name, "first");
    folder.write("state.json", "damaged");
    EXPECT_THROW(second.read(), Error);
    EXPECT_EQ(folder.read("state.json"), "damaged");
}

TEST(StateFileTest, ASecondUserMayTakeOver)
{
    const TemporaryFolder folder;
    std::optional<StateFile> first(folder.path("state.json"));
    StateFile second(folder.path("state.json"));
    EXPECT_FALSE(second.lock());
    EXPECT_FALSE(second.is_ours());
    first.reset();
    EXPECT_TRUE(second.lock());
    EXPECT_TRUE(second.is_ours());
    first.emplace(folder.path("state.json"));
    EXPECT_FALSE(first->is_ours());
    second.unlock();
    EXPECT_FALSE(second.is_ours());
    EXPECT_TRUE(first->lock());
}

TEST(StateFileTest, AFullDiskLeavesTheOldState)
{
    const TemporaryFolder folder;
    const StateFile file(folder.path("state.json"));
    file.write(named("old"));
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    rlimit small = before;
    small.rlim_cur = 20;
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_THAT([&] { file.write(named("new")); }, ThrowsMessage<Error>(HasSubstr("cannot write")));
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(file.read().name, "old");
    EXPECT_FALSE(std::filesystem::exists(folder.path("state.json.new")));
}

TEST(StateFileTest, AFileThatCannotBeReadIsNotTakenForNone)
{
    const TemporaryFolder folder;
    const StateFile file(folder.path("state.json"));
    std::filesystem::create_directory(folder.path("state.json"));
    EXPECT_THAT([&] { file.read(); }, ThrowsMessage<Error>(HasSubstr("cannot read")));
    std::filesystem::remove(folder.path("state.json"));
    std::filesystem::create_symlink("/no/such/file", folder.path("state.json"));
    EXPECT_THAT([&] { file.read(); }, ThrowsMessage<Error>(HasSubstr("cannot read")));
}

TEST(StateFileTest, WhatIsInThePlaceOfTheNewFileIsReplaced)
{
    const TemporaryFolder folder;
    const StateFile file(folder.path("state.json"));
    ASSERT_EQ(mkfifo(folder.path("state.json.new").c_str(), 0600), 0);
    file.write(named("first"));
    EXPECT_EQ(file.read().name, "first");
    folder.write("other", "not ours");
    std::filesystem::create_symlink(folder.path("other"), folder.path("state.json.new"));
    file.write(named("second"));
    EXPECT_EQ(file.read().name, "second");
    EXPECT_EQ(folder.read("other"), "not ours");
}

TEST(StateFileTest, AFolderThatCannotBeIsNamed)
{
    EXPECT_THAT([] { StateFile("/proc/no/state.json"); },
                ThrowsMessage<Error>(HasSubstr("/proc/no/state.json.lock")));
}

} // namespace

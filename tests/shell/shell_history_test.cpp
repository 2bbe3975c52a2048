// SPDX-License-Identifier: MIT
#include "shell/shell_history.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace agent {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ShellHistoryTest : public testing::Test {
  protected:
    ShellHistoryTest()
    {
        char name[] = "/tmp/shell_history_XXXXXX";
        folder_ = mkdtemp(name);
        path_ = folder_ + "/state/hgagent/history";
    }
    ~ShellHistoryTest() override { std::filesystem::remove_all(folder_); }

    static unsigned mode_of(const std::string &path)
    {
        struct stat file = {};
        stat(path.c_str(), &file);
        return file.st_mode & 0777;
    }

    void write(const std::string &text)
    {
        std::filesystem::create_directories(folder_ + "/state/hgagent");
        std::ofstream(path_) << text;
    }

    std::string folder_;
    std::string path_;
};

TEST_F(ShellHistoryTest, IsForItsUserAlone)
{
    ShellHistory(path_).add("GET_SN_INFO");
    EXPECT_EQ(mode_of(path_), 0600U);
    EXPECT_EQ(mode_of(folder_ + "/state/hgagent"), 0700U);
    chmod(path_.c_str(), 0664);
    const ShellHistory again(path_);
    EXPECT_EQ(mode_of(path_), 0600U);
}

TEST_F(ShellHistoryTest, KeepsTheLinesOfSeveralShells)
{
    ShellHistory one(path_);
    ShellHistory other(path_);
    one.add("a");
    other.add("b c");
    one.add("");
    one.add("d");
    EXPECT_THAT(one.lines(), IsEmpty());
    EXPECT_THAT(ShellHistory(path_).lines(), ElementsAre("a", "b c", "d"));
}

TEST_F(ShellHistoryTest, PassesOverWhatIsNoLine)
{
    write(std::string("good\n\n\xff\xfe\nbad\0nul\n", 17) + std::string(5000, 'x') + "\nlast");
    EXPECT_THAT(ShellHistory(path_).lines(), ElementsAre("good", "last"));
}

TEST_F(ShellHistoryTest, DoesNotGrowToNoEnd)
{
    std::string text;
    for (int at = 0; at < 300000; ++at) {
        text += "line " + std::to_string(at) + "\n";
    }
    write(text);
    const ShellHistory history(path_);
    EXPECT_EQ(history.lines().size(), 1000U);
    EXPECT_EQ(history.lines().front(), "line 299000");
    EXPECT_EQ(history.lines().back(), "line 299999");
    EXPECT_LT(std::filesystem::file_size(path_), 20000U);
    EXPECT_EQ(ShellHistory(path_).lines(), history.lines());
    EXPECT_EQ(mode_of(path_), 0600U);
}

TEST_F(ShellHistoryTest, SaysWhereItCannotBe)
{
    write("");
    EXPECT_THROW(ShellHistory(path_ + "/below"), std::runtime_error);
    std::filesystem::remove(path_);
    mkfifo(path_.c_str(), 0600);
    EXPECT_THROW(ShellHistory{path_}, std::runtime_error);
    EXPECT_THROW(ShellHistory("/dev/null"), std::runtime_error);
}

TEST(ShellHistoryPath, IsBelowTheFolderForState)
{
    setenv("XDG_STATE_HOME", "/state", 1);
    setenv("HOME", "/home/me", 1);
    EXPECT_EQ(history_path(), "/state/hgagent/history");
    setenv("XDG_STATE_HOME", "relative", 1);
    EXPECT_EQ(history_path(), "/home/me/.local/state/hgagent/history");
    unsetenv("XDG_STATE_HOME");
    unsetenv("HOME");
    EXPECT_EQ(history_path(), "");
}

} // namespace
} // namespace agent

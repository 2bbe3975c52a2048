// SPDX-License-Identifier: MIT
// Lines written to a descriptor that is read slowly, or not at all.
#include "line_output.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

using line_output::LineOutput;

namespace line_output_test {

// What has been written and not been read yet.
std::string content_of(int descriptor)
{
    std::string content;
    char bytes[4096];
    for (ssize_t count = 0; (count = recv(descriptor, bytes, sizeof(bytes), MSG_DONTWAIT)) > 0 ||
                            (count < 0 && errno == ENOTSOCK &&
                             (count = read(descriptor, bytes, sizeof(bytes))) > 0);) {
        content.append(bytes, static_cast<size_t>(count));
    }
    return content;
}

enum class Kind { kPipe, kSharedPipe, kSocket };

// The descriptor for the lines, and its reader.
class LineOutputTest : public testing::TestWithParam<Kind> {
  protected:
    void SetUp() override
    {
        if (GetParam() == Kind::kSocket) {
            ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends_), 0);
            own_ = line_output::own_descriptor(ends_[1]);
        } else {
            ASSERT_EQ(pipe2(ends_, O_CLOEXEC), 0);
            fcntl(ends_[0], F_SETFL, O_NONBLOCK);
            own_ =
                GetParam() == Kind::kPipe ? line_output::own_descriptor(ends_[1]) : dup(ends_[1]);
        }
        ASSERT_GE(own_, 0);
        output_->use(own_);
    }
    ~LineOutputTest() override
    {
        for (const int descriptor : {ends_[0], ends_[1], own_}) {
            close(descriptor);
        }
    }

    const std::unique_ptr<LineOutput> output_ = std::make_unique<LineOutput>("test", -1);
    int ends_[2] = {-1, -1};
    int own_ = -1;
};

TEST_P(LineOutputTest, BuffersLinesAndReportsLostOnes)
{
    constexpr int kLines = 3000;
    const std::string line = std::string(999, 'x') + "\n";
    for (int count = 0; count < kLines; ++count) {
        output_->write({line.substr(0, 500), line.substr(500)});
    }
    EXPECT_TRUE(output_->has_backlog());

    std::string all;
    while (output_->has_backlog()) {
        all += content_of(ends_[0]);
        output_->flush();
    }
    output_->write({"after\n"});
    all += content_of(ends_[0]);

    size_t whole = 0;
    while (all.compare(whole * line.size(), line.size(), line) == 0) {
        ++whole;
    }
    EXPECT_GT(whole, 1000U);
    EXPECT_EQ(all.substr(whole * line.size()),
              "test: " + std::to_string(kLines - whole) +
                  " lines are missing here: they could not be written in time\nafter\n");
}

TEST_P(LineOutputTest, TakesALineThatIsLongerThanAPipe)
{
    const std::string line = std::string(300000, 'x') + "\n";
    output_->write({line});
    std::string all;
    while (all.size() < line.size()) {
        all += content_of(ends_[0]);
        output_->flush();
    }
    EXPECT_EQ(all, line);
    output_->write({std::string(2000000, 'y') + "\n"});
    output_->write({"after\n"});
    EXPECT_EQ(content_of(ends_[0]),
              "test: 1 lines are missing here: they could not be written in time\nafter\n");
}

INSTANTIATE_TEST_SUITE_P(Each, LineOutputTest,
                         testing::Values(Kind::kPipe, Kind::kSharedPipe, Kind::kSocket));

TEST(LineOutput, WritesLinesOfAnyLengthToAFile)
{
    const int file = memfd_create("lines", MFD_CLOEXEC);
    ASSERT_GE(file, 0);
    const auto output = std::make_unique<LineOutput>("test", file);
    output->use(file);
    const std::string line = std::string(3'000'000, 'x') + "\n";
    output->write({"before ", line});
    output->write({line, "behind\n"});
    EXPECT_FALSE(output->has_backlog());
    lseek(file, 0, SEEK_SET);
    EXPECT_TRUE(content_of(file) == "before " + line + line + "behind\n");
    close(file);
}

TEST(LineOutput, ReportsWhatAFullDiskLost)
{
    const auto output = std::make_unique<LineOutput>("test", -1);
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    const int file = memfd_create("file", MFD_CLOEXEC);
    output->use(full);
    output->write({"one\n"});
    output->write({"two\n"});
    EXPECT_FALSE(output->has_backlog());
    output->use(file);
    output->write({"three\n"});
    char content[200] = "";
    EXPECT_GT(pread(file, content, sizeof(content) - 1, 0), 0);
    EXPECT_STREQ(content,
                 "test: 2 lines are missing here: they could not be written in time\nthree\n");
    close(full);
    close(file);
}

TEST(LineOutput, EndsALineThatAFullDiskCutOff)
{
    const std::string name = testing::TempDir() + "line_output_test.XXXXXX";
    std::string path = name;
    const int file = mkstemp(path.data());
    ASSERT_GE(file, 0);
    const auto output = std::make_unique<LineOutput>("test", -1);
    output->use(file);
    output->write({"whole\n"});
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small = {10, before.rlim_max};
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    output->write({"cut off\n"});
    setrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, handler);
    output->write({"after\n"});
    char content[200] = "";
    EXPECT_GT(pread(file, content, sizeof(content) - 1, 0), 0);
    EXPECT_STREQ(content,
                 "whole\ncut \n"
                 "test: 1 lines are missing here: they could not be written in time\nafter\n");
    close(file);
    unlink(path.c_str());
}

} // namespace line_output_test

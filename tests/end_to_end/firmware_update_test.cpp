// SPDX-License-Identifier: MIT
// Firmware: commands fetch images from a server, flash and start them.
#include "firmware_test.h"
#include "reboot_programs.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

using testing::AnyOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using Json = nlohmann::ordered_json;

namespace firmware_update_test {

constexpr char kStarted[] = R"({"Status":"0","updateResult":"0"})";
constexpr char kBusy[] =
    R"({"updateResult":"-1","Status":"1","FailReason":"dev is dowing image now"})";
constexpr char kWaiting[] = "hgagent: waiting for the firmware to be installed\n";
constexpr char kReboots[] = "hgagent: the gateway reboots\n";

std::string line(const char *reply)
{
    return std::string(reply) + "\n";
}

// The request of IMAGE_DOWNLOAD.
std::string main_router(const std::string &address)
{
    return Json{{"MainRouter", {{"UpdateUrl", address}}}}.dump();
}

class FirmwareUpdate : public FirmwareTest {
  protected:
    // An agent that fetches an image whose second half the server holds back.
    AgentProcess call_held(OutputTo output = OutputTo::kPipe) const
    {
        return AgentProcess(
            {"--state", state_, "call", "IMAGE_DOWNLOAD", main_router(address("hold/new.image"))},
            output);
    }
    // Runs an update that fails, and expects that nothing has changed.
    void expect_no_update(const std::string &from) const
    {
        const AgentResult result = run("IMAGE_DOWNLOAD", main_router(from));
        EXPECT_EQ(result.exit_status, 0) << from;
        EXPECT_EQ(result.output, line(kStarted)) << from;
        EXPECT_THAT(result.error, Not(HasSubstr("reboots"))) << from;
        expect_version(kOldVersion);
        EXPECT_EQ(reply("RP_HG_REBOOT"), kDone);
        expect_version(kOldVersion);
    }
};

TEST_F(FirmwareUpdate, FetchesFlashesAndReboots)
{
    const RebootPrograms programs;
    ASSERT_TRUE(programs.are_found());
    expect_version(kOldVersion);
    set_time(kStart + 5000);
    EXPECT_EQ(text("GET_HG_BASE_INFO", "UpTime"), "5000");

    ServingAgent agent({"--state", state_});
    EXPECT_EQ(agent.ask("IMAGE_DOWNLOAD", main_router(address("new.image"))), kStarted);
    agent.await_progress(100);
    const AgentResult result = agent.process().finish();
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.output, IsEmpty());
    EXPECT_THAT(result.error, HasSubstr(kReboots));
    EXPECT_THAT(result.error, Not(HasSubstr("<3>"))) << "what was asked for is no error";
    EXPECT_FALSE(programs.were_run()) << "the machine of the test was to be rebooted";

    const std::vector<int> &progress = agent.progress();
    EXPECT_GT(progress.size(), 1U);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end(), std::less_equal<>()));
    EXPECT_EQ(progress.back(), 100);

    expect_version(kNewVersion);
    EXPECT_EQ(text("GET_HG_BASE_INFO", "FWDATA"), "2026-01-31");
    EXPECT_EQ(text("GET_HG_BASE_INFO", "UpTime"), "0");
}

TEST_F(FirmwareUpdate, IsVisibleToAServingAgent)
{
    ServingAgent agent({"--state", state_});
    EXPECT_EQ(agent.ask("IMAGE_DOWNLOAD", main_router(address("new.image"))), kStarted);
    EXPECT_TRUE(agent.process().await_error(kReboots));
    Json status;
    while (status["FWVersion"] != kNewVersion) {
        status = Json::parse(agent.ask("HG_GET_UPDATE_STATUS"));
    }
    EXPECT_THAT(agent.ask("GET_HG_BASE_INFO"),
                HasSubstr(std::string(R"("FWVersion":")") + kNewVersion + R"(")"));
}

TEST_F(FirmwareUpdate, RefusesAConcurrentOne)
{
    ServingAgent agent({"--state", state_});
    EXPECT_EQ(agent.ask("IMAGE_DOWNLOAD", main_router(address("hold/new.image"))), kStarted);
    agent.await_progress(40);
    EXPECT_EQ(agent.ask("IMAGE_DOWNLOAD", main_router(address("new.image"))), kBusy);
    EXPECT_EQ(agent.ask("UPDATE_IMMEDIATE",
                        Json{{"Image", {{"UpdateUrl", address("new.image")}}}}.dump()),
              R"({"Status":"1","FailReason":"dev is dowing image now"})");
    EXPECT_THAT(agent.ask("HG_IMAGE_DOWNLOAD", Json{{"UpdateUrl", address("new.image")}}.dump()),
                HasSubstr(R"("FailReason":"update status maybe downloading or upgrading")"));
    EXPECT_THAT(agent.ask("IMAGE_UPDATE", R"({"MainRouter":{"Update":"1"}})"),
                HasSubstr(R"("FailReason":"update status maybe downloding or upgrading")"));
    EXPECT_THAT(agent.ask("GET_SN_INFO"), HasSubstr(R"("Status":"0")"));

    agent.process().close_input();
    EXPECT_TRUE(agent.process().await_error(kWaiting));
    server_.release();
    EXPECT_EQ(agent.process().finish().exit_status, 0);
    EXPECT_EQ(server_.requests().size(), 1U);
    expect_version(kNewVersion);
}

TEST_F(FirmwareUpdate, ChangesNothingWhenItFails)
{
    serve_broken_image("broken.image");
    std::ofstream(folder_ + "/page.html") << "<html>This is no firmware.</html>\n";
    expect_no_update(address("broken.image"));
    expect_no_update(address("page.html"));
    expect_no_update(address("missing.image"));
    expect_no_update(address("less/new.image"));
    expect_no_update("ftp://127.0.0.1/new.image");
    expect_no_update("");
}

TEST_F(FirmwareUpdate, RunsNothingFromAnAddress)
{
    const std::string touched = test_file("touched");
    const std::string inner = "touch " + touched;
    for (const std::string &address :
         {";" + inner + ";", "$(" + inner + ")", "`" + inner + "`", "| " + inner,
          "http://127.0.0.1/\"; " + inner + "; \"", "http://127.0.0.1/'; " + inner + " #",
          "http://127.0.0.1/\n" + inner + "\n", "--output " + touched}) {
        const AgentResult result = run("IMAGE_DOWNLOAD", main_router(address));
        EXPECT_EQ(result.output, line(kStarted)) << address;
        EXPECT_THAT(result.error, Not(HasSubstr("refused to run"))) << address;
        EXPECT_FALSE(std::filesystem::exists(touched)) << address;
    }
    expect_version(kOldVersion);

    const std::string name = "$(reboot);`reboot`&'reboot'|reboot";
    serve_image_as(name);
    EXPECT_EQ(reply("IMAGE_DOWNLOAD", main_router(address(name))), line(kStarted));
    expect_version(kNewVersion);
}

TEST_F(FirmwareUpdate, GoesStepByStep)
{
    const Json download = {{"UpdateUrl", address("new.image")}};
    const AgentResult nothing_there = run("HG_IMAGE_UPDATE", R"({"Update":"1"})");
    EXPECT_EQ(nothing_there.exit_status, 1);
    EXPECT_THAT(nothing_there.output, HasSubstr("gghelper_update_image failed"));

    EXPECT_EQ(reply("HG_IMAGE_DOWNLOAD", download.dump()), kDone);
    EXPECT_EQ(reply("HG_IMAGE_UPDATE", R"({"Update":"0"})"),
              "{\"Update\":\"0\",\"Status\":\"0\"}\n");
    EXPECT_EQ(reply("RP_HG_REBOOT"), kDone);
    expect_version(kOldVersion);
    EXPECT_EQ(reply("HG_IMAGE_UPDATE", R"({"Update":"1"})"),
              "{\"Update\":\"1\",\"Status\":\"0\"}\n");
    expect_version(kOldVersion);
    EXPECT_EQ(reply("RP_HG_REBOOT"), kDone);
    expect_version(kNewVersion);
}

TEST_F(FirmwareUpdate, ShowsABarOnATerminal)
{
    AgentProcess agent({"--state", state_, "call", "HG_IMAGE_DOWNLOAD",
                        Json{{"UpdateUrl", address("new.image")}}.dump()},
                       OutputTo::kOneTerminal);
    const AgentResult result = agent.finish();
    EXPECT_EQ(result.exit_status, 0);
    const std::string whole = "firmware [" + std::string(40, '#') + "] 100 %\r\n";
    EXPECT_THAT(result.output, HasSubstr("firmware [####"));
    EXPECT_THAT(result.output, testing::EndsWith(whole + "{\r\n\t\"Status\":\t\"0\"\r\n}\r\n"));
}

TEST_F(FirmwareUpdate, KeepsItsProgressBarBelowTheLines)
{
    AgentProcess agent = call_held(OutputTo::kOneTerminal);
    const std::string waiting = "hgagent: waiting for the firmware to be installed\r\n";
    std::string seen;
    while (seen.find(waiting) == std::string::npos) {
        seen += agent.read_line() + "\n";
    }
    server_.release();
    const AgentResult result = agent.finish();
    EXPECT_EQ(result.exit_status, 0);
    // It starts a line, whether or not the bar was on that line before.
    EXPECT_THAT(seen, AnyOf(HasSubstr("\n" + waiting), HasSubstr("\r\x1b[K" + waiting)));
    EXPECT_THAT(result.output, testing::EndsWith("\nhgagent: the gateway reboots\r\n"));
    expect_version(kNewVersion);
}

TEST_F(FirmwareUpdate, EndsWithASignal)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        AgentProcess called = call_held();
        EXPECT_TRUE(called.await_error(kWaiting));
        called.signal(signal);
        const AgentResult result = called.wait();
        EXPECT_EQ(result.exit_status, 128 + signal);
        EXPECT_EQ(result.output, line(kStarted));
        EXPECT_EQ(result.error, kWaiting);

        ServingAgent serving({"--state", state_});
        EXPECT_EQ(serving.ask("IMAGE_DOWNLOAD", main_router(address("hold/new.image"))), kStarted);
        serving.await_progress(40);
        serving.process().signal(signal);
        EXPECT_EQ(serving.process().wait().exit_status, 128 + signal);

        expect_version(kOldVersion);
    }
    server_.release();
    EXPECT_EQ(reply("IMAGE_DOWNLOAD", main_router(address("new.image"))), line(kStarted));
    expect_version(kNewVersion);
}

TEST_F(FirmwareUpdate, EndsWithASignalInsideACommand)
{
    for (const char *behaviour : {"hang/new.image", "lie/redirect-that-drips", "lie/drip"}) {
        const std::string request = Json{{"UpdateUrl", address(behaviour)}}.dump();
        const size_t before = server_.requests().size();
        const auto await_request = [&](size_t count) {
            while (server_.requests().size() < before + count) {
                std::this_thread::yield();
            }
        };
        AgentProcess called({"--state", state_, "call", "HG_IMAGE_DOWNLOAD", request});
        await_request(1);
        called.signal(SIGTERM);
        const AgentResult result = called.wait();
        EXPECT_EQ(result.exit_status, 128 + SIGTERM) << behaviour;
        EXPECT_THAT(result.output, HasSubstr(R"("FailReason":"hg download image failed")"));

        AgentProcess serving({"--state", state_, "serve"});
        serving.send(R"({"command":"HG_IMAGE_DOWNLOAD","params":)" + request + "}\n");
        await_request(2);
        serving.signal(SIGTERM);
        const AgentResult served = serving.wait();
        EXPECT_EQ(served.exit_status, 128 + SIGTERM) << behaviour;
        EXPECT_THAT(served.output, HasSubstr(R"("FailReason":"hg download image failed")"));
    }
    EXPECT_EQ(reply("HG_IMAGE_DOWNLOAD", Json{{"UpdateUrl", address("new.image")}}.dump()), kDone);
}

TEST_F(FirmwareUpdate, WorksAfterAHostileServer)
{
    const std::string trace = test_file("lies.trace");
    ServingAgent agent({"--state", state_, "--trace", trace});
    const auto download = [&](const std::string &from) {
        return agent.ask("HG_IMAGE_DOWNLOAD", Json{{"UpdateUrl", address(from)}}.dump());
    };
    for (const char *lie : {"redirect-with-endless-chunks", "endless-extension-of-a-chunk",
                            "endless-trailers", "endless-continues", "image-without-end"}) {
        EXPECT_THAT(download(std::string("lie/") + lie),
                    HasSubstr(R"("FailReason":"hg download image failed")"))
            << lie;
    }
    EXPECT_EQ(download("new.image"), R"({"Status":"0"})");
    EXPECT_EQ(agent.process().finish().exit_status, 0);
    EXPECT_THAT(content_of(trace), HasSubstr("the server sends more than 4194304 bytes in "
                                             "addition to its response"));
}

TEST_F(FirmwareUpdate, AcceptsFilesOnlyFromItsFolder)
{
    const std::string request = Json{{"UpdateUrl", "file://" + image_}}.dump();
    const auto download = [&](const std::vector<std::string> &options) {
        std::vector<std::string> all = {"--state", state_};
        all.insert(all.end(), options.begin(), options.end());
        return call("HG_IMAGE_DOWNLOAD", request, all).output;
    };
    EXPECT_THAT(download({}), HasSubstr(R"("Status":"1")"));
    EXPECT_THAT(download({"--firmware-folder", "/usr"}), HasSubstr(R"("Status":"1")"));
    EXPECT_EQ(download({"--firmware-folder", folder_}), kDone);
    EXPECT_EQ(error_of({"--firmware-folder", folder_ + "/none", "hosts"}, 4),
              "hgagent: " + folder_ + "/none: No such file or directory\n");
}

TEST_F(FirmwareUpdate, AcceptsOnlyImagesSignedByItsKey)
{
    const std::string key = folder_ + "/key";
    const std::string make = "openssl genpkey -algorithm ed25519 -out " + key +
                             " && openssl pkey -in " + key + " -pubout -out " + key + ".pub && " +
                             HG_MKIMAGE_PATH + " --product HGU-AX3000 --version V9.2 --sign " +
                             key + " " + folder_ + "/signed.image";
    ASSERT_EQ(std::system(make.c_str()), 0);
    const auto download = [&](const std::string &name) {
        return call("HG_IMAGE_DOWNLOAD", Json{{"UpdateUrl", address(name)}}.dump(),
                    {"--state", state_, "--firmware-key", key + ".pub"})
            .output;
    };
    EXPECT_THAT(download("new.image"), HasSubstr(R"("Status":"1")"));
    EXPECT_EQ(download("signed.image"), kDone);
}

} // namespace firmware_update_test

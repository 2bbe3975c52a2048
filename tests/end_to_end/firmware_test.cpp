// SPDX-License-Identifier: MIT
#include "firmware_test.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

std::string new_folder()
{
    std::string folder = test_file("firmware");
    fs::remove_all(folder);
    fs::create_directory(folder);
    return folder;
}

} // namespace

FirmwareTest::FirmwareTest()
    : folder_(new_folder()), image_(folder_ + "/new.image"), server_(folder_)
{
    const std::string make = std::string(HG_MKIMAGE_PATH) + " --product HGU-AX3000 --version " +
                             kNewVersion + " --date 2026-01-31 --size 3000000 " + image_;
    EXPECT_EQ(std::system(make.c_str()), 0);
}

void FirmwareTest::serve_image_as(const std::string &name) const
{
    fs::copy_file(image_, folder_ + "/" + name);
}

void FirmwareTest::serve_broken_image(const std::string &name) const
{
    serve_image_as(name);
    std::fstream file(folder_ + "/" + name, std::ios::in | std::ios::out | std::ios::binary);
    file.seekg(2000000);
    const int byte = file.get();
    file.seekp(2000000);
    file.put(static_cast<char>(byte + 1));
}

void FirmwareTest::expect_version(const std::string &version) const
{
    EXPECT_EQ(text("GET_HG_BASE_INFO", "FWVersion"), version);
    EXPECT_EQ(text("HG_GET_UPDATE_STATUS", "FWVersion"), version);
    EXPECT_EQ(text("QUERY_SYSTEM_INFO", "SWVersion"), version);
}

ServingAgent::ServingAgent(const std::vector<std::string> &options)
    : process_([&] {
          std::vector<std::string> words = options;
          words.emplace_back("serve");
          return words;
      }())
{
}

nlohmann::ordered_json ServingAgent::read()
{
    const std::string line = process_.read_line();
    if (line.empty()) {
        throw std::runtime_error("the agent has ended");
    }
    nlohmann::ordered_json read = nlohmann::ordered_json::parse(line);
    if (!read.contains("progress")) {
        return read;
    }
    EXPECT_EQ(read.size(), 1U) << line;
    EXPECT_EQ(read["progress"].size(), 2U) << line;
    EXPECT_EQ(read["progress"]["task"], "firmware") << line;
    progress_.push_back(read["progress"]["percent"]);
    return nullptr;
}

std::string ServingAgent::ask(const std::string &command, const std::string &request)
{
    process_.send(R"({"command":")" + command + R"(","params":)" + request + "}\n");
    nlohmann::ordered_json answer;
    while (answer.is_null()) {
        answer = read();
    }
    EXPECT_EQ(answer["result"], 0);
    const std::string reply = answer["reply"].dump();
    record(command, request, reply);
    return reply;
}

void ServingAgent::await_progress(int percent)
{
    while (progress_.empty() || progress_.back() < percent) {
        EXPECT_TRUE(read().is_null());
    }
}

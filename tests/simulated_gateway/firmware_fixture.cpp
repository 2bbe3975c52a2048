// SPDX-License-Identifier: MIT
#include "firmware_fixture.h"

#include "firmware/image.h"

#include <cstdlib>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace simulated_gateway;

FirmwareTest::FirmwareTest() : server_(path(""))
{
    setenv("no_proxy", "*", 1);
    write("new.image", make_image());
}

std::string make_image(const ImageOptions &options)
{
    std::string payload(options.payload_size, '\0');
    uint32_t number = 1;
    for (char &byte : payload) {
        number = number * 1664525 + 1013904223;
        byte = static_cast<char>(number >> 24);
    }
    ImageHeader header;
    header.is_signed = !options.signing_key.empty();
    header.product = options.product;
    header.version = options.version;
    header.date = options.date;
    header.payload_size = payload.size();
    header.rollback = options.rollback;
    Sha256 digest;
    digest.add(header.encode());
    digest.add(payload);
    header.sha256 = digest.finish();
    if (header.is_signed) {
        header.signature = SigningKey(options.signing_key).sign(header.encode());
    }
    return header.encode() + payload;
}

void FirmwareTest::make_key(const std::string &name) const
{
    run_openssl({"genpkey", "-algorithm", "ed25519", "-out", path(name)});
    run_openssl({"pkey", "-in", path(name), "-pubout", "-out", path(name + ".pub")});
}

void FirmwareTest::run_openssl(std::vector<std::string> words)
{
    std::string program = "openssl";
    std::vector<char *> argv = {program.data()};
    for (std::string &word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    pid_t process = 0;
    ASSERT_EQ(posix_spawnp(&process, argv[0], nullptr, nullptr, argv.data(), environ), 0);
    int status = 0;
    waitpid(process, &status, 0);
    ASSERT_EQ(status, 0);
}

void FirmwareTest::set_limit(const std::string &name, const std::string &value)
{
    setenv(("SIMULATED_GATEWAY_" + name).c_str(), value.c_str(), 1);
}

std::string FirmwareTest::refusal(const std::string &address) const
{
    EXPECT_EQ(devapi_download_image(address.c_str(), 0), -1) << address.substr(0, 200);
    return reason();
}

std::string FirmwareTest::version_after_flash()
{
    EXPECT_EQ(devapi_update_image(), 0);
    simulated_gateway_power_cycle();
    return version();
}

std::string FirmwareTest::version()
{
    UpdateStatusInfo status = {};
    SystemInfo system = {};
    HgBaseInfo base = {};
    EXPECT_EQ(devapi_get_update_status_info(&status), 0);
    EXPECT_EQ(devapi_get_system_info(&system), 0);
    EXPECT_EQ(devapi_get_hg_base_info(&base), 0);
    EXPECT_STREQ(status.FWVersion, system.SWVersion);
    EXPECT_STREQ(status.FWVersion, base.FWVersion);
    EXPECT_STREQ(status.FWDATA, base.FWDATA);
    return status.FWVersion;
}

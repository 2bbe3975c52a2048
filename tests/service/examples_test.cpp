// SPDX-License-Identifier: MIT
// The sample files do what their comments say.
#include "service/config.h"

#include <fstream>
#include <gtest/gtest.h>

namespace agent::service {

namespace {

Policy::Verdict verdict_for(const char *member, const char *request)
{
    RunOptions options;
    options.config = EXAMPLES "/service/hgagent.toml";
    const AskedFor asked_for = read_asked_for(request).value();
    const Identity who = {"socket", member, {member}, false};
    return load_config(options).policy.decide(who, asked_for.subject, asked_for.name);
}

std::string text_of(const std::string &path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

TEST(Documents, NameEverySetting)
{
    const std::string page = text_of(DOCUMENTS "/service.md");
    const std::string manual = text_of(DOCUMENTS "/man/hgagent.1");
    for (const Setting &setting : settings()) {
        EXPECT_NE(page.find("`" + std::string(setting.key) + "`"), std::string::npos)
            << setting.key;
        const std::string option(setting.option + 1);
        EXPECT_NE(manual.find("Fl " + option), std::string::npos) << option;
        if (!setting.belongs_to_agent()) {
            EXPECT_NE(page.find("`-" + option), std::string::npos) << option;
        }
    }
}

TEST(Examples, LetAdministratorsDoEverything)
{
    for (const char *request : {"SET_WIFI_INFO", "report:image-upgrade", "notice:any",
                                "event:policy.refused", "control:hello"}) {
        EXPECT_TRUE(verdict_for("uid:0", request).allowed) << request;
        EXPECT_TRUE(verdict_for("uid:0", request).sees_secrets) << request;
    }
}

TEST(Examples, LetSupportLookAndTest)
{
    for (const char *request : {"GET_WIFI_INFO", "LINK_CHECK", "report:topology", "event:notice"}) {
        EXPECT_TRUE(verdict_for("group:hgagent", request).allowed) << request;
        EXPECT_FALSE(verdict_for("group:hgagent", request).sees_secrets) << request;
    }
    for (const char *request : {"SET_WIFI_INFO", "GET_GREENNET_DEVICE_LIST", "report:image-upgrade",
                                "event:policy.refused", "notice:any"}) {
        EXPECT_FALSE(verdict_for("group:hgagent", request).allowed) << request;
    }
}

TEST(Examples, LetMonitorsWatch)
{
    EXPECT_TRUE(verdict_for("user:nobody", "GET_SN_INFO").allowed);
    EXPECT_TRUE(verdict_for("user:nobody", "event:update.failed").allowed);
    EXPECT_FALSE(verdict_for("user:nobody", "GET_WIFI_INFO").allowed);
    EXPECT_FALSE(verdict_for("user:somebody", "GET_SN_INFO").allowed);
}

// The values in comments of the sample are the defaults.
TEST(Examples, TellTheDefaults)
{
    RunOptions options;
    const ServiceConfig none = load_config(options);
    EXPECT_EQ(none.log_level, 3);
    EXPECT_EQ(none.socket.mode, "0600");
    EXPECT_EQ(none.worker.kind, "child");
    EXPECT_EQ(none.worker.background_seconds, 1800);
    EXPECT_EQ(none.limits.pending_output, 4194304);
    EXPECT_EQ(none.limits.idle_seconds, 0);
}

} // namespace agent::service

// SPDX-License-Identifier: MIT
// The services that the agent exports, called as a plug-in calls them.
#include "smart_router_service/host_agent.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace host_services_test {

std::string base64_of(const char *text)
{
    char *encoded = base64_encode(text);
    const std::string result = encoded != nullptr ? encoded : "(null)";
    free_str_buf(&encoded);
    return result;
}

std::string md5_of(const char *text)
{
    char digest[HG_MD5_TEXT_SIZE];
    memset(digest, 'x', sizeof(digest));
    getmd5(text, digest);
    return digest;
}

std::string mac_of(const char *text, int32_t form)
{
    char mac[HG_MAC_TEXT_SIZE];
    memset(mac, 'x', sizeof(mac));
    mac_form_translate(text, form, mac);
    return mac;
}

TEST(Base64, EncodesTexts)
{
    EXPECT_EQ(base64_of(""), "");
    EXPECT_EQ(base64_of("f"), "Zg==");
    EXPECT_EQ(base64_of("fo"), "Zm8=");
    EXPECT_EQ(base64_of("foo"), "Zm9v");
    EXPECT_EQ(base64_of("foob"), "Zm9vYg==");
    EXPECT_EQ(base64_of("\xff\xfe\xfd"), "//79");
    EXPECT_EQ(base64_of(nullptr), "(null)");
}

TEST(Base64, StaysOnOneLine)
{
    const std::string encoded = base64_of(std::string(3000, 'a').c_str());
    EXPECT_EQ(encoded.size(), 4000U);
    EXPECT_EQ(encoded.find('\n'), std::string::npos);
}

TEST(Md5, WritesLowerCaseDigits)
{
    EXPECT_EQ(md5_of(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(md5_of("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
    EXPECT_EQ(md5_of(nullptr), "");
}

TEST(MacForm, ReadsTheCommonForms)
{
    for (const char *text : {"3C:6A:D2:10:4F:20", "3c:6a:d2:10:4f:20", "3c-6a-d2-10-4F-20",
                             "3C6AD2104F20", "3c6ad2104f20", "3c6a.d210.4f20"}) {
        EXPECT_EQ(mac_of(text, HG_MAC_WITH_COLONS), "3C:6A:D2:10:4F:20") << text;
        EXPECT_EQ(mac_of(text, HG_MAC_BARE), "3C6AD2104F20") << text;
    }
}

TEST(MacForm, ReturnsAnEmptyTextForAnythingElse)
{
    const std::string endless(1000000, 'A');
    for (const char *text :
         {"", "NULL", "3C:6A:D2:10:4F", "3C:6A:D2:10:4F:20:00", "3C:6A:D2:10:4F:2G",
          "3C:6A-D2:10:4F:20", "3C:6AD2:10:4F:20", " 3C6AD2104F20", "3C6AD2104F2", "3C6AD2104F200",
          "3C6A:D210:4F20", ":3C6AD2104F20", endless.c_str()}) {
        EXPECT_EQ(mac_of(text, HG_MAC_WITH_COLONS), "") << text;
    }
    EXPECT_EQ(mac_of(nullptr, HG_MAC_BARE), "");
    EXPECT_EQ(mac_of("3C6AD2104F20", 2), "");
    EXPECT_EQ(mac_of("3C6AD2104F20", -1), "");
}

TEST(FreeStrBuf, FreesAndClears)
{
    char *text = strdup("text");
    free_str_buf(&text);
    EXPECT_EQ(text, nullptr);
    free_str_buf(&text);
    free_str_buf(nullptr);
    EXPECT_EQ(text, nullptr);
}

TEST(BridgeMac, IsUnknownWithoutASimulatedGateway)
{
    char mac[HG_BRIDGE_MAC_SIZE];
    memset(mac, 'x', sizeof(mac));
    ts_sys_mgr_get_brmac(mac);
    EXPECT_STREQ(mac, "");
}

TEST(System, HasNoShell)
{
    EXPECT_EQ(system(nullptr), 0);
}

} // namespace host_services_test

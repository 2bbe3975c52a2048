// SPDX-License-Identifier: MIT
// Texts of other programs with random damage: the sanitizers watch, and what is read has to be
// valid.
#include "core/state.h"
#include "system/dhcp_server.h"
#include "system/error.h"
#include "system/flow_tables.h"
#include "system/leases.h"
#include "system/load_meter.h"
#include "system/machine.h"
#include "system/probes.h"
#include "system/text.h"

#include <gtest/gtest.h>
#include <random>

using namespace linux_gateway;

namespace {

class DamagedTextsTest : public testing::Test {
  protected:
    // Calls with copies of the text, each with a few bytes that are changed, removed or repeated.
    template <class Body> void each_damage(const std::string &text, const Body &body)
    {
        constexpr int copies = 1500;
        for (int i = 0; i < copies; ++i) {
            std::string copy = text;
            for (size_t changes = random(4) + 1; changes > 0 && !copy.empty(); --changes) {
                damage(copy);
            }
            body(copy);
        }
    }

  private:
    size_t random(size_t below) { return numbers_() % below; }

    void damage(std::string &text)
    {
        constexpr char bytes[] = "\0\n\r\t ,:=#*\"\\{}[]-0f\x7f\x80\xc3\xff";
        const size_t at = random(text.size());
        const size_t length = random(std::min<size_t>(text.size() - at, 40)) + 1;
        switch (random(4)) {
        case 0:
            text[at] = bytes[random(sizeof(bytes) - 1)];
            break;
        case 1:
            text[at] = static_cast<char>(random(256));
            break;
        case 2:
            text.erase(at, length);
            break;
        default:
            text.insert(random(text.size()), text.substr(at, length));
        }
    }

    std::mt19937 numbers_{20'000}; // the same damage in every run
};

TEST_F(DamagedTextsTest, Leases)
{
    size_t read = 0;
    each_damage("1795344631 a4:bb:6d:31:07:5e 192.168.1.101 Küche 01:a4:bb:6d:31:07:5e\n"
                "0 72:9b:e0:46:d8:15 192.168.1.102 * *\nduid 00:01\n1 2 fd00::1 pc 00:01\n",
                [&](const std::string &text) {
                    for (const Lease &lease : parse_leases(text)) {
                        ++read;
                        EXPECT_EQ(printable(lease.name), lease.name);
                        EXPECT_EQ(lease.ipv4.find_first_not_of("0123456789."), std::string::npos);
                    }
                });
    EXPECT_GT(read, 500u);
}

TEST_F(DamagedTextsTest, DhcpSettings)
{
    size_t read = 0;
    each_damage("conf-dir=/etc/x,*.conf\ndhcp-range=set:a,192.168.1.2,192.168.1.9,12h # a\n"
                "dhcp-option=option:router,192.168.1.1\ndhcp-host=a4:bb:6d:31:07:5e,192.168.1.3\n",
                [&](const std::string &text) {
                    DhcpServer server;
                    add_dhcp_settings(server, text);
                    for (const DhcpServer::Range &range : server.ranges) {
                        ++read;
                        EXPECT_EQ(range.end.find_first_not_of("0123456789."), std::string::npos);
                    }
                    server.range_in("192.168.1.1", 24);
                });
    EXPECT_GT(read, 500u);
}

TEST_F(DamagedTextsTest, States)
{
    State state;
    state.name = "Küche";
    state.hosts[*parse_mac("A4BB6D31075E")] = {"Anna", "Computer", true, 20'000};
    GreenHost green;
    green.mac = *parse_mac("729BE046D815");
    green.periods = {{true, "22:00", "07:30", "12345"}};
    state.green_hosts[7] = green;
    size_t valid = 0;
    each_damage(to_json(state), [&](const std::string &text) {
        try {
            const State read = read_state(text);
            ++valid;
            EXPECT_EQ(read_state(to_json(read)), read) << text;
            rules_of(read, "br0", std::nullopt);
        } catch (const Error &) {
            // It is damaged.
        }
    });
    EXPECT_GT(valid, 30u);
}

TEST_F(DamagedTextsTest, TextsOfTheSystem)
{
    each_damage("Package: a\nStatus: install ok installed\nVersion: 1\n\nPackage: b\nVersion: 2\n",
                [](const std::string &text) { installed_version(text, "b"); });
    each_damage("nameserver 192.0.2.1\nnameserver 2001:db8::1\nsearch example\n",
                [](const std::string &text) { name_servers_in(text); });
    each_damage("cpu  100 10 50 800 40 1 2 3 4 5\n", [](const std::string &text) {
        load_counters(text, "  wan0:1 2 3 4 5 6 7 8 9 10\n");
        load_counters("", text);
        memory_percent(text);
    });
    each_damage("MemTotal: 1000 kB\nMemAvailable: 530 kB\n", [](const std::string &text) {
        const int64_t percent = memory_percent(text);
        EXPECT_TRUE(percent >= 0 && percent <= 100) << text;
    });
    each_damage(R"({"nftables": [{"metainfo": {}}, {"flowtable": {"name": "ft"}}]})",
                [](const std::string &text) { flow_tables_in(text); });
}

} // namespace

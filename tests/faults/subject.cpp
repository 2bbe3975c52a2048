// SPDX-License-Identifier: MIT
#include "subject.h"

#include "commands.h"
#include "embedded/protocol_commands.h"
#include "embedded/protocol_reports.h"
#include "handler_test.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <memory>

namespace {

// ---- Requests ----------------------------------------------------------------------------------

// For commands whose example lacks a key, or has only one element in a list.
const std::map<std::string_view, const char *> kRequests = {
    {"HG_IMAGE_UPDATE", R"({"Update":"1"})"},
    {"IMAGE_DOWNLOAD", R"({"MainRouter":{"UpdateUrl":"http://u"},"ChildRouter":[{},{}]})"},
    {"IMAGE_UPDATE", R"({"MainRouter":{"Update":"1"}})"},
    {"SET_AD_BASE_INFO", R"({"MAC":"8C:79:F5:62:1A:09","DevType":"TV","ByName":"Television",
        "AccessEnable":"1","DownLimit":"20000","UpLimit":"1","SpeedLimit":"1",
        "StaticDhcpEnable":"1","ip":"192.168.1.102"})"},
    {"SET_CHILD_ROUTERAD_BASE_INFO", R"({"DeviceID":"3C6AD2228180","Mac":"72:9B:E0:46:D8:15",
        "DevType":"Tablet","ByName":"Tablet","NetMonopoly":"0","AccessEnable":"1"})"},
    {"SET_GREENNET_PROTECT_PERIOD_LIST", R"({"Mac":"72:9B:E0:46:D8:15","Sleep":[
        {"StartTime":"21:00","EndTime":"06:30","Enable":"0","DaysOfWeek":"12345"},
        {"StartTime":"13:00","EndTime":"14:30","Enable":"1","DaysOfWeek":"67"}]})"},
    {"SET_GREENNET_DEVICE_LIST_of_none", R"({"DeviceList":[]})"},
    {"SET_HG_GUEST_SSID", R"({"Enable":"1","SSID":"guests","Band":"2.4GHz","PWD":"welcome-2026",
        "ENCRYPT":"WPA2","ContinueTime":"2","HourTime":"3","EndTimestamp":"7","Mode":"bgn",
        "AdvertisementEnable":"1"})"},
    {"SET_QOS_CLASSIFICATION_INFO", R"({"Id":"0","Action":"1","Name":"Backup","PriorityLevel":"8",
        "type_list":[{"Type":"DPORT","Min":"873","Max":"873"},
        {"Type":"SIP","Min":"10.0.0.1","Max":"10.0.0.9"}]})"},
    {"SET_QOS_CLASSIFICATION_INFO_to_delete", R"({"Id":"3","Action":"2"})"},
    {"SET_ROUTE_WAN_INFO", R"({"WANName":"Voice","SERVICELIST":"VOIP","ADDRESSTYPE":"Static",
        "IPADDRESS":"172.24.9.20","SUBNETMASK":"255.255.255.0","GATEWAY":"172.24.9.1",
        "DNS1":"172.24.9.53","DNS2":"172.24.9.54","IPV6_IPADDRESS":"2001:db8::20",
        "IPV6_PREFIXLENGTH":"64","IPV6_GATEWAY":"2001:db8::1","IPV6_DNS1":"2001:db8::53",
        "IPV6_DNS2":"2001:db8::54","IPV6_PRIFIX":"2001:db8::","PPPOE_USR_NAME":"smith",
        "PPPOE_PASSWORD":"secret","NATENABLE":"1","QOSENABLE":"1","VLANID":"46",
        "VLANPRIORITY":"5"})"},
    {"SET_WIFI_INFO", R"({"SSIDIndex":"1","SSID":"home","PWD":"correct horse","ENCRYPT":"WPA2",
        "PowerLevel":"80","Channel":"6","Enable":"1","AdvertisementEnable":"1","Mode":"bgn",
        "Beamforming":"1"})"},
    {"SET_WIFI_INFO_LIST", R"({"WIFILIST":[
        {"SSIDIndex":"1","SSID":"home","PWD":"correct horse","ENCRYPT":"WPA2","PowerLevel":"80",
        "Channel":"6","Enable":"1","Bandwidth":"20","AdvertisementEnable":"1","Mode":"bgn",
        "Beamforming":"1"},
        {"SSIDIndex":"5","SSID":"home-5G","PWD":"correct horse","ENCRYPT":"WPA2",
        "PowerLevel":"100","Channel":"36","Enable":"1"}],"StaCtrl":"1","FastRoaming":"1"})"},
    {"SET_WIFI_SLEEP_SCHEDULE", R"({"WIFISleepList":[
        {"Enable":"1","StartTime":"23:00","EndTime":"06:30","DaysOfWeek":"1,2,3,4,5"},
        {"Enable":"1","StartTime":"13:00","EndTime":"14:30","DaysOfWeek":"6,7"}]})"},
    {"UPDATE_IMMEDIATE", R"({"Image":{"UpdateUrl":"http://u"},"Dpi":{},"DpiHttp":{}})"},
    {"UPDATE_IMMEDIATE_of_an_image", R"({"Image":{"UpdateUrl":"http://u"}})"},
    {"parse_wifi_set_info_from_json", R"({"SSIDIndex":"5","SSID":"home-5G","PowerLevel":"100",
        "Channel":"36","Enable":"1","PWD":"correct horse"})"},
};

// ---- Builders ----------------------------------------------------------------------------------

template <int32_t (*builder)(cJSON *)> int32_t run_builder(cJSON *object, std::string &)
{
    return builder(object);
}

int32_t build_home_page(cJSON *object, std::string &)
{
    json_get_home_page_info(object); // its result is the device's, regardless of the reply
    return cJSON_GetObjectItem(object, "Status") != nullptr ? 0 : -1;
}

int32_t send_notice(cJSON *, std::string &)
{
    return json_msg_notice_to_app("message", "plugin");
}

int32_t upgrade(cJSON *, std::string &)
{
    pthread_mutex_trylock(&downimagelock);
    std::string("http://u").copy(g_update_url, HG_UPDATE_URL_SIZE - 1);
    pthread_hg_image_upgrade(nullptr);
    const auto lines = recording_host::log_lines();
    return lines.empty() ? 0 : -1;
}

int32_t parse_setting(cJSON *object, std::string &kept)
{
    SsidInfo record = {};
    const int32_t result = parse_wifi_set_info_from_json(&record, object);
    kept = recording_device::contents(&record);
    return result;
}

int32_t list_stations(cJSON *object, std::string &)
{
    return json_get_router_sta_info(object, "main",
                                    "InternetGatewayDevice.WiFi.MultiAP.APDevice.1.");
}

constexpr rich_device::Home kOperators = {"QX2040B", "KOLM"};
constexpr rich_device::Home kSmallPage = {"HGU-AX3000", "TH_OLV"};

std::vector<Subject> make_subjects()
{
    std::vector<Subject> list;
#define ADD_COMMAND(name, handler) list.push_back({name, name});
    SMART_ROUTER_COMMANDS(ADD_COMMAND)
#undef ADD_COMMAND
    // Variants that take a different path.
    list.push_back(
        {"GET_TSLINK_TOPOLOGY_INFO_of_operators", "GET_TSLINK_TOPOLOGY_INFO", nullptr, kOperators});
    list.push_back({"SET_GREENNET_DEVICE_LIST_of_none", "SET_GREENNET_DEVICE_LIST"});
    list.push_back({"SET_QOS_CLASSIFICATION_INFO_to_delete", "SET_QOS_CLASSIFICATION_INFO"});
    list.push_back({"UPDATE_IMMEDIATE_of_an_image", "UPDATE_IMMEDIATE"});

    const auto add_builder = [&](const char *name, Builder builder, rich_device::Home home = {}) {
        list.push_back({name, "", builder, home});
    };
    add_builder("json_msg_notice_to_app", send_notice);
    add_builder("pthread_hg_image_upgrade", upgrade);
    add_builder("json_get_home_page_info", build_home_page);
    add_builder("parse_wifi_set_info_from_json", parse_setting);
    add_builder("json_get_main_router_info", run_builder<json_get_main_router_info>);
    add_builder("json_get_main_router_info_on_a_small_page", run_builder<json_get_main_router_info>,
                kSmallPage);
    add_builder("json_get_main_router_baseinfo", run_builder<json_get_main_router_baseinfo>);
    add_builder("json_get_topo_router_info", run_builder<json_get_topo_router_info>);
    add_builder("json_get_topo_router_info_on_a_small_page", run_builder<json_get_topo_router_info>,
                kSmallPage);
    add_builder("json_get_topo_router_agent_info_bynewmethod",
                run_builder<json_get_topo_router_agent_info_bynewmethod>);
    add_builder("json_get_topo_router_agent_info_bynewmethod_of_operators",
                run_builder<json_get_topo_router_agent_info_bynewmethod>, kOperators);
    add_builder("json_get_router_sta_info", list_stations);
    return list;
}

} // namespace

std::string name_of(const testing::TestParamInfo<Subject> &info)
{
    const Subject &subject = info.param;
    std::string name;
    for (size_t at = 0; at < subject.name.size(); ++at) {
        const char letter = subject.name[at];
        const bool is_in_command = at < subject.command.size();
        if (is_in_command && letter != '_') {
            const bool is_first = at == 0 || subject.name[at - 1] == '_';
            name += is_first ? letter : static_cast<char>(tolower(letter));
        } else if (!is_in_command) {
            name += letter;
        }
    }
    return name;
}

const std::vector<Subject> &subjects()
{
    static const std::vector<Subject> kSubjects = make_subjects();
    return kSubjects;
}

std::vector<Subject> commands()
{
    std::vector<Subject> commands = subjects();
    std::erase_if(commands, [](const Subject &subject) { return subject.builder != nullptr; });
    return commands;
}

const cJSON *description_of(const std::string &command)
{
    static std::map<std::string, Json> parsed;
    const auto texts = embedded::protocol_commands();
    const auto found = std::find_if(texts.begin(), texts.end(), [&](const embedded::Text &text) {
        return text.file_name == command + ".json";
    });
    if (found == texts.end()) {
        return nullptr;
    }
    Json &json = parsed[command];
    if (json == nullptr) {
        json = parse(std::string(found->text));
    }
    return json.get();
}

const cJSON *report_of(const Subject &subject)
{
    static const std::vector<Json> kReports = [] {
        std::vector<Json> reports;
        for (const embedded::Text &text : embedded::protocol_reports()) {
            reports.push_back(parse(std::string(text.text)));
        }
        return reports;
    }();
    for (const Json &report : kReports) {
        const char *builder = cJSON_GetStringValue(cJSON_GetObjectItem(report.get(), "builder"));
        if (subject.builder != nullptr && builder != nullptr && subject.name.starts_with(builder)) {
            return report.get();
        }
    }
    return nullptr;
}

std::string request_for(const Subject &subject)
{
    for (const std::string &name : {subject.name, subject.command}) {
        const auto written = kRequests.find(name);
        if (written != kRequests.end()) {
            return print(parse(written->second).get());
        }
    }
    if (subject.builder != nullptr) {
        return "{}";
    }
    const cJSON *example = cJSON_GetObjectItem(description_of(subject.command), "example");
    const cJSON *request = cJSON_GetObjectItem(example, "request");
    return request != nullptr ? print(request) : "";
}

bool has_endless_walk(const Subject &subject)
{
    // They continue with the next host or SSID after a failure.
    return subject.command == "GET_ATTACH_DEVICE_RIGHT" || subject.command == "GET_WIFI_LIST_INFO";
}

# SPDX-License-Identifier: MIT
"""The errors that check_device.py finds, and those that check_descriptions.py finds in the fields that keys
name: each case breaks a copy of the descriptions and expects a message that says where."""

import copy
import unittest

import check_descriptions
import check_device
import protocol
from device_interface import Interface

INTERFACE = Interface()
COMMANDS = list(protocol.descriptions().values())


def named(parts, name):
    return next(part for part in parts if part["name"] == name)


class DeviceDescriptions(unittest.TestCase):
    def setUp(self):
        self.interface = copy.deepcopy(INTERFACE)

    def field(self, record, name):
        return named(self.interface.records[record]["fields"], name)

    def argument(self, function, name):
        return named(self.interface.functions[function]["arguments"], name)

    def assert_told(self, told):
        faults = list(check_device.rule_faults(self.interface, COMMANDS))
        self.assertTrue(any(told in fault for fault in faults), (told, faults))

    def assert_refused(self, *told):
        faults = list(check_device.schema_faults(self.interface))
        self.assertTrue(any(all(each in fault for each in told) for fault in faults), (told, faults))

    def test_a_text_without_a_width_is_named(self):
        del self.field("RebootInfo", "Time")["width"]
        self.assert_refused("administration.json", "Time", "width")

    def test_a_text_that_is_written_needs_a_width(self):
        del self.argument("devapi_get_net_fault_info", "reason")["width"]
        self.assert_told("devapi_get_net_fault_info: reason: a text to write without a width")

    def test_an_example_has_to_fit(self):
        self.field("RebootInfo", "Time")["width"] = 5
        self.assert_told("RebootInfo.Time: 04:30 does not fit into 5 bytes")

    def test_an_example_has_to_have_the_form(self):
        self.field("RebootInfo", "Time")["example"] = "4:30"
        self.assert_told("RebootInfo.Time: 4:30 does not have the form time_of_day")

    def test_only_a_text_that_is_read_is_a_number(self):
        self.field("RebootInfo", "Time")["number"] = True
        self.assert_refused("administration.json", "Time", "read_as")

    def test_the_interface_has_a_version(self):
        del self.interface.version["major"]
        self.assert_refused("interface.json", "major")

    def test_a_text_needs_a_form(self):
        del self.field("RebootInfo", "Time")["form"]
        self.assert_told("RebootInfo.Time: a text without a form")

    def test_a_form_has_to_exist_and_to_be_used(self):
        self.field("RebootInfo", "Time")["form"] = "noon"
        self.assert_told("RebootInfo.Time: there is no form noon")
        self.interface.forms["noon_too"] = {"text": "noon", "example": "12:00"}
        self.assert_told("no value has the form noon_too")

    def test_a_form_has_to_mention_its_values(self):
        self.interface.forms["switch"]["values"].append("2")
        self.assert_told("interface.json: switch does not mention 2")

    def test_types_constants_and_fields_have_to_exist(self):
        self.field("QosInfo", "rules")["length"] = "QOS_MAX"
        self.assert_told("QosInfo.rules: there is no constant QOS_MAX")
        self.field("QosInfo", "applications")["counted_by"] = "number"
        self.assert_told("QosInfo.applications: number is not a number of this record")
        self.argument("devapi_get_sn_info", "info")["type"] = "SerialInfo"
        self.assert_told("devapi_get_sn_info: info: there is no SerialInfo")
        self.argument("devapi_get_admin_info", "info")["filled"] = ["Name", "Pasword"]
        self.assert_told("devapi_get_admin_info: info: LoginInfo has no Pasword")
        self.argument("devapi_set_lan_ip_info", "setting")["given"] = ["info.Name"]
        self.assert_told("devapi_set_lan_ip_info: setting: LanIpSetting has no info.Name")

    def test_an_array_behind_a_pointer_needs_a_count(self):
        del self.field("PortStatisticsInfo", "entries")["counted_by"]
        self.assert_told("PortStatisticsInfo.entries: nothing gives their number")

    def test_what_reports_or_restores_has_to_exist(self):
        self.interface.functions["devapi_set_upnp_state"]["effect"]["read_with"] = "devapi_get_upnp"
        self.assert_told("devapi_set_upnp_state: there is no devapi_get_upnp")

    def test_what_can_be_restored_names_what_reports_the_values(self):
        del self.interface.functions["devapi_set_upnp_state"]["effect"]["read_with"]
        self.assert_refused("service_switches.json", "devapi_set_upnp_state", "read_with")

    def test_every_caller_has_its_rule(self):
        callers = self.interface.functions["devapi_get_host_num"]["result"]["callers"]
        callers[1]["who"] = ["GET_SN_INFO", "json_get_nothing"]
        self.assert_told("devapi_get_host_num: the rule of GET_ATTACH_DEVICE_RIGHT is missing")
        self.assert_told("devapi_get_host_num: GET_SN_INFO does not call it")
        self.assert_told("devapi_get_host_num: json_get_nothing is not exported")

    def test_what_is_filled_has_its_state_after_a_failure(self):
        del self.interface.functions["devapi_get_sn_info"]["result"]["then"]
        self.assert_told("devapi_get_sn_info: what becomes of info is not said")
        self.interface.functions["devapi_reboot"]["result"]["then"] = "unread"
        self.assert_told("devapi_reboot: it fills nothing that could be unread")

    def test_names_are_unique(self):
        fields = self.interface.records["UpnpState"]["fields"]
        fields.append(fields[0])
        self.assert_told("UpnpState: a field is described twice")
        self.interface.subjects[0]["interface"].append(self.interface.functions["devapi_reboot"])
        self.assert_told("devapi_reboot is described twice")

    def test_the_layout_is_that_of_the_compiler(self):
        layout = {field["name"]: offset for field, offset in self.interface.layout("QosInfo")}
        self.assertEqual(layout, {"Enable": 0, "application_count": 8, "applications": 12, "rule_count": 204,
                                  "rules": 208})
        self.assertEqual(self.interface.size("WanIpInfo"), 163)
        self.assertEqual(self.interface.size("NodeBaseInfo"), 104)


class FieldsOfKeys(unittest.TestCase):
    def assert_told(self, told, key):
        command = {"device_calls": ["devapi_get_sn_info"], "request": [], "replies": [{"keys": [key]}]}
        faults = list(check_descriptions.field_faults(INTERFACE, {"GET_SN_INFO": command}))
        self.assertEqual(faults, [f"GET_SN_INFO: {told}"] if told else [])

    def test_a_key_names_a_field_that_its_value_is_passed_in(self):
        self.assert_told(None, {"key": "MAC", "field": "SnInfo.MAC"})
        self.assert_told("MAC is not passed in SnInfo.Mac", {"key": "MAC", "field": "SnInfo.Mac"})
        self.assert_told("MAC is not passed in AdBaseInfo.Mac", {"key": "MAC", "field": "AdBaseInfo.Mac"})

    def test_the_width_of_a_field_is_not_repeated(self):
        self.assert_told("the width of MAC is that of a field, such as SnInfo.MAC", {"key": "MAC", "max_bytes": 64})
        self.assert_told("max_bytes of MAC is that of SnInfo.MAC",
                         {"key": "MAC", "field": "SnInfo.MAC", "max_bytes": 64})
        self.assert_told(None, {"key": "MAC", "max_bytes": 11})

    def test_a_width_of_a_key_within_a_list(self):
        inner = {"key": "MAC", "max_bytes": 64}
        self.assert_told("the width of MAC is that of a field, such as SnInfo.MAC",
                         {"key": "List", "type": "array", "items": [inner]})

    def test_a_meaning_stands_alone(self):
        for meaning, told in (("whether it is on", None), ("its name", "depends on other keys: its name"),
                              ("the same", "depends on other keys: the same"), ("the same as Band", None),
                              ('"1" when it is on', 'repeats values of its form: "1" when it is on')):
            key = {"key": "Mode", "meaning": meaning, "values": ["0", "1"]}
            command = {"command": "X", "request": [], "replies": [{"keys": [key]}]}
            faults = list(check_descriptions.meaning_faults([command]))
            self.assertEqual(faults, [f"X: the meaning of Mode {told}"] if told else [])


if __name__ == "__main__":
    unittest.main()

# SPDX-License-Identifier: MIT
"""Parental control: the table of devices, and periods without Internet by a clock that the test moves."""
import datetime
import json
import os
import time
import unittest

import case
import network
from network import until

in_whole_tests = unittest.skipUnless(os.environ.get("WHOLE_TESTS"), "one of the whole tests")


def moment(text, offset=0):
    """Seconds since 1970 of a date and time so many hours east of UTC."""
    zone = datetime.timezone(datetime.timedelta(hours=offset))
    return datetime.datetime.fromisoformat(text).replace(tzinfo=zone).timestamp()


class PeriodsTest(case.GatewayCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.first, cls.second = cls.network.clients

    def at(self, agent, text, offset=0):
        """Sets the clock of the agent's process."""
        agent.shift_clock(int(moment(text, offset) - time.time()))

    def protected(self, agent, *periods):
        agent.call("SET_GREENNET_ENABLE", Enable="1")
        agent.call("SET_GREENNET_DEVICE_LIST",
                   DeviceList=[{"Mac": self.first.mac.upper(), "Name": "Jonas", "NotifyEnable": "1"}])
        self.set_periods(agent, *periods)

    def set_periods(self, agent, *periods):
        agent.call("SET_GREENNET_PROTECT_PERIOD_LIST", Mac=self.first.mac.upper(), Sleep=[
            {"StartTime": start, "EndTime": end, "Enable": "1", "DaysOfWeek": days} for start, end, days in periods])

    def await_access(self, allowed):
        until(lambda: self.first.misses(network.SERVER) != allowed, "access" if allowed else "no access", every=0.1)
        self.assertTrue(self.second.reaches(network.SERVER))

    def follow(self, zone, period, moments):
        """The access at each moment."""
        agent = self.agent({"time_zone": zone})
        self.at(agent, *moments[0][:2])
        self.protected(agent, period)
        for text, offset, allowed in moments:
            with self.subTest(zone=zone, period=period, moment=text, offset=offset):
                self.at(agent, text, offset)
                self.await_access(allowed)
        self.assertEqual(agent.close(), 0)

    @in_whole_tests
    def test_a_period_begins_and_ends(self):
        self.follow("UTC", ("12:00", "12:30", "1234567"), [
            ("2026-01-07T11:59:30", 0, True), ("2026-01-07T12:00:01", 0, False), ("2026-01-07T12:29:30", 0, False),
            ("2026-01-07T12:30:01", 0, True)])

    def test_a_period_over_midnight_and_over_a_change_of_the_clocks(self):
        # They go from 02:00 to 03:00 on Sunday, the 29th of March 2026.
        self.follow("Europe/Berlin", ("23:00", "03:30", "6"), [
            ("2026-03-28T22:59:30", 1, True), ("2026-03-28T23:00:01", 1, False), ("2026-03-29T03:29:30", 2, False),
            ("2026-03-29T03:30:01", 2, True)])

    @in_whole_tests
    def test_a_period_over_midnight_belongs_to_the_day_on_which_it_begins(self):
        # The 7th of January 2026 is a Wednesday.
        self.follow("Europe/Berlin", ("23:00", "01:00", "3"), [
            ("2026-01-07T00:30:00", 1, True), ("2026-01-07T23:30:00", 1, False), ("2026-01-08T00:30:00", 1, False),
            ("2026-01-08T01:00:01", 1, True), ("2026-01-08T23:30:00", 1, True)])

    @in_whole_tests
    def test_the_hour_that_is_missing_in_spring(self):
        # The clocks go from 02:00 to 03:00 on Sunday, the 29th of March.
        self.follow("Europe/Berlin", ("01:30", "03:30", "7"), [
            ("2026-03-29T01:29:30", 1, True), ("2026-03-29T01:30:01", 1, False), ("2026-03-29T03:29:30", 2, False),
            ("2026-03-29T03:30:01", 2, True)])

    @in_whole_tests
    def test_the_hour_that_is_there_twice_in_autumn(self):
        # From 03:00 back to 02:00 on Sunday, the 25th of October.
        self.follow("Europe/Berlin", ("01:30", "03:30", "7"), [
            ("2026-10-25T01:29:30", 2, True), ("2026-10-25T02:45:00", 2, False), ("2026-10-25T02:45:00", 1, False),
            ("2026-10-25T03:29:30", 1, False), ("2026-10-25T03:30:01", 1, True)])

    @in_whole_tests
    def test_a_zone_ahead_of_utc(self):
        # Half past midnight on Thursday in Auckland is Wednesday in UTC.
        self.follow("Pacific/Auckland", ("00:15", "00:45", "4"), [
            ("2026-01-08T00:14:30", 13, True), ("2026-01-08T00:30:00", 13, False), ("2026-01-08T00:45:01", 13, True),
            ("2026-01-09T00:30:00", 13, True)])

    @in_whole_tests
    def test_a_clock_that_goes_back(self):
        self.follow("UTC", ("12:00", "13:00", "1234567"), [
            ("2026-01-07T12:30:00", 0, False), ("2026-01-07T09:00:00", 0, True), ("2026-01-09T12:30:00", 0, False)])

    def test_switches(self):
        agent = self.agent()
        self.at(agent, "2026-01-07T12:10:00")
        self.protected(agent, ("12:00", "13:00", "1234567"))
        self.await_access(False)
        agent.call("SET_GREENNET_ENABLE", Enable="0")
        self.await_access(True)
        agent.call("SET_GREENNET_ENABLE", Enable="1")
        self.await_access(False)
        self.set_periods(agent)
        self.await_access(True)
        self.set_periods(agent, ("11:00", "12:30", "3"), ("14:00", "15:00", "3"))
        self.await_access(False)
        agent.call("SET_GREENNET_DEVICE_LIST", DeviceList=[])
        self.await_access(True)

    @in_whole_tests
    def test_a_block_during_a_period_stays_after_it(self):
        agent = self.agent()
        self.at(agent, "2026-01-07T12:10:00")
        self.protected(agent, ("12:00", "13:00", "1234567"))
        agent.call("SET_ATTACH_DEVICE_RIGHT", MAC=self.first.mac.upper(), InternetAccessRight="DENY")
        self.at(agent, "2026-01-07T13:00:01")
        time.sleep(2.5)
        self.await_access(False)
        agent.call("SET_ATTACH_DEVICE_RIGHT", MAC=self.first.mac.upper(), InternetAccessRight="ALLOW")
        self.await_access(True)

    def test_what_is_stored(self):
        agent = self.agent()
        self.protected(agent, ("21:00", "06:30", "12345"))
        mac = self.first.mac.upper()
        self.assertEqual(agent.call("GET_GREENNET_ENABLE")["Enable"], "1")
        self.assertEqual(agent.call("GET_GREENNET_DEVICE_LIST")["DeviceList"],
                         [{"Mac": mac, "Name": "Jonas", "NotifyEnable": "1", "ProtectEnable": "1"}])
        agent.call("SET_GREENNET_NOTIFY_ENABLE", Mac=mac, NotifyEnable="0")
        self.assertEqual(agent.call("GET_GREENNET_DEVICE_LIST")["DeviceList"][0]["NotifyEnable"], "0")
        periods = [{"StartTime": "21:00", "EndTime": "06:30", "Enable": "1", "DaysOfWeek": "12345"}]
        self.assertEqual(agent.call("GET_GREENNET_PROTECT_PERIOD_LIST", Mac=mac)["Sleep"], periods)
        self.assertEqual(agent.host(self.first)["GreennetProtectEnable"], "1")
        self.assertEqual(agent.call("HG_RESOURCE_INSPECTION")["ProtectedDevNum"], "1")
        agent.kill()
        agent.start()
        self.assertEqual(agent.call("GET_GREENNET_PROTECT_PERIOD_LIST", Mac=mac)["Sleep"], periods)
        self.assertEqual(agent.refusal("GET_GREENNET_PROTECT_PERIOD_LIST", Mac=self.second.mac), "")

    @in_whole_tests
    def test_periods_that_are_none(self):
        agent = self.agent()
        self.protected(agent)
        for start, end, days in (("24:00", "01:00", "1"), ("1:00", "02:00", "1"), ("10:60", "11:00", "1"),
                                 ("", "11:00", "1"), ("10:00", "11:00", "8"), ("10:00", "11:00", "0"),
                                 ("10:00", "11:00", "mon"), ("-1:00", "11:00", "1"), ("10:00\n", "11:00", "1")):
            with self.subTest(start=start, end=end, days=days):
                agent.refusal("SET_GREENNET_PROTECT_PERIOD_LIST", Mac=self.first.mac.upper(), Sleep=[
                    {"StartTime": start, "EndTime": end, "Enable": "1", "DaysOfWeek": days}])

    def test_a_period_without_the_agent_ends_by_itself(self):
        """The elements of the kernel's set have a timeout, which is no longer than the period."""
        agent = self.agent()
        self.at(agent, "2026-01-07T12:10:00")
        self.protected(agent, ("12:00", "12:10", "1234567"), ("12:00", "12:11", "1234567"))
        self.await_access(False)
        elements = self.elements_with_timeout()
        self.assertEqual(list(elements), [self.first.mac])
        self.assertLessEqual(elements[self.first.mac], 60)
        self.at(agent, "2026-01-07T12:10:57")
        until(lambda: self.elements_with_timeout().get(self.first.mac, 61) <= 4, "a shorter timeout")
        agent.kill()
        self.await_access(True)

    def elements_with_timeout(self):
        ruleset = json.loads(self.network.gateway.run("nft -j list ruleset"))["nftables"]
        found = {}
        for entry in ruleset:
            if entry.get("set", {}).get("table") == "linux_gateway":
                for element in entry["set"].get("elem", []):
                    if isinstance(element, dict) and "expires" in element["elem"]:
                        value = element["elem"]["val"]
                        found[value if isinstance(value, str) else str(value)] = element["elem"]["expires"]
        return found


if __name__ == "__main__":
    case.main()

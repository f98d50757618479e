// The site survey, WPS and scan requests against the fake OS seam: result
// lines read into entries, the combined files and line counts, the exact
// notification commands, and hostile SSIDs that must reach the service
// daemon's JSON unchanged without changing the command.
#include <gtest/gtest.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "caltofal.h"
#include "fake_os.h"
#include "wifi_fixture.h"

namespace {

using wifitest::Lines;

// A result line of ten columns; what the survey keeps of it is the same
// joined by '|'.
std::string line(const std::string &columns) {
  std::string text = columns;
  for (char &c : text) c = c == '|' ? '\t' : c;
  return text + "\n";
}

const std::string kHome = "Home|6|-48|WPA2-PSK|AES|0a:1b:2c:00:00:01|40|11ng|upper|1";
const std::string kHome2 = "Home2|36|-60|WPA2-PSK|AES|0a:1b:2c:00:00:02|80|11ac|lower|0";
const std::string kSpaced = "My Cafe Net|11|-81|NONE|NONE|0a:1b:2c:00:00:03|20|11bg|none|0";
// An empty column, and a hidden network.
const std::string kNoEncryption = "Broken|3|-80|WPA2-PSK||0a:1b:2c:00:00:04|20|11ng|none|0";
const std::string kHidden = "|1|-70|NONE|NONE|0a:1b:2c:00:00:06|20|11n|none|0";

struct Survey {
  int result;
  Lines entries;
};

Survey survey(const std::string &file, const char *filter, int startCount = 0) {
  fakeos::reset();
  fakeos::setFile("/tmp/s.result", file);
  SiteSurveyList list{startCount, nullptr};
  Survey s{GetSiteSurveyList("/tmp/s.result", &list, filter), {}};
  for (int i = startCount; i < list.count; ++i) {
    const SiteSurveyEntry &e = list.entries[i];
    s.entries.push_back(std::string(e.ssid) + "|" + std::to_string(e.channel) + "|" +
                        std::to_string(e.rssi) + "|" + e.security + "|" + e.encryption + "|" +
                        e.macaddr + "|" + std::to_string(e.bandwidth) + "|" + e.phymode + "|" +
                        e.sideband + "|" + std::to_string(e.product));
  }
  std::free(list.entries);
  return s;
}

TEST(SiteSurvey, CompleteLinesBecomeEntriesAndTheOthersAreReported) {
  Survey s =
      survey(line(kHome) + line(kHome2) + line(kNoEncryption) + line(kHidden) + line(kSpaced), "");
  EXPECT_EQ(s.result, 3);
  EXPECT_EQ(s.entries, Lines({kHome, kHome2, kSpaced}));
  // Blanks between tabs are one separator to the reader: the line shifts
  // and its last column is missing.
  EXPECT_EQ(fakeos::stdoutText(),
            "scan[2] ssid:Broken channel:3 rssi:-80 security:WPA2-PSK "
            "encryption:0a:1b:2c:00:00:04 macaddr:20 bandwidth:11ng phymode:none sideband:0\n"
            " product:\n"
            "scan[2] ssid: channel: rssi: security: encryption: macaddr: bandwidth: phymode: "
            "sideband: product:\n");
  EXPECT_EQ(wifitest::console(),
            wifitest::trace("GetSiteSurveyList", "START_FUNCTION \n") +
                wifitest::trace("GetSiteSurveyList", "invalid scan result entry\n") +
                wifitest::trace("GetSiteSurveyList", "invalid scan result entry\n"));
}

TEST(SiteSurvey, TheFilterKeepsOnlyTheExactName) {
  const std::string all = line(kHome) + line(kHome2) + line(kSpaced);
  EXPECT_EQ(survey(all, "Home").entries, Lines({kHome}));
  EXPECT_EQ(survey(all, "Home2").entries, Lines({kHome2}));
  EXPECT_EQ(survey(all, "My Cafe Net").entries, Lines({kSpaced}));
  EXPECT_EQ(survey(all, "home").entries, Lines());
}

TEST(SiteSurvey, TheCountIsNeverResetAndTheArrayNeverOverrun) {
  // The caller's count goes on from where it stood, within the new array.
  const std::string all = line(kHome) + line(kHome2) + line(kSpaced);
  EXPECT_EQ(survey(all, "", 2).entries, Lines({kHome}));
  EXPECT_EQ(survey(line(kHome) + line(kHome2), "", 5).result, 5);
  // A line longer than the reader's buffer is read as two lines: more
  // lines than were counted never go past the array.
  const std::string twoInOne = kHome + std::string(127 - kHome.size(), 'x') + kHome2;
  EXPECT_EQ(survey(line(twoInOne), "").entries, Lines({kHome}));
}

TEST(SiteSurvey, Failures) {
  SiteSurveyList list{4, nullptr};
  fakeos::reset();
  EXPECT_EQ(GetSiteSurveyList("", &list, ""), 4);
  EXPECT_EQ(GetSiteSurveyList("/tmp/none", &list, ""), 4);
  EXPECT_EQ(list.entries, nullptr);
  const std::string start = wifitest::trace("GetSiteSurveyList", "START_FUNCTION \n");
  EXPECT_EQ(wifitest::console(), start + "s_file_path is invlid parameter \n" + start +
                                     "/tmp/none does not exist of line count zero \n");
  EXPECT_EQ(GetSiteSurveyList("/tmp/none", nullptr, ""), 0);
}

TEST(SurveyFiles, LineCountsCombinationAndConfigs) {
  fakeos::reset();
  fakeos::setFile("/tmp/a", "1\n2\n3");
  fakeos::setFile("/tmp/long", std::string(1500, 'x') + "\n");
  EXPECT_EQ(GetFileLineCnt("/tmp/a"), 3);
  EXPECT_EQ(GetFileLineCnt("/tmp/long"), 2);  // 999 characters a read
  EXPECT_EQ(GetFileLineCnt("/tmp/none"), 0);
  EXPECT_EQ(GetFileLineCnt(nullptr), 0);

  const std::string joined =
      "cat /tmp/wlan_wave/wlan0_scan_by_User.result > /tmp/wlan_wave/all; cat "
      "/tmp/wlan_wave/wlan2_scan_by_User.result >> /tmp/wlan_wave/all";
  fakeos::Reply reply;
  reply.writes = {{"/tmp/wlan_wave/all", "a\nb\nc\n"}};
  fakeos::onCommand(joined, reply);
  EXPECT_EQ(
      CombineScanResultFiles("/tmp/wlan_wave/wlan0_scan_by_User.result",
                             "/tmp/wlan_wave/wlan2_scan_by_User.result", "/tmp/wlan_wave/all"),
      3);
  EXPECT_EQ(CombineScanResultFiles("/tmp/my scans", "/tmp/b;id", "/tmp/t"), 0);
  EXPECT_EQ(CombineScanResultFiles("/tmp/a", "", "/tmp/t"), 0);
  EXPECT_EQ(CombineScanResultFiles(nullptr, "/tmp/b", "/tmp/t"), 0);
  EXPECT_EQ(CombineScanResultFiles("", "/tmp/b", "/tmp/t"), 0);
  EXPECT_EQ(fakeos::commands(),
            Lines({joined, "cat '/tmp/my scans' > /tmp/t; cat '/tmp/b;id' >> /tmp/t",
                   "cat '' > /tmp/t; cat /tmp/b >> /tmp/t"}));

  fakeos::reset();
  EXPECT_EQ(Remove_Confs_File(), 0);
  fakeos::addPath("/opt/lantiq/wave/confs");
  EXPECT_EQ(Remove_Confs_File(), 0);
  EXPECT_EQ(fakeos::commands(), Lines({"rm -rf /opt/lantiq/wave/confs/*"}));
}

constexpr char kNotify[] = "source /opt/lantiq/etc/ugw_notify_defs.sh; ubus call servd notify ";

TEST(Requests, WpsActionsAndTheirResults) {
  const struct {
    int (*request)();
    const char *function, *action;
  } cases[] = {{ReqWPSActive, "ReqWPSActive", "PBC"},
               {ReqWPSCancel, "ReqWPSCancel", "CancelWPS"},
               {ReqWPSReset, "ReqWPSReset", "ResetWPS"}};
  for (const auto &c : cases) {
    const std::string command = kNotify +
                                std::string(
                                    "'{\"notify_id\": '$NOTIFY_WIFI_WPS_ACTION', "
                                    "\"type\": false, \"pn1\": \"Action\", \"pv1\": \"") +
                                c.action + "\"}' > /dev/null\n";
    fakeos::reset();
    EXPECT_EQ(c.request(), 1) << c.action;
    fakeos::onCommand(command, {"", 256});  // the shell ran, ubus failed
    EXPECT_EQ(c.request(), 1) << c.action;
    fakeos::onCommand(command, {"", 127});
    EXPECT_EQ(c.request(), 0) << c.action;
    fakeos::onCommand(command, {"", 0, true});
    EXPECT_EQ(c.request(), 0) << c.action;
    EXPECT_EQ(fakeos::commands(), Lines(4, command));
    const std::string note =
        wifitest::trace(c.function, "Call system function with [" + command + "] \n");
    EXPECT_EQ(wifitest::console(), note + note + note + note);
  }
}

std::string scanCommand(const std::string &ifname, const std::string &ssid) {
  return kNotify +
         std::string(
             "'{\"nid\": '$NOTIFY_WIFI_SCAN_ACTION',\"type\": false,\"pn1\": \"Action\", "
             "\"pv1\": \"SCAN\",\"pn2\": \"Name\", \"pv2\": \"") +
         ifname + "\", \"pn3\": \"SSID\", \"pv3\": \"" + ssid + "\"}'>/dev/null";
}

TEST(Requests, ScanCommandsAreCutAt255Characters) {
  fakeos::reset();
  const std::string ssid32(32, 'n');
  EXPECT_EQ(ReqScan("wlan0", "My Net"), 1);
  EXPECT_EQ(ReqScan("wlan2", nullptr), 1);
  EXPECT_EQ(ReqScan(nullptr, nullptr), 0);
  EXPECT_EQ(ReqScan(nullptr, "Home"), 0);  // no interface name, no command
  EXPECT_EQ(ReqScan("wlan0", ssid32.c_str()), 1);
  EXPECT_EQ(ReqScan("wlan2.7", (ssid32 + "\"\"\"\"").c_str()), 1);
  const Lines commands = fakeos::commands();
  ASSERT_EQ(commands.size(), 4u);
  EXPECT_EQ(commands[0], scanCommand("wlan0", "My Net"));
  EXPECT_EQ(commands[1], scanCommand("wlan2", "(null)"));
  EXPECT_EQ(commands[2], scanCommand("wlan0", ssid32));
  EXPECT_EQ(commands[3].size(), 255u);
  EXPECT_EQ(commands[3], scanCommand("wlan2.7", ssid32 + "\\\"\\\"\\\"\\\"").substr(0, 255));
}

// What the daemon gets: the recorded command run by /bin/sh with the
// notification identifier set and the bus client replaced by printf.
TEST(Requests, HostileSsidsReachTheDaemonUnchanged) {
  for (const char *ssid : {"'", "';id;'", "$(id)", "`id`", "\"", "\\", "a\nb", "%n%s", "-h",
                           "\",\"x\":\"", "My Net", "it's \"quoted\" \\ here", "\t\x01\x1f"}) {
    fakeos::reset();
    ASSERT_EQ(ReqScan("wlan0", ssid), 1) << ssid;
    const std::string command = fakeos::commands()[0];
    ASSERT_EQ(command.rfind(kNotify, 0), 0u) << command;
    ASSERT_EQ(command.substr(command.size() - 10), ">/dev/null") << command;
    const std::string payload =
        command.substr(sizeof kNotify - 1, command.size() - (sizeof kNotify - 1) - 10);
    const nlohmann::json sent = nlohmann::json::parse(
        wifitest::shellOutput("NOTIFY_WIFI_SCAN_ACTION=45; printf '%s' " + payload), nullptr,
        false);
    ASSERT_FALSE(sent.is_discarded()) << ssid << ": " << command;
    EXPECT_EQ(sent["pv3"], ssid);
    EXPECT_EQ(sent["pv2"], "wlan0");
    EXPECT_EQ(sent["nid"], 45);
    EXPECT_EQ(sent.size(), 8u) << "no key may be added";
  }
}

}  // namespace

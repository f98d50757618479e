// The site survey, WPS and scan requests against the fake OS seam: result
// lines read into entries, the combined files and line counts, the exact
// notification commands, and hostile SSIDs that must reach the service
// daemon's JSON unchanged without changing the command.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "caltofal.h"
#include "fake_os.h"
#include "wifi/driver_text.h"

namespace {

using Lines = std::vector<std::string>;

std::string line(const Lines &columns) {
  std::string text;
  for (const std::string &c : columns) text += (text.empty() ? "" : "\t") + c;
  return text + "\n";
}

const std::string kHome =
    line({"Home", "6", "-48", "WPA2-PSK", "AES", "0a:1b:2c:00:00:01", "40", "11ng", "upper", "1"});
const std::string kHome2 = line(
    {"Home2", "36", "-60", "WPA2-PSK", "AES", "0a:1b:2c:00:00:02", "80", "11ac", "lower", "0"});
const std::string kSpaced = line(
    {"My Cafe Net", "11", "-81", "NONE", "NONE", "0a:1b:2c:00:00:03", "20", "11bg", "none", "0"});
const std::string kNoEncryption =
    line({"Broken", "3", "-80", "WPA2-PSK", "", "0a:1b:2c:00:00:04", "20", "11ng", "none", "0"});

std::string entryText(const SiteSurveyEntry &e) {
  return std::string(e.ssid) + "|" + std::to_string(e.channel) + "|" + std::to_string(e.rssi) +
         "|" + e.security + "|" + e.encryption + "|" + e.macaddr + "|" +
         std::to_string(e.bandwidth) + "|" + e.phymode + "|" + e.sideband + "|" +
         std::to_string(e.product);
}

struct Survey {
  int result;
  SiteSurveyList list;
  std::vector<std::string> entries;
};

Survey survey(const std::string &file, const char *filter, int startCount = 0) {
  fakeos::reset();
  fakeos::setFile("/tmp/s.result", file);
  Survey s{0, {startCount, nullptr}, {}};
  s.result = GetSiteSurveyList("/tmp/s.result", &s.list, filter);
  for (int i = startCount; i < s.list.count; ++i) s.entries.push_back(entryText(s.list.entries[i]));
  std::free(s.list.entries);
  return s;
}

TEST(SiteSurvey, ValidLinesBecomeEntriesAndAnInvalidOneIsReported) {
  Survey s = survey(kHome + kHome2 + kNoEncryption + kSpaced, "");
  EXPECT_EQ(s.result, 3);
  EXPECT_EQ(s.entries, Lines({"Home|6|-48|WPA2-PSK|AES|0a:1b:2c:00:00:01|40|11ng|upper|1",
                              "Home2|36|-60|WPA2-PSK|AES|0a:1b:2c:00:00:02|80|11ac|lower|0",
                              "My Cafe Net|11|-81|NONE|NONE|0a:1b:2c:00:00:03|20|11bg|none|0"}));
  // Blanks between tabs are one separator to the reader: the line shifts
  // and its last column is missing.
  EXPECT_EQ(fakeos::stdoutText(),
            "scan[2] ssid:Broken channel:3 rssi:-80 security:WPA2-PSK "
            "encryption:0a:1b:2c:00:00:04 macaddr:20 bandwidth:11ng phymode:none sideband:0\n"
            " product:\n");
  const std::string console = fakeos::console();
  EXPECT_NE(console.find(", GetSiteSurveyList) START_FUNCTION \n"), std::string::npos);
  EXPECT_NE(console.find(", GetSiteSurveyList) invalid scan result entry\n"), std::string::npos);
}

TEST(SiteSurvey, TheFilterKeepsOnlyTheExactName) {
  EXPECT_EQ(survey(kHome + kHome2 + kSpaced, "Home").entries.size(), 1u);
  EXPECT_EQ(survey(kHome + kHome2 + kSpaced, "Home2").entries.size(), 1u);
  EXPECT_EQ(survey(kHome + kHome2 + kSpaced, "My Cafe Net").entries,
            Lines({"My Cafe Net|11|-81|NONE|NONE|0a:1b:2c:00:00:03|20|11bg|none|0"}));
  EXPECT_EQ(survey(kHome, "home").entries.size(), 0u);
}

TEST(SiteSurvey, TheCountIsNeverResetAndTheArrayNeverOverrun) {
  // The caller's count goes on from where it stood, within the new array.
  Survey s = survey(kHome + kHome2 + kSpaced, "", 2);
  EXPECT_EQ(s.result, 3);
  EXPECT_EQ(s.entries.size(), 1u);
  EXPECT_EQ(survey(kHome + kHome2, "", 5).result, 5);

  // A line longer than the reader's buffer is read as two lines: more
  // lines than were counted never go past the array.
  const std::string longLine =
      line({std::string(60, 's'), "1", "-50", std::string(60, 'x'), "AES", "0a:1b:2c:00:00:05",
            "20", "11n", "none", "1\tHome\t1\t-1\tW\tE\tM\t1\tP\tS\t1"});
  s = survey(longLine, "");
  EXPECT_LE(s.result, 1);
}

TEST(SiteSurvey, Failures) {
  SiteSurveyList list{4, nullptr};
  fakeos::reset();
  EXPECT_EQ(GetSiteSurveyList("", &list, ""), 4);
  EXPECT_EQ(GetSiteSurveyList("/tmp/none", &list, ""), 4);
  EXPECT_EQ(list.entries, nullptr);
  EXPECT_NE(fakeos::console().find("s_file_path is invlid parameter \n"), std::string::npos);
  EXPECT_NE(fakeos::console().find("/tmp/none does not exist of line count zero \n"),
            std::string::npos);
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

  fakeos::Reply joined;
  joined.writes = {{"/tmp/wlan_wave/all", "a\nb\nc\n"}};
  fakeos::onCommand(
      "cat /tmp/wlan_wave/wlan0_scan_by_User.result > /tmp/wlan_wave/all; cat "
      "/tmp/wlan_wave/wlan2_scan_by_User.result >> /tmp/wlan_wave/all",
      joined);
  EXPECT_EQ(
      CombineScanResultFiles("/tmp/wlan_wave/wlan0_scan_by_User.result",
                             "/tmp/wlan_wave/wlan2_scan_by_User.result", "/tmp/wlan_wave/all"),
      3);
  EXPECT_EQ(CombineScanResultFiles("/tmp/my scans", "/tmp/b;id", "/tmp/t"), 0);
  EXPECT_EQ(CombineScanResultFiles("/tmp/a", "", "/tmp/t"), 0);
  EXPECT_EQ(CombineScanResultFiles(nullptr, "/tmp/b", "/tmp/t"), 0);
  EXPECT_EQ(fakeos::commands(),
            Lines({"cat /tmp/wlan_wave/wlan0_scan_by_User.result > /tmp/wlan_wave/all; cat "
                   "/tmp/wlan_wave/wlan2_scan_by_User.result >> /tmp/wlan_wave/all",
                   "cat '/tmp/my scans' > /tmp/t; cat '/tmp/b;id' >> /tmp/t"}));

  fakeos::reset();
  EXPECT_EQ(Remove_Confs_File(), 0);
  fakeos::addPath("/opt/lantiq/wave/confs");
  EXPECT_EQ(Remove_Confs_File(), 0);
  EXPECT_EQ(fakeos::commands(), Lines({"rm -rf /opt/lantiq/wave/confs/*"}));
}

std::string wpsCommand(const std::string &action) {
  return "source /opt/lantiq/etc/ugw_notify_defs.sh; ubus call servd notify '{\"notify_id\": "
         "'$NOTIFY_WIFI_WPS_ACTION', \"type\": false, \"pn1\": \"Action\", \"pv1\": \"" +
         action + "\"}' > /dev/null\n";
}

std::string scanCommand(const std::string &ifname, const std::string &ssid) {
  return "source /opt/lantiq/etc/ugw_notify_defs.sh; ubus call servd notify '{\"nid\": "
         "'$NOTIFY_WIFI_SCAN_ACTION',\"type\": false,\"pn1\": \"Action\", \"pv1\": \"SCAN\","
         "\"pn2\": \"Name\", \"pv2\": \"" +
         ifname + "\", \"pn3\": \"SSID\", \"pv3\": \"" + ssid + "\"}'>/dev/null";
}

TEST(Requests, WpsActionsAndTheirResults) {
  struct Case {
    int (*request)();
    const char *action;
  };
  const Case cases[] = {
      {ReqWPSActive, "PBC"}, {ReqWPSCancel, "CancelWPS"}, {ReqWPSReset, "ResetWPS"}};
  for (const Case &c : cases) {
    fakeos::reset();
    EXPECT_EQ(c.request(), 1) << c.action;
    fakeos::onCommand(wpsCommand(c.action), {"", 256});  // the shell ran, ubus failed
    EXPECT_EQ(c.request(), 1) << c.action;
    fakeos::onCommand(wpsCommand(c.action), {"", 127});
    EXPECT_EQ(c.request(), 0) << c.action;
    fakeos::onCommand(wpsCommand(c.action), {"", 0, true});
    EXPECT_EQ(c.request(), 0) << c.action;
    EXPECT_EQ(fakeos::commands(), Lines(4, wpsCommand(c.action)));
    EXPECT_NE(fakeos::console().find("Call system function with [" + wpsCommand(c.action) + "] \n"),
              std::string::npos);
  }
}

TEST(Requests, ScanCommandsAreCutAt255Characters) {
  fakeos::reset();
  EXPECT_EQ(ReqScan("wlan0", "My Net"), 1);
  EXPECT_EQ(ReqScan("wlan2", nullptr), 1);
  EXPECT_EQ(ReqScan(nullptr, nullptr), 0);
  EXPECT_EQ(ReqScan(nullptr, "Home"), 0);  // no interface name, no command
  const std::string ssid32(32, 'n');
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

// What the daemon gets: the recorded command run by bash, with the
// notification identifier set, the bus client replaced by printf and its
// output kept.
std::string jsonTheDaemonGets(const std::string &command) {
  const std::string prefix = "source /opt/lantiq/etc/ugw_notify_defs.sh; ubus call servd notify ";
  const std::string suffix = ">/dev/null";
  EXPECT_EQ(command.rfind(prefix, 0), 0u);
  EXPECT_EQ(command.substr(command.size() - suffix.size()), suffix);
  const std::string script =
      "NOTIFY_WIFI_SCAN_ACTION=45; printf '%s' " +
      command.substr(prefix.size(), command.size() - prefix.size() - suffix.size());
  std::string quoted = "'";
  for (char c : script) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  FILE *pipe = popen(("bash -c " + quoted + "'").c_str(), "r");
  std::string out;
  char buf[512];
  for (std::size_t n; (n = fread(buf, 1, sizeof buf, pipe)) > 0;) out.append(buf, n);
  pclose(pipe);
  return out;
}

TEST(Requests, HostileSsidsReachTheDaemonUnchanged) {
  const char *const ssids[] = {"'",         "';id;'",      "$(id)",  "`id`",
                               "\"",        "\\",          "a\nb",   "%n%s",
                               "-h",        "\",\"x\":\"", "My Net", "it's \"quoted\" \\ here",
                               "\t\x01\x1f"};
  for (const char *ssid : ssids) {
    fakeos::reset();
    ASSERT_EQ(ReqScan("wlan0", ssid), 1) << ssid;
    const nlohmann::json sent =
        nlohmann::json::parse(jsonTheDaemonGets(fakeos::commands()[0]), nullptr, false);
    ASSERT_FALSE(sent.is_discarded()) << ssid << ": " << fakeos::commands()[0];
    EXPECT_EQ(sent["pv3"], ssid);
    EXPECT_EQ(sent["pv2"], "wlan0");
    EXPECT_EQ(sent["nid"], 45);
    EXPECT_EQ(sent.size(), 8u) << "no key may be added";
  }
}

TEST(SurveyColumns, EmptyColumnsAndTheirShift) {
  using caltofal::wifi::surveyColumnsOf;
  EXPECT_TRUE(surveyColumnsOf(kHome.c_str()).complete());
  EXPECT_FALSE(surveyColumnsOf(kNoEncryption.c_str()).complete());
  EXPECT_FALSE(surveyColumnsOf(("\t" + kHome).c_str()).complete());  // a hidden network
  EXPECT_FALSE(surveyColumnsOf("").complete());
  EXPECT_STREQ(surveyColumnsOf(kHome.c_str()).text[9], "1\n");
}

}  // namespace

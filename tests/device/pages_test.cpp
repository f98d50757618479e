// The driver-side pages end to end: the shipped tool and library in the
// device sandbox, on a copy of the sample gateway. What the pages print,
// which tools they ran (the fakes' call log), what they traced (the console
// capture) and the work files they left.
#include <nlohmann/json.hpp>

#include "device_test.h"

namespace {

using namespace devicetest;  // NOLINT: the shared fixture's own test files

class Pages : public DeviceTest {
 protected:
  void SetUp() override {
    DeviceTest::SetUp();
    if (IsSkipped() || dir_.empty()) return;
    fs::copy_file(CALTOFAL_SAMPLE_MODEL, dir_ / "gateway.model");
  }

  // The tool with `args` in the sandbox.
  Outcome tool(const std::string &args, const std::string &launcherOptions = "") {
    return inSandbox(toolOnCopy() + " " + args, launcherOptions);
  }
  std::string toolOnCopy() const {
    return std::string(CALTOFAL_TOOL) + " --model " + (dir_ / "gateway.model").string();
  }
};

TEST_F(Pages, ChannelsOfThe24GHzRadio) {
  Outcome o = tool("wifi channels wlan0 1");
  ASSERT_EQ(o.status, 0) << o.err;
  EXPECT_EQ(o.out.substr(0, o.out.find('\n', o.out.find('\n') + 1) + 1),
            "Channel   MHz  Widths (MHz)  Above  Below\n"
            "      1  2412  20/40             5      -\n");
  EXPECT_EQ(std::count(o.out.begin(), o.out.end(), '\n'), 14);
  EXPECT_EQ(log("calls.log"), "iw dev wlan0 info\niw phy phy0 show_channel\n");
}

TEST_F(Pages, StationsOfTheHomeNetwork) {
  Outcome o = tool("wifi stations wlan0");
  ASSERT_EQ(o.status, 0) << o.err;
  EXPECT_EQ(o.out,
            "MAC                RSSI  Antennas (dBm)\n"
            "DA:4C:81:07:3B:11   -56  -52 -55 -57 -60\n"
            "3E:91:0D:55:2A:12   -60  -58 -61 -63 -59\n"
            "7A:02:B6:19:E4:13   -69  -66 -70 - -71\n");
  // The library's own command line read the driver's file through cat.
  EXPECT_EQ(log("wlan_wave/sta_info_wlan0").substr(0, 31), "DA:4C:81:07:3B:11 : STA MAC\n-52");
  EXPECT_EQ(log("calls.log"), "");
  EXPECT_NE(log("console.log").find("GetStaInfo) START_FUNCTION \n"), std::string::npos);
}

TEST_F(Pages, TheRepeaterLink) {
  Outcome o = tool("--json repeater");
  ASSERT_EQ(o.status, 0) << o.err;
  EXPECT_EQ(nlohmann::json::parse(o.out),
            nlohmann::json::parse(R"({"endpoint": 2, "interface": "wlan2.7", "connected": 1,
              "upstream": "0E:77:12:9A:00:21", "width": 80, "channel": 36})"));
  // Both steps wrote the one peer file; the channel figures came last.
  EXPECT_EQ(log("wlan_wave/wlan2.7_peer_info"), "80\n36\n");
}

TEST_F(Pages, EveryPageGivesJson) {
  nlohmann::json channels;
  for (const char *args : {"wifi channels wlan2 2", "wifi channel wlan2", "wifi phy wlan2",
                           "wifi stations wlan2 92:1f:6c:d0:77:21", "wifi clients 1", "wifi acl 1",
                           "wifi side 8 JP"}) {
    Outcome o = tool(std::string("--json ") + args);
    EXPECT_EQ(o.status, 0) << args << ": " << o.err;
    ASSERT_TRUE(nlohmann::json::accept(o.out)) << args << ": " << o.out;
    if (channels.is_null()) channels = nlohmann::json::parse(o.out)["channels"];  // the first
  }
  EXPECT_EQ(channels.size(), 24u);
  EXPECT_EQ(channels[4], nlohmann::json::parse(R"({"channel": 52, "frequency": 5260,
      "bandwidths": [20, 40, 80, 160], "aboveChannel": 56, "belowChannel": 0, "dfs": true})"));
}

TEST_F(Pages, OnAPcTheToolEntersTheSandboxByItself) {
  // No launcher named: the tool finds the driver files missing and runs
  // itself again in the sandbox, as root; without root it says why.
  Outcome o = shell(toolOnCopy() + " wifi channel wlan2");
  EXPECT_EQ(o.status, 0);
  EXPECT_EQ(o.out, "36\n");

  fs::permissions(dir_, fs::perms::all);
  o = shell(kAsNobody + toolOnCopy() + " wifi channel wlan2");
  EXPECT_EQ(o.status, 1);
  EXPECT_EQ(o.err,
            "caltofal: this command needs the radio driver (/proc/net/mtlk); on a PC it runs in "
            "the device sandbox, which needs root: run it as root, or set CALTOFAL_SANDBOX=off to "
            "run it here without the driver\n");
}

TEST_F(Pages, MeshSyncSignalsTheDaemonAfterCheckingTheSatellites) {
  Outcome o = tool("mesh sync");
  ASSERT_EQ(o.status, 0) << o.err;
  EXPECT_EQ(o.out, "the mesh daemon pushes the settings to 1 satellite\n");
  const std::string slaves = "gddbc -i -g /runtime/singlesignoninfo/livingslave/ishasrptslave\n";
  EXPECT_EQ(log("calls.log"), slaves + slaves +
                                  "gddbc -i -s /runtime/nimbord/sysnotifycmd ''\n"
                                  "killall -SIGUSR1 nimbord\n");
  EXPECT_NE(log("console.log")
                .find("(ZintuMeshGrove:272, ZINTU_meshgrove_get_from_shell) "
                      "Received CMD [gddbc -i -s /runtime/nimbord/sysnotifycmd \"\" "
                      "; killall -SIGUSR1 nimbord] returns [(null)] \n"),
            std::string::npos);

  o = tool("mesh off");
  ASSERT_EQ(o.status, 0) << o.err;
  o = tool("--json mesh sync");
  EXPECT_EQ(nlohmann::json::parse(o.out)["reason"], "the mesh is off");
  EXPECT_EQ(log("calls.log"), "gddbc -i -g /runtime/singlesignoninfo/livingslave/ishasrptslave\n");
}

TEST_F(Pages, TheSurveyJoinsBothBandsAndLeavesOutBrokenLines) {
  Outcome o = tool("wifi survey");
  ASSERT_EQ(o.status, 0) << o.err;
  EXPECT_EQ(std::count(o.out.begin(), o.out.end(), '\n'), 8);  // a heading and 7 networks
  EXPECT_NE(o.out.find("My Net                     1   -61  WPA2-PSK      AES         "
                       "3c:52:82:10:44:01   20  11ng   none\n"),
            std::string::npos);
  const std::string console = log("console.log");
  EXPECT_EQ(std::count(console.begin(), console.end(), '\n'), 4)  // the start, three broken lines
      << console;
  o = tool("--json wifi survey Upstream-5G");
  EXPECT_EQ(nlohmann::json::parse(o.out)["networks"].size(), 1u);
  EXPECT_EQ(log("wlan_wave/site_survey.result"),
            readFile(fs::path(DEVICE_TREE) / "tmp/wlan_wave/wlan0_scan_by_User.result") +
                readFile(fs::path(DEVICE_TREE) / "tmp/wlan_wave/wlan2_scan_by_User.result"));
}

// The fake bus client's log of one call: its command line and the JSON it
// received.
nlohmann::json notified(const std::string &calls) {
  const std::size_t at = calls.find("json: ");
  EXPECT_NE(at, std::string::npos) << calls;
  return nlohmann::json::parse(calls.substr(at + 6, calls.find('\n', at) - at - 6));
}

TEST_F(Pages, WpsAndScanReachTheServiceDaemon) {
  Outcome o = tool("wps pbc");
  ASSERT_EQ(o.status, 0) << o.err;
  EXPECT_EQ(
      notified(log("calls.log")),
      nlohmann::json::parse(R"({"notify_id": 44, "type": false, "pn1": "Action", "pv1": "PBC"})"));
  o = tool("--json wifi scan wlan0 'My Net'");
  ASSERT_EQ(o.status, 0) << o.err;
  EXPECT_TRUE(nlohmann::json::accept(o.out));
  EXPECT_EQ(notified(log("calls.log")),
            nlohmann::json::parse(R"({"nid": 45, "type": false, "pn1": "Action", "pv1": "SCAN",
                "pn2": "Name", "pv2": "wlan0", "pn3": "SSID", "pv3": "My Net"})"));
}

TEST_F(Pages, HostileSsidsChangeNoCommandAndNoJson) {
  for (const char *ssid : {"'", "';id;'", "$(touch /tmp/pwned)", "`touch /tmp/pwned`", "\"", "\\",
                           "%n%s", "-h", "\",\"x\":\""}) {
    Outcome o = tool("wifi scan wlan0 -- " + quoted(ssid));
    ASSERT_EQ(o.status, 0) << ssid << ": " << o.err;
    EXPECT_EQ(notified(log("calls.log"))["pv3"], ssid);
  }
  EXPECT_FALSE(fs::exists("/tmp/pwned"));
}

TEST_F(Pages, HostileInterfaceNamesReachNoShell) {
  for (const char *name : {"'x;id'", "'$(touch /tmp/pwned)'", "'wlan0 wlan2'", "'a\nb'"}) {
    Outcome o = tool(std::string("wifi stations ") + name);
    EXPECT_EQ(o.status, 2) << name;
    EXPECT_EQ(log("calls.log"), "") << name;
  }
  EXPECT_FALSE(fs::exists("/tmp/pwned"));
}

}  // namespace

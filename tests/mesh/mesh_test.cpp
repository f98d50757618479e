// Mesh control against the fake OS seam and the emulator: the switch, the
// helper commands and their output, a unit's IP address, and when the
// satellites' sync runs its shell line and waits.
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "calsim.h"
#include "caltofal.h"
#include "emulator_test.h"
#include "fake_os.h"
#include "help_sim.h"

namespace {

using Lines = std::vector<std::string>;

constexpr char kSlaves[] = "gddbc -i -g /runtime/singlesignoninfo/livingslave/ishasrptslave";
constexpr char kNotify[] =
    "gddbc -i -s /runtime/nimbord/sysnotifycmd \"\" ; killall -SIGUSR1 nimbord";

class Mesh : public EmulatorTest {
 protected:
  void model(const std::string &enable, int mode) {
    EmulatorTest::model(
        "[Device.WiFi.X_ZINTU_RoamingMesh]\n" + enable +
        "\n[Device.X_ZINTU_CurrentNetwork]\nOperationMode = " + std::to_string(mode) + "\n");
  }
};

TEST_F(Mesh, TheSwitchReadsAsAtobDoes) {
  struct Case {
    const char *enable;
    int expected;
  };
  const Case cases[] = {{"Enable = TRUE", 1}, {"Enable = 1", 1},     {"Enable = true", 1},
                        {"Enable = yes", 0},  {"Enable = false", 0}, {"Other = true", 0}};
  for (const Case &c : cases) {
    model(c.enable, 4);
    EXPECT_EQ(ZINTU_meshgrove_check_is_enabled(), c.expected) << c.enable;
  }
  EXPECT_EQ(fakeos::console(), "");
}

TEST_F(Mesh, AFailedReadIsTracedAndReadsAsOff) {
  std::string error;
  ASSERT_TRUE(calsim::loadModelString("[Device.Other]\nA = 1\n", "none", &error));
  EXPECT_EQ(ZINTU_meshgrove_check_is_enabled(), 0);
  const std::string console = fakeos::console();
  EXPECT_NE(console.find("\n\n\t[ZINTU_meshgrove_check_is_enabled : 193] "
                         "faltocal_send_main_multi_obj function failed with object "
                         "[Device.WiFi.X_ZINTU_RoamingMesh.] param [Enable] \n"),
            std::string::npos);
  EXPECT_NE(console.find("[ZINTU VOLA FAL] (ZintuMeshGrove:210, "
                         "ZINTU_meshgrove_check_is_enabled) [ERROR] Return [false] \n"),
            std::string::npos);
}

TEST_F(Mesh, SettingTheSwitchAppliesIt) {
  model("Enable = true", 4);
  EXPECT_EQ(ZINTU_meshgrove_set_enable_value(0), 0);
  EXPECT_EQ(calsim::value("Device.WiFi.X_ZINTU_RoamingMesh", "Enable"), "false");
  EXPECT_EQ(ZINTU_meshgrove_set_enable_value(2), 0);  // any non-zero value is on
  EXPECT_EQ(calsim::journal(), Lines({"set Device.WiFi.X_ZINTU_RoamingMesh Enable=false",
                                      "set Device.WiFi.X_ZINTU_RoamingMesh Enable=true"}));
  EXPECT_EQ(fakeos::console(),
            "[ZINTU VOLA FAL] (ZintuMeshGrove:296, ZINTU_meshgrove_set_enable_value) "
            "START_FUNCTION : FAL with arg [0] \n"
            "[ZINTU VOLA FAL] (ZintuMeshGrove:296, ZINTU_meshgrove_set_enable_value) "
            "START_FUNCTION : FAL with arg [2] \n");
  calsim::injectFailure(-5, 1);
  EXPECT_EQ(ZINTU_meshgrove_set_enable_value(1), -1);
  EXPECT_NE(fakeos::console().find("[ZINTU_meshgrove_set_enable_value : 301] "
                                   "faltocal_send_main_multi_obj is Failure\n"),
            std::string::npos);
}

TEST_F(Mesh, ShellOutputLosesOneTrailingBlank) {
  struct Case {
    fakeos::Reply reply;
    bool withOutput;
    const char *output;
    const char *traces;  // the console after the call
  };
  const Case cases[] = {
      {{"abc\n"},
       true,
       "abc",
       "(ZintuMeshGrove:272, ZINTU_meshgrove_get_from_shell) Received CMD "
       "[cmd] returns [abc] \n"},
      {{"abc  \n"}, true, "abc  ", nullptr},
      {{"abc \t"}, true, "abc ", nullptr},
      {{"x\ny\n"}, true, "x", nullptr},
      {{""},
       true,
       "",
       "(ZintuMeshGrove:249, ZINTU_meshgrove_get_from_shell) fgets function failed. "
       "\n"},
      {{"", 0, true},
       true,
       "",
       "(ZintuMeshGrove:235, ZINTU_meshgrove_get_from_shell) popen failed "
       "with [cmd] \n"},
      {{"ignored\n"},
       false,
       nullptr,
       "(ZintuMeshGrove:243, ZINTU_meshgrove_get_from_shell) "
       "Received return buffer is NULL. Skip get return value. \n"},
  };
  for (const Case &c : cases) {
    fakeos::reset();
    fakeos::onCommand("cmd", c.reply);
    char output[128] = "stale";
    char *result = ZINTU_meshgrove_get_from_shell("cmd", c.withOutput ? output : nullptr);
    EXPECT_EQ(result, c.withOutput ? output : nullptr);
    if (c.withOutput) {
      EXPECT_STREQ(output, c.output) << c.reply.output;
    }
    if (c.traces != nullptr) {
      EXPECT_NE(fakeos::console().find(c.traces), std::string::npos);
    }
    EXPECT_EQ(fakeos::commands(), Lines({"cmd"}));
  }
  fakeos::reset();
  char output[128] = "stale";
  EXPECT_EQ(ZINTU_meshgrove_get_from_shell("", output), output);
  EXPECT_STREQ(output, "");
  EXPECT_EQ(ZINTU_meshgrove_get_from_shell(nullptr, nullptr), nullptr);
  EXPECT_EQ(fakeos::commands(), Lines());
}

TEST_F(Mesh, AUnitsIpFromItsMacAddress) {
  fakeos::onCommand("/opt/meshgrove/scripts/find_mac_to_ip.sh 0a:1b:2c:6b:10:01",
                    {"192.168.1.2\n"});
  char mac[128] = "0a:1b:2c:6b:10:01";
  EXPECT_EQ(ZINTU_meshgrove_get_IP_from_MAC(mac), mac);
  EXPECT_STREQ(mac, "192.168.1.2");
  // Only a MAC address reaches the command line.
  for (const char *text : {"0a:1b:2c:6b:10:01;id", "$(id)", "0a-1b-2c-6b-10-01", ""}) {
    char buffer[128] = {0};
    std::snprintf(buffer, sizeof buffer, "%s", text);
    EXPECT_EQ(ZINTU_meshgrove_get_IP_from_MAC(buffer), buffer);
    EXPECT_STREQ(buffer, "") << text;
  }
  EXPECT_EQ(ZINTU_meshgrove_get_IP_from_MAC(nullptr), nullptr);
  EXPECT_EQ(fakeos::commands(),
            Lines({"/opt/meshgrove/scripts/find_mac_to_ip.sh 0a:1b:2c:6b:10:01"}));
}

TEST_F(Mesh, TheSyncRunsOnlyWhenEveryConditionHolds) {
  struct Case {
    const char *enable;
    int mode;
    const char *slaves;
    Lines commands;
    std::vector<unsigned> sleeps;
    const char *trace;
  };
  const Case cases[] = {
      {"Enable = true", 4, "1\n", {kSlaves, kNotify}, {5}, nullptr},
      {"Enable = 1", 12, "2", {kSlaves, kNotify}, {5}, nullptr},
      {"Enable = false",
       4,
       "1\n",
       {},
       {},
       "(ZintuMeshGrove:155, ZINTU_meshgrove_sync_to_slave) "
       "The Meshgrove is NOT enabled. Skip waiting for SSO. \n"},
      {"Enable = true",
       3,
       "1\n",
       {},
       {},
       "(ZintuMeshGrove:162, ZINTU_meshgrove_sync_to_slave) The "
       "operation mode is NOT Master. Skip waiting for SSO. \n"},
      {"Enable = true",
       4,
       "0\n",
       {kSlaves},
       {},
       "(ZintuMeshGrove:168, "
       "ZINTU_meshgrove_sync_to_slave) The connected "
       "slave is NOT exist. Skip waiting for SSO. \n"},
      {"Enable = true", 4, "", {kSlaves}, {}, "The connected slave is NOT exist."},
  };
  for (const Case &c : cases) {
    model(c.enable, c.mode);
    fakeos::reset();
    fakeos::onCommand(kSlaves, {c.slaves});
    EXPECT_EQ(ZINTU_meshgrove_sync_to_slave(), 0);
    EXPECT_EQ(fakeos::commands(), c.commands) << c.enable << " " << c.mode << " " << c.slaves;
    EXPECT_EQ(fakeos::sleeps(), c.sleeps) << c.enable << " " << c.mode;
    if (c.trace != nullptr) {
      EXPECT_NE(fakeos::console().find(c.trace), std::string::npos);
    }
  }
}

}  // namespace

// Device identity, the MAC allocation file, address checks.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "caltofal.h"
#include "calsim.h"
#include "fake_os.h"
#include "frame_test_util.h"

namespace {

constexpr char kHosts[] = R"(
[Device.Hosts]
HostNumberOfEntries = 3
[Device.Hosts.Host.1]
PhysAddress = AA:BB:CC:DD:EE:01
IPAddress = 192.168.1.10
[Device.Hosts.Host.1.IPv4Address.1]
IPAddress = 192.168.1.77
[Device.Hosts.Host.7]
PhysAddress = AA:BB:CC:DD:EE:07
IPAddress = 192.168.1.107
[Device.Hosts.Host.12]
PhysAddress = aa:bb:cc:dd:ee:0c
IPAddress = 255.255.255.255
)";

class DeviceIdTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fakeos::reset();
    calsim::reset();
    std::string error;
    ASSERT_TRUE(calsim::loadModelString(kHosts, "hosts.model", &error)) << error;
  }
};

TEST_F(DeviceIdTest, FindsHostsByMacCaseInsensitivelyAndByExactIPv4) {
  struct {
    const char *id;
    int expected;
  } cases[] = {
      {"aa:bb:cc:dd:ee:07", 7},   {"AA:BB:CC:DD:EE:0C", 12}, {"192.168.1.10", 1},
      {"255.255.255.255", 12},    {"192.168.1.1", 0},        {"192.168.1.77", 0},  // sub-table
      {"AA:BB:CC:DD:EE:99", 0},
  };
  for (const auto &c : cases) EXPECT_EQ(GetDeviceID(c.id), c.expected) << c.id;
}

TEST_F(DeviceIdTest, IdentifiersOfTheWrongShapeAreNotLookedUp) {
  calsim::clearRequests();
  for (const char *id : {"1.2.3", "abc", "", "AA:BB:CC:DD:EE:0", "1.2.3.4.5.6.7.8.9", "abcdefg"}) {
    EXPECT_EQ(GetDeviceID(id), 0) << id;
  }
  EXPECT_EQ(GetDeviceID(nullptr), 0);
  EXPECT_EQ(calsim::requests().size(), 0u);
  EXPECT_EQ(GetDeviceID("1:2.3.4"), 0);  // ':' but not 17 long: tried as IPv4
  EXPECT_EQ(calsim::requests().size(), 1u);
}

TEST_F(DeviceIdTest, NotFoundTraceNamesTheIdentifier) {
  fakeos::reset();
  GetDeviceID("10.0.0.1");
  EXPECT_EQ(fakeos::console(), tag("FaltoCal", 1169, "GetDeviceID") +
                                   "INPUT arg sIdentifier = 10.0.0.1 is NOT exist in "
                                   "Device.Hosts.Host.{i}.\n");
}

TEST_F(DeviceIdTest, EmptyHostTableIsReported) {
  std::string error;
  ASSERT_TRUE(calsim::loadModelString("[Device.Hosts]\nHostNumberOfEntries = 0\n"
                                      "[Device.Hosts.Host.4]\nIPAddress = 10.0.0.4\n",
                                      "empty.model", &error))
      << error;
  fakeos::reset();
  EXPECT_EQ(GetDeviceID("10.0.0.4"), 0);
  EXPECT_EQ(fakeos::console(),
            tag("FaltoCal", 1135, "GetDeviceID") + "There is no Device.Hosts.Host entry \n");
}

TEST_F(DeviceIdTest, RequestFailureIsTracedAndGivesZero) {
  calsim::injectFailure(-1, 1);
  fakeos::reset();
  EXPECT_EQ(GetDeviceID("192.168.1.10"), 0);
  EXPECT_EQ(fakeos::console(),
            tag("FaltoCal", 830, "faltocal_send_main_multi_obj") +
                "Failure : faltocal_sendQuery() of Device.Hosts. \n" + at("GetDeviceID", 1124) +
                "faltocal_send_main_multi_obj is Failure\n");
}

class NextMacTest : public ::testing::Test {
 protected:
  void SetUp() override { fakeos::reset(); }
  static constexpr const char *kFile = "/opt/lantiq/etc/nextmac.conf";
};

TEST_F(NextMacTest, ReadsTheInterfacesLineInEitherForm) {
  fakeos::setFile(kFile, "eth0_0>00:11:22:33:44:55\neth0_1> AA:BB:CC:DD:EE:FF\n");
  char mac[18] = "";
  EXPECT_EQ(zintu_scapi_getMacFromFile("eth0_1", mac), 0);
  EXPECT_STREQ(mac, "AA:BB:CC:DD:EE:FF");
  EXPECT_EQ(zintu_scapi_getMacFromFile("eth0_0", mac), 0);
  EXPECT_STREQ(mac, "00:11:22:33:44:55");
  std::string got = tag("FaltoCal", 1279, "zintu_scapi_getMacFromFile") + "GOT MAC FROM CONFIG FILE\n";
  EXPECT_EQ(fakeos::console(), got + got);
}

TEST_F(NextMacTest, KeyIsFoundAsASubstring) {
  fakeos::setFile(kFile, "xeth0> 00:00:00:00:00:01\neth0> 00:00:00:00:00:02\n");
  char mac[18] = "";
  EXPECT_EQ(zintu_scapi_getMacFromFile("eth0", mac), 0);
  EXPECT_STREQ(mac, "00:00:00:00:00:01");
}

TEST_F(NextMacTest, OddFiles) {
  char mac[18] = "unchanged";
  fakeos::setFile(kFile, "");
  EXPECT_EQ(zintu_scapi_getMacFromFile("eth0", mac), -1);
  const char *fn = "zintu_scapi_getMacFromFile";
  EXPECT_EQ(fakeos::console(), at(fn, 1275) + "Error = Couldn't get mac for the interface\n");

  fakeos::reset();
  fakeos::setFile(kFile, "eth0>\n");
  EXPECT_EQ(zintu_scapi_getMacFromFile("eth0", mac), -1);
  EXPECT_EQ(fakeos::console(), at(fn, 1260) + "strtok_r is Failure\n");

  fakeos::reset();
  fakeos::failOpen(kFile);
  EXPECT_EQ(zintu_scapi_getMacFromFile("eth0", mac), -1);
  EXPECT_EQ(fakeos::console(), at(fn, 1240) + "fopen is Failure\n");
  EXPECT_STREQ(mac, "unchanged");

  // A line longer than 63 characters is read in pieces; an over-long MAC
  // token is cut at the 18-byte buffer.
  fakeos::reset();
  fakeos::setFile(kFile, std::string(70, 'z') + "\nwan> 00:11:22:33:44:55:66:77:88\n");
  EXPECT_EQ(zintu_scapi_getMacFromFile("wan", mac), 0);
  EXPECT_STREQ(mac, "00:11:22:33:44:55");
  EXPECT_EQ(zintu_scapi_getMacFromFile(nullptr, mac), -1);
}

TEST_F(NextMacTest, MissingFileIsCreatedEmpty) {
  char mac[18] = "";
  EXPECT_EQ(zintu_scapi_getMacFromFile("eth0", mac), -1);
  EXPECT_TRUE(fakeos::file(kFile).has_value());
}

TEST(MacCheck, BasicRegexWithCaseIgnored) {
  struct {
    const char *mac;
    int expected;
  } cases[] = {
      {"00:11:22:33:44:55", 0}, {"aa:bb:cc:dd:ee:ff", 0}, {"Aa:bB:cC:Dd:eE:Ff", 0},
      {"00-11-22-33-44-55", -1}, {"001122334455", -1},    {"00:11:22:33:44:5", -1},
      {"00:11:22:33:44:55:", -1}, {"g0:11:22:33:44:55", -1}, {"", -1},
      {" 00:11:22:33:44:55", -1},
  };
  for (const auto &c : cases) EXPECT_EQ(zintu_isValidMacAddress(c.mac), c.expected) << c.mac;
  EXPECT_EQ(zintu_isValidMacAddress(nullptr), -1);
}

TEST(IPv4Check, DottedDecimalWithFourParts) {
  struct {
    const char *address;
    int expected;
  } cases[] = {{"192.168.1.1", 0}, {"0.0.0.0", 0},   {"255.255.255.255", 0}, {"256.1.1.1", -1},
               {"1.2.3", -1},      {"1.2.3.4.", -1}, {"", -1},               {"::1", -1}};
  for (const auto &c : cases) {
    EXPECT_EQ(zintu_isValidIPv4Address(c.address), c.expected) << c.address;
  }
  EXPECT_EQ(zintu_isValidIPv4Address(nullptr), -1);
}

}  // namespace

// The driver-side Wi-Fi pages against the fake OS seam and the emulator:
// the exact command lines, what the tools' text gives, the work files, the
// capacities, the refused interface names, and the shell words of hostile
// texts as /bin/sh reads them back.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "calsim.h"
#include "caltofal.h"
#include "emulator_test.h"
#include "fake_os.h"
#include "frame/message.h"
#include "frame/shell.h"
#include "help_objlist.h"
#include "help_sim.h"
#include "wifi/driver_text.h"
#include "wifi_fixture.h"

namespace {

using Lines = std::vector<std::string>;
using caltofal::wifi::channelEntryOf;
using caltofal::wifi::stationsOf;

using Driver = EmulatorTest;

std::string entryText(const WifiChannelEntry &e) {
  char text[128];
  std::snprintf(text, sizeof text, "%d %d below=%d above=%d widths=%d,%d,%d,%d", e.channel,
                e.frequency, e.belowChannel, e.aboveChannel, e.bandwidths[0], e.bandwidths[1],
                e.bandwidths[2], e.bandwidths[3]);
  return text;
}

TEST(ChannelLine, GivesAnEntryByItsSevenWords) {
  struct Case {
    const char *line;
    bool dfs;
    int radio;
    const char *expected;  // nullptr: no entry
  };
  const Case cases[] = {
      {"52 5260 160 80 40+ 40- DFS", false, 2, nullptr},
      {"52 5260 160 80 40+ 40- DFS", true, 2, "52 5260 below=48 above=56 widths=20,40,80,160"},
      {"1 2412 - - 40+ - -", false, 1, "1 2412 below=0 above=5 widths=20,40,0,0"},
      {"161 5805 - 80 - 40- -\n", false, 2, "161 5805 below=157 above=0 widths=20,40,80,0"},
      {"36 5180 160 - - - -", false, 2, "36 5180 below=0 above=0 widths=20,160,0,0"},
      {"36 5180 - 800 40+x 40-- -", false, 2, "36 5180 below=0 above=0 widths=20,0,0,0"},
      {"36 5180", false, 2, "36 5180 below=0 above=0 widths=20,0,0,0"},
      {"100 5500 - - - - DFSX", false, 2, nullptr},  // the first three letters count
      {"100 5500 - - - - dfs", false, 2, "100 5500 below=0 above=0 widths=20,0,0,0"},
      {"36 5180 - 80 40+ - -", false, 1, nullptr},  // radio 1 keeps to 2.4 GHz
      {"14 2484 - - - - -", false, 1, "14 2484 below=0 above=0 widths=20,0,0,0"},
      {"14 2485 - - - - -", false, 1, nullptr},
      {"36", false, 2, nullptr},
      {"   \n", false, 2, nullptr},
      {"x y - - 40+ - -", false, 2, "0 0 below=0 above=4 widths=20,40,0,0"},
  };
  for (const Case &c : cases) {
    WifiChannelEntry entry{};
    bool given = channelEntryOf(c.line, c.dfs, c.radio, &entry);
    EXPECT_EQ(given, c.expected != nullptr) << c.line;
    if (given && c.expected != nullptr) {
      EXPECT_EQ(entryText(entry), c.expected) << c.line;
    }
  }
}

// Four antenna lines of a station.
std::string station(const std::string &mac, const std::vector<int> &rssi) {
  std::string text = mac + " : STA MAC\n";
  for (int v : rssi) text += std::to_string(v) + " : Short-term RSSI average per antenna [dBm]\n";
  return text;
}

std::vector<std::string> stationsText(const WifiStaList &list) {
  std::vector<std::string> out;
  for (uint32_t i = 0; i < list.count && i < 128; ++i) {
    const WifiStaEntry &e = list.entries[i];
    out.push_back(std::string(e.mac) + " " + std::to_string(e.rssiAverage) + " [" +
                  std::to_string(e.rssi[0]) + "," + std::to_string(e.rssi[1]) + "," +
                  std::to_string(e.rssi[2]) + "," + std::to_string(e.rssi[3]) + "]");
  }
  return out;
}

TEST(StationLines, AveragesTheAntennasThatHeardTheStation) {
  struct Case {
    std::string text;
    const char *filter;
    Lines expected;
  };
  const std::string a = station("AA:BB:CC:00:00:01", {-40, -50, -128, 0});
  const std::string b = station("aa:bb:cc:00:00:02", {-41, -44, -200, 5});
  const Case cases[] = {
      {a + b,
       nullptr,
       {"AA:BB:CC:00:00:01 -45 [-40,-50,-128,0]", "aa:bb:cc:00:00:02 -42 [-41,-44,-200,5]"}},
      {a + b, "AA:BB:CC:00:00:02", {"aa:bb:cc:00:00:02 -42 [-41,-44,-200,5]"}},
      {a + b, "aa:bb:cc:00:00:01", {"AA:BB:CC:00:00:01 -45 [-40,-50,-128,0]"}},
      // No antenna heard it, and no value line at all.
      {station("AA:BB:CC:00:00:03", {0, -128, 1, -300}) + "AA:BB:CC:00:00:04 : STA MAC\n",
       nullptr,
       {"AA:BB:CC:00:00:03 0 [0,-128,1,-300]", "AA:BB:CC:00:00:04 0 [0,0,0,0]"}},
      // A station right after one with fewer antenna lines is consumed with it.
      {station("AA:BB:CC:00:00:05", {-60}) + a, nullptr, {"AA:BB:CC:00:00:05 -60 [-60,0,0,0]"}},
      // Lines that are not stations, and a value that is no MAC address.
      {"garbage\n\n-40 : Short-term x\nnot-a-mac : STA MAC\n" + a,
       nullptr,
       {"AA:BB:CC:00:00:01 -45 [-40,-50,-128,0]"}},
      {"AABBCC000006 : STA MAC\n-70 : Short-term\n", nullptr, {"AABBCC000006 -70 [-70,0,0,0]"}},
  };
  for (const Case &c : cases) {
    WifiStaList list{};
    int count = stationsOf(c.text, c.filter, &list);
    EXPECT_EQ(count, static_cast<int>(c.expected.size())) << c.text;
    EXPECT_EQ(stationsText(list), c.expected) << c.text;
  }
}

TEST(StationLines, NeverMoreThanTheListHolds) {
  std::string text;
  for (int i = 0; i < 200; ++i) {
    char mac[18];
    std::snprintf(mac, sizeof mac, "AA:BB:CC:00:%02X:%02X", i / 256, i % 256);
    text += station(mac, {-50, -50, -50, -50});
  }
  WifiStaList list{};
  EXPECT_EQ(stationsOf(text, nullptr, &list), 128);
  EXPECT_STREQ(list.entries[127].mac, "AA:BB:CC:00:00:7F");
}

TEST_F(Driver, PhyNumberFromTheInterfaceInfo) {
  fakeos::onCommand("iw dev wlan2 info | grep \"wiphy\"", {"\twiphy 2\n"});
  fakeos::onCommand("iw dev wlan0 info | grep \"wiphy\"", {"\ttype AP\n"});
  EXPECT_EQ(GetPhyNumber("wlan2"), 2);
  EXPECT_EQ(GetPhyNumber("wlan0"), -1);
  EXPECT_EQ(GetPhyNumber("wlan1"), -1);  // the command prints nothing
  fakeos::onCommand("iw dev wlan3 info | grep \"wiphy\"", {"", 0, true});
  EXPECT_EQ(GetPhyNumber("wlan3"), -1);
  EXPECT_EQ(GetPhyNumber(""), -1);
  EXPECT_EQ(GetPhyNumber(nullptr), -1);
  EXPECT_EQ(fakeos::commands(),
            Lines({"iw dev wlan2 info | grep \"wiphy\"", "iw dev wlan0 info | grep \"wiphy\"",
                   "iw dev wlan1 info | grep \"wiphy\"", "iw dev wlan3 info | grep \"wiphy\""}));
}

constexpr char kRadios[] =
    "[Device.WiFi.Radio.1]\nIEEE80211hEnabled = false\n"
    "[Device.WiFi.Radio.2]\nIEEE80211hEnabled = true\n";

TEST_F(Driver, ChannelListOfTheInterfacesRadio) {
  model(kRadios);
  fakeos::onCommand("iw dev wlan2 info | grep \"wiphy\"", {"\twiphy 2\n"});
  fakeos::onCommand("iw phy phy2 show_channel",
                    {"36 5180 160 80 40+ - -\n52 5260 160 80 40+ - DFS\n\n165 5825 - - - - -\n"});
  WifiChannelList list;
  std::memset(&list, 0x5a, sizeof list);
  EXPECT_EQ(GetChannelList("wlan2", 2, &list), 3);
  EXPECT_EQ(list.count, 3u);
  EXPECT_EQ(entryText(list.entries[1]), "52 5260 below=0 above=56 widths=20,40,80,160");
  EXPECT_EQ(list.entries[3].channel, 0) << "the list is zeroed first";
  EXPECT_EQ(wifitest::console(),
            "[ZINTU VOLA FAL] (ZintuWifiUtil:#, GetChannelList) GetPhyNumber iw phy phy2 "
            "show_channel\n");
  EXPECT_EQ(wifitest::requestLog(),
            Lines({"get flags=0x1100 Device.WiFi.Radio.2( IEEE80211hEnabled )"}));
}

TEST_F(Driver, ChannelListFallsBackToThePhyNameAndKeepsTheCapacity) {
  model(kRadios);
  std::string listing;
  for (int i = 0; i < 150; ++i) listing += std::to_string(i + 1) + " 2412 - - - - DFS\n";
  listing += "200 2412 - - - - -\n";
  fakeos::onCommand("iw phy phy0 show_channel", {listing});
  WifiChannelList list{};
  EXPECT_EQ(GetChannelList("wlan0", 1, &list), 1);  // 802.11h off: radar lines dropped
  EXPECT_EQ(list.entries[0].channel, 200);
  EXPECT_EQ(wifitest::console(),
            "[ZINTU VOLA FAL] (ZintuWifiUtil:#, GetChannelList) GetPhyNumber Fail!!!\n");

  model(std::string(kRadios) + "[Device.WiFi.Radio.3]\nIEEE80211hEnabled = 1\n");
  fakeos::onCommand("iw phy wlan9 show_channel", {listing});
  EXPECT_EQ(GetChannelList("wlan9", 3, &list), 100);
  EXPECT_EQ(list.entries[99].channel, 100);
}

TEST_F(Driver, ChannelListFailures) {
  model(kRadios);
  WifiChannelList list{};
  fakeos::reset();
  EXPECT_EQ(GetChannelList("wlan0", 7, &list), 0);  // no such radio
  EXPECT_EQ(fakeos::commands(), Lines());
  EXPECT_NE(wifitest::console().find("\n\n\t[GetChannelList : #] "
                                     "faltocal_send_main_multi_obj is Failure\n"),
            std::string::npos);

  fakeos::reset();
  fakeos::onCommand("iw phy phy0 show_channel", {"", 0, true});
  EXPECT_EQ(GetChannelList("wlan0", 1, &list), 0);
  EXPECT_NE(wifitest::console().find("(ZintuWifiUtil:#, GetChannelList) popen()"),
            std::string::npos);
  EXPECT_EQ(GetChannelList("wlan0", 1, nullptr), 0);
}

TEST_F(Driver, CurrentChannelTakesTheLastMarkedLine) {
  fakeos::onCommand("iwlist wlan0 channel",
                    {"wlan0  13 channels\n  Current Channel=6\n  Current Channel=11 \n"});
  int channel = -1;
  EXPECT_EQ(GetCurrentChannel("wlan0", 99, &channel), 1);
  EXPECT_EQ(channel, 11);
  channel = -1;
  EXPECT_EQ(GetCurrentChannel("wlan2", 0, &channel), 1);  // no such line: untouched
  EXPECT_EQ(channel, -1);
  fakeos::onCommand("iwlist wlan3 channel", {"", 0, true});
  EXPECT_EQ(GetCurrentChannel("wlan3", 0, &channel), 0);
  EXPECT_EQ(wifitest::console(),
            "[ZINTU VOLA FAL] (ZintuWifiUtil:#, GetCurrentChannel) START_FUNCTION \n"
            "[ZINTU VOLA FAL] (ZintuWifiUtil:#, GetCurrentChannel) START_FUNCTION \n"
            "[ZINTU VOLA FAL] (ZintuWifiUtil:#, GetCurrentChannel) START_FUNCTION \n"
            "[ZINTU VOLA FAL] (ZintuWifiUtil:#, GetCurrentChannel) popen()");
}

TEST(SideChannel, ByCountryAndChannel) {
  const char *fallback = "both";
  struct Case {
    int channel;
    const char *country;
    const char *expected;
  };
  const Case cases[] = {
      {4, "US", "AboveControlChannel"},
      {5, "US", "both"},
      {7, "US", "both"},
      {8, "US", "BelowControlChannel"},
      {8, "JP", "both"},
      {10, "JP", "both"},
      {11, "JP", "BelowControlChannel"},
      {9, "DE", "both"},
      {10, "DE", "BelowControlChannel"},
      {9, "us", "both"},
      {1, nullptr, "AboveControlChannel"},
      {10, nullptr, "BelowControlChannel"},
  };
  for (const Case &c : cases) {
    EXPECT_STREQ(GetSideChannel(c.channel, c.country, fallback), c.expected)
        << c.channel << " " << (c.country ? c.country : "(null)");
  }
  EXPECT_EQ(GetSideChannel(6, "FR", fallback), fallback);
  EXPECT_EQ(GetDFSChannel(), 0);
}

constexpr char kStationCommand[] =
    "cat /proc/net/mtlk/wlan0/PeerFlowStatus | grep 'STA MAC\\| Short-term RSSI average per "
    "antenna' > /tmp/wlan_wave/sta_info_wlan0";

TEST_F(Driver, StationsFromTheDriversPeerFile) {
  fakeos::Reply reply;
  reply.writes = {
      {"/tmp/wlan_wave/sta_info_wlan0", station("DA:4C:81:07:3B:11", {-52, -55, -57, -60}) +
                                            station("7A:02:B6:19:E4:13", {-66, -70, -128, -71})}};
  fakeos::onCommand(kStationCommand, reply);
  WifiStaList list;
  std::memset(&list, 0x5a, sizeof list);
  EXPECT_EQ(GetStaInfo("wlan0", nullptr, &list), 2);
  EXPECT_EQ(stationsText(list), Lines({"DA:4C:81:07:3B:11 -56 [-52,-55,-57,-60]",
                                       "7A:02:B6:19:E4:13 -69 [-66,-70,-128,-71]"}));
  EXPECT_EQ(list.entries[2].mac[0], '\0') << "the list is zeroed first";
  EXPECT_EQ(GetStaInfo("wlan0", "7a:02:b6:19:e4:13", &list), 1);
  EXPECT_EQ(GetStaInfo("wlan0", "not-a-mac", &list), 2);  // no filter then
  EXPECT_EQ(fakeos::commands(), Lines(3, kStationCommand));
}

TEST_F(Driver, StationFailures) {
  WifiStaList list{};
  list.count = 7;
  EXPECT_EQ(GetStaInfo("", nullptr, &list), 7);  // the count as it was
  EXPECT_EQ(GetStaInfo(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(fakeos::commands(), Lines());
  EXPECT_EQ(wifitest::console(),
            "[ZINTU VOLA FAL] (ZintuWifiUtil:#, GetStaInfo) START_FUNCTION \n\n\n\t[GetStaInfo : "
            "#] arg is Failure\n[ZINTU VOLA FAL] (ZintuWifiUtil:#, GetStaInfo) START_FUNCTION "
            "\n\n\n\t[GetStaInfo : #] arg is Failure\n");

  fakeos::reset();
  EXPECT_EQ(GetStaInfo("wlan0", nullptr, &list), 0);  // the grep wrote no file
  EXPECT_EQ(wifitest::console(),
            "[ZINTU VOLA FAL] (ZintuWifiUtil:#, GetStaInfo) START_FUNCTION \n[ZINTU VOLA FAL] "
            "(ZintuWifiUtil:#, GetStaInfo) /tmp/wlan_wave/sta_info_wlan0 does not exist\n");
  fakeos::reset();
  fakeos::onCommand(kStationCommand, {"", 0, true});
  EXPECT_EQ(GetStaInfo("wlan0", nullptr, &list), 0);
  EXPECT_EQ(wifitest::console(),
            "[ZINTU VOLA FAL] (ZintuWifiUtil:#, GetStaInfo) START_FUNCTION \nsystem is Failure\n");
}

// Eight SSIDs of a radio: (Enable, X_ZINTU_Active, LowerLayers or "-" for
// none, clients).
std::string ssids(int radio, const std::vector<std::string> &rows) {
  std::string text;
  for (std::size_t k = 0; k < rows.size(); ++k) {  // NOLINT
    const int n = ConvSsidIdxToFapi(radio, static_cast<int>(k));
    char enable[16], active[16], lower[64];
    int clients = 0;
    std::sscanf(rows[k].c_str(), "%15s %15s %63s %d", enable, active, lower, &clients);
    text += "[Device.WiFi.SSID." + std::to_string(n) + "]\nEnable = " + enable +
            "\nX_ZINTU_Active = " + active + "\n" +
            (std::string(lower) == "-" ? "" : std::string("LowerLayers = ") + lower + "\n") +
            "[Device.WiFi.AccessPoint." + std::to_string(n) +
            "]\nAssociatedDeviceNumberOfEntries = " + std::to_string(clients) + "\n";
  }
  return text;
}

TEST_F(Driver, ClientsOfTheEnabledActiveSsidsOfARadio) {
  model(ssids(2, {
                     "true true Device.WiFi.Radio.2. 3",
                     "true false Device.WiFi.Radio.2. 5",  // not active: nothing
                     "false true Device.WiFi.Radio.2. 7",  // disabled
                     "true true Device.WiFi.Radio.2 11",   // no trailing dot
                     "true true Device.WiFi.Radio.1. 13",  // the other radio
                     "1 1 Device.WiFi.Radio.2. 17",
                     "true true - 19",  // inherits the text of the SSID before
                     "TRUE true Device.WiFi.Radio.2. 23",
                 }));
  EXPECT_EQ(GetAssociatedDeviceNumberOfEntries(2), 3 + 17 + 19);
  EXPECT_EQ(wifitest::requestLog().size(), 8u);
  EXPECT_EQ(wifitest::requestLog()[0],
            "get flags=0x1100 Device.WiFi.SSID.9( Enable X_ZINTU_Active LowerLayers ) "
            "Device.WiFi.AccessPoint.9( AssociatedDeviceNumberOfEntries )");
  calsim::clearRequests();
  EXPECT_EQ(GetAssociatedDeviceNumberOfEntries(3), 0);
  EXPECT_EQ(GetAssociatedDeviceNumberOfEntries(0), 0);
  EXPECT_TRUE(wifitest::requestLog().empty());
}

TEST_F(Driver, AFailingSsidEndsTheCountWithWhatWasReached) {
  model(ssids(1, {"true true Device.WiFi.Radio.1. 2", "true true - 3"}));
  EXPECT_EQ(GetAssociatedDeviceNumberOfEntries(1), 5);  // SSID 3 is absent
  EXPECT_NE(wifitest::console().find("\n\n\t[GetAssociatedDeviceNumberOfEntries : #] "
                                     "faltocal_send_main_multi_obj is Failure\n"),
            std::string::npos);
}

TEST_F(Driver, AccessListEntriesFromFilterObjects) {
  model(
      "[Device.WiFi.AccessPoint.1.X_LANTIQ_COM_Vendor.MACFilter.1]\nname = tablet\n"
      "macAddress = 66:A1:0F:2B:90:51\n"
      "[Device.WiFi.AccessPoint.1.X_LANTIQ_COM_Vendor.MACFilter.12]\nname = cam\n"
      "[Device.WiFi.AccessPoint.1.X_LANTIQ_COM_Vendor.MACFilter.13]\nmacAddress = x\nname = y\n");
  MsgHeader header{};
  ASSERT_EQ(
      faltocal_send_main_multi_obj(
          &header, "Device.WiFi.AccessPoint.1.X_LANTIQ_COM_Vendor.MACFilter.", "get", "get", 0),
      0);
  MacAccessList list{};
  const char *prefix = "Device.WiFi.AccessPoint.1.X_LANTIQ_COM_Vendor.MACFilter";
  std::vector<int> results;
  for (ObjList *obj : caltofal::objectsOf(header.pObjList)) {
    results.push_back(GetMacAccessList(obj, prefix, &list));
  }
  EXPECT_EQ(results, std::vector<int>({-1, -1, -1}));
  ASSERT_EQ(list.count, 2);
  EXPECT_EQ(list.entries[0].index, 1);
  EXPECT_STREQ(list.entries[0].macAddress, "66:A1:0F:2B:90:51");
  EXPECT_EQ(list.entries[1].index, 13);
  EXPECT_STREQ(list.entries[1].name, "y");
  EXPECT_NE(fakeos::console().find(">>>>>>>>>> ssid " + std::string(prefix) + ".12:12:" + prefix +
                                   ".:12<<<<<<<<<<<<<"),
            std::string::npos);
  EXPECT_EQ(GetMacAccessList(nullptr, prefix, &list), -1);
  list.count = 32;
  fakeos::reset();
  EXPECT_EQ(GetMacAccessList(header.pObjList, prefix, &list), -1);  // full: untouched
  EXPECT_EQ(list.count, 32);
  EXPECT_EQ(fakeos::console(), "");
  help_delMsg(&header, 1);
}

constexpr char kEndPoints[] =
    "[Device.WiFi.EndPoint.1]\nEnable = ${1}\nSSIDReference = Device.WiFi.SSID.8\n"
    "[Device.WiFi.EndPoint.2]\nEnable = ${2}\nSSIDReference = Device.WiFi.SSID.16\n"
    "[Device.WiFi.SSID.8]\nName = wlan0.7\n[Device.WiFi.SSID.16]\nName = wlan2.7\n";

std::string endpoints(const std::string &first, const std::string &second) {
  std::string text = kEndPoints;
  text.replace(text.find("${1}"), 4, first);
  text.replace(text.find("${2}"), 4, second);
  return text;
}

TEST_F(Driver, TheEnabledEndpointAndItsInterface) {
  struct Case {
    const char *first, *second;
    int expected;
    const char *name;
  };
  const Case cases[] = {
      {"true", "true", 1, "wlan0.7"},
      {"false", "true", 2, "wlan2.7"},
      {"True", "1", -1, ""},
      {"false", "false", -1, ""},
  };
  for (const Case &c : cases) {
    model(endpoints(c.first, c.second));
    char name[128] = "kept";
    EXPECT_EQ(GetEPEnable(name), c.expected) << c.first << " " << c.second;
    EXPECT_STREQ(name, c.expected > 0 ? c.name : "kept");
    EXPECT_EQ(GetEPEnable(nullptr), c.expected);
  }
  model("[Device.WiFi.EndPoint.1]\nEnable = true\nSSIDReference = Device.WiFi.SSID.99\n");
  char name[128] = "kept";
  EXPECT_EQ(GetEPEnable(name), 1);
  EXPECT_STREQ(name, "kept") << "an unanswerable reference leaves the name";
  model("[Device.Other]\nA = 1\n");
  EXPECT_EQ(GetEPEnable(name), 0);
}

constexpr char kPeerCommand[] =
    "cat /proc/net/mtlk/wlan2.7/PeerFlowStatus | grep \"STA MAC\" | sed -e 's/: STA MAC//' -e "
    "'s/\\t//' -e 's/ //g' > /tmp/wlan_wave/wlan2.7_peer_info";
constexpr char kChannelCommand[] =
    "cat /proc/net/mtlk/wlan2.7/channel | grep -e width: -e primary_channel: | sed "
    "'s/[^0-9]*//g' > /tmp/wlan_wave/wlan2.7_peer_info";

TEST_F(Driver, TheEndpointsUpstreamPeer) {
  fakeos::Reply reply;
  reply.writes = {{"/tmp/wlan_wave/wlan2.7_peer_info", "0E:77:12:9A:00:21\nAA:BB:CC:00:00:01\n"}};
  fakeos::onCommand(kPeerCommand, reply);
  char mac[128] = {0};
  EXPECT_EQ(GetEPContection("wlan2.7", mac), 1);
  EXPECT_STREQ(mac, "0E:77:12:9A:00:21");
  EXPECT_EQ(GetEPContection("wlan2.7", nullptr), 1);
  EXPECT_EQ(fakeos::commands(), Lines(2, kPeerCommand));

  fakeos::setFile("/tmp/wlan_wave/wlan2.7_peer_info", "");
  reply.writes = {{"/tmp/wlan_wave/wlan2.7_peer_info", ""}};
  fakeos::onCommand(kPeerCommand, reply);
  EXPECT_EQ(GetEPContection("wlan2.7", mac), 0);

  fakeos::reset();
  EXPECT_EQ(GetEPContection("wlan2.7", mac), 0);
  EXPECT_EQ(wifitest::console(),
            "[ZINTU VOLA FAL] (ZintuWifiUtil:#, GetEPContection) /tmp/wlan_wave/%s_peer_info does "
            "not exist\n");
  fakeos::reset();
  fakeos::onCommand(kPeerCommand, {"", 0, true});
  EXPECT_EQ(GetEPContection("wlan2.7", mac), 0);
  EXPECT_EQ(wifitest::console(), "[ZINTU VOLA FAL] (ZintuWifiUtil:#, GetEPContection) " +
                                     std::string(kPeerCommand) + " system command fail\n");
}

TEST_F(Driver, TheEndpointsChannelFigures) {
  struct Case {
    const char *file;
    bool withValues;
    int expected;
    std::vector<int32_t> values;
  };
  const Case cases[] = {
      {"80\n36\n", true, 1, {80, 36}}, {"80\n36\n", false, 0, {}}, {"\n80\n", true, 0, {}},
      {"80\n0\n36\n", true, 0, {80}},  {"", true, 0, {}},
  };
  for (const Case &c : cases) {
    fakeos::reset();
    fakeos::Reply reply;
    reply.writes = {{"/tmp/wlan_wave/wlan2.7_peer_info", c.file}};
    fakeos::onCommand(kChannelCommand, reply);
    int32_t values[4] = {0, 0, 0, 0};
    EXPECT_EQ(ReqEPChannelInfo("wlan2.7", c.withValues ? values : nullptr), c.expected) << c.file;
    for (std::size_t i = 0; i < 4; ++i) {
      EXPECT_EQ(values[i], i < c.values.size() ? c.values[i] : 0) << c.file << " " << i;
    }
    EXPECT_EQ(fakeos::commands(), Lines({kChannelCommand}));
  }
  fakeos::reset();
  int32_t values[2];
  EXPECT_EQ(ReqEPChannelInfo("wlan2.7", values), 0);
  EXPECT_EQ(wifitest::console(),
            "[ZINTU VOLA FAL] (ZintuWifiUtil:#, ReqEPChannelInfo) "
            "/tmp/wlan_wave/%s_scan_by_User.result does not exist\n");
}

TEST_F(Driver, ConnectionStatusRunsNothingWithoutAnEnabledEndpoint) {
  model(endpoints("false", "false"));
  char mac[128] = "kept";
  EXPECT_EQ(GetEPConnectionStatus(mac), 0);
  EXPECT_EQ(fakeos::commands(), Lines());
  model(endpoints("false", "true"));
  fakeos::onCommand(
      "cat /proc/net/mtlk/wlan2.7/PeerFlowStatus | grep \"STA MAC\" | sed -e 's/: STA MAC//' -e "
      "'s/\\t//' -e 's/ //g' > /tmp/wlan_wave/wlan2.7_peer_info",
      {"", 0, false});
  fakeos::setFile("/tmp/wlan_wave/wlan2.7_peer_info", "0E:77:12:9A:00:21\n");
  EXPECT_EQ(GetEPConnectionStatus(mac), 1);
  EXPECT_STREQ(mac, "0E:77:12:9A:00:21");
}

// Texts that must never change a command line.
const char *const kHostile[] = {
    "'",
    "';id;'",
    "$(id)",
    "`id`",
    "\"",
    "\\",
    "a\nb",
    "%n%s",
    "-h",
    "wlan0; rm -rf /",
    "0123456789abcdef",
    "wlan0 ",
    " wlan0",
    "..",
    ".wlan0",
    "",
    "wlan0\t",
    "a'b'c",
};

TEST(ShellSafety, HostileInterfaceNamesRunNothing) {
  fakeos::reset();
  for (const char *name : kHostile) {
    WifiChannelList channels{};
    WifiStaList stations{};
    int channel = 0;
    int32_t values[4];
    EXPECT_EQ(GetPhyNumber(name), -1) << name;
    EXPECT_EQ(GetChannelList(name, 1, &channels), 0) << name;
    EXPECT_EQ(GetCurrentChannel(name, 0, &channel), 0) << name;
    EXPECT_EQ(GetStaInfo(name, nullptr, &stations), 0) << name;
    EXPECT_EQ(GetEPContection(name, nullptr), 0) << name;
    EXPECT_EQ(ReqEPChannelInfo(name, values), 0) << name;
  }
  EXPECT_EQ(fakeos::commands(), Lines());
  EXPECT_TRUE(calsim::requests().empty());
}

TEST(ShellSafety, InterfaceNames) {
  for (const char *good : {"wlan0", "wlan2.7", "a", "eth0_1", "br-lan", "W0123456789abcd"}) {
    EXPECT_TRUE(caltofal::shell::isInterfaceName(good)) << good;
  }
  for (const char *bad : kHostile) EXPECT_FALSE(caltofal::shell::isInterfaceName(bad)) << bad;
  EXPECT_FALSE(caltofal::shell::isInterfaceName(nullptr));
}

// What /bin/sh makes of a command line: printf's output of its one word.
std::string shellReads(const std::string &word) {
  const std::string command = "printf '[%s]' " + word + " 2>&1";
  FILE *pipe = popen(command.c_str(), "r");
  std::string out;
  char buf[256];
  for (std::size_t n; (n = fread(buf, 1, sizeof buf, pipe)) > 0;) out.append(buf, n);
  pclose(pipe);
  return out;
}

TEST(ShellSafety, EveryTextIsOneWordThatTheShellReadsBackAsItWas) {
  for (const char *text : kHostile) {
    if (text[0] == '\0') continue;  // the empty text stays empty: no word at all
    EXPECT_EQ(shellReads(caltofal::shell::word(text)), "[" + std::string(text) + "]") << text;
  }
  // Plain texts are inserted unchanged: ordinary command lines stay the same.
  for (const char *plain : {"Home-Net_5G", "/tmp/wlan_wave/x.result", "AA:BB:CC:00:11:22", ""}) {
    EXPECT_EQ(caltofal::shell::word(plain), plain);
  }
  EXPECT_EQ(caltofal::shell::word("My Wi-Fi"), "'My Wi-Fi'");
  EXPECT_EQ(caltofal::shell::word("it's"), "'it'\\''s'");
}

}  // namespace

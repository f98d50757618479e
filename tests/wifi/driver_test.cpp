// The driver-side Wi-Fi pages against the fake OS seam and the emulator:
// the exact command lines, what the tools' text gives, the work files, the
// capacities, the refused interface names, and the shell words of hostile
// texts as /bin/sh reads them back.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "calsim.h"
#include "caltofal.h"
#include "fake_os.h"
#include "frame/message.h"
#include "frame/shell.h"
#include "help_objlist.h"
#include "wifi/driver_text.h"
#include "wifi_fixture.h"

namespace {

using caltofal::wifi::channelEntryOf;
using caltofal::wifi::stationsOf;
using wifitest::console;
using wifitest::Lines;
using wifitest::trace;
using Driver = EmulatorTest;

const fakeos::Reply kNoStart{"", 0, true};  // the command cannot be started

std::string entryText(const WifiChannelEntry &e) {
  char text[128];
  std::snprintf(text, sizeof text, "%d %d below=%d above=%d widths=%d,%d,%d,%d", e.channel,
                e.frequency, e.belowChannel, e.aboveChannel, e.bandwidths[0], e.bandwidths[1],
                e.bandwidths[2], e.bandwidths[3]);
  return text;
}

TEST(ChannelLine, GivesAnEntryByItsSevenWords) {
  const struct {
    const char *line;
    bool dfs;
    int radio;
    const char *expected;  // nullptr: no entry
  } cases[] = {
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
  for (const auto &c : cases) {
    WifiChannelEntry entry{};
    const bool given = channelEntryOf(c.line, c.dfs, c.radio, &entry);
    EXPECT_EQ(given ? entryText(entry) : "none", c.expected ? c.expected : "none") << c.line;
  }
}

// A station's MAC line and its antenna lines.
std::string station(const std::string &mac, const std::vector<int> &rssi) {
  std::string text = mac + " : STA MAC\n";
  for (int v : rssi) text += std::to_string(v) + " : Short-term RSSI average per antenna [dBm]\n";
  return text;
}

Lines stationsText(const WifiStaList &list) {
  Lines out;
  for (uint32_t i = 0; i < list.count && i < 128; ++i) {
    const WifiStaEntry &e = list.entries[i];
    out.push_back(std::string(e.mac) + " " + std::to_string(e.rssiAverage) + " [" +
                  std::to_string(e.rssi[0]) + "," + std::to_string(e.rssi[1]) + "," +
                  std::to_string(e.rssi[2]) + "," + std::to_string(e.rssi[3]) + "]");
  }
  return out;
}

TEST(StationLines, AveragesTheAntennasThatHeardTheStation) {
  const std::string a = station("AA:BB:CC:00:00:01", {-40, -50, -128, 0});
  const std::string b = station("aa:bb:cc:00:00:02", {-41, -44, -200, 5});
  const std::string aText = "AA:BB:CC:00:00:01 -45 [-40,-50,-128,0]";
  const std::string bText = "aa:bb:cc:00:00:02 -42 [-41,-44,-200,5]";
  const struct {
    std::string text;
    const char *filter;
    Lines expected;
  } cases[] = {
      {a + b, nullptr, {aText, bText}},
      {a + b, "AA:BB:CC:00:00:02", {bText}},
      {a + b, "aa:bb:cc:00:00:01", {aText}},
      // No antenna heard it, and no value line at all.
      {station("AA:BB:CC:00:00:03", {0, -128, 1, -300}) + "AA:BB:CC:00:00:04 : STA MAC\n",
       nullptr,
       {"AA:BB:CC:00:00:03 0 [0,-128,1,-300]", "AA:BB:CC:00:00:04 0 [0,0,0,0]"}},
      // A station right after one with fewer antenna lines is consumed with it.
      {station("AA:BB:CC:00:00:05", {-60}) + a, nullptr, {"AA:BB:CC:00:00:05 -60 [-60,0,0,0]"}},
      // Lines that are not stations, and a value that is no MAC address.
      {"garbage\n\n-40 : Short-term x\nnot-a-mac : STA MAC\n" + a, nullptr, {aText}},
      {"AABBCC000006 : STA MAC\n-70 : Short-term\n", nullptr, {"AABBCC000006 -70 [-70,0,0,0]"}},
  };
  for (const auto &c : cases) {
    WifiStaList list{};
    EXPECT_EQ(stationsOf(c.text, c.filter, &list), static_cast<int>(c.expected.size())) << c.text;
    EXPECT_EQ(stationsText(list), c.expected) << c.text;
  }
  std::string many;
  for (int i = 0; i < 200; ++i) {
    char mac[18];
    std::snprintf(mac, sizeof mac, "AA:BB:CC:00:%02X:%02X", i / 256, i % 256);
    many += station(mac, {-50, -50, -50, -50});
  }
  WifiStaList list{};
  EXPECT_EQ(stationsOf(many, nullptr, &list), 128);  // never more than the list holds
  EXPECT_STREQ(list.entries[127].mac, "AA:BB:CC:00:00:7F");
}

TEST_F(Driver, PhyNumberFromTheInterfaceInfo) {
  fakeos::onCommand("iw dev wlan2 info | grep \"wiphy\"", {"\twiphy 2\n"});
  fakeos::onCommand("iw dev wlan0 info | grep \"wiphy\"", {"\ttype AP\n"});
  fakeos::onCommand("iw dev wlan3 info | grep \"wiphy\"", kNoStart);
  EXPECT_EQ(GetPhyNumber("wlan2"), 2);
  EXPECT_EQ(GetPhyNumber("wlan0"), -1);
  EXPECT_EQ(GetPhyNumber("wlan1"), -1);  // the command prints nothing
  EXPECT_EQ(GetPhyNumber("wlan3"), -1);
  EXPECT_EQ(GetPhyNumber(""), -1);
  EXPECT_EQ(GetPhyNumber(nullptr), -1);
  Lines expected;
  for (const char *i : {"wlan2", "wlan0", "wlan1", "wlan3"})
    expected.push_back("iw dev " + std::string(i) + " info | grep \"wiphy\"");
  EXPECT_EQ(fakeos::commands(), expected);
}

constexpr char kRadios[] =
    "[Device.WiFi.Radio.1]\nIEEE80211hEnabled = false\n"
    "[Device.WiFi.Radio.2]\nIEEE80211hEnabled = true\n"
    "[Device.WiFi.Radio.3]\nIEEE80211hEnabled = 1\n";

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
  EXPECT_EQ(console(), trace("GetChannelList", "GetPhyNumber iw phy phy2 show_channel\n"));
  EXPECT_EQ(wifitest::requestLog(),
            Lines({"get flags=0x1100 Device.WiFi.Radio.2( IEEE80211hEnabled )"}));

  // Without a radio number, the device's own radio name or the name itself.
  std::string listing;
  for (int i = 0; i < 150; ++i) listing += std::to_string(i + 1) + " 2412 - - - - DFS\n";
  listing += "200 2412 - - - - -\n";
  fakeos::reset();
  fakeos::onCommand("iw phy phy0 show_channel", {listing});
  fakeos::onCommand("iw phy wlan9 show_channel", {listing});
  EXPECT_EQ(GetChannelList("wlan0", 1, &list), 1);  // 802.11h off: radar lines dropped
  EXPECT_EQ(list.entries[0].channel, 200);
  EXPECT_EQ(console(), trace("GetChannelList", "GetPhyNumber Fail!!!\n"));
  EXPECT_EQ(GetChannelList("wlan9", 3, &list), 100);  // the list's capacity
  EXPECT_EQ(list.entries[99].channel, 100);
}

TEST_F(Driver, ChannelListFailures) {
  model(kRadios);
  WifiChannelList list{};
  EXPECT_EQ(GetChannelList("wlan0", 7, &list), 0);  // no such radio
  EXPECT_EQ(fakeos::commands(), Lines());
  EXPECT_NE(console().find("\n\n\t[GetChannelList : #] faltocal_send_main_multi_obj is Failure\n"),
            std::string::npos);
  fakeos::reset();
  fakeos::onCommand("iw phy phy0 show_channel", kNoStart);
  EXPECT_EQ(GetChannelList("wlan0", 1, &list), 0);
  EXPECT_NE(console().find(trace("GetChannelList", "popen()")), std::string::npos);
  EXPECT_EQ(GetChannelList("wlan0", 1, nullptr), 0);
}

TEST_F(Driver, CurrentChannelTakesTheLastMarkedLine) {
  fakeos::onCommand("iwlist wlan0 channel",
                    {"wlan0  13 channels\n  Current Channel=6\n  Current Channel=11 \n"});
  fakeos::onCommand("iwlist wlan3 channel", kNoStart);
  int channel = -1;
  EXPECT_EQ(GetCurrentChannel("wlan0", 99, &channel), 1);
  EXPECT_EQ(channel, 11);
  channel = -1;
  EXPECT_EQ(GetCurrentChannel("wlan2", 0, &channel), 1);  // no such line: untouched
  EXPECT_EQ(channel, -1);
  EXPECT_EQ(GetCurrentChannel("wlan3", 0, &channel), 0);
  const std::string start = trace("GetCurrentChannel", "START_FUNCTION \n");
  EXPECT_EQ(console(), start + start + start + trace("GetCurrentChannel", "popen()"));
}

// Without an output the command still runs: a marked line, which would be
// stored, gives 0; without one the result is that of a call with an output.
TEST_F(Driver, CurrentChannelWithoutAnOutput) {
  const struct {
    fakeos::Reply reply;
    int withOutput, without;
  } cases[] = {{{"wlan0  13 channels\n  Current Channel=6\n  Current Channel=11\n"}, 1, 0},
               {{"wlan0  13 channels\n"}, 1, 1},
               {kNoStart, 0, 0}};
  for (const auto &c : cases) {
    SCOPED_TRACE(c.reply.output);
    std::string seen[2];  // the console and the commands, without and with an output
    for (bool withOutput : {false, true}) {
      fakeos::reset();
      fakeos::onCommand("iwlist wlan0 channel", c.reply);
      int channel = -1;
      EXPECT_EQ(GetCurrentChannel("wlan0", 0, withOutput ? &channel : nullptr),
                withOutput ? c.withOutput : c.without);
      seen[withOutput] = console();
      for (const std::string &command : fakeos::commands()) seen[withOutput] += command + "\n";
    }
    EXPECT_EQ(seen[0], seen[1]);
    EXPECT_NE(seen[0].find("iwlist wlan0 channel\n"), std::string::npos);
  }
}

TEST(SideChannel, ByCountryAndChannel) {
  const char *both = "both";
  const char *above = "AboveControlChannel", *below = "BelowControlChannel";
  const struct {
    int channel;
    const char *country, *expected;
  } cases[] = {{4, "US", above},  {5, "US", both},  {7, "US", both},     {8, "US", below},
               {8, "JP", both},   {10, "JP", both}, {11, "JP", below},   {9, "DE", both},
               {10, "DE", below}, {9, "us", both},  {1, nullptr, above}, {10, nullptr, below}};
  for (const auto &c : cases) {
    EXPECT_STREQ(GetSideChannel(c.channel, c.country, both), c.expected)
        << c.channel << " " << c.country;
  }
  EXPECT_EQ(GetSideChannel(6, "FR", both), both);
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
  const std::string start = trace("GetStaInfo", "START_FUNCTION \n");
  WifiStaList list{};
  list.count = 7;
  EXPECT_EQ(GetStaInfo("", nullptr, &list), 7);  // the count as it was
  EXPECT_EQ(GetStaInfo(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(fakeos::commands(), Lines());
  const std::string refused = start + "\n\n\t[GetStaInfo : #] arg is Failure\n";
  EXPECT_EQ(console(), refused + refused);
  fakeos::reset();
  EXPECT_EQ(GetStaInfo("wlan0", nullptr, &list), 0);  // the grep wrote no file
  EXPECT_EQ(console(),
            start + trace("GetStaInfo", "/tmp/wlan_wave/sta_info_wlan0 does not exist\n"));
  fakeos::reset();
  fakeos::onCommand(kStationCommand, kNoStart);
  EXPECT_EQ(GetStaInfo("wlan0", nullptr, &list), 0);
  EXPECT_EQ(console(), start + "system is Failure\n");
}

// SSIDs of a radio from its first on, "Enable X_ZINTU_Active LowerLayers
// clients" each ("-": no LowerLayers).
std::string ssids(int radio, const Lines &rows) {
  std::string text;
  for (std::size_t k = 0; k < rows.size(); ++k) {
    const std::string n = std::to_string(ConvSsidIdxToFapi(radio, static_cast<int>(k)));
    char enable[16], active[16], lower[64];
    int clients = 0;
    std::sscanf(rows[k].c_str(), "%15s %15s %63s %d", enable, active, lower, &clients);
    text += "[Device.WiFi.SSID." + n + "]\nEnable = " + enable + "\nX_ZINTU_Active = " + active +
            "\n" + (std::string(lower) == "-" ? "" : "LowerLayers = " + std::string(lower)) +
            "\n[Device.WiFi.AccessPoint." + n +
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

  model(ssids(1, {"true true Device.WiFi.Radio.1. 2", "true true - 3"}));
  fakeos::reset();
  EXPECT_EQ(GetAssociatedDeviceNumberOfEntries(1), 5);  // SSID 3 is absent: what was reached
  EXPECT_NE(console().find("\n\n\t[GetAssociatedDeviceNumberOfEntries : #] "
                           "faltocal_send_main_multi_obj is Failure\n"),
            std::string::npos);
}

TEST_F(Driver, AccessListEntriesFromFilterObjects) {
  const std::string prefix = "Device.WiFi.AccessPoint.1.X_LANTIQ_COM_Vendor.MACFilter";
  model("[" + prefix + ".1]\nname = tablet\nmacAddress = 66:A1:0F:2B:90:51\n[" + prefix +
        ".12]\nname = cam\n[" + prefix + ".13]\nmacAddress = x\nname = y\n");
  MsgHeader header{};
  ASSERT_EQ(faltocal_send_main_multi_obj(&header, (prefix + ".").c_str(), "get", "get", 0), 0);
  MacAccessList list{};
  std::vector<int> results;
  for (ObjList *obj : caltofal::objectsOf(header.pObjList))
    results.push_back(GetMacAccessList(obj, prefix.c_str(), &list));
  EXPECT_EQ(results, std::vector<int>({-1, -1, -1}));
  ASSERT_EQ(list.count, 2);
  EXPECT_EQ(list.entries[0].index, 1);
  EXPECT_STREQ(list.entries[0].macAddress, "66:A1:0F:2B:90:51");
  EXPECT_EQ(list.entries[1].index, 13);
  EXPECT_STREQ(list.entries[1].name, "y");
  EXPECT_NE(fakeos::console().find(">>>>>>>>>> ssid " + prefix + ".12:12:" + prefix +
                                   ".:12<<<<<<<<<<<<<"),
            std::string::npos);
  EXPECT_EQ(GetMacAccessList(nullptr, prefix.c_str(), &list), -1);
  list.count = 32;
  fakeos::reset();
  EXPECT_EQ(GetMacAccessList(header.pObjList, prefix.c_str(), &list), -1);  // full: untouched
  EXPECT_EQ(list.count, 32);
  EXPECT_EQ(fakeos::console(), "");
  help_delMsg(&header, 1);
}

std::string endpoints(const std::string &first, const std::string &second) {
  return "[Device.WiFi.EndPoint.1]\nEnable = " + first +
         "\nSSIDReference = Device.WiFi.SSID.8\n[Device.WiFi.EndPoint.2]\nEnable = " + second +
         "\nSSIDReference = Device.WiFi.SSID.16\n"
         "[Device.WiFi.SSID.8]\nName = wlan0.7\n[Device.WiFi.SSID.16]\nName = wlan2.7\n";
}

TEST_F(Driver, TheEnabledEndpointAndItsInterface) {
  const struct {
    const char *first, *second;
    int expected;
    const char *name;
  } cases[] = {{"true", "true", 1, "wlan0.7"},
               {"false", "true", 2, "wlan2.7"},
               {"True", "1", -1, "kept"},
               {"false", "false", -1, "kept"}};
  for (const auto &c : cases) {
    model(endpoints(c.first, c.second));
    char name[128] = "kept";
    EXPECT_EQ(GetEPEnable(name), c.expected) << c.first << " " << c.second;
    EXPECT_STREQ(name, c.name);
    EXPECT_EQ(GetEPEnable(nullptr), c.expected);
  }
  model("[Device.WiFi.EndPoint.1]\nEnable = true\nSSIDReference = Device.WiFi.SSID.99\n");
  char name[128] = "kept";
  EXPECT_EQ(GetEPEnable(name), 1);
  EXPECT_STREQ(name, "kept") << "an unanswerable reference leaves the name";
  model("[Device.Other]\nA = 1\n");
  EXPECT_EQ(GetEPEnable(name), 0);
}

constexpr char kPeerFile[] = "/tmp/wlan_wave/wlan2.7_peer_info";
constexpr char kPeerCommand[] =
    "cat /proc/net/mtlk/wlan2.7/PeerFlowStatus | grep \"STA MAC\" | sed -e 's/: STA MAC//' -e "
    "'s/\\t//' -e 's/ //g' > /tmp/wlan_wave/wlan2.7_peer_info";
constexpr char kChannelCommand[] =
    "cat /proc/net/mtlk/wlan2.7/channel | grep -e width: -e primary_channel: | sed "
    "'s/[^0-9]*//g' > /tmp/wlan_wave/wlan2.7_peer_info";

// The command's reply: it writes the peer file.
fakeos::Reply writing(const std::string &content) {
  fakeos::Reply reply;
  reply.writes = {{kPeerFile, content}};
  return reply;
}

TEST_F(Driver, TheEndpointsUpstreamPeer) {
  fakeos::onCommand(kPeerCommand, writing("0E:77:12:9A:00:21\nAA:BB:CC:00:00:01\n"));
  char mac[128] = {0};
  EXPECT_EQ(GetEPContection("wlan2.7", mac), 1);
  EXPECT_STREQ(mac, "0E:77:12:9A:00:21");
  EXPECT_EQ(GetEPContection("wlan2.7", nullptr), 1);
  EXPECT_EQ(fakeos::commands(), Lines(2, kPeerCommand));
  fakeos::onCommand(kPeerCommand, writing(""));
  EXPECT_EQ(GetEPContection("wlan2.7", mac), 0);

  fakeos::reset();
  EXPECT_EQ(GetEPContection("wlan2.7", mac), 0);
  EXPECT_EQ(console(), trace("GetEPContection", "/tmp/wlan_wave/%s_peer_info does not exist\n"));
  fakeos::reset();
  fakeos::onCommand(kPeerCommand, kNoStart);
  EXPECT_EQ(GetEPContection("wlan2.7", mac), 0);
  EXPECT_EQ(console(),
            trace("GetEPContection", std::string(kPeerCommand) + " system command fail\n"));
}

TEST_F(Driver, ConnectionStatusAsksTheEnabledEndpointsInterface) {
  model(endpoints("false", "false"));
  char mac[128] = "kept";
  EXPECT_EQ(GetEPConnectionStatus(mac), 0);
  EXPECT_EQ(fakeos::commands(), Lines());
  model(endpoints("false", "true"));
  fakeos::setFile(kPeerFile, "0E:77:12:9A:00:21\n");
  EXPECT_EQ(GetEPConnectionStatus(mac), 1);
  EXPECT_STREQ(mac, "0E:77:12:9A:00:21");
  EXPECT_EQ(fakeos::commands(), Lines({kPeerCommand}));
}

TEST_F(Driver, TheEndpointsChannelFigures) {
  const struct {
    const char *file;
    bool withValues;
    int expected;
    std::vector<int32_t> values;
  } cases[] = {{"80\n36\n", true, 1, {80, 36, 0, 0}},
               {"80\n36\n", false, 0, {0, 0, 0, 0}},
               {"\n80\n", true, 0, {0, 0, 0, 0}},
               {"80\n0\n36\n", true, 0, {80, 0, 0, 0}},
               {"", true, 0, {0, 0, 0, 0}}};
  for (const auto &c : cases) {
    fakeos::reset();
    fakeos::onCommand(kChannelCommand, writing(c.file));
    std::vector<int32_t> values(4, 0);
    EXPECT_EQ(ReqEPChannelInfo("wlan2.7", c.withValues ? values.data() : nullptr), c.expected)
        << c.file;
    EXPECT_EQ(values, c.values) << c.file;
    EXPECT_EQ(fakeos::commands(), Lines({kChannelCommand}));
  }
  fakeos::reset();
  int32_t values[2];
  EXPECT_EQ(ReqEPChannelInfo("wlan2.7", values), 0);
  EXPECT_EQ(console(),
            trace("ReqEPChannelInfo", "/tmp/wlan_wave/%s_scan_by_User.result does not exist\n"));
}

// Texts that must never change a command line.
// clang-format off
const char *const kHostile[] = {"'", "';id;'", "$(id)", "`id`", "\"", "\\", "a\nb", "%n%s", "-h",
                                "wlan0; rm -rf /", "0123456789abcdef", "wlan0 ", " wlan0", "..",
                                ".wlan0", "", "wlan0\t", "a'b'c"};
// clang-format on

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
  for (const char *good : {"wlan0", "wlan2.7", "a", "eth0_1", "br-lan", "W0123456789abcd"}) {
    EXPECT_TRUE(caltofal::shell::isInterfaceName(good)) << good;
  }
  EXPECT_FALSE(caltofal::shell::isInterfaceName(nullptr));
}

TEST(ShellSafety, EveryTextIsOneWordThatTheShellReadsBackAsItWas) {
  for (const char *text : kHostile) {
    EXPECT_EQ(wifitest::shellOutput("printf '[%s]' " + caltofal::shell::word(text) + " 2>&1"),
              "[" + std::string(text) + "]")
        << text;
  }
  // Plain texts are inserted unchanged: ordinary command lines stay the same.
  for (const char *plain : {"Home-Net_5G", "/tmp/wlan_wave/x.result", "AA:BB:CC:00:11:22"}) {
    EXPECT_EQ(caltofal::shell::word(plain), plain);
  }
  EXPECT_EQ(caltofal::shell::word(""), "''");  // still a word
  EXPECT_EQ(caltofal::shell::word("My Wi-Fi"), "'My Wi-Fi'");
  EXPECT_EQ(caltofal::shell::word("it's"), "'it'\\''s'");
}

}  // namespace

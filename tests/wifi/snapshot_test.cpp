// Snapshots of an SSID and a radio against the emulator: the one request
// they make, the rows kept in answer order, the names dropped, the cuts and
// the capacity of the table, a failed request leaving it untouched, and no
// table at all.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "calsim.h"
#include "caltofal.h"
#include "fake_os.h"
#include "wifi_fixture.h"

namespace {

using wifitest::console;
using wifitest::Lines;
using wifitest::requestLog;
using wifitest::rowsOf;
using wifitest::trace;

class Snapshot : public wifitest::WifiTest {};

// Rows of one object after another: "NAME=VALUE|NAME=VALUE..." per object.
Lines rowsFor(std::initializer_list<std::pair<std::string, std::string>> objects) {
  Lines rows;
  for (const auto &[object, params] : objects) {
    for (std::size_t at = 0, bar; at <= params.size(); at = bar + 1) {
      bar = params.find('|', at);
      if (bar == std::string::npos) bar = params.size();
      rows.push_back(object + " " + params.substr(at, bar - at));
    }
  }
  return rows;
}

TEST_F(Snapshot, SsidRowsInAnswerOrderFromOneRequest) {
  WifiParamTable table{};
  EXPECT_EQ(GetSsIdInfoFromFapiToBuff(1, &table), 0);
  const std::string ap = "Device.WiFi.AccessPoint.1";
  EXPECT_EQ(rowsOf(table),
            rowsFor({{"Device.WiFi.SSID.1",
                      "Enable=true|X_ZINTU_Active=true|SSID=Zintu-5A3C|BSSID=0A:1B:2C:5A:3D:10|"
                      "X_ZINTU_NetworkType=Main"},
                     {ap,
                      "SSIDAdvertisementEnabled=true|IsolationEnable=false|"
                      "X_ZINTU_WebUIAccessPermit=true|X_ZINTU_InternetOnly=false"},
                     {ap + ".X_LANTIQ_COM_Vendor", "MACAddressControlEnabled=true"},
                     {ap + ".Security",  // in the model's order, less the dropped ones
                      "ModeEnabled=WPA2-Personal|X_ZINTU_EncryptionType=AES|WEPKey=3132333435|"
                      "KeyPassphrase=correct-horse-battery|RekeyingInterval=3600|"
                      "RadiusServerIPAddr=|RadiusServerPort=1812|RadiusSecret=|"
                      "X_ZINTU_Wep_Encryption=WEP-64|X_ZINTU_Wep_KeyType=HEX"}}));
  EXPECT_EQ(requestLog(),
            (Lines{"get flags=0x1100"
                   " Device.WiFi.SSID.1( Enable X_ZINTU_Active SSID BSSID X_ZINTU_NetworkType )"
                   " Device.WiFi.AccessPoint.1( SSIDAdvertisementEnabled IsolationEnable"
                   " X_ZINTU_WebUIAccessPermit X_ZINTU_InternetOnly )"
                   " Device.WiFi.AccessPoint.1.X_LANTIQ_COM_Vendor( MACAddressControlEnabled )"
                   " Device.WiFi.AccessPoint.1.Security( )"}));
  EXPECT_EQ(console(), trace("GetSsIdInfoFromFapiToBuff", "START_FUNCTION \n"));
}

TEST_F(Snapshot, RadioKeepsNeitherNameNorChannelsInUse) {
  WifiParamTable table{};
  EXPECT_EQ(GetWireInfoFromFapiToBuff(1, &table), 0);
  EXPECT_EQ(rowsOf(table),
            rowsFor({{"Device.WiFi.Radio.1",
                      "Enable=true|GuardInterval=400nsec|BeaconPeriod=100|DTIMPeriod=2|"
                      "FragmentationThreshold=2346|RTSThreshold=2347|IEEE80211hEnabled=false|"
                      "RegulatoryDomain=DE |AutoChannelEnable=false|Channel=6|"
                      "OperatingStandards=b,g,n|OperatingChannelBandwidth=40MHz|"
                      "ExtensionChannel=AboveControlChannel|TransmitPower=75"},
                     {"Device.WiFi.AccessPoint.1",
                      "WMMEnable=true|UAPSDEnable=true|X_ZINTU_WMMOption=AC_Normal|"
                      "X_ZINTU_WMMAckPolicy=Normal"},
                     {"Device.WiFi.Radio.1.X_LANTIQ_COM_Vendor",
                      "Dot11dEnable=true|Dot11nProtection=Enabled|WaveExplicitBeamforming=false|"
                      "VhtSUbeamformerEnabled=false|VhtGuardInterval=false|"
                      "WaveInterfererDetectionThreshold=-68|CoexEnabled=true|"
                      "WaveIgnore40MhzIntolerant=false|WaveMuOperation=false"}}));
  const std::vector<calsim::Request> requests = calsim::requests();
  ASSERT_EQ(requests.size(), 1u);
  const auto &objects = requests[0].objects;
  ASSERT_EQ(objects.size(), 3u);
  EXPECT_EQ(objects[0].params.size(), 16u);
  EXPECT_EQ(objects[0].params[1].first, "Name");
  EXPECT_EQ(objects[2].params.size(), 9u);
  EXPECT_EQ(console(), trace("GetWireInfoFromFapiToBuff", "START_FUNCTION \n") +
                           trace("GetWireInfoFromFapiToBuff", "return [0] \n"));

  // The other radio reads access point 9, and rows are appended.
  table.count = 1;
  EXPECT_EQ(GetWireInfoFromFapiToBuff(2, &table), 0);
  EXPECT_EQ(rowsOf(table),
            (Lines{"Device.WiFi.Radio.1 Enable=true", "Device.WiFi.Radio.2 Enable=false",
                   "Device.WiFi.Radio.2 Channel=36", "Device.WiFi.AccessPoint.9 WMMEnable=false",
                   "Device.WiFi.AccessPoint.9 X_ZINTU_WMMOption=AC_Gaming",
                   "Device.WiFi.Radio.2.X_LANTIQ_COM_Vendor Dot11nProtection=Disabled"}));
}

TEST_F(Snapshot, AFullTableLosesTheRestWithoutFailing) {
  WifiParamTable table{};
  table.count = 97;
  EXPECT_EQ(GetSsIdInfoFromFapiToBuff(1, &table), 0);
  EXPECT_EQ(table.count, 100);
  EXPECT_EQ(rowsOf(table).back(), "Device.WiFi.SSID.1 SSID=Zintu-5A3C");
}

TEST_F(Snapshot, AFailedRequestLeavesTheTableUntouched) {
  for (bool ssid : {true, false}) {
    const std::string function = ssid ? "GetSsIdInfoFromFapiToBuff" : "GetWireInfoFromFapiToBuff";
    fakeos::reset();
    WifiParamTable table, before;
    std::memset(&table, 0x33, sizeof table);
    table.count = 3;
    before = table;
    calsim::injectFailure(-5, 1);
    EXPECT_EQ(ssid ? GetSsIdInfoFromFapiToBuff(1, &table) : GetWireInfoFromFapiToBuff(1, &table),
              -1);
    EXPECT_EQ(std::memcmp(&table, &before, sizeof table), 0);
    EXPECT_EQ(console(), trace(function, "START_FUNCTION \n") +
                             "[ZINTU VOLA FAL] (FaltoCal:#, faltocal_send_main_multi_obj) Failure "
                             ": faltocal_sendQuery() of Device.WiFi." +
                             (ssid ? "AccessPoint.1.Security" : "Radio.1.X_LANTIQ_COM_Vendor") +
                             " \n\n\n\t[" + function +
                             " : #] faltocal_send_main_multi_obj is Failure\n" +
                             (ssid ? "" : trace(function, "return [-1] \n")));
  }
  WifiParamTable table{};
  EXPECT_EQ(GetSsIdInfoFromFapiToBuff(5, &table), -1);  // no such SSID
  EXPECT_EQ(table.count, 0);
}

// A NULL table takes no row, as a full one takes none: the same request, the
// same traces and the same result as with a full table.
TEST_F(Snapshot, WithoutATableTheSnapshotRunsAsIntoAFullOne) {
  const struct {
    bool ssid;
    int index, failure, result;  // failure: the request's injected code, 0 for none
  } cases[] = {
      {true, 1, 0, 0}, {false, 2, 0, 0}, {true, 1, -5, -1}, {false, 1, -5, -1}, {true, 5, 0, -1}};
  for (const auto &c : cases) {
    SCOPED_TRACE(std::to_string(c.ssid) + " " + std::to_string(c.index) + " " +
                 std::to_string(c.failure));
    std::string seen[2];  // console and requests: [0] without a table, [1] with a full one
    for (bool withTable : {false, true}) {
      fakeos::reset();
      calsim::clearRequests();
      WifiParamTable full{};
      full.count = 100;
      WifiParamTable *table = withTable ? &full : nullptr;
      if (c.failure != 0) calsim::injectFailure(c.failure, 1);
      EXPECT_EQ(c.ssid ? GetSsIdInfoFromFapiToBuff(c.index, table)
                       : GetWireInfoFromFapiToBuff(c.index, table),
                c.result);
      seen[withTable] = console();
      for (const std::string &request : requestLog()) seen[withTable] += request + "\n";
    }
    EXPECT_NE(seen[0].find("START_FUNCTION"), std::string::npos);
    EXPECT_NE(seen[0].find("get flags=0x1100"), std::string::npos);
    EXPECT_EQ(seen[0], seen[1]);
  }
}

TEST(SetParam, CutsEachTextAndHoldsAHundredRows) {
  WifiParamTable table{};
  const std::string object(300, 'o'), parameter(300, 'p'), value(200, 'v');
  ASSERT_EQ(SetParam(&table, object.c_str(), parameter.c_str(), value.c_str()), 0);
  EXPECT_EQ(table.rows[0].object, object.substr(0, 254));
  EXPECT_EQ(table.rows[0].parameter, parameter.substr(0, 254));
  EXPECT_EQ(table.rows[0].value, value.substr(0, 126));
  EXPECT_EQ(table.rows[0].value[127], '\0');
  table.count = 99;
  EXPECT_EQ(SetParam(&table, "last", "p", "v"), 0);
  EXPECT_EQ(table.count, 100);
  const WifiParamTable full = table;
  EXPECT_EQ(SetParam(&table, "one", "more", "v"), -1);
  EXPECT_EQ(std::memcmp(&table, &full, sizeof table), 0);
  table.count = -1;
  EXPECT_EQ(SetParam(&table, "o", "p", "v"), -1);
  WifiParamTable empty{};
  for (int nul = 0; nul < 4; ++nul) {
    const char *args[4] = {"o", "p", "v", "t"};
    args[nul] = nullptr;
    EXPECT_EQ(SetParam(nul == 3 ? nullptr : &empty, args[0], args[1], args[2]), -1);
  }
  EXPECT_EQ(empty.count, 0);
}

}  // namespace

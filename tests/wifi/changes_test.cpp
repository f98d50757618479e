// Change detection: equal, different and absent values, force, the search
// by (object, parameter); and writing a change table back: objects grouped
// in first-appearance order, queued or sent, stored only or applied.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "calsim.h"
#include "caltofal.h"
#include "fake_os.h"
#include "frame/message.h"
#include "wifi_fixture.h"

namespace {

using wifitest::console;
using wifitest::Lines;
using wifitest::requestLog;
using wifitest::rowsOf;

constexpr char kSsid[] = "Device.WiFi.SSID.1";
constexpr char kAp[] = "Device.WiFi.AccessPoint.1";

// A snapshot-like table: SSID then security mode then a different object
// with the same parameter name.
WifiParamTable current() {
  WifiParamTable t{};
  SetParam(&t, kSsid, "SSID", "Home");
  SetParam(&t, kAp, "Enable", "true");
  SetParam(&t, kSsid, "Enable", "false");
  return t;
}

// The console note of a comparison: the row found at `at` with its old
// value, or the pair sought that the table lacks.
std::string note(const std::string &function, const std::string &at, const std::string &pair) {
  const std::string kind = at == "db don't have paramter" ? "2." : "1.";
  return wifitest::trace(function,
                         "\n\n  " + kind + function + "  <" + at + "> [" + pair + "]\n\n");
}

TEST(Compare, EqualDifferentAbsentAndForced) {
  const std::string missing = "db don't have paramter";
  const std::string home = note("ComparOrSetParam", "0", "Device.WiFi.SSID.1.SSID=>Home");
  const struct {
    const char *object, *parameter, *value;
    uint8_t force;
    bool queued;
    std::string console;
  } cases[] = {
      {kSsid, "SSID", "Home", 0, false, ""},
      {kSsid, "SSID", "Home", static_cast<uint8_t>(0x100), false, ""},  // low byte only
      {kSsid, "SSID", "Home", 1, true, home},
      {kSsid, "SSID", "Garden", 0, true, home},  // the old value
      {kSsid, "SSID", "home", 0, true, home},    // case counts
      {kSsid, "SSID", "Home ", 0, true, home},
      {kSsid, "Enable", "false", 0, false, ""},  // found under its own object only
      {kSsid, "Enable", "true", 0, true,
       note("ComparOrSetParam", "2", "Device.WiFi.SSID.1.Enable=>false")},
      {"Device.WiFi.SSID.2", "SSID", "Home", 0, true,
       note("ComparOrSetParam", missing, "Device.WiFi.SSID.2.SSID=>Home")},
  };
  for (const auto &c : cases) {
    fakeos::reset();
    WifiParamTable now = current(), changes{};
    EXPECT_EQ(ComparOrSetParam(&now, &changes, c.object, c.parameter, c.value, c.force), 0)
        << c.parameter << "=" << c.value;
    EXPECT_EQ(rowsOf(changes),
              c.queued ? Lines{std::string(c.object) + " " + c.parameter + "=" + c.value} : Lines{})
        << c.parameter << "=" << c.value;
    EXPECT_EQ(console(), c.console) << c.value;
    EXPECT_EQ(rowsOf(now), rowsOf(current()));  // the snapshot is never changed
  }
}

TEST(Compare, FullOrMissingTablesAndNullArguments) {
  fakeos::reset();
  WifiParamTable now = current(), full{};
  full.count = 100;
  EXPECT_EQ(ComparOrSetParam(&now, &full, kSsid, "SSID", "New", 0), -1);
  EXPECT_EQ(ComparOrSetParam(&now, nullptr, kSsid, "SSID", "New", 0), -1);
  EXPECT_EQ(ComparOrSetParam(&now, nullptr, kSsid, "SSID", "Home", 0), 0);  // nothing to queue
  fakeos::reset();
  WifiParamTable changes{};
  EXPECT_EQ(ComparOrSetParam(nullptr, &changes, kSsid, "SSID", "x", 1), -1);
  EXPECT_EQ(ComparOrSetParam(&now, &changes, nullptr, "SSID", "x", 1), -1);
  EXPECT_EQ(ComparOrSetParam(&now, &changes, kSsid, nullptr, "x", 1), -1);
  EXPECT_EQ(ComparOrSetParam(&now, &changes, kSsid, "SSID", nullptr, 1), -1);
  EXPECT_EQ(CheckGetParam(nullptr, kSsid, "SSID", "x"), -1);
  EXPECT_EQ(CheckGetReqDbAndCurDb(&now, nullptr, kSsid, "SSID", "Home"), -1);
  EXPECT_EQ(changes.count, 0);
  EXPECT_EQ(console(), "");
}

TEST(Compare, AValueFilledToItsFieldsEndIsNotReadPast) {
  WifiParamTable t{};
  t.count = 1;
  std::strcpy(t.rows[0].object, "o");
  std::strcpy(t.rows[0].parameter, "p");
  std::memset(t.rows[0].value, 'v', sizeof t.rows[0].value);
  std::memset(&t.rows[1], 'x', sizeof t.rows[1]);
  EXPECT_EQ(CheckGetParam(&t, "o", "p", std::string(128, 'v').c_str()), 0);
  EXPECT_EQ(CheckGetParam(&t, "o", "p", std::string(127, 'v').c_str()), 1);
  t.count = 5000;  // never read past the hundredth row
  EXPECT_EQ(CheckGetParam(&t, "absent", "p", "v"), -1);
}

TEST(Check, RequestedFirstThenCurrent) {
  WifiParamTable now = current(), requested{};
  SetParam(&requested, kSsid, "SSID", "Garden");
  const struct {
    const char *value;
    int check, both;
  } cases[] = {
      {"Garden", 1, 0},  // pending request has it: current is not looked at
      {"Home", 0, 1},
      {"Other", 1, 1},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(CheckGetParam(&now, kSsid, "SSID", c.value), c.check) << c.value;
    EXPECT_EQ(CheckGetReqDbAndCurDb(&requested, &now, kSsid, "SSID", c.value), c.both) << c.value;
  }
  fakeos::reset();
  EXPECT_EQ(CheckGetReqDbAndCurDb(&requested, &now, kAp, "Enable", "false"), 1);
  EXPECT_EQ(console(), note("CheckGetParam", "db don't have paramter",
                            "Device.WiFi.AccessPoint.1.Enable=>false") +
                           note("CheckGetParam", "1", "Device.WiFi.AccessPoint.1.Enable=>true"));
  EXPECT_EQ(CheckGetReqDbAndCurDb(&requested, &now, kAp, "SSID", "x"), -1);
}

class WriteBack : public wifitest::WifiTest {};

constexpr char kSec[] = "Device.WiFi.AccessPoint.1.Security";
constexpr char kRadio[] = "Device.WiFi.Radio.1";

TEST_F(WriteBack, InterleavedObjectsAreGroupedInFirstAppearanceOrder) {
  WifiParamTable changes{};
  SetParam(&changes, kSsid, "SSID", "Garden");
  SetParam(&changes, kSec, "KeyPassphrase", "new-secret");
  SetParam(&changes, kSsid, "Enable", "false");
  SetParam(&changes, kRadio, "Channel", "11");
  SetParam(&changes, kSec, "ModeEnabled", "WPA-WPA2-Personal");
  caltofal::Message msg;
  EXPECT_EQ(faltocal_fromDB(msg.get(), &changes, 0, 0), 0);
  EXPECT_EQ(requestLog(), (Lines{"set flags=0x4"
                                 " Device.WiFi.SSID.1( SSID=Garden Enable=false )"
                                 " Device.WiFi.AccessPoint.1.Security( KeyPassphrase=new-secret"
                                 " ModeEnabled=WPA-WPA2-Personal )"
                                 " Device.WiFi.Radio.1( Channel=11 )"}));
  EXPECT_EQ(calsim::journal(),
            (Lines{"set Device.WiFi.SSID.1 SSID=Garden Enable=false",
                   "set Device.WiFi.AccessPoint.1.Security KeyPassphrase=new-secret "
                   "ModeEnabled=WPA-WPA2-Personal",
                   "set Device.WiFi.Radio.1 Channel=11"}));
  std::string expected;
  for (const char *line :
       {"change object 0:Device.WiFi.SSID.1", "change object 1:Device.WiFi.AccessPoint.1.Security",
        "change object 2:Device.WiFi.Radio.1", "<0> Device.WiFi.SSID.1.SSID=>Garden",
        "<1> Device.WiFi.SSID.1.Enable=>false",
        "<0> Device.WiFi.AccessPoint.1.Security.KeyPassphrase=>new-secret",
        "<1> Device.WiFi.AccessPoint.1.Security.ModeEnabled=>WPA-WPA2-Personal",
        "<0> Device.WiFi.Radio.1.Channel=>11"}) {
    expected += "\n\n  faltocal_fromDB:# ==> " + std::string(line) + "\n\n";
  }
  EXPECT_EQ(console(), expected);
  EXPECT_EQ(calsim::value(kSsid, "SSID"), "Garden");
}

TEST_F(WriteBack, StoreOnlyHoldsWhereTheMessageWasAlreadyStarted) {
  const struct {
    int objects, onlyDb;
    const char *entry;
    bool journaled;
  } cases[] = {
      {1, 0, "set", true},
      {2, 0, "set", true},
      {1, 1, "set", true},  // a single object starts the message: applied, as it stands
      {2, 1, "setToDb", false},
  };
  for (const auto &c : cases) {
    calsim::reset();
    SetUp();
    WifiParamTable changes{};
    SetParam(&changes, kSsid, "SSID", "Stored");
    if (c.objects == 2) SetParam(&changes, kRadio, "Channel", "1");
    caltofal::Message msg;
    EXPECT_EQ(faltocal_fromDB(msg.get(), &changes, 0, c.onlyDb), 0);
    const std::vector<calsim::Request> requests = calsim::requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].entry, c.entry) << c.objects << " " << c.onlyDb;
    EXPECT_EQ(calsim::journal().empty(), !c.journaled) << c.objects << " " << c.onlyDb;
    EXPECT_EQ(calsim::value(kSsid, "SSID"), "Stored");
  }
}

TEST_F(WriteBack, MoreFollowsLeavesTheSendToTheCaller) {
  WifiParamTable changes{};
  SetParam(&changes, kSsid, "SSID", "Later");
  caltofal::Message msg;
  EXPECT_EQ(faltocal_fromDB(msg.get(), &changes, 1, 1), 0);
  EXPECT_TRUE(calsim::requests().empty());
  EXPECT_EQ(faltocal_send_main_multi_obj(msg.get(), "query", "set_only_db", "set", 0), 0);
  EXPECT_EQ(requestLog(), (Lines{"setToDb flags=0x4 Device.WiFi.SSID.1( SSID=Later )"}));
  EXPECT_TRUE(calsim::journal().empty());
  EXPECT_EQ(calsim::value(kSsid, "SSID"), "Later");
}

TEST_F(WriteBack, NothingToSendAndFailures) {
  WifiParamTable changes{};
  caltofal::Message msg;
  EXPECT_EQ(faltocal_fromDB(msg.get(), &changes, 0, 0), 0);
  EXPECT_TRUE(calsim::requests().empty());
  EXPECT_EQ(console(), "");
  EXPECT_EQ(faltocal_fromDB(nullptr, &changes, 0, 0), -1);
  EXPECT_EQ(faltocal_fromDB(msg.get(), nullptr, 0, 0), -1);

  SetParam(&changes, kSsid, "SSID", "Never");
  for (int allocation : {1, 2}) {
    wifitest::failAllocation(allocation);
    EXPECT_EQ(faltocal_fromDB(msg.get(), &changes, 0, 0), -1);
    wifitest::failAllocation(0);
    EXPECT_TRUE(msg.empty());
  }
  SetParam(&changes, "Device.WiFi.Nowhere", "X", "1");
  fakeos::reset();
  EXPECT_EQ(faltocal_fromDB(msg.get(), &changes, 0, 0), -1);  // an absent object fails the set
  EXPECT_NE(console().find("\n\n\t[faltocal_fromDB : #] faltocal_send_main_multi_obj is Failure\n"),
            std::string::npos);
  EXPECT_EQ(calsim::value(kSsid, "SSID"), "Zintu-5A3C");
  EXPECT_TRUE(calsim::journal().empty());
}

}  // namespace

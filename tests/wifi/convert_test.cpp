// Conversion tables and converters: every row both ways, first match wins,
// unmatched text comes back as the same pointer; clamps at their bounds;
// transmit power; frequency to channel; MAC forms; the compare; hex.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "caltofal.h"
#include "fake_os.h"

namespace {

using Converter = const char *(*)(const char *, int);

// The tables without a converter of their own, walked the converters' way.
const char *security(const char *t, int d) {
  return d == 1 ? FapiToUi_Str(t, SecurityType_FapiToUi_Table, 8)
                : UiToFapi_Str(t, SecurityType_FapiToUi_Table, 8);
}
const char *band(const char *t, int d) {
  return d == 1 ? FapiToUi_Str(t, Interface_FapiToUi_Table, 2)
                : UiToFapi_Str(t, Interface_FapiToUi_Table, 2);
}
const char *phy(const char *t, int) {
  return DevToPhy_Str(t, Interface_DevToPhy_Table, 4);
}

// Every row that no earlier row shadows, "FAPI=UI" each: each value converts
// into the other (the device to radio table one way only).
TEST(Converters, EveryRowBothWays) {
  const std::pair<Converter, const char *> tables[] = {
      {Dot11nProtect_ConvStr, "Enabled=true Disabled=false"},
      {WMMOption_ConvStr, "AC_Normal=normal AC_Gaming=gaming AC_Streaming=streaming"},
      {VhtShortGuardInterval_ConvStr, "true=on false=off"},
      {ShortGuardInterval_ConvStr, "400nsec=on 800nsec=off"},
      {ExtensionChannel_ConvStr, "AboveControlChannel=upper BelowControlChannel=lower Auto=auto"},
      {BandWidth_ConvStr, "Auto=auto 20MHz=20 40MHz=40 80MHz=80 160MHz=160"},
      {OperatingStandards_ConvStr,
       "b=802.11b g=802.11g n=802.11n b,g=802.11b+g g,n=802.11g+n b,g,n=802.11b+g+n a=802.11a "
       "ac=802.11ac a,n=802.11a+n n,ac=802.11n+ac a,n,ac=802.11a+n+ac"},
      {security,
       "WPA-Personal=WPA-PSK WPA2-Personal=WPA2-PSK WPA-WPA2-Personal=WPA2/WPA-PSK "
       "WPA2-Enterprise=WPA2-Enterprise WPA-WPA2-Enterprise=WPA2/WPA-Enterprise WEP-64=WEP "
       "None=NONE"},
      {band, "2.4GHz=2.4g 5GHz=5g"},
      {phy, "wlan0=phy0 wlan1=phy1 wlan2=phy2 wlan3=phy3"},
  };
  for (const auto &[convert, rows] : tables) {
    std::istringstream in(rows);
    for (std::string row; in >> row;) {
      const std::string fapi = row.substr(0, row.find('=')), ui = row.substr(row.find('=') + 1);
      EXPECT_STREQ(convert(fapi.c_str(), 1), ui.c_str()) << fapi;
      if (convert == phy) continue;
      for (int back : {0, 2, -1}) EXPECT_STREQ(convert(ui.c_str(), back), fapi.c_str()) << ui;
    }
  }
}

// Shadowed rows, exact matching, and text that no row holds (returned as
// the caller's own pointer; a match points into the table).
TEST(Walkers, FirstMatchWinsAndOtherTextPassesThrough) {
  const struct {
    Converter convert;
    int direction;
    const char *in, *out;
  } cases[] = {{security, 1, "WEP-128", "WEP"},
               {security, 0, "WEP", "WEP-64"},
               {WMMOption_ConvStr, 0, "(null)", "AC_Normal"},
               {OperatingStandards_ConvStr, 0, "802.11n", "n"},
               {phy, 1, "phy0", "phy0"},  // the first cells only
               {BandWidth_ConvStr, 1, "auto", "auto"},
               {BandWidth_ConvStr, 0, "Auto", "Auto"},
               {BandWidth_ConvStr, 1, "20MHz ", "20MHz "},
               {BandWidth_ConvStr, 1, "20MH", "20MH"},
               {BandWidth_ConvStr, 1, "", ""},
               {security, 0, "wep", "wep"}};
  for (const auto &c : cases) {
    const char *out = c.convert(c.in, c.direction);
    EXPECT_STREQ(out, c.out) << c.in;
    if (std::strcmp(c.in, c.out) == 0) {
      EXPECT_EQ(out, c.in) << c.in;
    }
  }
  EXPECT_STREQ(UiToFapi_Str("NONE", SecurityType_FapiToUi_Table, 7), "NONE");  // row count kept
  const char text[] = "20MHz";
  for (int rows : {0, -3}) EXPECT_EQ(FapiToUi_Str(text, BandWidth_FapiToUi_Table, rows), text);
  EXPECT_EQ(UiToFapi_Str(text, nullptr, 5), text);
  EXPECT_EQ(BandWidth_ConvStr(text, 1), BandWidth_FapiToUi_Table[1][1]);
}

TEST(Walkers, ACellFilledToItsLastByteIsNeverReadPast) {
  ConvPairRow table[2];
  std::memset(table, 'x', sizeof table);  // no terminator anywhere
  const std::string full(127, 'x'), longer(300, 'x');
  EXPECT_EQ(UiToFapi_Str(longer.c_str(), table, 2), longer.c_str());
  // A text equal to the cell's 127 bytes matches it.
  EXPECT_EQ(FapiToUi_Str(full.c_str(), table, 2), table[0][1]);
}

TEST(Walkers, NullTextIsReportedAndReturned) {
  fakeos::reset();
  EXPECT_EQ(FapiToUi_Str(nullptr, BandWidth_FapiToUi_Table, 5), nullptr);
  EXPECT_EQ(UiToFapi_Str(nullptr, BandWidth_FapiToUi_Table, 5), nullptr);
  EXPECT_EQ(BandWidth_ConvStr(nullptr, 0), nullptr);
  EXPECT_EQ(DevToPhy_Str(nullptr, Interface_DevToPhy_Table, 4), nullptr);
  EXPECT_EQ(fakeos::console(),
            "[ZINTU VOLA FAL] (ZintuWifiUtil:13, FapiToUi_Str) Received str is NULL. \n"
            "[ZINTU VOLA FAL] (ZintuWifiUtil:42, UiToFapi_Str) Received str is NULL. \n"
            "[ZINTU VOLA FAL] (ZintuWifiUtil:42, UiToFapi_Str) Received str is NULL. \n");
}

TEST(Converters, WmmAndProtectionRefuseAnEmptyValue) {
  struct {
    Converter convert;
    int direction;
    const char *in, *out, *console;
  } cases[] = {
      {WMMOption_ConvStr, 1, "", "(null)", "520, WMMOption_ConvStr"},
      {WMMOption_ConvStr, 0, nullptr, "AC_Normal", "520, WMMOption_ConvStr"},
      {WMMOption_ConvStr, 1, "AC_Other", "AC_Other", nullptr},
      {Dot11nProtect_ConvStr, 1, nullptr, "false", "547, Dot11nProtect_ConvStr"},
      {Dot11nProtect_ConvStr, 7, "", "Disabled", "547, Dot11nProtect_ConvStr"},
      {Dot11nProtect_ConvStr, 0, "maybe", "maybe", nullptr},
  };
  for (const auto &c : cases) {
    fakeos::reset();
    EXPECT_STREQ(c.convert(c.in, c.direction), c.out);
    EXPECT_EQ(fakeos::console(), c.console == nullptr
                                     ? ""
                                     : "[ZINTU VOLA FAL] (ZintuWifiUtil:" + std::string(c.console) +
                                           ") \n\n>>>>>>>>>> " + (std::strchr(c.console, ' ') + 1) +
                                           " from parameter is unvalide  <<<<<<<<<<<<<\n\n");
  }
}

TEST(Converters, PassThroughAndBooleans) {
  const char text[] = "1-13";
  for (Converter c : {ConvStr, AutoChannelEnable_ConvStr, ChannelList_ConvStr}) {
    EXPECT_EQ(c(text, 1), text);
    EXPECT_EQ(c(nullptr, 0), nullptr);
  }
  EXPECT_EQ(ConvInt(" 42abc"), 42);
  EXPECT_EQ(ConvInt("x"), 0);
  EXPECT_EQ(ConvInt(nullptr), 0);
  const std::pair<const char *, int> bools[] = {{"true", 1},  {"1", 1},  {"True", 0}, {"yes", 0},
                                                {"true ", 0}, {"01", 0}, {"", 0},     {nullptr, 0}};
  for (const auto &[text, flag] : bools) EXPECT_EQ(ConvStrToBool(text), flag) << text;
  EXPECT_STREQ(ConvBoolToStr(1), "true");
  EXPECT_STREQ(ConvBoolToStr(static_cast<uint8_t>(0x100 | 0x00)), "false");  // low byte only
  EXPECT_EQ(ConvMacACLModeToUI("Allow"), 1);
  EXPECT_EQ(ConvMacACLModeToUI("allow"), 0);
  EXPECT_EQ(ConvMacACLModeToUI(nullptr), 0);
  EXPECT_STREQ(ConvMacACLModeToFapi(0, 1), "Disabled");
  EXPECT_STREQ(ConvMacACLModeToFapi(2, 1), "Allow");
  EXPECT_STREQ(ConvMacACLModeToFapi(1, 0), "Deny");
}

TEST(Converters, SsidNumbersOfBothRadios) {
  const int cases[][3] = {// radio, configuration number, UI number
                          {1, 1, 0}, {1, 8, 7}, {2, 9, 0}, {2, 16, 7}, {3, 9, 0}, {0, 12, 3}};
  for (const auto &c : cases) {
    EXPECT_EQ(ConvSsidIdxToUI(c[0], c[1]), c[2]) << c[0] << " " << c[1];
    EXPECT_EQ(ConvSsidIdxToFapi(c[0], c[2]), c[1]) << c[0] << " " << c[2];
  }
}

TEST(Clamps, KeepInRangeValuesAndFallBackOutside) {
  struct {
    int (*clamp)(int);
    int low, high, fallback;
  } cases[] = {
      {ConvBeaconInterval, 50, 1000, 100},
      {ConvDtimInterval, 1, 100, 1},
      {ConvFragmentationThreshold, 1000, 2346, 2346},
      {ConvRtsThreshold, 1000, 2347, 2346},  // one further, same fallback
  };
  for (const auto &c : cases) {
    for (int in : {c.low, c.high}) EXPECT_EQ(c.clamp(in), in) << c.low;
    for (int out : {c.low - 1, c.high + 1, INT_MIN}) EXPECT_EQ(c.clamp(out), c.fallback) << out;
  }
}

TEST(TransmitPower, LevelsAndWords) {
  const std::pair<int, int> levels[] = {{INT_MIN, 3}, {-1, 3}, {0, 3},   {25, 3},  {26, 2},
                                        {50, 2},      {51, 1}, {100, 1}, {101, 1}, {INT_MAX, 1}};
  for (const auto &[percent, level] : levels)
    EXPECT_EQ(ConvTransmitPower(percent), level) << percent;
  const std::pair<const char *, const char *> toUi[] = {
      {"-5", "low"},  {"0", "low"},    {"25", "low"},   {"26", "medium"}, {"50", "medium"},
      {"51", "high"}, {"101", "high"}, {"75%", "high"}, {"abc", "low"}};
  for (const auto &[in, out] : toUi) EXPECT_STREQ(TransmitPower_ConvStr(in, 1), out) << in;
  const std::pair<const char *, const char *> toPercent[] = {
      {"", "100"},       {"h", "100"},   {"high", "100"}, {"me", "50"},
      {"medium", "50"},  {"low", "25"},  {"l", "25"},     {"highx", "100"},
      {"lowest", "100"}, {"Low", "100"}, {"50", "100"}};
  for (const auto &[in, out] : toPercent) EXPECT_STREQ(TransmitPower_ConvStr(in, 0), out) << in;
  EXPECT_EQ(TransmitPower_ConvStr(nullptr, 1), nullptr);
  EXPECT_EQ(TransmitPower_ConvStr(nullptr, 0), nullptr);
}

TEST(Frequency, ChannelAcrossBands) {
  const std::pair<int, int> cases[] = {
      {2412, 1},   {2437, 6},   {2472, 13}, {2483, 15}, {2484, 14},  {2407, 0},   {2400, -1},
      {4910, 182}, {4980, 196}, {4985, -3}, {5180, 36}, {5825, 165}, {5955, 191}, {45000, 8000},
      {45001, 0},  {58320, 1},  {60480, 2}, {64800, 4}, {64801, 0},  {70000, 0},  {0, -481},
  };
  for (const auto &[mhz, channel] : cases) EXPECT_EQ(ConvFreqChannel(mhz), channel) << mhz;
}

TEST(MacAddress, TextForms) {
  for (const char *valid : {"00:11:22:33:44:55", "00-11-22-33-44-55", "001122334455",
                            "aA:bB:cC:dD:eE:fF", "00:11-22:33-44:55"}) {
    EXPECT_EQ(isValidMacAddress(valid), 1) << valid;
  }
  for (const char *invalid :
       {"0:011:22:33:44:55", ":00:11:22:33:44:55", "00:11:22:33:44", "00:11:22:33:44:55:66",
        "0011:22:33:44:55", "00:11:22:33:44:5g", "00112233445", "0011223344556",
        "00:11:22:33:44:55 ", "00 11 22 33 44 55", "", static_cast<const char *>(nullptr)}) {
    EXPECT_EQ(isValidMacAddress(invalid), 0) << invalid;
  }
}

TEST(Strnicmp, ComparesExactlyNPositions) {
  struct {
    const char *s1, *s2;
    int n, result;
  } cases[] = {
      {"abc", "ABC", 3, 0},   {"abc", "abd", 3, -1},   {"abd", "ABC", 3, 1},
      {"a", "", 1, 1},        {"", "a", 1, -1},        {"ab", "ba", 2, 1},  // the last difference
      {"abc", "xbc", 3, -1},  {"abc", "abd", 5, 0},  // both ended before n: reported equal
      {"abcd", "abce", 3, 0}, {"wlan0", "WLAN", 4, 0}, {"a[", "A{", 2, -1},
      {nullptr, "a", 1, -1},  {"a", nullptr, 1, -1},   {"a", "b", 0, -1},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(my_strnicmp(c.s1, c.s2, c.n), c.result) << c.s1 << " " << c.s2 << " " << c.n;
  }
}

TEST(Hex, RoundTripsAndOddInput) {
  const char bytes[] = {'\x00', '\x7f', '\x80', '\xff', 'A', '\n'};
  char hex[2 * sizeof bytes + 1];
  std::memset(hex, '#', sizeof hex);
  EXPECT_EQ(ConvCharStrToHexDec(bytes, sizeof bytes, hex), 1);
  EXPECT_STREQ(hex, "007f80ff410a");
  char back[sizeof bytes + 1];
  EXPECT_EQ(ConvHexDecToCharStr(hex, back), 1);
  EXPECT_EQ(std::string(back, sizeof back), std::string(bytes, sizeof bytes) + '\0');

  const std::pair<const char *, std::string> cases[] = {
      {"4A6b", "Jk"}, {"414", "A"},  // an odd last digit is ignored
      {"", ""},       {"z1", "\xf1"}, {"1z", "\xff"}, {"zz", "\xff"}};
  for (const auto &[in, out] : cases) {
    char text[8];
    std::memset(text, '#', sizeof text);
    EXPECT_EQ(ConvHexDecToCharStr(in, text), 1);
    EXPECT_EQ(std::string(text, out.size() + 1), out + '\0') << in;
  }
  char out[4] = "###";
  EXPECT_EQ(ConvCharStrToHexDec("ab", -2, out), 1);
  EXPECT_EQ(out[0], '\0');
  EXPECT_EQ(ConvHexDecToCharStr(nullptr, out), 0);
  EXPECT_EQ(ConvCharStrToHexDec(nullptr, 2, out), 0);
}

TEST(RetryTables, ALongerFirstWaitThenThrees) {
  for (const auto &[table, first] :
       {std::pair{SCAN_5G_RetryTime, 25}, {SCAN_24G_RetryTime, 15}, {WPS_RetryTime, 5}}) {
    std::vector<int> expected(40, 3);
    expected[0] = first;
    EXPECT_EQ(std::vector<int>(table, table + 40), expected);
  }
}

}  // namespace

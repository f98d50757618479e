#include "wifi_settings.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <iterator>
#include <vector>

#include "failure.h"

namespace cli::wifi {

namespace {

template <std::size_t N>
constexpr int rows(const ConvPairRow (&)[N]) {
  return static_cast<int>(N);
}

#define WORDS(name, param, convert, table) \
  { name, param, Kind::kWords, convert, table, rows(table), nullptr, 0, 0 }
#define RANGE(name, param, clamp, low, high) \
  { name, param, Kind::kRange, nullptr, nullptr, 0, clamp, low, high }
constexpr Setting kSettings[] = {
    WORDS("security", "ModeEnabled", nullptr, SecurityType_FapiToUi_Table),
    WORDS("bandwidth", "OperatingChannelBandwidth", BandWidth_ConvStr, BandWidth_FapiToUi_Table),
    WORDS("sideband", "ExtensionChannel", ExtensionChannel_ConvStr, SideBand_FapiToUi_Table),
    WORDS("guard-interval", "GuardInterval", ShortGuardInterval_ConvStr,
          ShortGuardInterval_FapiToUi_Table),
    WORDS("vht-guard-interval", "VhtGuardInterval", VhtShortGuardInterval_ConvStr,
          VhtShortGuardInterval_FapiToUi_Table),
    WORDS("standards", "OperatingStandards", OperatingStandards_ConvStr,
          WireLessMode_FapiToUi_Table),
    WORDS("wmm", "X_ZINTU_WMMOption", WMMOption_ConvStr, WMM_Option_FapiToUi_Table),
    WORDS("protection", "Dot11nProtection", Dot11nProtect_ConvStr, Dot11nProtect_FapiToUi_Table),
    WORDS("band", "OperatingFrequencyBand", nullptr, Interface_FapiToUi_Table),
    {"transmit-power", "TransmitPower", Kind::kPower, TransmitPower_ConvStr, nullptr, 0, nullptr, 0,
     0},
    RANGE("beacon", "BeaconPeriod", ConvBeaconInterval, 50, 1000),
    RANGE("dtim", "DTIMPeriod", ConvDtimInterval, 1, 100),
    RANGE("fragmentation", "FragmentationThreshold", ConvFragmentationThreshold, 1000, 2346),
    RANGE("rts", "RTSThreshold", ConvRtsThreshold, 1000, 2347),
    {"channel", "", Kind::kFrequency, nullptr, nullptr, 0, nullptr, 0, 0},
};
#undef WORDS
#undef RANGE

constexpr const char *kPowerWords[] = {"high", "medium", "low"};
constexpr int kToUi = 1, kToConfig = 0;

// The words of one side of a table, each once, in table order. The UI
// word "(null)" only stands for an absent value.
std::vector<std::string> wordsOf(const Setting &s, int cell) {
  std::vector<std::string> words;
  for (int i = 0; i < s.rows; ++i) {
    std::string word = s.table[i][cell];
    if (word == "(null)") continue;
    bool seen = false;
    for (const std::string &w : words) seen = seen || w == word;
    if (!seen) words.push_back(word);
  }
  return words;
}

std::string joined(const std::vector<std::string> &words) {
  std::string text;
  for (const std::string &w : words) text += (text.empty() ? "" : ", ") + w;
  return text;
}

bool isOneOf(const std::vector<std::string> &words, const std::string &value) {
  for (const std::string &w : words) {
    if (w == value) return true;
  }
  return false;
}

[[noreturn]] void refuse(const Setting &s, const std::string &takes, const std::string &value) {
  const std::string shown = s.param[0] != '\0' ? s.param : s.name;
  throw UsageError(shown + " takes " + takes + ", not '" + value + "'");
}

// A whole decimal number within the int range.
bool parseNumber(const std::string &text, int *out) {
  if (text.empty()) return false;
  errno = 0;
  char *end = nullptr;
  long value = std::strtol(text.c_str(), &end, 10);
  if (*end != '\0' || errno != 0 || value < INT_MIN || value > INT_MAX) return false;
  *out = static_cast<int>(value);
  return true;
}

const char *walk(const Setting &s, const std::string &value, int direction) {
  if (s.convert != nullptr) return s.convert(value.c_str(), direction);
  return direction == kToUi ? FapiToUi_Str(value.c_str(), s.table, s.rows)
                            : UiToFapi_Str(value.c_str(), s.table, s.rows);
}

std::string rangeText(const Setting &s) {
  return std::to_string(s.low) + ".." + std::to_string(s.high);
}

}  // namespace

const Setting *findSetting(const std::string &name) {
  for (const Setting &s : kSettings) {
    if (name == s.name || (s.param[0] != '\0' && name == s.param)) return &s;
  }
  return nullptr;
}

std::string settingNames() {
  std::vector<std::string> names;
  for (const Setting &s : kSettings) names.push_back(s.name);
  return joined(names);
}

std::string toUi(const Setting &s, const std::string &value) {
  switch (s.kind) {
    case Kind::kWords:
    case Kind::kPower:
      return walk(s, value, kToUi);
    case Kind::kRange: {
      int number = 0;
      return parseNumber(value, &number) ? std::to_string(s.clamp(number)) : value;
    }
    case Kind::kFrequency: {
      int mhz = 0;
      return parseNumber(value, &mhz) ? std::to_string(ConvFreqChannel(mhz)) : value;
    }
  }
  return value;
}

std::string toUiChecked(const Setting &s, const std::string &value) {
  int number = 0;
  switch (s.kind) {
    case Kind::kWords:
      if (!isOneOf(wordsOf(s, 0), value)) refuse(s, joined(wordsOf(s, 0)), value);
      break;
    case Kind::kPower:
      if (!parseNumber(value, &number)) refuse(s, "a percentage", value);
      break;
    case Kind::kRange:
      if (!parseNumber(value, &number) || s.clamp(number) != number) {
        refuse(s, rangeText(s), value);
      }
      break;
    case Kind::kFrequency:
      if (!parseNumber(value, &number)) refuse(s, "a frequency in MHz", value);
      break;
  }
  return toUi(s, value);
}

std::string toConfig(const Setting &s, const std::string &uiValue) {
  int number = 0;
  switch (s.kind) {
    case Kind::kWords:
      if (!isOneOf(wordsOf(s, 1), uiValue)) refuse(s, joined(wordsOf(s, 1)), uiValue);
      return walk(s, uiValue, kToConfig);
    case Kind::kPower:
      if (!isOneOf({std::begin(kPowerWords), std::end(kPowerWords)}, uiValue)) {
        refuse(s, "high, medium, low", uiValue);
      }
      return walk(s, uiValue, kToConfig);
    case Kind::kRange:
      if (!parseNumber(uiValue, &number) || s.clamp(number) != number) {
        refuse(s, rangeText(s), uiValue);
      }
      return std::to_string(number);
    case Kind::kFrequency:
      throw UsageError(std::string(s.name) + " converts a frequency to the UI only");
  }
  return uiValue;
}

}  // namespace cli::wifi

// Per-setting converters between configuration-layer and UI values, range
// clamps of radio settings, transmit power, frequency to channel, and small
// text helpers (booleans, MAC address form, case-insensitive compare, hex).
#include <cstdlib>
#include <cstring>

#include "caltofal.h"
#include "frame/trace.h"
#include "wifi/pairs.h"

namespace caltofal::wifi {
namespace {

constexpr int kToUi = 1;  // any other direction converts a UI value back

template <int N>
const char *convert(const char *text, int direction, const ConvPairRow (&table)[N]) {
  return direction == kToUi ? FapiToUi_Str(text, table, N) : UiToFapi_Str(text, table, N);
}

// The converters that refuse an empty or absent value: a console note and
// the table's value for "nothing".
template <int N>
const char *convertOrDefault(const char *text, int direction, const ConvPairRow (&table)[N],
                             int line, const char *function, const char *uiDefault,
                             const char *fapiDefault) {
  if (text == nullptr || text[0] == '\0') {
    traceTag(kUnitWifi, line, function);
    PRINT_TO_CONSOLE("\n\n>>>>>>>>>> %s from parameter is unvalide  <<<<<<<<<<<<<\n\n", function);
    return direction == kToUi ? uiDefault : fapiDefault;
  }
  return convert(text, direction, table);
}

struct Range {
  int low, high, fallback;
  constexpr int clamp(int value) const { return value >= low && value <= high ? value : fallback; }
};
// The RTS range reaches one further than the fragmentation range; both
// fall back to 2346.
constexpr Range kBeacon{50, 1000, 100};
constexpr Range kDtim{1, 100, 1};
constexpr Range kFragmentation{1000, 2346, 2346};
constexpr Range kRts{1000, 2347, 2346};

// Transmit power words and the percentages they stand for, in the order
// a UI word is tried.
struct PowerWord {
  const char *word;
  const char *percent;
};
constexpr PowerWord kPowerWords[] = {{"high", "100"}, {"medium", "50"}, {"low", "25"}};

bool isHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// A hex digit's value; 255 for any other character.
unsigned hexValue(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
  return 255;
}

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace
}  // namespace caltofal::wifi

using namespace caltofal;
using namespace caltofal::wifi;

extern "C" {

CALTOFAL_API const char *OperatingStandards_ConvStr(const char *text, int direction) noexcept {
  return convert(text, direction, WireLessMode_FapiToUi_Table);
}

CALTOFAL_API const char *BandWidth_ConvStr(const char *text, int direction) noexcept {
  return convert(text, direction, BandWidth_FapiToUi_Table);
}

CALTOFAL_API const char *ExtensionChannel_ConvStr(const char *text, int direction) noexcept {
  return convert(text, direction, SideBand_FapiToUi_Table);
}

CALTOFAL_API const char *ShortGuardInterval_ConvStr(const char *text, int direction) noexcept {
  return convert(text, direction, ShortGuardInterval_FapiToUi_Table);
}

CALTOFAL_API const char *VhtShortGuardInterval_ConvStr(const char *text, int direction) noexcept {
  return convert(text, direction, VhtShortGuardInterval_FapiToUi_Table);
}

CALTOFAL_API const char *WMMOption_ConvStr(const char *text, int direction) noexcept {
  return convertOrDefault(text, direction, WMM_Option_FapiToUi_Table, 520, "WMMOption_ConvStr",
                          "(null)", "AC_Normal");
}

CALTOFAL_API const char *Dot11nProtect_ConvStr(const char *text, int direction) noexcept {
  return convertOrDefault(text, direction, Dot11nProtect_FapiToUi_Table, 547,
                          "Dot11nProtect_ConvStr", "false", "Disabled");
}

CALTOFAL_API const char *TransmitPower_ConvStr(const char *text, int direction) noexcept {
  if (text == nullptr) return nullptr;
  if (direction == kToUi) {
    int percent = std::atoi(text);
    return percent > 50 ? "high" : percent > 25 ? "medium" : "low";
  }
  // A prefix of a word matches it, so "" is "high" and "med" is "medium".
  const std::size_t length = std::strlen(text);
  for (const PowerWord &w : kPowerWords) {
    if (std::strncmp(text, w.word, length) == 0) return w.percent;
  }
  return "100";
}

CALTOFAL_API const char *ConvStr(const char *text, int) noexcept {
  return text;
}
CALTOFAL_API const char *AutoChannelEnable_ConvStr(const char *text, int) noexcept {
  return text;
}
CALTOFAL_API const char *ChannelList_ConvStr(const char *text, int) noexcept {
  return text;
}

CALTOFAL_API int ConvInt(const char *text) noexcept {
  return text != nullptr ? std::atoi(text) : 0;
}

CALTOFAL_API int ConvStrToBool(const char *text) noexcept {
  return text != nullptr && (std::strcmp(text, "true") == 0 || std::strcmp(text, "1") == 0);
}

CALTOFAL_API const char *ConvBoolToStr(uint8_t flag) noexcept {
  return flag != 0 ? "true" : "false";
}

CALTOFAL_API int ConvMacACLModeToUI(const char *text) noexcept {
  return text != nullptr && std::strcmp(text, "Allow") == 0;
}

CALTOFAL_API const char *ConvMacACLModeToFapi(uint8_t enabled, int allow) noexcept {
  if (enabled == 0) return "Disabled";
  return allow != 0 ? "Allow" : "Deny";
}

// Access points 1-8 belong to radio 1, 9-16 to the other radio; the UI
// counts each radio's from 0.
CALTOFAL_API int ConvSsidIdxToUI(int radio, int index) noexcept {
  return radio == 1 ? index - 1 : index - 9;
}

CALTOFAL_API int ConvSsidIdxToFapi(int radio, int index) noexcept {
  return radio == 1 ? index + 1 : index + 9;
}

CALTOFAL_API int ConvBeaconInterval(int value) noexcept {
  return kBeacon.clamp(value);
}
CALTOFAL_API int ConvDtimInterval(int value) noexcept {
  return kDtim.clamp(value);
}
CALTOFAL_API int ConvFragmentationThreshold(int value) noexcept {
  return kFragmentation.clamp(value);
}
CALTOFAL_API int ConvRtsThreshold(int value) noexcept {
  return kRts.clamp(value);
}

// 1 high, 2 medium, 3 low.
CALTOFAL_API int ConvTransmitPower(int percent) noexcept {
  return percent > 50 ? 1 : percent > 25 ? 2 : 3;
}

CALTOFAL_API int ConvFreqChannel(int mhz) noexcept {
  if (mhz == 2484) return 14;
  if (mhz < 2484) return (mhz - 2407) / 5;
  if (mhz >= 4910 && mhz <= 4980) return (mhz - 4000) / 5;
  if (mhz <= 45000) return (mhz - 5000) / 5;
  if (mhz >= 58320 && mhz <= 64800) return (mhz - 56160) / 2160;
  return 0;
}

// Twelve hex digits, plain or in six pairs separated by ':' or '-'.
CALTOFAL_API int isValidMacAddress(const char *text) noexcept {
  if (text == nullptr) return 0;
  int digits = 0;
  int groups = 0;  // pairs seen at the last separator; -1 once a stray character came
  for (const char *p = text; *p != '\0'; ++p) {
    if (isHexDigit(*p)) {
      ++digits;
    } else if (*p == ':' || *p == '-') {
      if (digits == 0) return 0;
      if (digits / 2 - 1 != groups) break;
      groups = digits / 2;
    } else {
      groups = -1;
    }
  }
  return digits == 12 && (groups == 5 || groups == 0);
}

// Case-insensitive over exactly n positions. Each position where both texts
// have ended sets the result back to 0, and an equal pair keeps the result
// of the positions before it.
CALTOFAL_API int my_strnicmp(const char *s1, const char *s2, int n) noexcept {
  if (s1 == nullptr || s2 == nullptr || n == 0) return -1;
  if (n < 0) return 0;
  const std::size_t width = static_cast<std::size_t>(n);
  const std::size_t length1 = strnlen(s1, width), length2 = strnlen(s2, width);
  // Past the longer text every position is two ends: the result is 0.
  if ((length1 > length2 ? length1 : length2) < width) return 0;
  int result = 0;
  for (std::size_t i = 0; i < width; ++i) {
    const char c1 = i < length1 ? upper(s1[i]) : '\0';
    const char c2 = i < length2 ? upper(s2[i]) : '\0';
    if (c1 == '\0' && c2 == '\0') {
      result = 0;
    } else if (c1 < c2) {
      result = -1;
    } else if (c1 > c2) {
      result = 1;
    }
  }
  return result;
}

CALTOFAL_API int ConvHexDecToCharStr(const char *hex, char *out) noexcept {
  if (hex == nullptr || out == nullptr) return 0;
  const std::size_t pairs = std::strlen(hex) / 2;
  for (std::size_t i = 0; i < pairs; ++i) {
    const unsigned byte = (hexValue(hex[2 * i]) << 4 | hexValue(hex[2 * i + 1])) & 0xFFu;
    out[i] = static_cast<char>(byte);
  }
  out[pairs] = '\0';
  return 1;
}

CALTOFAL_API int ConvCharStrToHexDec(const char *bytes, int count, char *out) noexcept {
  static constexpr char kDigits[] = "0123456789abcdef";
  if (out == nullptr || (bytes == nullptr && count > 0)) return 0;
  int i = 0;
  for (; i < count; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    out[2 * i] = kDigits[byte >> 4];
    out[2 * i + 1] = kDigits[byte & 0xFu];
  }
  out[2 * i] = '\0';
  return 1;
}

}  // extern "C"

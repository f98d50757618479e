// The Wi-Fi pair tables, the retry tables and the walkers over them.
#include <cstring>

#include "caltofal.h"
#include "frame/trace.h"
#include "wifi/pairs.h"

// Configuration-layer (FAPI) value, then UI value.
constexpr ConvPairRow Dot11nProtect_FapiToUi_Table[2] = {{"Enabled", "true"},
                                                         {"Disabled", "false"}};
// The last row turns an absent UI value back into the normal class.
constexpr ConvPairRow WMM_Option_FapiToUi_Table[4] = {{"AC_Normal", "normal"},
                                                      {"AC_Gaming", "gaming"},
                                                      {"AC_Streaming", "streaming"},
                                                      {"AC_Normal", "(null)"}};
// Both WEP modes show as "WEP", which reads back as the first of them.
constexpr ConvPairRow SecurityType_FapiToUi_Table[8] = {
    {"WPA-Personal", "WPA-PSK"},
    {"WPA2-Personal", "WPA2-PSK"},
    {"WPA-WPA2-Personal", "WPA2/WPA-PSK"},
    {"WPA2-Enterprise", "WPA2-Enterprise"},
    {"WPA-WPA2-Enterprise", "WPA2/WPA-Enterprise"},
    {"WEP-64", "WEP"},
    {"WEP-128", "WEP"},
    {"None", "NONE"}};
constexpr ConvPairRow VhtShortGuardInterval_FapiToUi_Table[2] = {{"true", "on"}, {"false", "off"}};
constexpr ConvPairRow ShortGuardInterval_FapiToUi_Table[2] = {{"400nsec", "on"},
                                                              {"800nsec", "off"}};
constexpr ConvPairRow SideBand_FapiToUi_Table[3] = {
    {"AboveControlChannel", "upper"}, {"BelowControlChannel", "lower"}, {"Auto", "auto"}};
constexpr ConvPairRow BandWidth_FapiToUi_Table[5] = {
    {"Auto", "auto"}, {"20MHz", "20"}, {"40MHz", "40"}, {"80MHz", "80"}, {"160MHz", "160"}};
// "n" appears twice: "802.11n" reads back as "n", "n" shows as the first row.
constexpr ConvPairRow WireLessMode_FapiToUi_Table[12] = {
    {"b", "802.11b"},     {"g", "802.11g"},       {"n", "802.11n"},
    {"b,g", "802.11b+g"}, {"g,n", "802.11g+n"},   {"b,g,n", "802.11b+g+n"},
    {"a", "802.11a"},     {"n", "802.11n"},       {"ac", "802.11ac"},
    {"a,n", "802.11a+n"}, {"n,ac", "802.11n+ac"}, {"a,n,ac", "802.11a+n+ac"}};
// Network device, then the radio ("phy") that carries it.
constexpr ConvPairRow Interface_DevToPhy_Table[4] = {
    {"wlan0", "phy0"}, {"wlan1", "phy1"}, {"wlan2", "phy2"}, {"wlan3", "phy3"}};
constexpr ConvPairRow Interface_FapiToUi_Table[2] = {{"2.4GHz", "2.4g"}, {"5GHz", "5g"}};

// Retry intervals while the host waits for a scan or a WPS run: a longer
// first wait, then 39 waits of 3.
#define CALTOFAL_THREES_13 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3
#define CALTOFAL_THREES_39 CALTOFAL_THREES_13, CALTOFAL_THREES_13, CALTOFAL_THREES_13
constexpr uint8_t SCAN_5G_RetryTime[40] = {25, CALTOFAL_THREES_39};
constexpr uint8_t SCAN_24G_RetryTime[40] = {15, CALTOFAL_THREES_39};
constexpr uint8_t WPS_RetryTime[40] = {5, CALTOFAL_THREES_39};
#undef CALTOFAL_THREES_39
#undef CALTOFAL_THREES_13

namespace caltofal::wifi {
namespace {

static_assert(rowsOf(Dot11nProtect_FapiToUi_Table) == 2);
static_assert(rowsOf(WMM_Option_FapiToUi_Table) == 4);
static_assert(rowsOf(SecurityType_FapiToUi_Table) == 8);
static_assert(rowsOf(VhtShortGuardInterval_FapiToUi_Table) == 2);
static_assert(rowsOf(ShortGuardInterval_FapiToUi_Table) == 2);
static_assert(rowsOf(SideBand_FapiToUi_Table) == 3);
static_assert(rowsOf(BandWidth_FapiToUi_Table) == 5);
static_assert(rowsOf(WireLessMode_FapiToUi_Table) == 12);
static_assert(rowsOf(Interface_DevToPhy_Table) == 4);
static_assert(rowsOf(Interface_FapiToUi_Table) == 2);
static_assert(sizeof SCAN_5G_RetryTime == 40 && SCAN_5G_RetryTime[39] == 3);
static_assert(sizeof SCAN_24G_RetryTime == 40 && SCAN_24G_RetryTime[39] == 3);
static_assert(sizeof WPS_RetryTime == 40 && WPS_RetryTime[39] == 3);

constexpr std::size_t kCell = sizeof(ConvPairRow) / 2;

// strcmp(text, cell) == 0, never reading past the cell (a caller's table
// may fill a cell to its last byte).
bool cellEquals(const char *text, const char *cell) {
  std::size_t n = strnlen(cell, kCell);
  return std::strncmp(text, cell, n) == 0 && text[n] == '\0';
}

const char *nullText(int line, const char *function) {
  traceTag(kUnitWifi, line, function);
  PRINT_TO_CONSOLE("Received str is NULL. \n");
  return nullptr;
}

}  // namespace

const char *walkPairs(const char *text, const ConvPairRow *table, int rows, Cell match) {
  if (text == nullptr || table == nullptr) return text;
  const int from = static_cast<int>(match);
  for (int i = 0; i < rows; ++i) {
    if (cellEquals(text, table[i][from])) return table[i][1 - from];
  }
  return text;
}

}  // namespace caltofal::wifi

using namespace caltofal::wifi;

extern "C" {

CALTOFAL_API const char *FapiToUi_Str(const char *text, const ConvPairRow *table,
                                      int rows) noexcept {
  if (text == nullptr) return nullText(13, "FapiToUi_Str");
  return walkPairs(text, table, rows, Cell::kFapi);
}

CALTOFAL_API const char *UiToFapi_Str(const char *text, const ConvPairRow *table,
                                      int rows) noexcept {
  if (text == nullptr) return nullText(42, "UiToFapi_Str");
  return walkPairs(text, table, rows, Cell::kUi);
}

CALTOFAL_API const char *DevToPhy_Str(const char *text, const ConvPairRow *table,
                                      int rows) noexcept {
  return walkPairs(text, table, rows, Cell::kFapi);
}

}  // extern "C"

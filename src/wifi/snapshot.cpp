// Snapshots of one SSID or one radio into a parameter table: one message of
// leaf gets, sent once, whose answer rows are kept by name.
#include <cstdio>
#include <cstring>

#include "caltofal.h"
#include "frame/message.h"
#include "frame/trace.h"
#include "help_objlist.h"
#include "wifi/params.h"

namespace caltofal::wifi {
namespace {

constexpr const char *kSsid = "Device.WiFi.SSID.";
constexpr const char *kAccessPoint = "Device.WiFi.AccessPoint.";
constexpr const char *kRadio = "Device.WiFi.Radio.";
constexpr const char *kVendor = ".X_LANTIQ_COM_Vendor";

// What a snapshot keeps of the answer; everything else is dropped.
constexpr const char *kSsidKept[] = {"SSIDAdvertisementEnabled",
                                     "IsolationEnable",
                                     "X_ZINTU_WebUIAccessPermit",
                                     "X_ZINTU_InternetOnly",
                                     "Enable",
                                     "X_ZINTU_Active",
                                     "SSID",
                                     "X_ZINTU_NetworkType",
                                     "BSSID",
                                     "MACAddressControlEnabled",
                                     "ModeEnabled",
                                     "X_ZINTU_EncryptionType",
                                     "KeyPassphrase",
                                     "RekeyingInterval",
                                     "RadiusServerIPAddr",
                                     "RadiusServerPort",
                                     "RadiusSecret",
                                     "X_ZINTU_Wep_Encryption",
                                     "X_ZINTU_Wep_KeyType",
                                     "WEPKey"};
static_assert(sizeof kSsidKept / sizeof kSsidKept[0] == 20);

// "Name" and "ChannelsInUse" are asked for but never kept.
constexpr const char *kRadioKept[] = {"Enable",
                                      "Channel",
                                      "AutoChannelEnable",
                                      "OperatingStandards",
                                      "OperatingChannelBandwidth",
                                      "ExtensionChannel",
                                      "TransmitPower",
                                      "GuardInterval",
                                      "BeaconPeriod",
                                      "DTIMPeriod",
                                      "FragmentationThreshold",
                                      "RTSThreshold",
                                      "IEEE80211hEnabled",
                                      "RegulatoryDomain",
                                      "Dot11nProtection",
                                      "WaveExplicitBeamforming",
                                      "VhtSUbeamformerEnabled",
                                      "Dot11dEnable",
                                      "VhtGuardInterval",
                                      "WaveInterfererDetectionThreshold",
                                      "CoexEnabled",
                                      "WaveIgnore40MhzIntolerant",
                                      "WaveMuOperation",
                                      "WMMEnable",
                                      "X_ZINTU_WMMOption",
                                      "X_ZINTU_WMMAckPolicy",
                                      "UAPSDEnable"};
static_assert(sizeof kRadioKept / sizeof kRadioKept[0] == 27);

// An object name of a request: "%s%d%s" (or with a fourth part) within a
// 128-byte buffer formatted with a limit of 127.
struct ObjectName {
  char text[128] = {0};
  ObjectName(const char *prefix, int index, const char *suffix, const char *more = "") {
    std::snprintf(text, sizeof text - 1, "%s%d%s%s", prefix, index, suffix, more);
  }
};

// The answer's rows whose names are kept, appended in answer order; rows
// beyond the table's capacity are lost.
template <std::size_t N>
void keepRows(const Message &msg, const char *const (&kept)[N], WifiParamTable *table) {
  for (ObjList *obj : objectsOf(msg)) {
    for (ParamList *param : paramsOf(obj)) {
      for (const char *name : kept) {
        if (!sameName(param->sParamName, name)) continue;
        SetParam(table, obj->sObjName, name, param->sParamValue);
        break;
      }
    }
  }
}

int ssidSnapshot(int ssid, WifiParamTable *table) {
  static constexpr char kFunction[] = "GetSsIdInfoFromFapiToBuff";
  traceTag(kUnitWifi, __LINE__, kFunction);
  PRINT_TO_CONSOLE("START_FUNCTION \n");
  Message msg;
  int rc = faltocal_send_main_multi_obj(msg.get(), ObjectName(kSsid, ssid, "&").text,
                                        "get_leaf_node", "get", 5, "Enable", "X_ZINTU_Active",
                                        "SSID", "BSSID", "X_ZINTU_NetworkType");
  if (rc == -1) return traceSendFailed(kFunction, __LINE__);
  rc = faltocal_send_main_multi_obj(msg.get(), ObjectName(kAccessPoint, ssid, "&").text,
                                    "get_leaf_node", "get", 4, "SSIDAdvertisementEnabled",
                                    "IsolationEnable", "X_ZINTU_WebUIAccessPermit",
                                    "X_ZINTU_InternetOnly");
  if (rc == -1) return traceSendFailed(kFunction, __LINE__);
  rc = faltocal_send_main_multi_obj(msg.get(), ObjectName(kAccessPoint, ssid, kVendor, "&").text,
                                    "get_leaf_node", "get", 1, "MACAddressControlEnabled");
  if (rc == -1) return traceSendFailed(kFunction, __LINE__);
  // Every leaf parameter of the security object: no names asked for.
  rc = faltocal_send_main_multi_obj(msg.get(), ObjectName(kAccessPoint, ssid, ".Security").text,
                                    "get_leaf_node", "get", 0);
  if (rc == -1) return traceSendFailed(kFunction, __LINE__);
  keepRows(msg, kSsidKept, table);
  return rc;
}

int radioSnapshot(int radio, WifiParamTable *table) {
  static constexpr char kFunction[] = "GetWireInfoFromFapiToBuff";
  const int accessPoint = ConvSsidIdxToFapi(radio, 0);
  Message msg;
  int rc = faltocal_send_main_multi_obj(
      msg.get(), ObjectName(kRadio, radio, "&").text, "get_leaf_node", "get", 16, "Enable", "Name",
      "GuardInterval", "BeaconPeriod", "DTIMPeriod", "FragmentationThreshold", "RTSThreshold",
      "IEEE80211hEnabled", "RegulatoryDomain", "AutoChannelEnable", "Channel", "OperatingStandards",
      "OperatingChannelBandwidth", "ExtensionChannel", "TransmitPower", "ChannelsInUse");
  if (rc == -1) return traceSendFailed(kFunction, __LINE__);
  rc = faltocal_send_main_multi_obj(msg.get(), ObjectName(kAccessPoint, accessPoint, "&").text,
                                    "get_leaf_node", "get", 4, "WMMEnable", "UAPSDEnable",
                                    "X_ZINTU_WMMOption", "X_ZINTU_WMMAckPolicy");
  if (rc == -1) return traceSendFailed(kFunction, __LINE__);
  rc = faltocal_send_main_multi_obj(msg.get(), ObjectName(kRadio, radio, kVendor).text,
                                    "get_leaf_node", "get", 9, "Dot11dEnable", "Dot11nProtection",
                                    "WaveExplicitBeamforming", "VhtSUbeamformerEnabled",
                                    "VhtGuardInterval", "WaveInterfererDetectionThreshold",
                                    "CoexEnabled", "WaveIgnore40MhzIntolerant", "WaveMuOperation");
  if (rc == -1) return traceSendFailed(kFunction, __LINE__);
  keepRows(msg, kRadioKept, table);
  return rc;
}

}  // namespace
}  // namespace caltofal::wifi

using namespace caltofal;
using namespace caltofal::wifi;

extern "C" {

// Row `count` gets the three texts, cut as a formatted copy of size 255,
// 255 and 127 cuts them.
CALTOFAL_API int SetParam(WifiParamTable *table, const char *object, const char *parameter,
                          const char *value) noexcept {
  if (table == nullptr || object == nullptr || parameter == nullptr || value == nullptr) return -1;
  if (table->count < 0 || table->count >= kMaxRows) return -1;
  WifiParamRow &row = table->rows[table->count];
  copyCut(row.object, sizeof row.object - 1, object);
  copyCut(row.parameter, sizeof row.parameter - 1, parameter);
  copyCut(row.value, sizeof row.value - 1, value);
  ++table->count;
  return 0;
}

// A NULL table takes no rows (SetParam refuses each): the requests, traces
// and results are those of a table that is full.
CALTOFAL_API int GetSsIdInfoFromFapiToBuff(int ssidIndex, WifiParamTable *table) noexcept {
  return ssidSnapshot(ssidIndex, table);
}

CALTOFAL_API int GetWireInfoFromFapiToBuff(int radioIndex, WifiParamTable *table) noexcept {
  traceTag(kUnitWifi, __LINE__, "GetWireInfoFromFapiToBuff");
  PRINT_TO_CONSOLE("START_FUNCTION \n");
  const int rc = radioSnapshot(radioIndex, table);
  traceTag(kUnitWifi, __LINE__, "GetWireInfoFromFapiToBuff");
  PRINT_TO_CONSOLE("return [%d] \n", rc);
  return rc;
}

}  // extern "C"

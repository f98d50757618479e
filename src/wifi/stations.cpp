// The stations associated with an access point and their signal, the client
// count of a radio, and the MAC access list of an SSID.
#include <cstdio>
#include <cstring>
#include <string>

#include "caltofal.h"
#include "frame/boundary.h"
#include "frame/message.h"
#include "frame/os.h"
#include "frame/shell.h"
#include "frame/trace.h"
#include "wifi/driver_text.h"

using namespace caltofal;
using namespace caltofal::wifi;

namespace {

constexpr int kLine = 128;
constexpr int kAccessEntries = sizeof(MacAccessList::entries) / sizeof(MacAccessEntry);

// A whole file through the OS seam; false when it cannot be opened.
bool readWhole(const char *path, std::string *text) {
  os::Stream *file = os::openFile(path, "r");
  if (file == nullptr) return false;
  char chunk[4096];
  for (std::size_t n; (n = os::readBytes(file, chunk, sizeof chunk)) > 0;) text->append(chunk, n);
  os::close(file);
  return true;
}

// What one SSID of a radio says about itself and its access point.
struct SsidState {
  bool enabled = false;
  bool active = false;
  int clients = 0;
};

}  // namespace

extern "C" {

CALTOFAL_API int GetStaInfo(const char *ifname, const char *macFilter, WifiStaList *list) noexcept {
  static constexpr char kFunction[] = "GetStaInfo";
  traceTag(kUnitWifi, __LINE__, kFunction);
  PRINT_TO_CONSOLE("START_FUNCTION \n");
  if (ifname == nullptr || ifname[0] == '\0' || list == nullptr ||
      !shell::isInterfaceName(ifname)) {
    traceAt(kFunction, __LINE__);
    PRINT_TO_CONSOLE("arg is Failure\n");
    return list != nullptr ? static_cast<int>(list->count) : 0;
  }
  const bool filtered = macFilter != nullptr && isValidMacAddress(macFilter) == 1;
  std::memset(list, 0, sizeof *list);

  char target[kLine] = {0};
  formatCut(target, sizeof target, "/tmp/wlan_wave/sta_info_%s", ifname);
  char command[200] = {0};
  formatCut(command, sizeof command,
            "cat /proc/net/mtlk/%s/PeerFlowStatus | grep 'STA MAC\\| Short-term RSSI average "
            "per antenna' > %s",
            ifname, target);
  int status = os::run(command);
  if (status == 127 || status == -1) {
    PRINT_TO_CONSOLE("system is Failure\n");
    return 0;
  }
  return guarded(0, [&] {
    std::string peers;
    if (!readWhole(target, &peers)) {
      traceTag(kUnitWifi, __LINE__, kFunction);
      PRINT_TO_CONSOLE("%s does not exist\n", target);
      return 0;
    }
    return stationsOf(peers, filtered ? macFilter : nullptr, list);
  });
}

CALTOFAL_API int GetAssociatedDeviceNumberOfEntries(int radioIndex) noexcept {
  static constexpr char kFunction[] = "GetAssociatedDeviceNumberOfEntries";
  traceTag(kUnitWifi, __LINE__, kFunction);
  PRINT_TO_CONSOLE("START_FUNCTION \n");
  if (radioIndex != 1 && radioIndex != 2) return 0;
  char expected[kLine] = {0};
  formatCut(expected, sizeof expected, "%s%d.", "Device.WiFi.Radio.", radioIndex);

  // Cleared once: an SSID whose answer has no LowerLayers keeps the text of
  // the SSID before it.
  char lowerLayers[kLine] = {0};
  int total = 0;
  Message msg;
  for (int k = 0; k < 8; ++k) {
    msg.release();
    const int ssid = ConvSsidIdxToFapi(radioIndex, k);
    char object[kLine] = {0};
    formatCut(object, sizeof object, "Device.WiFi.SSID.%d&", ssid);
    int rc = faltocal_send_main_multi_obj(msg.get(), object, "get_leaf_node", "get", 3, "Enable",
                                          "X_ZINTU_Active", "LowerLayers");
    if (rc != -1) {
      formatCut(object, sizeof object, "Device.WiFi.AccessPoint.%d", ssid);
      rc = faltocal_send_main_multi_obj(msg.get(), object, "get_leaf_node", "get", 1,
                                        "AssociatedDeviceNumberOfEntries");
    }
    if (rc == -1) {
      traceAt(kFunction, __LINE__);
      PRINT_TO_CONSOLE("faltocal_send_main_multi_obj is Failure\n");
      return total;
    }
    SsidState state;
    for (ObjList *obj : objectsOf(msg)) {
      for (ParamList *param : paramsOf(obj)) {
        const char *name = param->sParamName;
        const char *value = param->sParamValue;
        if (sameName(name, "Enable")) {
          state.enabled = ConvStrToBool(value) != 0;
        } else if (sameName(name, "X_ZINTU_Active")) {
          state.active = ConvStrToBool(value) != 0;
        } else if (sameName(name, "LowerLayers")) {
          copyPadded(lowerLayers, value, 126);
        } else if (sameName(name, "AssociatedDeviceNumberOfEntries")) {
          state.clients = ConvInt(value);
        }
      }
    }
    if (std::strcmp(lowerLayers, expected) == 0 && state.enabled && state.active) {
      total += state.clients;
    }
  }
  return total;
}

CALTOFAL_API int GetMacAccessList(void *objectNode, const char *prefix,
                                  MacAccessList *list) noexcept {
  static constexpr char kFunction[] = "GetMacAccessList";
  if (objectNode == nullptr || prefix == nullptr || list == nullptr) return -1;
  if (list->count < 0 || list->count >= kAccessEntries) return -1;
  auto *obj = static_cast<ObjList *>(objectNode);
  char name[256] = {0};
  copyCut(name, obj->sObjName);
  const std::size_t tableLength = std::strlen(prefix) + 1;  // the prefix and its "."
  const char *instance = std::strlen(name) >= tableLength ? name + tableLength : "";
  const int index = ConvInt(instance);

  MacAccessEntry &entry = list->entries[list->count];
  entry.index = index;
  traceTag(kUnitWifi, __LINE__, kFunction);
  PRINT_TO_CONSOLE("\n\n>>>>>>>>>> ssid %s:%s:%s.:%d<<<<<<<<<<<<<\n\n", name, instance, prefix,
                   index);
  bool hasName = false;
  bool hasMac = false;
  for (ParamList *param : paramsOf(obj)) {
    if (std::strcmp(param->sParamName, "name") == 0) {
      copyPadded(entry.name, param->sParamValue, 126);
      hasName = true;
    } else if (std::strcmp(param->sParamName, "macAddress") == 0) {
      copyPadded(entry.macAddress, param->sParamValue, 126);
      hasMac = true;
    }
  }
  if (hasName && hasMac) ++list->count;
  return -1;
}

}  // extern "C"

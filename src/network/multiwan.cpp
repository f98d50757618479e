// Multi-WAN settings, the Linux name of the WAN interface, the generic
// find-by-value lookup, the IPTV set-top-box bridge and two address checks.
#include <arpa/inet.h>
#include <netinet/in.h>

#include <cstring>
#include <string_view>

#include "caltofal.h"
#include "frame/message.h"
#include "frame/trace.h"
#include "libcal.h"
#include "network/walk.h"

using namespace caltofal;
using namespace caltofal::net;

const char *const ZINTU_DEF_IP_INTERFACE[19] = {
    "Device.IP.Interface.3.",  "Device.IP.Interface.4.",  "Device.IP.Interface.5.",
    "Device.IP.Interface.6.",  "Device.IP.Interface.7.",  "Device.IP.Interface.8.",
    "Device.IP.Interface.9.",  "Device.IP.Interface.10.", "Device.IP.Interface.11.",
    "Device.IP.Interface.12.", "Device.IP.Interface.13.", "Device.IP.Interface.14.",
    "Device.IP.Interface.15.", "Device.IP.Interface.16.", "Device.IP.Interface.17.",
    "Device.IP.Interface.18.", "Device.IP.Interface.19.", "Device.IP.Interface.20.",
    "Device.IP.Interface.21.",
};

namespace {

constexpr char kMultiwan[] = "Device.X_LANTIQ_COM_Multiwan.Multiwan.1";
constexpr char kWanIfName[] = "zintu_GetWanIfName";
constexpr char kFindValue[] = "zintu_GetValueFromDBInfo";
constexpr char kEntering[] = ">>>>>>>>>> Entering <<<<<<<<<<<<<\n";

// What the multi-WAN objects hold for the summary.
struct MultiwanValues {
  const char *type = nullptr;
  const char *wan1 = nullptr;
  const char *wan2 = nullptr;
  const char *enabled = nullptr;
};

bool isSideObject(std::string_view name) {
  return contains(name, "TrafficSteering") || contains(name, "TCPPing") || contains(name, "MPTCP");
}

MultiwanValues readMultiwan(const Message &msg) {
  struct Wanted {
    const char *object;
    const char *param;
    const char *MultiwanValues::*slot;
  };
  static constexpr Wanted kWanted[] = {
      {"Device.X_LANTIQ_COM_Multiwan.Multiwan.1.Type", "Name", &MultiwanValues::type},
      {"Device.X_LANTIQ_COM_Multiwan.Multiwan.1.WANConnections.1", "Interface",
       &MultiwanValues::wan1},
      {"Device.X_LANTIQ_COM_Multiwan.Multiwan.1.WANConnections.2", "Interface",
       &MultiwanValues::wan2},
      {kMultiwan, "Enabled", &MultiwanValues::enabled},
  };
  MultiwanValues values;
  for (ObjList *obj : objectsOf(msg)) {
    if (isSideObject(obj->sObjName)) continue;
    for (const Wanted &w : kWanted) {
      if (sameName(obj->sObjName, w.object)) {
        if (const char *value = lookup(obj, w.param)) values.*w.slot = value;
      }
    }
  }
  return values;
}

// The kind of a multi-WAN connection: the platform's three fixed names, or
// what the configuration database says of its connection mode.
int32_t wanKind(const char *interface) {
  struct Fixed {
    const char *name;
    int32_t kind;
  };
  static constexpr Fixed kFixed[] = {{"w900", 0}, {"w901", 1}, {"w902", 2}};
  for (const Fixed &f : kFixed) {
    if (startsWith(interface, std::string_view(f.name, 4))) return f.kind;
  }
  char connMode[128] = {0};
  zintu_GetValueFromDBInfo("Device.X_LANTIQ_COM_NwHardware.WANConnection", "UciSection", interface,
                           "ConnMode", nullptr, connMode);
  if (startsWith(connMode, "ETH")) return 0;
  if (startsWith(connMode, "TETHER")) return 2;
  return 1;
}

// The interface's Linux name into `ifName`; the result of the lookup. A name
// found for a NULL `ifName` gives -1.
int findWanIfName(Message &msg, char *ifName) {
  ZintuWanInfo wan{};
  ZintuGet_DefGw(&wan);
  char interface[256];
  terminatedCopy(interface, wan.sWanIpInterface);
  if (interface[0] == '\0' || std::strstr(interface, "Device.IP.Interface.") == nullptr) {
    traceTag(kUnitNetwork, 2035, kWanIfName);
    PRINT_TO_CONSOLE("ZintuGet_DefGw is Failure \n");
    return -1;
  }
  int rc = faltocal_SendMultiObj(1, 256, 2, msg.get(), interface, "get", "get", 1, "Name");
  if (rc != 0) {
    traceFailure(kWanIfName, 2018, rc, "faltocal_SendMultiObj is Failure \n");
    return -1;
  }
  for (ObjList *obj : objectsOf(msg)) {
    const char *name = nullptr;
    if (zintu_GetParamFromObjUnit(obj, "Name", &name) != 0) continue;
    if (isEmpty(name)) break;
    if (ifName == nullptr) return -1;
    copyCut(ifName, 128, name);
    return 0;
  }
  traceTag(kUnitNetwork, 2031, kWanIfName);
  PRINT_TO_CONSOLE("Can't find WanIfName\n");
  return -1;
}

// The multi-bridge's switch: first character '1' or "true" in any case.
int32_t bridgeSwitch(ObjList *obj) {
  return isOn(lookup(obj, "Enable")) ? 1 : 0;
}

}  // namespace

extern "C" {

CALTOFAL_API int32_t ZintuGet_MultiWanInfo(ZintuMultiWanInfo *info) noexcept {
  Message msg;
  if (getObjectTraced(msg, "Device.X_LANTIQ_COM_Multiwan.", "ZintuGet_MultiWanInfo", 1875,
                      "faltocal_send_main is Failure\n") != 0) {
    return -1;
  }
  MultiwanValues v = readMultiwan(msg);
  if (info == nullptr) return -1;  // every answer is written into the record
  if (v.enabled == nullptr) {
    info->nEnabled = -1;
    return 0;
  }
  info->nEnabled = atob(v.enabled);
  info->nFailOver = v.type != nullptr && startsWith(v.type, "FailOver") ? 1 : 0;
  if (v.wan1 != nullptr) {
    info->nWan1Type = wanKind(v.wan1);
    copyPadded(info->sWan1Interface, v.wan1, sizeof info->sWan1Interface - 1);
  }
  if (v.wan2 != nullptr) {
    info->nWan2Type = wanKind(v.wan2);
    copyPadded(info->sWan2Interface, v.wan2, sizeof info->sWan2Interface - 1);
  }
  return 0;
}

CALTOFAL_API int32_t zintu_GetWanIfName(char *ifName) noexcept {
  traceTag(kUnitNetwork, 2012, kWanIfName);
  PRINT_TO_CONSOLE("%s", kEntering);
  Message msg;
  int result = findWanIfName(msg, ifName);
  msg.release();
  traceTag(kUnitNetwork, 2039, kWanIfName);
  PRINT_TO_CONSOLE(">>>>>>>>>> End(%d)  :: <<<<<<<<<<<<<\n", result);
  return result;
}

CALTOFAL_API int32_t zintu_GetValueFromDBInfo(const char *object, const char *filterParam,
                                              const char *filterValue, const char *wantedParam,
                                              char *outObjectName, char *outValue) noexcept {
  traceTag(kUnitNetwork, 2055, kFindValue);
  PRINT_TO_CONSOLE("%s", kEntering);
  int error = 0;
  bool found = false;
  Message msg;
  if (object == nullptr || filterParam == nullptr || filterValue == nullptr ||
      wantedParam == nullptr) {
    traceAt(kFindValue, 2058);
    PRINT_TO_CONSOLE("invalid input\n");
    error = -1;
  } else if (outObjectName == nullptr && outValue == nullptr) {
    traceAt(kFindValue, 2061);
    PRINT_TO_CONSOLE("invalid input\n");
    error = -1;
  } else if (int rc =
                 faltocal_SendMultiObj(1, 256, 2, msg.get(), object, "get_filter_by_param_value",
                                       "get", 1, filterParam, filterValue);
             rc == 0) {
    for (ObjList *obj : objectsOf(msg)) {
      const char *value = paramIn(obj, wantedParam);
      if (value == nullptr) continue;
      if (outObjectName != nullptr) copyCut(outObjectName, 128, obj->sObjName);
      if (outValue != nullptr) copyCut(outValue, 128, value);
      found = true;
      break;
    }
  } else if (rc != CAL_ERR_NO_MATCH) {
    traceFailure(kFindValue, 2084, rc, "faltocal_SendMultiObj is Failure\n");
    error = -1;
  }
  msg.release();
  traceTag(kUnitNetwork, 2090, kFindValue);
  PRINT_TO_CONSOLE(">>>>>>>>>> End(%d %s)  :: <<<<<<<<<<<<<\n", error,
                   found ? "Found" : "Not Found");
  return found ? 0 : -1;
}

CALTOFAL_API int32_t Zintu_isEnabledIptvStb(void) noexcept {
  Message msg;
  if (getObjectTraced(msg, "Device.X_ZINTU_Multi_Bridge.", "Zintu_isEnabledIptvStb", 1811,
                      "faltocal_send_main is Failure\n") != 0) {
    return -1;
  }
  constexpr std::string_view kBridge = "Device.X_ZINTU_Multi_Bridge.Bridge.";
  constexpr std::string_view kMultiBridge = "Device.X_ZINTU_Multi_Bridge.";
  int32_t enable = -1;
  int32_t iptv = -1;
  for (ObjList *obj : objectsOf(msg)) {
    // Names are compared with their trailing dot; one is added where there
    // is room in the node's name.
    if (strnlen(obj->sObjName, sizeof obj->sObjName) < sizeof obj->sObjName - 1) {
      zintu_InsertDotEndofObj(obj->sObjName);
    }
    if (startsWith(obj->sObjName, kBridge)) {
      const char *description = lookup(obj, "Description");
      const char *memberPort = lookup(obj, "MemberPort");
      if (startsWith(description, "IPTV") && memberPort != nullptr) {
        iptv = isEmpty(memberPort) ? 0 : 1;
      }
    } else if (startsWith(obj->sObjName, kMultiBridge)) {
      enable = bridgeSwitch(obj);
    }
  }
  if (enable == -1) return -1;
  if (enable == 1 && iptv == 1) return 1;
  return iptv == -1 ? -1 : 0;
}

CALTOFAL_API uint32_t IPConvertTouint(const char *text) noexcept {
  if (text == nullptr) return 0;
  in_addr address{};
  if (inet_aton(text, &address) == 0) return 0xFFFFFFFFu;
  return address.s_addr;
}

CALTOFAL_API int32_t validationCheck_IPv6Addr(const char *text) noexcept {
  in6_addr address{};
  return text != nullptr && inet_pton(AF_INET6, text, &address) == 1 ? 0 : -1;
}

}  // extern "C"

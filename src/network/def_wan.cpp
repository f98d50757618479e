// The default WAN summary: everything the WAN page shows about the
// connection that carries the default route.
#include <cstdio>
#include <cstring>
#include <string_view>

#include "caltofal.h"
#include "frame/message.h"
#include "frame/trace.h"
#include "network/walk.h"

using namespace caltofal;
using namespace caltofal::net;

namespace {

constexpr std::string_view kVlanTermination = "Device.Ethernet.VLANTermination";
constexpr std::string_view kIpInterfacePrefix = "Device.IP.Interface.";

// Working state of one call beside the record.
struct DefWan {
  ZintuWanInfo &info;
  Message msg;
  char interface[256] = {0};  // sWanIpInterface, terminated
  char vlan[256] = {0};       // the VLAN termination under the WAN, when there is one

  explicit DefWan(ZintuWanInfo &record) : info(record) {
    terminatedCopy(interface, info.sWanIpInterface);
  }

  void keepVlanIfTermination(const char *lowerLayer) {
    if (startsWith(lowerLayer, kVlanTermination)) copyCut(vlan, lowerLayer);
  }
};

// The interface object itself: status, lower layer and name.
void readInterface(DefWan &w) {
  if (getObject(w.msg, w.interface) != 0) return;
  for (ObjList *obj : objectsOf(w.msg)) {
    for (ParamList *param : paramsOf(obj)) {
      const char *value = param->sParamValue;
      if (sameName(param->sParamName, "Status")) {
        std::memset(w.info.sStatus, 0, sizeof w.info.sStatus);
        copyCut(w.info.sStatus, std::strcmp(value, "Up") == 0 ? "Up" : "Down");
      } else if (sameName(param->sParamName, "LowerLayers")) {
        std::memset(w.info.sLowerLayers, 0, sizeof w.info.sLowerLayers);
        copyChars(w.info.sLowerLayers, value);
        w.keepVlanIfTermination(value);
      } else if (sameName(param->sParamName, "Name")) {
        std::memset(w.info.sName, 0, sizeof w.info.sName);
        copyCut(w.info.sName, value);
      }
    }
    break;  // the interface object comes first; its sub-objects are not read
  }
}

// What an IPv4 AddressingType means for the connection type, the IPv4 mode
// and the operation mode (nullptr: unchanged).
struct AddressingRow {
  const char *value;
  const char *wanIpType;
  const char *ipv4Mode;
  const char *operMode;
};
constexpr AddressingRow kAddressing[] = {
    {"DHCP", "dynamic", nullptr, nullptr},
    {"Static", "static", "static", nullptr},
    {"X_LANTIQ_COM_PPPoE", "pppoe", nullptr, nullptr},
    {"X_LANTIQ_COM_PPPoA", "pppoa", nullptr, nullptr},
    {"X_LANTIQ_COM_PPTP", "pptp", nullptr, nullptr},
    {"X_LANTIQ_COM_L2TP", "l2tp", nullptr, nullptr},
    {"X_LANTIQ_COM_Bridged", "dynamic", nullptr, "bridge"},
};

void applyAddressingType(ZintuWanInfo &info, const char *value) {
  putWord(info.sOperMode, "router");
  for (const AddressingRow &row : kAddressing) {
    if (std::strcmp(value, row.value) != 0) continue;
    putWord(info.sWanIpType, row.wanIpType);
    if (row.ipv4Mode != nullptr) putWord(info.sIpv4Mode, row.ipv4Mode);
    if (row.operMode != nullptr) putWord(info.sOperMode, row.operMode);
    return;
  }
}

// The interface's IPv4 address objects: addressing type, description,
// address and mask.
void readIpv4Address(DefWan &w) {
  char path[256] = {0};
  subPath(path, w.interface, "IPv4Address");
  if (getObject(w.msg, path) != 0) return;
  for (ObjList *obj : objectsOf(w.msg)) {
    for (ParamList *param : paramsOf(obj)) {
      const char *name = param->sParamName;
      const char *value = param->sParamValue;
      if (sameName(name, "AddressingType")) {
        applyAddressingType(w.info, value);
      } else if (sameName(name, "X_LANTIQ_COM_Description")) {
        copyChars(w.info.sDescription, value);
      } else if (sameName(name, "IPAddress")) {
        copyCut(w.info.sIPAddress, value);
      } else if (sameName(name, "SubnetMask")) {
        copyCut(w.info.sSubnetMask, value);
      }
    }
  }
}

// The UI's word for a PPP ConnectionTrigger.
const char *connectionTriggerOf(const char *value) {
  if (std::strcmp(value, "ondemand") == 0) return "ondemand";
  if (std::strcmp(value, "manual") == 0) return "manual";
  return "always";
}

// The PPP interface under a PPPoE or PPPoA connection: credentials, timers,
// access concentrator and the VLAN termination below it.
void readPpp(DefWan &w) {
  ZintuWanInfo &info = w.info;
  if (!contains(fieldText(info.sWanIpType), "ppp") || info.sLowerLayers[0] == '\0') return;
  copyPadded(info.sPppInterface, info.sLowerLayers, sizeof info.sPppInterface);
  char ppp[256];
  terminatedCopy(ppp, info.sPppInterface);
  w.msg.release();
  if (faltocal_send_main_multi_obj(w.msg.get(), ppp, "get", "get", 0) != 0) {
    traceTag(kUnitNetwork, 636, "ZintuGet_DefWanInfo");
    PRINT_TO_CONSOLE("faltocal_send_main_multi_obj function failed. \n");
    return;
  }
  forEachParam(w.msg, [&](ObjList *, ParamList *param) {
    const char *name = param->sParamName;
    const char *value = param->sParamValue;
    if (value[0] == '\0') return;
    if (sameName(name, "IdleDisconnectTime")) {
      info.nIdleDisconnectTime = decimalOf(value);
    } else if (sameName(name, "Username")) {
      copyCut(info.sUsername, value);
    } else if (sameName(name, "Password")) {
      copyCut(info.sPassword, value);
    } else if (sameName(name, "MaxMRUSize")) {
      info.nMaxMRUSize = decimalOf(value);
    } else if (sameName(name, "ConnectionTrigger")) {
      copyCut(info.sConnectionTrigger, connectionTriggerOf(value));
    } else if (sameName(name, "ACName")) {
      copyCut(info.sACName, value);
    } else if (sameName(name, "ServiceName")) {
      copyCut(info.sServiceName, value);
    } else if (sameName(name, "LowerLayers")) {
      w.keepVlanIfTermination(value);
    }
  });
}

// The interface's index and its IPv4 default gateway; the request's code.
int readGateway(DefWan &w) {
  std::string_view interface = w.interface;
  w.info.nWanIpIfIndex = interface.size() > kIpInterfacePrefix.size()
                             ? decimalOf(interface.substr(kIpInterfacePrefix.size()))
                             : 0;
  char path[64] = {0};
  std::snprintf(path, sizeof path, "Device.IP.Interface.%d.",
                static_cast<int>(w.info.nWanIpIfIndex));
  return readIpv4Gateway(w.msg, path, w.info.sGateway);
}

// The VLAN termination, from the configuration database; the request's code.
int readVlan(DefWan &w) {
  w.msg.release();
  int rc = faltocal_send_main_ToDb(w.msg.get(), w.vlan, "get", "get", 0);
  if (rc != 0) return rc;
  forEachParam(w.msg, [&](ObjList *, ParamList *param) {
    if (sameName(param->sParamName, "Enable") && isOn(param->sParamValue)) {
      w.info.bVlanEnable = 1;
    } else if (sameName(param->sParamName, "VLANID")) {
      if (int id = decimalOf(param->sParamValue); id != 0) w.info.nVlanID = id;
    }
  });
  return rc;
}

bool isValidIpv4(std::string_view field) {
  char text[17] = {0};
  std::memcpy(text, field.data(), field.size() < 16 ? field.size() : 16);
  return zintu_isValidIPv4Address(text) == 0;
}

// Static or automatic DNS, and the servers when none usable are known yet.
void decideDns(DefWan &w) {
  ZintuWanInfo &info = w.info;
  info.bDnsAuto = 1;
  std::string_view type = fieldText(info.sWanIpType);
  if (contains(type, "dynamic")) {
    ZintuGet_WanStaticDns(w.interface, &info.bDnsAuto, info.sDNS1, info.sDNS2);
  } else if (contains(type, "static")) {
    info.bDnsAuto = 0;
  } else if (contains(type, "pppoe") && contains(fieldText(info.sIpv4Mode), "static")) {
    info.bDnsAuto = 0;
  }

  std::string_view dns1 = fieldText(info.sDNS1);
  std::string_view dns2 = fieldText(info.sDNS2);
  bool bothUnset = dns1.substr(0, 7) == "0.0.0.0" && dns2.substr(0, 7) == "0.0.0.0";
  if (bothUnset || (!isValidIpv4(dns1) && !isValidIpv4(dns2))) {
    ZintuGet_WanDns(w.interface, info.sDNS1, info.sDNS2);
  }
}

}  // namespace

extern "C" {

CALTOFAL_API int32_t ZintuGet_DefWanInfo(ZintuWanInfo *info) noexcept {
  if (info == nullptr) return -1;
  ZintuGet_DefGw(info);
  if (info->sWanIpInterface[0] == '\0') return -1;

  DefWan w(*info);
  readInterface(w);
  readIpv4Address(w);
  readPpp(w);
  int rc = readGateway(w);
  if (w.vlan[0] != '\0') rc = readVlan(w);
  w.msg.release();

  decideDns(w);
  ZintuGet_WanIPv6(info);
  return rc;
}

}  // extern "C"

// The WAN of a device in bridge mode (the first IP interface, up only with a
// DHCP address), and the IPv6 block of the WAN summary.
#include <cstdio>
#include <cstring>
#include <string_view>

#include "caltofal.h"
#include "frame/message.h"
#include "network/walk.h"

using namespace caltofal;
using namespace caltofal::net;

namespace {

constexpr char kBridgeInterface[] = "Device.IP.Interface.1.";
constexpr char kBridgeAddress[] = "Device.IP.Interface.1.IPv4Address.1.";
constexpr uint32_t kRefuse = 4;
constexpr uint32_t kWifiLink = 2;

// The bridge's IPv4 address object: up only with an address from DHCP.
void readBridgeAddress(Message &msg, ZintuWanInfo &info) {
  const char *description = nullptr;
  const char *address = nullptr;
  const char *mask = nullptr;
  if (getObject(msg, kBridgeAddress) == 0) {
    description = firstParam(msg, "X_LANTIQ_COM_Description");
    address = firstParam(msg, "IPAddress");
    mask = firstParam(msg, "SubnetMask");
  }
  if (description != nullptr && address != nullptr && mask != nullptr &&
      std::strstr(description, "DHCP") != nullptr && !isEmpty(address) &&
      !startsWith(address, "0.0.0.0")) {
    copyCut(info.sStatus, "Up");
    copyCut(info.sDescription, description);
    copyCut(info.sIPAddress, address);
    copyCut(info.sSubnetMask, mask);
  } else {
    copyCut(info.sStatus, "Down");
    copyCut(info.sDescription, "0.0.0.0");
    copyCut(info.sIPAddress, "0.0.0.0");
    copyCut(info.sSubnetMask, "0.0.0.0");
  }
}

// The UI's IPv6 connection type for the current network's WanIpv6Type.
struct Ipv6TypeRow {
  std::string_view contains;
  const char *type;
};
constexpr Ipv6TypeRow kIpv6Types[] = {
    {"slaac", "slaac"},
    {"stateless", "dhcpv6"},
    {"stateful", "dhcpv6"},
    {"static", "static"},
};

const char *ipv6TypeOf(std::string_view value) {
  for (const Ipv6TypeRow &row : kIpv6Types) {
    if (contains(value, row.contains)) return row.type;
  }
  return "dhcpv6";
}

// Every value of `name` in the answer that fits the field, copied exactly.
template <std::size_t N>
void copyEachThatFits(const Message &msg, const char *name, char (&field)[N]) {
  forEachParam(msg, [&](ObjList *, ParamList *param) {
    if (sameName(param->sParamName, name)) copyWhenFits(field, param->sParamValue);
  });
}

}  // namespace

extern "C" {

CALTOFAL_API int32_t ZintuGet_BrWanInfo(uint32_t flags, ZintuWanInfo *info) noexcept {
  if ((flags & kRefuse) != 0 || info == nullptr) return -1;
  copyCut(info->sOperMode, "bridge");
  copyCut(info->sWanIpInterface, kBridgeInterface);
  copyCut(info->sWanIpType, "dynamic");
  copyCut(info->sWanLinkType, (flags & kWifiLink) != 0 ? "wifi" : "ethernet");
  copyCut(info->sIpv4Mode, "dynamic");
  info->bVlanEnable = 0;
  info->nVlanID = 0;

  Message msg;
  if (getObject(msg, kBridgeInterface) == 0) {
    if (const char *lower = firstParam(msg, "LowerLayers")) copyCut(info->sLowerLayers, lower);
    if (const char *name = firstParam(msg, "Name")) copyCut(info->sName, name);
  }
  readBridgeAddress(msg, *info);
  int rc = readIpv4Gateway(msg, kBridgeInterface, info->sGateway);

  info->bDnsAuto = 1;
  ZintuGet_WanDns(kBridgeInterface, info->sDNS1, info->sDNS2);
  info->bIpv6Enable = 0;
  copyCut(info->sIpv6Type, "dhcpv6");
  return rc;
}

CALTOFAL_API int32_t ZintuGet_WanIPv6(ZintuWanInfo *info) noexcept {
  if (info == nullptr) return -1;
  Message msg;
  if (getObject(msg, "Device.IPv6.") == 0) {
    forEachParam(msg, [&](ObjList *, ParamList *param) {
      if (sameName(param->sParamName, "Enable")) {
        info->bIpv6Enable = std::strstr(param->sParamValue, "true") != nullptr ? 1 : 0;
      }
    });
  }

  if (getObject(msg, "Device.X_ZINTU_CurrentNetwork") == 0) {
    forEachParam(msg, [&](ObjList *, ParamList *param) {
      if (sameName(param->sParamName, "WanIpv6Type") && !isEmpty(param->sParamValue)) {
        copyCut(info->sIpv6Type, ipv6TypeOf(param->sParamValue));
      }
    });
  }

  char interface[256];
  terminatedCopy(interface, info->sWanIpInterface);
  char path[256] = {0};
  subPath(path, interface, "IPv6Address.1");
  if (getObject(msg, path) == 0) copyEachThatFits(msg, "IPAddress", info->sIpv6Address);

  std::snprintf(path, sizeof path, "Device.Routing.Router.1.IPv6Forwarding.%d",
                static_cast<int>(info->nWanIpIfIndex));
  int rc = getObject(msg, path);
  if (rc != 0) return rc;
  copyEachThatFits(msg, "NextHop", info->sIpv6NextHop);
  return 0;
}

}  // extern "C"

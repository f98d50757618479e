// The LAN pages: the router's LAN IPv4 address, DHCP server range and MAC
// address; its IPv6 state, address, router advertisement, DNS and DHCPv6
// range. Each gathers its objects in one multi-object request and sorts the
// answer by object name.
#include <cstddef>
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

constexpr char kLanv4[] = "ZintuGet_LANv4Info";
constexpr char kLanv6[] = "ZintuGet_LANv6Info";
constexpr char kMultiFailure[] = "faltocal_send_main_multi_obj is Failure\n";

#define V4(param, member, take) CALTOFAL_FIELD(LANv4Info, param, member, take)
constexpr RecordField kV4Address[] = {
    V4("IPAddress", sIPv4Address, Take::kText),
    V4("SubnetMask", sIPv4Subnet, Take::kText),
};
constexpr RecordField kV4Pool[] = {
    V4("Enable", bDHCPv4Active, Take::kFlag),
    V4("MinAddress", sDHCPv4StartIP, Take::kText),
    V4("MaxAddress", sDHCPv4EndIP, Take::kText),
    V4("LeaseTime", nLeaseTimeSec, Take::kNumber),
};
constexpr RecordField kV4Ethernet[] = {
    V4("MACAddress", sMACAddr, Take::kText),
};
#undef V4
// The objects whose names contain a group's text give its fields; the
// groups are tried in order and the first that matches decides.
constexpr FieldGroup kV4Groups[] = {
    fieldGroup("Device.IP.Interface.1.IPv4Address.1", kV4Address),
    fieldGroup("Device.DHCPv4.Server.Pool.1", kV4Pool),
    fieldGroup("Device.Ethernet.Interface.1", kV4Ethernet),
};

#define V6(param, member, take) CALTOFAL_FIELD(LANv6Info, param, member, take)
constexpr RecordField kV6Service[] = {
    V6("Enable", bIPv6Active, Take::kFlag),
    V6("X_LANTIQ_COM_PRI_DNSv6", sDNSv6Primary, Take::kText),
    V6("X_LANTIQ_COM_SEC_DNSv6", sDNSv6Secondary, Take::kText),
    V6("X_LANTIQ_COM_V6_DOMAIN_NAME", sDomainNamev6, Take::kText),
    V6("X_LANTIQ_COM_IPv6_LANMode", sLANv6Mode, Take::kText),
    V6("X_ZINTU_PDActive", bPDActive, Take::kFlag),
};
// The manual prefix also sets its length.
constexpr RecordField kV6Advertisement[] = {
    V6("ManualPrefixes", sManualPrefix, Take::kSpecial),
};
// The address is split from its prefix length.
constexpr RecordField kV6Address[] = {
    V6("IPAddress", sIPv6Address, Take::kSpecial),
};
constexpr RecordField kV6Pool[] = {
    V6("X_ZINTU_MinAddress", sDHCPv6StartIP, Take::kText),
    V6("X_ZINTU_MaxAddress", sDHCPv6EndIP, Take::kText),
    V6("X_ZINTU_PreferredLifetime", nLeaseTimeSec, Take::kNumber),
};
#undef V6
constexpr FieldGroup kV6Groups[] = {
    fieldGroup("Device.IPv6", kV6Service),
    fieldGroup("Device.RouterAdvertisement.InterfaceSetting.1", kV6Advertisement),
    fieldGroup("Device.IP.Interface.1.IPv6Address.1", kV6Address),
    fieldGroup("Device.DHCPv6.Server.Pool.1", kV6Pool),
};

// A special field written as plain text.
RecordField asText(const RecordField &field) {
  RecordField text = field;
  text.take = Take::kText;
  return text;
}

template <std::size_t N>
const FieldGroup *groupOf(const ObjList *obj, const FieldGroup (&groups)[N]) {
  std::string_view name(obj->sObjName, strnlen(obj->sObjName, sizeof obj->sObjName));
  for (const FieldGroup &g : groups) {
    if (contains(name, g.object)) return &g;
  }
  return nullptr;
}

// The LAN's IPv6 address "address[/length]"; false for a value of fewer
// than two characters, which is passed over.
bool takeAddress(LANv6Info &info, const RecordField &field, std::string_view value) {
  if (value.size() < 2) return false;
  std::size_t slash = value.find('/');
  putField(&info, asText(field), value.substr(0, slash));
  info.nPrefixLength = slash == std::string_view::npos ? 128 : decimalOf(value.substr(slash + 1));
  return true;
}

// Fills the record from the answer. Without a record nothing is stored: false
// where the first value would have been.
bool walkV4(const Message &msg, LANv4Info *info) {
  for (ObjList *obj : objectsOf(msg)) {
    const FieldGroup *g = groupOf(obj, kV4Groups);
    if (g == nullptr) continue;
    for (ParamList *param : paramsOf(obj)) {
      if (info == nullptr) {
        if (storesNamed(*g, param, [](const RecordField &, const char *) { return false; })) {
          return false;
        }
        continue;
      }
      putNamed(info, *g, param, [](const RecordField &, const char *) {});
    }
  }
  return true;
}

// Fills the record from the answer and notes each object it does not know;
// true when an address was found. Without a record nothing is stored: the
// walk ends where the first value would have been.
bool walkV6(const Message &msg, LANv6Info *info) {
  bool addressFound = false;
  for (ObjList *obj : objectsOf(msg)) {
    const FieldGroup *g = groupOf(obj, kV6Groups);
    if (g == nullptr) {
      traceTag(kUnitNetwork, 1774, kLanv6);
      PRINT_TO_CONSOLE("Received unhandled object = %s\n", obj->sObjName);
      continue;
    }
    for (ParamList *param : paramsOf(obj)) {
      if (info == nullptr) {
        // The manual prefix is always taken, an address of two characters or more.
        if (storesNamed(*g, param, [](const RecordField &field, const char *value) {
              return field.offset != offsetof(LANv6Info, sIPv6Address) || std::strlen(value) >= 2;
            })) {
          return false;
        }
        continue;
      }
      putNamed(info, *g, param, [&](const RecordField &field, const char *value) {
        if (field.offset == offsetof(LANv6Info, sIPv6Address)) {
          addressFound = takeAddress(*info, field, value) || addressFound;
        } else {
          putField(info, asText(field), value);
          info->nManualPrefixLength = 64;
        }
      });
    }
  }
  return addressFound;
}

// The address made from the manual prefix when the LAN has none: "%s1",
// cut at the field.
void synthesiseAddress(LANv6Info &info) {
  const std::string_view prefix = fieldText(info.sManualPrefix);
  std::snprintf(info.sIPv6Address, sizeof info.sIPv6Address, "%.*s1",
                static_cast<int>(prefix.size()), prefix.data());
  info.nPrefixLength = 64;
}

}  // namespace

extern "C" {

// Without a record the requests and their traces still run; -1 comes where
// the first value would be stored, or the summary would print the record.
CALTOFAL_API int32_t ZintuGet_LANv4Info(LANv4Info *pxLANv4Info) noexcept {
  traceTag(kUnitNetwork, __LINE__, kLanv4);
  PRINT_TO_CONSOLE("START_FUNCTION : FAL \n");

  Message msg;
  if (faltocal_send_main_multi_obj(msg.get(), "Device.IP.Interface.1.IPv4Address.1.&", "get", "get",
                                   2, "IPAddress", "SubnetMask") == -1) {
    traceAt(kLanv4, 1556);
    PRINT_TO_CONSOLE("%s", kMultiFailure);
    return -1;
  }
  if (faltocal_send_main_multi_obj(msg.get(), "Device.DHCPv4.Server.Pool.1.&", "get", "get", 4,
                                   "Enable", "MinAddress", "MaxAddress", "LeaseTime") == -1) {
    traceAt(kLanv4, 1566);
    PRINT_TO_CONSOLE("%s", kMultiFailure);
    return -1;
  }
  if (faltocal_send_main_multi_obj(msg.get(), "Device.Ethernet.Interface.1.", "get", "get", 1,
                                   "MACAddress") == -1) {
    traceAt(kLanv4, 1572);
    PRINT_TO_CONSOLE("%s", kMultiFailure);
    return -1;
  }
  if (!walkV4(msg, pxLANv4Info)) return -1;

  msg.release();
  int rc = faltocal_SendMultiObj(1, 256, 2, msg.get(), "Device.DHCPv4.Server.", "get", "get", 1,
                                 "Enable");
  if (rc == -1) {
    traceAt(kLanv4, 1629);
    PRINT_TO_CONSOLE("faltocal_SendMultiObj is Failure \n");
    return -1;
  }
  if (pxLANv4Info == nullptr) return -1;
  LANv4Info &info = *pxLANv4Info;
  // The server-wide switch overrides the pool's.
  for (ObjList *obj : objectsOf(msg)) {
    if (std::strstr(obj->sObjName, "Device.DHCPv4.Server") == nullptr) continue;
    const char *enable = paramIn(obj, "Enable");
    if (enable != nullptr && atob(enable) == 0) info.bDHCPv4Active = 0;
  }

  traceTag(kUnitNetwork, __LINE__, kLanv4);
  PRINT_TO_CONSOLE(
      "return pxLANv4Info value : sIPv4Address = %s , sIPv4Subnet = %s , bDHCPv4Active = %d , "
      "sDHCPv4StartIP = %s , sDHCPv4EndIP = %s , nLeaseTimeSec = %d , sMACAddr = %s \n",
      FieldString(info.sIPv4Address).c_str(), FieldString(info.sIPv4Subnet).c_str(),
      info.bDHCPv4Active, FieldString(info.sDHCPv4StartIP).c_str(),
      FieldString(info.sDHCPv4EndIP).c_str(), static_cast<int>(info.nLeaseTimeSec),
      FieldString(info.sMACAddr).c_str());
  return rc;
}

// Without a record the requests and their traces still run; -1 comes where
// the first value would be stored, or else the address would be made up.
CALTOFAL_API int32_t ZintuGet_LANv6Info(LANv6Info *pxLANv6Info) noexcept {
  traceTag(kUnitNetwork, __LINE__, kLanv6);
  PRINT_TO_CONSOLE("START_FUNCTION : FAL \n");

  struct Part {
    const char *object;
    int failLine;
  };
  constexpr Part kParts[] = {
      {"Device.IPv6.&", 1670},
      {"Device.IP.Interface.1.IPv6Address.1.&", 1674},
      {"Device.RouterAdvertisement.InterfaceSetting.1.&", 1678},
      {"Device.DHCPv6.Server.Pool.1.", 1682},
  };
  Message msg;
  int rc = 0;
  for (const Part &part : kParts) {
    rc = faltocal_send_main_multi_obj(msg.get(), part.object, "get", "get", 0);
    if (rc == -1) {
      traceAt(kLanv6, part.failLine);
      PRINT_TO_CONSOLE("%s", kMultiFailure);
      return -1;
    }
  }
  const bool addressFound = walkV6(msg, pxLANv6Info);
  if (pxLANv6Info == nullptr) return -1;
  LANv6Info &info = *pxLANv6Info;
  if (!addressFound) synthesiseAddress(info);

  traceTag(kUnitNetwork, __LINE__, kLanv6);
  PRINT_TO_CONSOLE(
      "return pxLANv6Info value : bIPv6Active = %d , sIPv6Address = %s ,  nPrefixLength = %d , "
      "sLANv6Mode = %s , sDNSv6Primary = %s , sDNSv6Secondary = %s , sDomainNamev6 = %s , "
      "sDHCPv6StartIP = %s , sDHCPv6EndIP = %s , nLeaseTimeSec = %d , bPDActive = %d , "
      "sManualPrefix = %s , nManualPrefixLength = %d \n",
      info.bIPv6Active, FieldString(info.sIPv6Address).c_str(),
      static_cast<int>(info.nPrefixLength), FieldString(info.sLANv6Mode).c_str(),
      FieldString(info.sDNSv6Primary).c_str(), FieldString(info.sDNSv6Secondary).c_str(),
      FieldString(info.sDomainNamev6).c_str(), FieldString(info.sDHCPv6StartIP).c_str(),
      FieldString(info.sDHCPv6EndIP).c_str(), static_cast<int>(info.nLeaseTimeSec), info.bPDActive,
      FieldString(info.sManualPrefix).c_str(), static_cast<int>(info.nManualPrefixLength));
  return rc;
}

}  // extern "C"

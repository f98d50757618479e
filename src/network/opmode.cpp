// What the router is doing now: its operation mode, the WAN connection that
// carries the default route, and the UCI sections of WAN connections.
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "caltofal.h"
#include "frame/message.h"
#include "frame/trace.h"
#include "libcal.h"
#include "network/walk.h"

using namespace caltofal;
using namespace caltofal::net;

namespace {

constexpr char kCurrentNetwork[] = "Device.X_ZINTU_CurrentNetwork";
constexpr char kWanConnection[] = "Device.X_LANTIQ_COM_NwHardware.WANConnection";

// The current-network parameters that describe the default WAN, and where
// each goes in the summary record.
struct DefGwField {
  const char *param;
  std::size_t offset;
  std::size_t width;
};

#define DEFGW_FIELD(param, member) \
  { param, offsetof(ZintuWanInfo, member), sizeof(ZintuWanInfo::member) }
constexpr DefGwField kDefGwFields[] = {
    DEFGW_FIELD("WanIpInterface", sWanIpInterface),
    DEFGW_FIELD("WanIpType", sWanIpType),
    DEFGW_FIELD("WanLinkType", sWanLinkType),
    DEFGW_FIELD("Ipv4Mode", sIpv4Mode),
    DEFGW_FIELD("PppStaticAddress", sPppStaticAddress),
    DEFGW_FIELD("PppStaticDNS1", sDNS1),
    DEFGW_FIELD("PppStaticDNS2", sDNS2),
};
#undef DEFGW_FIELD
static_assert(sizeof kDefGwFields / sizeof kDefGwFields[0] == 7);

// The summary field a current-network parameter fills, or nullptr.
const DefGwField *defGwField(const char *param) {
  for (const DefGwField &f : kDefGwFields) {
    if (sameName(param, f.param)) return &f;
  }
  return nullptr;
}

}  // namespace

extern "C" {

CALTOFAL_API int32_t ZintuGet_OperMode(void) noexcept {
  Message msg;
  if (getObjectTraced(msg, kCurrentNetwork, "ZintuGet_OperMode", __LINE__,
                      "faltocal_send_main is Failure \n") != 0) {
    return -1;
  }
  for (ObjList *obj : objectsOf(msg)) {
    const char *mode = lookup(obj, "OperationMode");
    if (!isEmpty(mode)) return std::atoi(mode);
  }
  return -1;
}

CALTOFAL_API int32_t ZintuGet_DefGw(ZintuWanInfo *info) noexcept {
  Message msg;
  if (getObjectTraced(msg, kCurrentNetwork, "ZintuGet_DefGw", __LINE__,
                      "faltocal_send_main is Failure \n") != 0) {
    return -1;
  }
  if (info == nullptr) {  // no record: -1 when a value would have been copied into it
    const bool copies = anyParam(msg, [](const ParamList *param) {
      return defGwField(param->sParamName) != nullptr && param->sParamValue[0] != '\0';
    });
    return copies ? -1 : 0;
  }
  forEachParam(msg, [&](ObjList *, ParamList *param) {
    if (const DefGwField *f = defGwField(param->sParamName)) {
      copyChars(reinterpret_cast<char *>(info) + f->offset, f->width, param->sParamValue);
    }
  });
  return 0;
}

CALTOFAL_API int32_t ZintuGet_UciSectionByConnMode(const char *connMode,
                                                   char *uciSection) noexcept {
  if (connMode == nullptr || uciSection == nullptr || connMode[0] == '\0') return -1;
  Message msg;
  int rc = getFiltered(msg, kWanConnection, "ConnMode", connMode);
  if (rc == CAL_ERR_NO_MATCH) return -1;
  if (rc != 0) {
    traceFailure("ZintuGet_UciSectionByConnMode", __LINE__, rc,
                 "faltocal_SendMultiObj is Failure\n");
    return -1;
  }
  for (ObjList *obj : objectsOf(msg)) {
    const char *mode = lookup(obj, "ConnMode");
    if (mode == nullptr || !startsWith(mode, connMode)) continue;
    const char *section = lookup(obj, "UciSection");
    if (!isEmpty(section)) {
      copyCut(uciSection, 128, section);
      return 0;
    }
  }
  return -1;
}

CALTOFAL_API int32_t ZintuGet_UciSectionOfDefGw(char *uciSection) noexcept {
  if (uciSection == nullptr) return -1;
  constexpr char kFunction[] = "ZintuGet_UciSectionOfDefGw";
  constexpr char kFailure[] = "faltocal_send_main is Failure\n";
  Message msg;
  char name[128] = {0};

  int rc = getObjectParam(msg, kCurrentNetwork, "WanIpInterface");
  if (rc != 0) {
    traceFailure(kFunction, __LINE__, rc, kFailure);
    return -1;
  }
  const char *interface = lastWithParam(msg, "WanIpInterface");
  if (isEmpty(interface)) return -1;
  copyCut(name, interface);

  rc = getObjectParam(msg, name, "Name");
  if (rc != 0) {
    traceFailure(kFunction, __LINE__, rc, kFailure);
    return -1;
  }
  const char *ifName = lastWithParam(msg, "Name");
  if (isEmpty(ifName)) return -1;
  copyCut(name, ifName);

  rc = getObject(msg, "Device.X_LANTIQ_COM_NwHardware.WANConnection.");
  if (rc != 0) {
    traceFailure(kFunction, __LINE__, rc, kFailure);
    return -1;
  }
  for (ObjList *obj : objectsOf(msg)) {
    const char *connection = lookup(obj, "ConnectionName");
    if (connection == nullptr || std::strcmp(connection, name) != 0) continue;
    const char *section = lookup(obj, "UciSection");
    if (isEmpty(section)) continue;
    copyPadded(uciSection, section, 127);
    traceTag(kUnitNetwork, __LINE__, kFunction);
    PRINT_TO_CONSOLE("%s[%s]\n", "UciSection", section);
    return 0;
  }
  return -1;
}

}  // extern "C"

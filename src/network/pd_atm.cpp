// IPv6 prefix delegation switch, and the ATM circuit of the first ATM link.
#include <cstring>

#include "caltofal.h"
#include "frame/message.h"
#include "network/walk.h"

using namespace caltofal;
using namespace caltofal::net;

namespace {

// ATM texts are read when they have 1 to 31 characters.
constexpr std::size_t kAtmTextMax = 31;

// The first parameter of that name in the object whose value has 1 to 31
// characters; longer and empty ones are passed over.
const char *firstShortParam(ObjList *obj, const char *name) {
  for (ParamList *param : paramsOf(obj)) {
    if (!sameName(param->sParamName, name)) continue;
    std::size_t length = strnlen(param->sParamValue, kAtmTextMax + 1);
    if (length >= 1 && length <= kAtmTextMax) return param->sParamValue;
  }
  return nullptr;
}

// "VPI/VCI": both numbers, when both pieces are there.
bool circuitOf(const char *destination, int32_t &vpi, int32_t &vci) {
  char work[32] = {0};
  std::memcpy(work, destination, std::strlen(destination));
  char *rest = nullptr;
  const char *first = strtok_r(work, "/", &rest);
  const char *second = first != nullptr ? strtok_r(nullptr, "/", &rest) : nullptr;
  if (first == nullptr || second == nullptr) return false;
  vpi = decimalOf(first);
  vci = decimalOf(second);
  return true;
}

}  // namespace

extern "C" {

CALTOFAL_API int32_t ZintuGet_IPv6PD(void) noexcept {
  Message msg;
  if (getObjectTraced(msg, "Device.X_ZINTU_CurrentNetwork", "ZintuGet_IPv6PD", 1442,
                      "faltocal_send_main is Failure\n") != 0) {
    return -1;
  }
  int enabled = 0;
  forEachParam(msg, [&](ObjList *, ParamList *param) {
    if (std::strcmp(param->sParamName, "EnableIpv6PD") == 0 &&
        std::strstr(param->sParamValue, "true") != nullptr) {
      enabled = 1;
    }
  });
  return enabled;
}

// Without a record the requests still run: -1 comes where a circuit or a
// QoS class would have been written into it.
CALTOFAL_API int32_t ZintuGet_AtmInfo(ZintuWanInfo *info) noexcept {
  Message msg;
  if (getObjectTraced(msg, "Device.ATM.Link.1.", "ZintuGet_AtmInfo", 1475,
                      "faltocal_send_main is Failure\n") != 0) {
    return -1;
  }
  for (ObjList *obj : objectsOf(msg)) {
    const char *destination = firstShortParam(obj, "DestinationAddress");
    int32_t vpi = 0;
    int32_t vci = 0;
    if (destination == nullptr || !circuitOf(destination, vpi, vci)) continue;
    if (info == nullptr) return -1;
    info->nAtmVpi = vpi;
    info->nAtmVci = vci;
  }

  if (getObjectTraced(msg, "Device.ATM.Link.1.QoS.", "ZintuGet_AtmInfo", 1513,
                      "faltocal_send_main is Failure\n") != 0) {
    return -1;
  }
  for (ObjList *obj : objectsOf(msg)) {
    const char *qos = firstShortParam(obj, "QoSClass");
    if (qos == nullptr) continue;
    if (info == nullptr) return -1;
    copyChars(info->sAtmQoSClass, qos);
  }
  return 0;
}

}  // extern "C"

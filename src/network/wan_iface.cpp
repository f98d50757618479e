// Walking the interface stack: an object's lower layer, and the IP
// interface of the Ethernet WAN.
#include <cctype>
#include <cstring>
#include <string_view>

#include "caltofal.h"
#include "frame/message.h"
#include "frame/trace.h"
#include "network/walk.h"

using namespace caltofal;
using namespace caltofal::net;

namespace {

constexpr std::string_view kIpInterface = "Device.IP.Interface";

// An interface object itself ("Device.IP.Interface.3"), not one of its
// sub-objects: no letter after the table name.
bool isIpInterfaceObject(const char *name) {
  std::size_t length = std::strlen(name);
  for (std::size_t i = kIpInterface.size(); i < length; ++i) {
    if (std::isalpha(static_cast<unsigned char>(name[i]))) return false;
  }
  return startsWith(name, kIpInterface);
}

}  // namespace

extern "C" {

CALTOFAL_API int32_t ZintuGet_LowerLayers(const char *object, char *lowerLayers) noexcept {
  if (object == nullptr || lowerLayers == nullptr) {
    traceAt("ZintuGet_LowerLayers", __LINE__);
    PRINT_TO_CONSOLE("input param is NULL \n");
    return -1;
  }
  Message msg;
  int rc = getTree(msg, object);
  if (rc != 0) {
    traceFailure("ZintuGet_LowerLayers", __LINE__, rc, "faltocal_SendMultiObj is Failure \n");
    return -1;
  }
  for (ObjList *obj : objectsOf(msg)) {
    if (const char *value = lookup(obj, "LowerLayers")) {
      copyPadded(lowerLayers, value, 128);
      break;
    }
  }
  return 0;
}

CALTOFAL_API int32_t ZintuGet_EthWanObjName(char *objName) noexcept {
  if (objName == nullptr) return -1;
  Message msg;
  if (getFiltered(msg, "Device.IP.Interface", "Alias", "cpe-EthWan-IPIntf-1") != 0) return -1;
  const char *candidate = nullptr;
  for (ObjList *obj : objectsOf(msg)) {
    if (isIpInterfaceObject(obj->sObjName)) candidate = obj->sObjName;
  }
  if (candidate == nullptr) return -1;
  copyCut(objName, 128, candidate);
  return 0;
}

}  // extern "C"

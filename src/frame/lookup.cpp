// Finding values in an answer.
#include <cstring>

#include "caltofal.h"
#include "frame/message.h"
#include "frame/trace.h"
#include "help_objlist.h"

using namespace caltofal;

extern "C" {

CALTOFAL_API int caltofal_paramValue_get(void *objectList, const char *objectPart,
                                         const char *paramName, char **out) noexcept {
  if (objectList == nullptr || objectPart == nullptr || paramName == nullptr || out == nullptr ||
      *out == nullptr) {
    return -1;
  }
  for (ObjList *obj : objectsOf(objectList)) {
    if (std::strstr(obj->sObjName, objectPart) == nullptr) continue;
    for (ParamList *param : paramsOf(obj)) {
      if (std::strncmp(param->sParamName, paramName, 128) == 0) {
        copyPadded(*out, param->sParamValue, 128);
        return 0;
      }
    }
  }
  return -1;
}

CALTOFAL_API int zintu_GetParamFromObjUnit(void *object, const char *paramName,
                                           const char **out) noexcept {
  if (object == nullptr || paramName == nullptr || paramName[0] == '\0' || out == nullptr) {
    traceTag(kUnitFrame, 1347, "zintu_GetParamFromObjUnit");
    PRINT_TO_CONSOLE("invalid parameter\n");
    return -1;
  }
  for (ParamList *param : paramsOf(static_cast<ObjList *>(object))) {
    if (sameName(param->sParamName, paramName)) {
      *out = param->sParamValue;
      return 0;
    }
  }
  traceTag(kUnitFrame, 1357, "zintu_GetParamFromObjUnit");
  PRINT_TO_CONSOLE("Can't find Param(%s) in Obj\n", paramName);
  return -1;
}

CALTOFAL_API void zintu_InsertDotEndofObj(char *path) noexcept {
  if (path == nullptr || path[0] == '\0') return;
  std::size_t length = std::strlen(path);
  if (path[length - 1] == '.') return;
  path[length] = '.';
  path[length + 1] = '\0';
}

}  // extern "C"

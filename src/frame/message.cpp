// Building and releasing request messages.
#include "frame/message.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "caltofal.h"
#include "help_objlist.h"

namespace caltofal {

void copyCut(char *dst, std::size_t width, const char *src) {
  if (dst == nullptr || width == 0) return;
  // What snprintf(dst, width, "%s", src) writes, without its formatting
  // machinery: the snapshots copy every value of a table this way.
  const std::size_t n = src != nullptr ? strnlen(src, width - 1) : 0;
  if (n > 0) std::memmove(dst, src, n);
  dst[n] = '\0';
}

void formatCut(char *dst, std::size_t width, const char *format, ...) {
  if (dst == nullptr || width == 0) return;
  va_list args;
  va_start(args, format);
  std::vsnprintf(dst, width, format, args);
  va_end(args);
}

void copyChars(char *dst, std::size_t width, const char *src) {
  if (dst == nullptr || src == nullptr || width == 0) return;
  std::size_t n = strnlen(src, width - 1);
  std::memcpy(dst, src, n);
}

void copyPadded(char *dst, const char *src, std::size_t n) {
  if (dst == nullptr || src == nullptr) return;
  std::size_t length = strnlen(src, n);
  std::memcpy(dst, src, length);
  std::memset(dst + length, 0, n - length);
}

}  // namespace caltofal

extern "C" {

CALTOFAL_API MsgHeader *faltocal_createMessage(uint32_t mainOper, uint32_t listFlags) noexcept {
  auto *header = static_cast<MsgHeader *>(help_calloc(1, sizeof(MsgHeader), "FaltoCal", 1395));
  if (header == nullptr) return nullptr;
  HELP_CREATE_OBJ(header, mainOper, listFlags, 2);
  return header;
}

// Without `outNode` a get or a set still adds its node (the message owns it)
// but cannot hand it back: -1. Other operations add nothing either way.
CALTOFAL_API int faltocal_FillObject(void **outNode, void *listHead, const char *objectName,
                                     uint32_t mainOper, uint32_t subOper,
                                     uint32_t listFlags) noexcept {
  if (mainOper == MOPT_GET) {
    void *node = HELP_OBJECT_GET(listHead, objectName, listFlags);
    if (outNode == nullptr) return -1;
    *outNode = node;
    return node != nullptr ? 0 : -1;
  }
  if (mainOper == MOPT_SET) {
    if (subOper != OBJOPT_ADD && subOper != OBJOPT_DEL && subOper != OBJOPT_MODIFY) return -1;
    void *node = help_addObjList(static_cast<ObjList *>(listHead), objectName, 0, 0, subOper, 0);
    if (outNode == nullptr) return -1;
    *outNode = node;
    return 0;
  }
  return 0;
}

CALTOFAL_API int faltocal_FillParam(void **node, uint32_t mainOper, const char *paramName,
                                    uint32_t paramId, const char *value) noexcept {
  if (paramName == nullptr && paramId == 0) {
    faltocal_logLine(3, "faltocal{%s, %d}:Either of Parameter Name or Param ID is mandatory\n",
                     "faltocal_FillParam", 120);
    return -1;
  }
  // A get or a set adds to the node; other operations add nothing.
  if (node == nullptr && (mainOper == MOPT_SET || mainOper == MOPT_GET)) return -1;
  if (mainOper == MOPT_SET) {
    HELP_PARAM_SET(*node, paramName, value);
  } else if (mainOper == MOPT_GET) {
    HELP_PARAM_GET(*node, paramName, SOPT_OBJVALUE);
  }
  return 0;
}

CALTOFAL_API int faltocal_AddFilter(void **node, const char *paramName,
                                    const char *value) noexcept {
  if (paramName == nullptr) {
    faltocal_logLine(3, "faltocal{%s, %d}:Either of Parameter Name  is mandatory\n",
                     "faltocal_AddFilter", 139);
    return -1;
  }
  if (node == nullptr) return -1;
  HELP_PARAM_SET(*node, paramName, value);
  return 0;
}

CALTOFAL_API int faltocal_finalize(MsgHeader *message) noexcept {
  if (message == nullptr) return -1;
  return help_delMsg(message, 1);
}

}  // extern "C"

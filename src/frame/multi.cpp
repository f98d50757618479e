// Multi-object requests: objects are collected over several calls (an object
// containing '&' is only queued) and sent on the last one or on "query".
#include <strings.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "caltofal.h"
#include "frame/keywords.h"
#include "frame/send_internal.h"
#include "frame/trace.h"
#include "help_objlist.h"

namespace caltofal {
namespace {

// The two multi-object requests differ in their trace lines and in what a
// "query" on a new message prints.
struct Variant {
  const char *function;
  int queryNullLine;
  bool queryNullSaysMsgHdr;
  int unknownMainLine;
  int unknownSubLine;
  int sendFailLine;
};

constexpr Variant kMultiObj = {"faltocal_send_main_multi_obj", 661, true, 744, 775, 830};
constexpr Variant kNoVariable = {
    "faltocal_send_main_multi_obj_No_variable", 1025, false, 950, 981, 1050};

int sendFailed(const Variant &v, int line, const char *object) {
  traceTag(kUnitFrame, line, v.function);
  PRINT_TO_CONSOLE("Failure : faltocal_sendQuery() of %s \n", orNull(object));
  return -1;
}

int unknownKeyword(const Variant &v, int line, const char *word, const char *object) {
  traceTag(kUnitFrame, line, v.function);
  PRINT_TO_CONSOLE("Failure : Unknown args sMainOper = %s of %s \n", orNull(word), orNull(object));
  return -1;
}

bool isQuery(const char *object) {
  return strncasecmp(object, "query", 256) == 0;
}
bool isStoreOnly(const char *mainOper) {
  return mainOper != nullptr && std::strcmp(mainOper, "set_only_db") == 0;
}

int multiObj(const Variant &v, MsgHeader *message, const char *object, const char *mainOper,
             const char *subOper, int count, Args args) {
  if (message == nullptr || object == nullptr) return -1;
  Sender sender = faltocal_sendQuery;
  if (isQuery(object)) {
    if (message->pObjList == nullptr) {
      if (!v.queryNullSaysMsgHdr) return sendFailed(v, v.queryNullLine, object);
      traceTag(kUnitFrame, v.queryNullLine, v.function);
      PRINT_TO_CONSOLE("Failure : Received MsgHdr is NULL. can NOT do query.\n");
      return -1;
    }
    if (isStoreOnly(mainOper)) sender = faltocal_sendQuery_ToDb;
    return sender(message) == 0 ? 0 : sendFailed(v, v.sendFailLine, object);
  }

  // The path, without the trailing '&' of a queued object. The copy keeps
  // all but the path's last character, within the 256-byte buffer.
  char path[256] = {0};
  std::size_t length = std::strlen(object);
  bool deferred = std::strchr(object, '&') != nullptr;
  if (deferred) {
    std::snprintf(path, length < sizeof path ? length : sizeof path, "%s", object);
  } else {
    std::snprintf(path, sizeof path, "%s", object);
  }

  bool filter = false;
  if (message->pObjList != nullptr) {
    if (isStoreOnly(mainOper)) sender = faltocal_sendQuery_ToDb;
  } else {
    const MultiKeyword *main = findKeyword(kMultiOps, mainOper);
    if (main == nullptr) return unknownKeyword(v, v.unknownMainLine, mainOper, object);
    HELP_CREATE_OBJ(message, main->code, main->listFlags, 2);
    filter = main->filter;
  }
  const Keyword *sub = findKeyword(kSubOps, subOper);
  if (sub == nullptr) return unknownKeyword(v, v.unknownSubLine, subOper, object);

  if (!addObject(message, path, message->unMainOper, sub->code, SOPT_OBJVALUE, filter, count,
                 args)) {
    return -1;
  }
  if (deferred) return 0;
  return sender(message) == 0 ? 0 : sendFailed(v, v.sendFailLine, object);
}

}  // namespace
}  // namespace caltofal

using namespace caltofal;

extern "C" {

CALTOFAL_API int faltocal_send_main_multi_obj(MsgHeader *message, const char *object,
                                              const char *mainOper, const char *subOper, int count,
                                              ...) noexcept {
  va_list list;
  va_start(list, count);
  int rc = multiObj(kMultiObj, message, object, mainOper, subOper, count, Args(&list));
  va_end(list);
  return rc;
}

CALTOFAL_API int faltocal_send_main_multi_obj_No_variable(MsgHeader *message, const char *object,
                                                          const char *mainOper, const char *subOper,
                                                          int count, const char **params) noexcept {
  return multiObj(kNoVariable, message, object, mainOper, subOper, count, Args(params));
}

CALTOFAL_API int faltocal_SendMultiObj(uint8_t send, uint32_t listFlags, uint32_t owner,
                                       MsgHeader *message, const char *object, const char *mainOper,
                                       const char *subOper, int count, ...) noexcept {
  if (object == nullptr) return -1;
  if (std::strncmp(object, "query", 256) == 0) return send ? faltocal_sendQuery(message) : 0;
  if (message == nullptr) return -1;
  bool filter = false;
  if (message->pObjList == nullptr) {
    // The one-object keywords, and the filtered get.
    const Keyword *main = findKeyword(kMainOps, mainOper);
    filter = main == nullptr && mainOper != nullptr && std::strcmp(mainOper, kFilterGet.word) == 0;
    if (filter) main = &kFilterGet;
    if (main == nullptr) return -1;
    HELP_CREATE_OBJ(message, main->code, listFlags, owner);
  }
  const Keyword *sub = findKeyword(kSubOps, subOper);
  if (sub == nullptr) return -1;
  va_list list;
  va_start(list, count);
  Args args(&list);
  const bool complete =
      addObject(message, object, message->unMainOper, sub->code, listFlags, filter, count, args);
  va_end(list);
  if (!complete) return -1;
  return send ? faltocal_sendQuery(message) : 0;
}

}  // extern "C"

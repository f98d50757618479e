// The senders and the one-object requests.
#include <pthread.h>

#include <cstdarg>
#include <cstring>

#include "caltofal.h"
#include "frame/keywords.h"
#include "frame/os.h"
#include "frame/send_internal.h"
#include "help_objlist.h"
#include "libcal.h"

CALTOFAL_API pthread_mutex_t capi_mutex = PTHREAD_MUTEX_INITIALIZER;

namespace caltofal {
namespace {

using CalCall = int (*)(MsgHeader *);

int sendWith(MsgHeader *message, CalCall setCall) {
  if (message == nullptr) return -1;
  CalCall call;
  const char *failure;
  if (message->unMainOper == MOPT_GET) {
    call = cal_getValue;
    failure = "\n Get test failure\n";
  } else if (message->unMainOper == MOPT_SET) {
    call = setCall;
    failure = "\n Set test failure\n";
  } else {
    return -1;
  }
  pthread_mutex_lock(&capi_mutex);
  int rc = call(message);
  pthread_mutex_unlock(&capi_mutex);
  if (rc != 0) os::stderrWrite(failure, std::strlen(failure));
  return rc;
}

}  // namespace

int sendMainV(MsgHeader *message, const char *object, const char *mainOper, const char *subOper,
              int count, va_list args, uint32_t owner, Sender sender) {
  const Keyword *main = findKeyword(kMainOps, mainOper);
  if (main == nullptr || message == nullptr || object == nullptr) return -1;
  HELP_CREATE_OBJ(message, main->code, SOPT_OBJVALUE, owner);
  const Keyword *sub = findKeyword(kSubOps, subOper);
  if (sub == nullptr) return -1;
  void *node = nullptr;
  faltocal_FillObject(&node, message->pObjList, object, main->code, sub->code, SOPT_OBJVALUE);
  va_list list;
  va_copy(list, args);
  Args params(&list);
  addParams(node, main->code, false, SOPT_OBJVALUE, count, params);
  va_end(list);
  return sender(message) == 0 ? 0 : -1;
}

void addParams(void *node, uint32_t mainOper, bool pairs, uint32_t listFlags, int count,
               Args &args) {
  for (int i = 0; i < count; ++i) {
    const char *name = args.next();
    if (mainOper == MOPT_SET || pairs) {
      const char *value = args.next();
      if (node != nullptr) HELP_PARAM_SET(node, name, value);
    } else if (mainOper == MOPT_GET && node != nullptr) {
      HELP_PARAM_GET(node, name, listFlags);
    }
  }
}

}  // namespace caltofal

using namespace caltofal;

extern "C" {

CALTOFAL_API int faltocal_sendQuery(MsgHeader *message) noexcept {
  return sendWith(message, cal_setValue);
}

CALTOFAL_API int faltocal_sendQuery_ToDb(MsgHeader *message) noexcept {
  return sendWith(message, cal_setValueToDb);
}

CALTOFAL_API int faltocal_send_main(MsgHeader *message, const char *object, const char *mainOper,
                                    const char *subOper, int count, ...) noexcept {
  va_list args;
  va_start(args, count);
  int rc = sendMainV(message, object, mainOper, subOper, count, args, 32, faltocal_sendQuery);
  va_end(args);
  return rc;
}

CALTOFAL_API int faltocal_send_main_ToDb(MsgHeader *message, const char *object,
                                         const char *mainOper, const char *subOper, int count,
                                         ...) noexcept {
  va_list args;
  va_start(args, count);
  int rc = sendMainV(message, object, mainOper, subOper, count, args, 4, faltocal_sendQuery_ToDb);
  va_end(args);
  return rc;
}

}  // extern "C"

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
  va_list list;
  va_copy(list, args);
  Args params(&list);
  const bool complete =
      addObject(message, object, main->code, sub->code, SOPT_OBJVALUE, false, count, params);
  va_end(list);
  if (!complete) return -1;
  return sender(message) == 0 ? 0 : -1;
}

bool addObject(MsgHeader *message, const char *object, uint32_t mainOper, uint32_t subOper,
               uint32_t listFlags, bool pairs, int count, Args &args) {
  void *node = nullptr;
  const int filled =
      faltocal_FillObject(&node, message->pObjList, object, mainOper, subOper, listFlags);
  // A get has its node when its flags name a node kind; a set has one unless
  // its sub-operation is refused.
  const bool needsNode =
      (mainOper == MOPT_GET && (listFlags & (SOPT_OBJVALUE_MASK | SOPT_OBJATTR)) != 0) ||
      (mainOper == MOPT_SET && filled == 0);
  bool complete = node != nullptr || !needsNode;
  if (count > 0 && args.missing()) return false;
  for (int i = 0; i < count; ++i) {
    const char *name = args.next();
    if (mainOper == MOPT_SET || pairs) {
      const char *value = args.next();
      if (node != nullptr) {
        complete = help_addParamList(static_cast<ObjList *>(node), name, 0, value, 0) != nullptr &&
                   complete;
      }
    } else if (mainOper == MOPT_GET && node != nullptr) {
      if (listFlags & SOPT_OBJVALUE_MASK) {
        complete =
            help_addParamList(static_cast<ObjList *>(node), name, 0, nullptr, 0) != nullptr &&
            complete;
      } else if (listFlags & SOPT_OBJATTR) {
        complete = help_addParamAttrList(static_cast<ObjAttrList *>(node), name, 0, 0, 0, 0, 0, 0,
                                         0, 0, 0) != nullptr &&
                   complete;
      } else {
        HELP_PARAM_GET(node, name, listFlags);  // logs the wrong flags
      }
    }
  }
  return complete;
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

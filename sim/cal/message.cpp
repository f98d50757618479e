// Reading request messages: every text is bounded by its field.

#include <cstring>

#include "request.h"

namespace calsim {
namespace {

std::string field(const char *text, size_t capacity) {
  return std::string(text, strnlen(text, capacity));
}

}  // namespace

std::string_view withoutDot(std::string_view path) {
  if (!path.empty() && path.back() == '.') path.remove_suffix(1);
  return path;
}

Incoming readMessage(const MsgHeader *msg) {
  Incoming in;
  if (msg == nullptr || msg->pObjList == nullptr || !(msg->unListFlags & SOPT_OBJVALUE_MASK)) {
    return in;
  }
  auto *head = static_cast<ObjList *>(msg->pObjList);
  if (head->xOlist.next == nullptr) return in;
  ObjList *obj;
  HELP_FOR_EACH_OBJ(head, obj) {
    RequestObject r;
    r.name = field(obj->sObjName, sizeof obj->sObjName);
    r.objOper = obj->unObjOper;
    if (obj->xParamList.next != nullptr) {
      ParamList *param;
      HELP_FOR_EACH_PARAM(obj, param) {
        r.params.emplace_back(field(param->sParamName, sizeof param->sParamName),
                              field(param->sParamValue, sizeof param->sParamValue));
      }
    }
    in.objects.push_back(std::move(r));
    in.nodes.push_back(obj);
  }
  return in;
}

}  // namespace calsim

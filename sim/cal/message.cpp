// Reading request messages: every text is bounded by its field.

#include <cstring>

#include "request.h"

namespace calsim {
namespace {

std::string_view field(const char *text, size_t capacity) {
  return std::string_view(text, strnlen(text, capacity));
}

}  // namespace

std::string_view withoutDot(std::string_view path) {
  if (!path.empty() && path.back() == '.') path.remove_suffix(1);
  return path;
}

void readMessage(const MsgHeader *msg, Incoming *in) {
  in->objects.clear();
  in->params.clear();
  if (msg == nullptr || msg->pObjList == nullptr || !(msg->unListFlags & SOPT_OBJVALUE_MASK)) {
    return;
  }
  auto *head = static_cast<ObjList *>(msg->pObjList);
  if (head->xOlist.next == nullptr) return;
  ObjList *obj;
  HELP_FOR_EACH_OBJ(head, obj) {
    InObject r;
    r.name = field(obj->sObjName, sizeof obj->sObjName);
    r.objOper = obj->unObjOper;
    r.node = obj;
    r.first = in->params.size();
    if (obj->xParamList.next != nullptr) {
      ParamList *param;
      HELP_FOR_EACH_PARAM(obj, param) {
        in->params.push_back({field(param->sParamName, sizeof param->sParamName),
                              field(param->sParamValue, sizeof param->sParamValue)});
      }
    }
    r.count = in->params.size() - r.first;
    in->objects.push_back(r);
  }
}

}  // namespace calsim

// Test messages for the emulator, built and read with the helper library.
#pragma once

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "calsim.h"
#include "help_objlist.h"
#include "libcal.h"

namespace simtest {

using Params = std::vector<std::pair<std::string, std::string>>;

struct ReqObj {
  std::string path;
  Params params;      // a get's names carry "" as value
  uint32_t oper = 0;  // sub-operation of a set
};

// A header and list head from the helper, as faltocal_createMessage makes
// them; released with help_delMsg(msg, 0).
inline MsgHeader *newMessage(uint32_t listFlags) {
  auto *msg = static_cast<MsgHeader *>(help_calloc(1, sizeof(MsgHeader), "test", __LINE__));
  msg->unListFlags = listFlags;
  size_t size = (listFlags & SOPT_OBJVALUE_MASK) ? sizeof(ObjList)
                : (listFlags & SOPT_OBJATTR)     ? sizeof(ObjAttrList)
                                                 : sizeof(ObjACSList);
  char *head = static_cast<char *>(help_calloc(1, static_cast<uint32_t>(size), "test", __LINE__));
  // In every kind the two links are the record's last fields.
  auto *links = reinterpret_cast<HelpListLink *>(head + size - 2 * sizeof(HelpListLink));
  links[0].next = links[0].prev = &links[0];
  links[1].next = links[1].prev = &links[1];
  msg->pObjList = head;
  return msg;
}

// A message on the stack, as the library's getters use it; released on scope exit.
class Msg {
 public:
  Msg(uint32_t mainOper, uint32_t listFlags, uint32_t owner = 2) {
    h_.unMainOper = mainOper;
    h_.unListFlags = listFlags;
    h_.unOwner = owner;
    h_.unInit = 1;
    auto *head = static_cast<ObjList *>(help_calloc(1, sizeof(ObjList), "test", __LINE__));
    head->xOlist.next = head->xOlist.prev = &head->xOlist;
    head->xParamList.next = head->xParamList.prev = &head->xParamList;
    h_.pObjList = head;
  }
  Msg(uint32_t mainOper, uint32_t listFlags, const std::vector<ReqObj> &objects)
      : Msg(mainOper, listFlags) {
    for (const ReqObj &o : objects) add(o);
  }
  ~Msg() { help_delMsg(&h_, 1); }
  Msg(const Msg &) = delete;
  Msg &operator=(const Msg &) = delete;

  ObjList *add(const ReqObj &o) {
    ObjList *node = help_addObjList(head(), o.path.c_str(), 0, 0, o.oper, 0);
    for (const auto &[name, value] : o.params)
      help_addParamList(node, name.c_str(), 0, value.c_str(), 0);
    return node;
  }
  ObjList *head() { return static_cast<ObjList *>(h_.pObjList); }
  MsgHeader *get() { return &h_; }

  // The list as text: "PATH{A=1,B=2} PATH{}" in list order.
  std::string dump() {
    std::string out;
    ObjList *obj;
    HELP_FOR_EACH_OBJ(head(), obj) {
      if (!out.empty()) out += " ";
      out += std::string(obj->sObjName) + "{";
      ParamList *p;
      bool first = true;
      HELP_FOR_EACH_PARAM(obj, p) {
        out += (first ? "" : ",") + std::string(p->sParamName) + "=" + p->sParamValue;
        first = false;
      }
      out += "}";
    }
    return out;
  }

 private:
  MsgHeader h_{};
};

// Names for a get: each with an empty value.
inline Params names(std::initializer_list<const char *> list) {
  Params out;
  for (const char *n : list) out.emplace_back(n, "");
  return out;
}

}  // namespace simtest

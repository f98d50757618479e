// A request message on the stack, released on every path, and its answer
// as the tool shows it.
#pragma once

#include <utility>
#include <vector>

#include "caltofal.h"
#include "help_objlist.h"
#include "output.h"

namespace cli {

class Request {
 public:
  Request() = default;
  Request(const Request &) = delete;
  Request &operator=(const Request &) = delete;
  ~Request() { help_delMsg(&header_, 1); }

  MsgHeader *get() { return &header_; }

  // The objects and parameters of the answer, in the order answered.
  std::vector<ObjectValues> answer() const {
    std::vector<ObjectValues> objects;
    auto *head = static_cast<ObjList *>(header_.pObjList);
    if (head == nullptr) return objects;
    ObjList *obj = nullptr;
    HELP_FOR_EACH_OBJ(head, obj) {
      ObjectValues entry{fieldText(obj->sObjName), {}};
      ParamList *param = nullptr;
      HELP_FOR_EACH_PARAM(obj, param) {
        entry.params.emplace_back(fieldText(param->sParamName), fieldText(param->sParamValue));
      }
      objects.push_back(std::move(entry));
    }
    return objects;
  }

 private:
  MsgHeader header_{};
};

}  // namespace cli

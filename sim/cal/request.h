// Request messages as the emulator sees them, and the get and set work.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "calsim.h"
#include "help_objlist.h"
#include "libcal.h"
#include "model.h"

namespace calsim {

// A request as sent, read in place: every text is a view into the message's
// nodes (bounded by its field), valid until the message's list changes.
struct InParam {
  std::string_view name;
  std::string_view value;
};

struct InObject {
  std::string_view name;
  uint32_t objOper = 0;
  ObjList *node = nullptr;
  size_t first = 0;  // its parameters: Incoming::params[first, first + count)
  size_t count = 0;
};

struct Incoming {
  struct Params {
    const InParam *from;
    const InParam *to;
    const InParam *begin() const { return from; }
    const InParam *end() const { return to; }
    bool empty() const { return from == to; }
  };

  std::vector<InObject> objects;
  std::vector<InParam> params;

  Params paramsOf(const InObject &object) const {
    return {params.data() + object.first, params.data() + object.first + object.count};
  }
};

// Reads a message's value list into `in` (nothing for other kinds or no
// list); `in` keeps its capacity from one request to the next.
void readMessage(const MsgHeader *msg, Incoming *in);

// A request path without its one trailing dot.
std::string_view withoutDot(std::string_view path);

// The work lists of a get, kept from one request to the next so that a get
// allocates nothing of its own once they have grown.
struct GetScratch {
  // Each answered object with the end of its parameters in `params`.
  std::vector<std::pair<const Object *, size_t>> answers;
  std::vector<const Param *> params;
  std::vector<const Object *> objects;
  std::vector<std::string_view> names;
};

// Answers a get into the message's list: 0, -202, -208 or -1 with a reason.
// The list is left as it was on failure.
int runGet(const Model &live, const Model &defaults, MsgHeader *msg, const Incoming &in,
           GetScratch *work, std::string *error);

// Validates every object of a set, then applies all of them; the lines of
// what was applied go to `journal`. 0, -202 or -1 with a reason.
int runSet(Model &model, const Incoming &in, std::vector<std::string> *journal, std::string *error);

}  // namespace calsim

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

// The objects of a value-kind message with their nodes (same order).
struct Incoming {
  std::vector<RequestObject> objects;
  std::vector<ObjList *> nodes;
};

// Reads a message's value list (nothing for other kinds or no list).
Incoming readMessage(const MsgHeader *msg);

// A request path without its one trailing dot.
std::string_view withoutDot(std::string_view path);

// Answers a get into the message's list: 0, -202, -208 or -1 with a reason.
// The list is left as it was on failure.
int runGet(const Model &live, const Model &defaults, MsgHeader *msg, const Incoming &in,
           std::string *error);

// Validates every object of a set, then applies all of them; the lines of
// what was applied go to `journal`. 0, -202 or -1 with a reason.
int runSet(Model &model, const Incoming &in, std::vector<std::string> *journal, std::string *error);

}  // namespace calsim

// Shared pieces of the request functions.
#pragma once

#include <cstdarg>
#include <cstdint>

#include "caltofal.h"

namespace caltofal {

using Sender = int (*)(MsgHeader *);

// Where a request's parameters come from: variable arguments or an array.
class Args {
 public:
  explicit Args(va_list *list) : list_(list) {}
  explicit Args(const char **array) : array_(array) {}
  const char *next() {
    if (list_ != nullptr) return va_arg(*list_, const char *);
    return array_[index_++];
  }

 private:
  va_list *list_ = nullptr;
  const char **array_ = nullptr;
  int index_ = 0;
};

// Adds `count` parameters to an object node: name/value pairs for a set or a
// filter (`pairs`), names for a get (nodes of the kind `listFlags` selects);
// for any other operation the names are read and passed over. Nothing is
// added to a NULL node.
void addParams(void *node, uint32_t mainOper, bool pairs, uint32_t listFlags, int count,
               Args &args);

// The one-object request with its parameters as a va_list.
int sendMainV(MsgHeader *message, const char *object, const char *mainOper, const char *subOper,
              int count, va_list args, uint32_t owner, Sender sender);

}  // namespace caltofal

// Shared pieces of the request functions.
#pragma once

#include <cstdarg>
#include <cstdint>

#include "caltofal.h"

namespace caltofal {

using Sender = int (*)(MsgHeader *);

// Where a request's parameters come from: variable arguments or an array
// (a NULL array holds none).
class Args {
 public:
  explicit Args(va_list *list) : list_(list) {}
  explicit Args(const char **array) : array_(array) {}
  bool missing() const { return list_ == nullptr && array_ == nullptr; }
  const char *next() {
    if (list_ != nullptr) return va_arg(*list_, const char *);
    return array_[index_++];
  }

 private:
  va_list *list_ = nullptr;
  const char **array_ = nullptr;
  int index_ = 0;
};

// Adds the object to the message's list as faltocal_FillObject does, then
// `count` parameters to it: name/value pairs for a set or a filter (`pairs`),
// names for a get (nodes of the kind `listFlags` selects); for any other
// operation the names are read and passed over (nothing is added without an
// object node). False when a node the request needs could not be allocated
// (the object of a get or of a set, or a parameter), or when there are
// parameters to read and no array to read them from: such a request is never
// sent.
bool addObject(MsgHeader *message, const char *object, uint32_t mainOper, uint32_t subOper,
               uint32_t listFlags, bool pairs, int count, Args &args);

// The one-object request with its parameters as a va_list.
int sendMainV(MsgHeader *message, const char *object, const char *mainOper, const char *subOper,
              int count, va_list args, uint32_t owner, Sender sender);

}  // namespace caltofal

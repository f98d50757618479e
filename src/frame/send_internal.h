// Shared pieces of the request functions.
#pragma once

#include <cstdarg>
#include <cstdint>

#include "caltofal.h"

namespace caltofal {

using Sender = int (*)(MsgHeader *);

// The one-object request with its parameters as a va_list.
int sendMainV(MsgHeader *message, const char *object, const char *mainOper, const char *subOper,
              int count, va_list args, uint32_t owner, Sender sender);

}  // namespace caltofal

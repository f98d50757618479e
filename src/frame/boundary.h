// The C boundary: an exported function whose work may allocate (a std::string,
// a std::vector) runs that work through guarded(), so that an exception, in
// practice std::bad_alloc, becomes the function's failure result instead of
// leaving into a C caller.
#pragma once

namespace caltofal {

template <typename Result, typename Body>
Result guarded(Result failure, Body &&body) noexcept {
  try {
    return body();
  } catch (...) {
    return failure;
  }
}

}  // namespace caltofal

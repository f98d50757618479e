// Failures on demand: a map of object paths to result codes, read from the
// environment (CALTOFAL_FAIL) or handed over by a host program. A request
// that names an object whose path equals an entry's path gets that code and
// is neither answered nor applied.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "request.h"

namespace calsim {

class FailureMap {
 public:
  // Parses "PATH=CODE[,PATH=CODE...]" (blanks around paths and codes are
  // ignored, a trailing dot of a path too; a later entry for the same path
  // wins). On error nothing is kept and `error` names the bad entry.
  bool parse(std::string_view text, std::string *error);

  // The first object of the request (in request order) that the map names:
  // its path without the trailing dot, and the code.
  std::optional<std::pair<std::string, int>> match(const Incoming &in) const;

  bool empty() const { return entries_.empty(); }

 private:
  std::map<std::string, int, std::less<>> entries_;  // path without trailing dot
};

}  // namespace calsim

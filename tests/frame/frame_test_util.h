// Shared bits of the frame tests.
#pragma once

#include <string>

// The console location tag "[ZINTU VOLA FAL] (unit:line, function) ".
inline std::string tag(const char *unit, int line, const char *function) {
  return std::string("[ZINTU VOLA FAL] (") + unit + ":" + std::to_string(line) + ", " + function +
         ") ";
}
// "\n\n\t[function : line] ".
inline std::string at(const char *function, int line) {
  return "\n\n\t[" + std::string(function) + " : " + std::to_string(line) + "] ";
}

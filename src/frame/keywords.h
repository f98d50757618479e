// Request keywords and their codes, as data.
#pragma once

#include <cstdint>
#include <cstring>

namespace caltofal {

// A keyword and its operation code (main or sub operation).
struct Keyword {
  const char *word;
  uint32_t code;
};

// Main operations of the one-object requests (exact, case-sensitive, in order).
inline constexpr Keyword kMainOps[] = {
    {"get", 1},     {"set", 2},      {"factoryreset", 32},
    {"backup", 64}, {"reboot", 128}, {"fwupgrade", 256},
};

// The filtered get: a get whose parameters are name/value filter pairs.
inline constexpr Keyword kFilterGet = {"get_filter_by_param_value", 1};

// Sub-operations.
inline constexpr Keyword kSubOps[] = {
    {"get", 8}, {"set", 4}, {"add", 1}, {"del", 2}, {"act", 16},
};

// Multi-object requests: main operation, the list flags of a new message,
// and whether the parameters are filter pairs.
struct MultiKeyword {
  const char *word;
  uint32_t code;
  uint32_t listFlags;
  bool filter;
};

inline constexpr MultiKeyword kMultiOps[] = {
    {"get", 1, 0x1004, false},
    {"get_def_val", 1, 0x44, false},
    {"get_leaf_node", 1, 0x1100, false},
    {kFilterGet.word, 1, 0x1100, true},
    {"set", 2, 4, false},
    {"set_only_db", 2, 4, false},
    {"factoryreset", 32, 4, false},
    {"backup", 64, 4, false},
    {"reboot", 128, 4, false},
    {"fwupgrade", 256, 4, false},
};

template <typename Row, std::size_t N>
const Row *findKeyword(const Row (&table)[N], const char *word) {
  if (word == nullptr) return nullptr;
  for (const Row &k : table) {
    if (std::strcmp(k.word, word) == 0) return &k;
  }
  return nullptr;
}

}  // namespace caltofal

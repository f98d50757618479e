// Request keywords and their codes, as data.
#pragma once

#include <cstdint>
#include <cstring>

namespace caltofal {

struct Keyword {
  const char *word;
  uint32_t main;  // main operation, or sub-operation for the sub table
  uint32_t listFlags;
  bool filter;
};

// Main operations of the one-object requests (exact, case-sensitive, in order).
inline constexpr Keyword kMainOps[] = {
    {"get", 1, 4, false},     {"set", 2, 4, false},      {"factoryreset", 32, 4, false},
    {"backup", 64, 4, false}, {"reboot", 128, 4, false}, {"fwupgrade", 256, 4, false},
};

// faltocal_SendMultiObj: the one-object table plus the filtered get.
inline constexpr Keyword kSendMultiOps[] = {
    {"get", 1, 0, false},
    {"set", 2, 0, false},
    {"factoryreset", 32, 0, false},
    {"backup", 64, 0, false},
    {"reboot", 128, 0, false},
    {"fwupgrade", 256, 0, false},
    {"get_filter_by_param_value", 1, 0, true},
};

// Multi-object requests: main operation and the list flags of a new message.
inline constexpr Keyword kMultiOps[] = {
    {"get", 1, 0x1004, false},
    {"get_def_val", 1, 0x44, false},
    {"get_leaf_node", 1, 0x1100, false},
    {"get_filter_by_param_value", 1, 0x1100, true},
    {"set", 2, 4, false},
    {"set_only_db", 2, 4, false},
    {"factoryreset", 32, 4, false},
    {"backup", 64, 4, false},
    {"reboot", 128, 4, false},
    {"fwupgrade", 256, 4, false},
};

// Sub-operations.
inline constexpr Keyword kSubOps[] = {
    {"get", 8, 0, false}, {"set", 4, 0, false},  {"add", 1, 0, false},
    {"del", 2, 0, false}, {"act", 16, 0, false},
};

template <std::size_t N>
const Keyword *findKeyword(const Keyword (&table)[N], const char *word) {
  if (word == nullptr) return nullptr;
  for (const Keyword &k : table) {
    if (std::strcmp(k.word, word) == 0) return &k;
  }
  return nullptr;
}

}  // namespace caltofal

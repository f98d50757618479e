// Pair tables: rows of two 127-byte cells (configuration value, UI value),
// walked by one function with an explicit row count; the first exact match
// wins and an unmatched text comes back as it is.
#pragma once

#include "caltofal.h"

namespace caltofal::wifi {

// Which cell of a row is compared with the text; the other is returned.
enum class Cell : int { kFapi = 0, kUi = 1 };

// The other cell of the first row whose `match` cell equals `text`, or
// `text` itself (also for a row count of zero or less, or no table).
const char *walkPairs(const char *text, const ConvPairRow *table, int rows, Cell match);

// The number of rows of a table, for the converters and the tool.
template <int N>
constexpr int rowsOf(const ConvPairRow (&)[N]) {
  return N;
}

}  // namespace caltofal::wifi

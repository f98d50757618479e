// The parameter table of the Wi-Fi snapshots and change detection: rows of
// (object, parameter, value), searched by exact (object, parameter) pairs.
#pragma once

#include <cstddef>

#include "caltofal.h"

namespace caltofal::wifi {

constexpr int kMaxRows = 100;  // the table's fixed capacity

// The rows in use: the count held to 0..100, whatever the caller stored.
int rowsIn(const WifiParamTable &table);

// The first row holding (object, parameter), compared over at most 256
// characters, the parameter first; -1 when none does.
int findRow(const WifiParamTable &table, const char *object, const char *parameter);

// strncmp(row.value, value, 256) == 0, never reading past the value field.
bool sameValue(const WifiParamRow &row, const char *value);

// The "1." and "2." console lines of a comparison: the row found (its old
// value) or the pair the table lacks (with the value sought).
void traceFound(int line, const char *function, int index, const WifiParamRow &row);
void traceMissing(int line, const char *function, const char *object, const char *parameter,
                  const char *value);

// "\n\n\t[function : line] faltocal_send_main_multi_obj is Failure\n"; -1.
int traceSendFailed(const char *function, int line);

}  // namespace caltofal::wifi

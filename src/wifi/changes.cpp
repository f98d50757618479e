// Change detection against a snapshot, and writing a table of changes back
// as one message: one set entry per distinct object.
#include <cstdio>
#include <cstring>

#include "caltofal.h"
#include "frame/message.h"
#include "frame/trace.h"
#include "help_objlist.h"
#include "wifi/params.h"

namespace caltofal::wifi {

int rowsIn(const WifiParamTable &table) {
  return table.count < 0 ? 0 : table.count > kMaxRows ? kMaxRows : table.count;
}

int findRow(const WifiParamTable &table, const char *object, const char *parameter) {
  const int rows = rowsIn(table);
  for (int i = 0; i < rows; ++i) {
    const WifiParamRow &row = table.rows[i];
    if (sameName(row.parameter, parameter) && sameName(row.object, object)) return i;
  }
  return -1;
}

bool sameValue(const WifiParamRow &row, const char *value) {
  const std::size_t n = strnlen(row.value, sizeof row.value);
  return std::strncmp(row.value, value, n) == 0 && (n == sizeof row.value || value[n] == '\0');
}

// Row texts are printed up to their fields' ends.
void traceFound(int line, const char *function, int index, const WifiParamRow &row) {
  traceTag(kUnitWifi, line, function);
  PRINT_TO_CONSOLE("\n\n  1.%s  <%d> [%.*s.%.*s=>%.*s]\n\n", function, index,
                   static_cast<int>(sizeof row.object), row.object,
                   static_cast<int>(sizeof row.parameter), row.parameter,
                   static_cast<int>(sizeof row.value), row.value);
}

void traceMissing(int line, const char *function, const char *object, const char *parameter,
                  const char *value) {
  traceTag(kUnitWifi, line, function);
  PRINT_TO_CONSOLE("\n\n  2.%s  <%s> [%s.%s=>%s]\n\n", function, "db don't have paramter", object,
                   parameter, value);
}

int traceSendFailed(const char *function, int line) {
  traceAt(function, line);
  PRINT_TO_CONSOLE("faltocal_send_main_multi_obj is Failure\n");
  return -1;
}

namespace {

constexpr std::size_t kSlot = 256;
constexpr int kPairSlots = 2 * kMaxRows;
constexpr int kObjectSlots = kMaxRows;

// Scratch slots of 256 bytes; texts copied in are cut to 126 characters.
class Slots {
 public:
  explicit Slots(int count)
      : data_(static_cast<char *>(
            help_calloc(static_cast<uint32_t>(count), kSlot, kUnitWifi, __LINE__))) {}
  Slots(const Slots &) = delete;
  Slots &operator=(const Slots &) = delete;
  ~Slots() { help_free(data_); }
  bool ok() const { return data_ != nullptr; }
  char *operator[](int i) { return data_ + static_cast<std::size_t>(i) * kSlot; }
  void put(int i, const char *text) { copyCut((*this)[i], 127, text); }

 private:
  char *data_;
};

int sendChanges(MsgHeader *header, const WifiParamTable &changes, int moreFollows, int onlyDb) {
  static constexpr char kFunction[] = "faltocal_fromDB";
  Slots pairs(kPairSlots);
  if (!pairs.ok()) return -1;
  Slots objects(kObjectSlots);
  if (!objects.ok()) return -1;

  const int rows = rowsIn(changes);
  int distinct = 0;
  for (int i = 0; i < rows; ++i) {
    const char *object = changes.rows[i].object;
    bool seen = false;
    for (int k = 0; k < distinct && !seen; ++k) seen = sameName(objects[k], object);
    if (seen) continue;
    objects.put(distinct, object);
    PRINT_TO_CONSOLE("\n\n  %s:%d ==> change object %d:%s\n\n", kFunction, __LINE__, distinct,
                     objects[distinct]);
    ++distinct;
  }

  const char *params[kPairSlots];
  for (int s = 0; s < kPairSlots; ++s) params[s] = pairs[s];
  int rc = 0;
  for (int k = 0; k < distinct; ++k) {
    int n = 0;
    for (int i = 0; i < rows; ++i) {
      const WifiParamRow &row = changes.rows[i];
      if (!sameName(row.object, objects[k])) continue;
      pairs.put(2 * n, row.parameter);
      pairs.put(2 * n + 1, row.value);
      PRINT_TO_CONSOLE("\n\n  %s:%d ==> <%d> %s.%s=>%s\n\n", kFunction, __LINE__, n, objects[k],
                       pairs[2 * n], pairs[2 * n + 1]);
      ++n;
    }
    // Every object but the last is only queued; the last sends, unless the
    // caller adds more and sends the message itself.
    const bool queued = k + 1 < distinct || moreFollows != 0;
    char name[128];
    std::snprintf(name, sizeof name, "%s%s", objects[k], queued ? "&" : "");
    rc = faltocal_send_main_multi_obj_No_variable(header, name, onlyDb ? "set_only_db" : "set",
                                                  "set", n, params);
    if (rc == -1) return traceSendFailed(kFunction, __LINE__);
  }
  return rc;
}

}  // namespace
}  // namespace caltofal::wifi

using namespace caltofal;
using namespace caltofal::wifi;

extern "C" {

CALTOFAL_API int ComparOrSetParam(WifiParamTable *current, WifiParamTable *changes,
                                  const char *object, const char *parameter, const char *value,
                                  uint8_t force) noexcept {
  if (current == nullptr || object == nullptr || parameter == nullptr || value == nullptr) {
    return -1;
  }
  const int i = findRow(*current, object, parameter);
  if (i < 0) {
    traceMissing(__LINE__, "ComparOrSetParam", object, parameter, value);
  } else if (sameValue(current->rows[i], value) && force == 0) {
    return 0;
  } else {
    traceFound(__LINE__, "ComparOrSetParam", i, current->rows[i]);
  }
  return SetParam(changes, object, parameter, value);
}

CALTOFAL_API int CheckGetParam(WifiParamTable *table, const char *object, const char *parameter,
                               const char *value) noexcept {
  if (table == nullptr || object == nullptr || parameter == nullptr || value == nullptr) return -1;
  const int i = findRow(*table, object, parameter);
  if (i < 0) {
    traceMissing(__LINE__, "CheckGetParam", object, parameter, value);
    return -1;
  }
  if (sameValue(table->rows[i], value)) return 0;
  traceFound(__LINE__, "CheckGetParam", i, table->rows[i]);
  return 1;
}

CALTOFAL_API int CheckGetReqDbAndCurDb(WifiParamTable *requested, WifiParamTable *current,
                                       const char *object, const char *parameter,
                                       const char *value) noexcept {
  if (requested == nullptr || current == nullptr || object == nullptr || parameter == nullptr ||
      value == nullptr) {
    return -1;
  }
  const int rc = CheckGetParam(requested, object, parameter, value);
  return rc != -1 ? rc : CheckGetParam(current, object, parameter, value);
}

CALTOFAL_API int faltocal_fromDB(MsgHeader *header, WifiParamTable *changes, int moreFollows,
                                 int onlyDb) noexcept {
  if (header == nullptr || changes == nullptr) return -1;
  return sendChanges(header, *changes, moreFollows, onlyDb);
}

}  // extern "C"

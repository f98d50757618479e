// Shared pieces of the network getters: the requests they make, reading
// values out of an answer, the tests they apply to values, and bounded
// writes into the caller's records.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

#include "caltofal.h"
#include "frame/message.h"
#include "help_objlist.h"

namespace caltofal::net {

// ---- Requests (each releases what the message held before) ----------------

// Whole object: faltocal_send_main(msg, object, "get", "get", 0).
int getObject(Message &msg, const char *object);
// The same; a failure prints "\n\n\t[function : line] (code)" and `failure`.
int getObjectTraced(Message &msg, const char *object, const char *function, int line,
                    const char *failure);
// One named parameter of an object: faltocal_send_main(..., 1, name).
int getObjectParam(Message &msg, const char *object, const char *name);
// Unfiltered multi-object get: faltocal_SendMultiObj(1, 256, 2, ..., "get", "get", 0).
int getTree(Message &msg, const char *object);
// The instances of a table whose `param` begins with `value`:
// faltocal_SendMultiObj(1, 256, 2, ..., "get_filter_by_param_value", "get", 1, param, value).
int getFiltered(Message &msg, const char *table, const char *param, const char *value);

// ---- Reading an answer ------------------------------------------------------

// A parameter's value through the frame's lookup, which notes a missing
// parameter on the console; nullptr when the object has none.
const char *lookup(ObjList *obj, const char *name);
// The first parameter of that name in one object, found silently.
const char *paramIn(ObjList *obj, const char *name);
// The first value of `name` in any returned object, found silently.
const char *firstParam(const Message &msg, const char *name);
// The value of `name` in the last returned object that has it, through the
// frame's lookup.
const char *lastWithParam(const Message &msg, const char *name);
// visit(object, parameter) for every parameter of every returned object, in
// the order answered.
template <typename Visit>
void forEachParam(const Message &msg, Visit visit) {
  for (ObjList *obj : objectsOf(msg)) {
    for (ParamList *param : paramsOf(obj)) visit(obj, param);
  }
}

// Whether test(parameter) holds for some parameter of a returned object.
template <typename Test>
bool anyParam(const Message &msg, Test test) {
  for (ObjList *obj : objectsOf(msg)) {
    for (ParamList *param : paramsOf(obj)) {
      if (test(param)) return true;
    }
  }
  return false;
}

// ---- Value tests ------------------------------------------------------------

inline bool isEmpty(const char *value) {
  return value == nullptr || value[0] == '\0';
}
// strncmp(text, prefix, prefix.size()) == 0.
bool startsWith(const char *text, std::string_view prefix);
// The same, ignoring ASCII case.
bool startsWithNoCase(const char *text, std::string_view prefix);
inline bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}
// A switched-on flag: first character '1', or "true" in any case.
bool isOn(const char *value);
// Decimal number as atoi reads it (leading blanks, sign, digits; 0 when
// there are none), held to the int range.
int decimalOf(std::string_view text);
// The Origin of an IPv4 forwarding entry that names a WAN's gateway.
bool isGatewayOrigin(const char *origin);

// An object path made to end in exactly one '.', for comparing references.
class DottedPath {
 public:
  explicit DottedPath(const char *path);
  const char *c_str() const { return text_; }
  std::string_view view() const { return {text_, std::strlen(text_)}; }
  // A reference value equals this path once a missing trailing dot is added.
  bool matches(const char *reference) const;

 private:
  char text_[257] = {0};  // up to 255 path characters and the added dot
};

// ---- Record fields -----------------------------------------------------------

// How a parameter's value reaches its record field.
enum class Take {
  kText,           // strncpy over the field's width (no terminator when it fills it)
  kTextIfShorter,  // the characters of a value shorter than the field, no terminator
  kNumber,         // int32, decimal
  kNumberIfSet,    // int32, decimal, when the value is not empty
  kFlag,           // uint8, atob
  kSpecial,        // a rule of the page's own
};

// A parameter and the record field it fills.
struct RecordField {
  const char *param;
  std::size_t offset;
  std::size_t width;
  Take take;
};
#define CALTOFAL_FIELD(Record, param, member, take) \
  { param, offsetof(Record, member), sizeof(Record::member), take }

// Fields filled from the objects of one request, or of objects whose names
// contain `object`.
struct FieldGroup {
  std::string_view object;
  const RecordField *fields;
  std::size_t count;
  const RecordField *begin() const { return fields; }
  const RecordField *end() const { return fields + count; }
};
template <std::size_t N>
constexpr FieldGroup fieldGroup(std::string_view object, const RecordField (&fields)[N]) {
  return {object, fields, N};
}

// The value into the field of `record`, for every kind but kSpecial.
void putField(void *record, const RecordField &field, std::string_view value);
// Whether putField would store anything of the value: a copy of no
// characters stores nothing.
bool storesValue(const RecordField &field, std::string_view value);

// Every field of the group named by the parameter gets its value; special(field,
// value) handles the fields of kind kSpecial.
template <typename Special>
void putNamed(void *record, const FieldGroup &group, const ParamList *param, Special special) {
  for (const RecordField &f : group) {
    if (!sameName(param->sParamName, f.param)) continue;
    if (f.take == Take::kSpecial) {
      special(f, param->sParamValue);
    } else {
      putField(record, f, param->sParamValue);
    }
  }
}

// Whether putNamed would store anything of the parameter; stores(field, value)
// tells for the fields of kind kSpecial. A getter called without its record
// asks this where it would fill one, and refuses at the first value.
template <typename Stores>
bool storesNamed(const FieldGroup &group, const ParamList *param, Stores stores) {
  for (const RecordField &f : group) {
    if (!sameName(param->sParamName, f.param)) continue;
    if (f.take == Take::kSpecial ? stores(f, param->sParamValue)
                                 : storesValue(f, param->sParamValue)) {
      return true;
    }
  }
  return false;
}

// A field's text, never read past the field (it may hold no terminator).
template <std::size_t N>
std::string_view fieldText(const char (&field)[N]) {
  return std::string_view(field, strnlen(field, N));
}

// A field's text as a terminated string (cut to `out`'s width).
template <std::size_t M, std::size_t N>
void terminatedCopy(char (&out)[M], const char (&field)[N]) {
  std::string_view text = fieldText(field);
  std::size_t n = text.size() < M ? text.size() : M - 1;
  std::memcpy(out, text.data(), n);
  out[n] = '\0';
}

// A fixed word's characters without a terminator, into a zero-filled field.
template <std::size_t N>
void putWord(char (&field)[N], std::string_view word) {
  std::size_t n = word.size() < N ? word.size() : N - 1;
  std::memcpy(field, word.data(), n);
}

// A value whose length is at most the field's width, copied exactly,
// without a terminator; a longer one is left out.
template <std::size_t N>
void copyWhenFits(char (&field)[N], const char *value) {
  if (value == nullptr) return;
  std::size_t n = strnlen(value, N + 1);
  if (n <= N) std::memcpy(field, value, n);
}

// A field's text with a terminator, for printing: never read past the field.
template <std::size_t N>
class FieldString {
 public:
  explicit FieldString(const char (&field)[N]) {
    std::size_t n = strnlen(field, N);
    std::memcpy(text_, field, n);
    text_[n] = '\0';
  }
  const char *c_str() const { return text_; }

 private:
  char text_[N + 1];
};

// "interface.name" ("%s.%s"), cut to the 256-byte path buffer.
void subPath(char (&out)[256], const char *interface, const char *name);

// ---- Console -----------------------------------------------------------------

// "\n\n\t[function : line] (code)" followed by the message.
void traceFailure(const char *function, int line, int code, const char *message);

// ---- Shared steps ------------------------------------------------------------

// The default gateway of a WAN from its IPv4 forwarding entries (filtered by
// the interface path with its trailing dot): every entry with a gateway and a
// WAN origin is taken, the last one wins. Returns the request's code.
int readIpv4Gateway(Message &msg, const char *dottedInterface, char (&gateway)[16]);

}  // namespace caltofal::net

// The emulator's TR-181 store: an ordered list of objects, each with ordered
// (parameter, value) texts, indexed by path, together with the lines of the
// model text it was read from so that changes can be written back in place.
#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace calsim {

constexpr size_t kMaxValueLength = 1023;

// One line of the model text, without its line end.
struct Line {
  std::string text;
  const char *eol;  // "\n", "\r\n", or "" for a last line without one (literals)
};
using LineList = std::list<Line>;
using LineIt = LineList::iterator;

struct Param {
  std::string name;
  std::string value;
  LineIt line{};  // its `name = value` line (models with text only)
};

struct Object {
  std::string path;  // without trailing dot
  std::vector<Param> params;
  uint64_t order = 0;  // store position; larger is later
  LineIt header{};     // its `[path]` line (models with text only)
  LineIt last{};       // its section's last parameter line, or the header

  const Param *find(std::string_view name) const;
  Param *find(std::string_view name);
};

class Model {
 public:
  Model() = default;
  Model(const Model &) = delete;
  Model &operator=(const Model &) = delete;

  // A copy of the objects and values without the model text.
  std::unique_ptr<Model> copyValues() const;

  size_t size() const { return byPath_.size(); }
  const Object *find(std::string_view path) const;
  Object *find(std::string_view path);
  // The object at `path` (when it exists) and every object under it, in store order.
  std::vector<const Object *> subtree(std::string_view path) const;
  // The same, appended to `out`.
  void subtree(std::string_view path, std::vector<const Object *> *out) const;
  // Existing objects `table.N` (N decimal digits), in store order.
  std::vector<const Object *> instances(std::string_view table) const;
  // Largest N of the objects `table.N` (also of instances present only
  // through descendants), 0 when none.
  unsigned long maxInstance(std::string_view table) const;

  // Building from a model text: lines in order, objects in order.
  LineIt appendLine(std::string text, const char *eol);
  Object *appendObject(std::string path, LineIt header);  // nullptr when a duplicate
  // Moves `params` (their lines already appended) to the end of the object's.
  void appendParams(Object &obj, std::vector<Param> *params);
  // The 1-based number of a line of the text (counted: for messages only).
  int lineNumber(LineIt line);

  // Changes, kept in the model text too.
  void setValue(Param &param, std::string value);
  // Creates `path` as the next instance of `table`, with its section after
  // the table's last instance subtree (or the table's own section, or at the end).
  Object &addInstance(std::string_view table, const std::string &path,
                      const std::vector<std::pair<std::string, std::string>> &params);
  // Removes the object at `path` and everything under it; false when nothing was there.
  bool removeSubtree(std::string_view path);

  std::string text() const;

 private:
  uint64_t orderAfter(const Object *anchor);
  void renumber();
  void eraseSection(Object &obj);
  void eraseObject(const std::string &path);

  std::map<std::string, std::unique_ptr<Object>, std::less<>> byPath_;
  std::map<uint64_t, Object *> byOrder_;
  LineList lines_;
  bool hasText_ = true;
};

// Reads a model text; on failure `error` is "NAME:LINE: reason".
std::unique_ptr<Model> parseModel(std::string_view text, const std::string &name,
                                  std::string *error);

// Names and paths that a model text can hold.
bool isParamName(std::string_view name);
bool isObjectPath(std::string_view path);
// A value as it is written after `name = `: quoted when it has outer blanks
// or starts with '"'.
std::string renderValue(std::string_view value);
// A parameter line with its value replaced; indentation and `name = ` kept
// (a bare `name =` gets one blank before a new value; an empty value drops
// the trailing blanks).
std::string rewriteParamLine(const std::string &line, std::string_view value);

}  // namespace calsim

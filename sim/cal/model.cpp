// Store lookups and changes. Objects are indexed by path in a sorted map, so
// a subtree is one range of keys ("path." up to "path/"), and ordered by a
// sparse position key, so an object can be placed between two others.

#include "model.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace calsim {
namespace {

constexpr uint64_t kGap = uint64_t{1} << 20;

bool startsWith(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && text.compare(0, prefix.size(), prefix) == 0;
}

bool isNumber(std::string_view text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

unsigned long toNumber(std::string_view digits) {
  unsigned long n = 0;
  for (char c : digits) {
    unsigned long d = static_cast<unsigned long>(c - '0');
    if (n > (std::numeric_limits<unsigned long>::max() - d) / 10) {
      return std::numeric_limits<unsigned long>::max();
    }
    n = n * 10 + d;
  }
  return n;
}

bool isBlankLine(const std::string &text) {
  return text.find_first_not_of(" \t") == std::string::npos;
}

void sortByOrder(std::vector<const Object *> &objects, size_t from) {
  std::sort(objects.begin() + static_cast<std::ptrdiff_t>(from), objects.end(),
            [](const Object *a, const Object *b) { return a->order < b->order; });
}

std::string paramLine(const std::string &name, const std::string &value) {
  std::string rendered = renderValue(value);
  return rendered.empty() ? name + " =" : name + " = " + rendered;
}

}  // namespace

const Param *Object::find(std::string_view name) const {
  for (const Param &p : params) {
    if (p.name == name) return &p;
  }
  return nullptr;
}

Param *Object::find(std::string_view name) {
  return const_cast<Param *>(static_cast<const Object *>(this)->find(name));
}

std::unique_ptr<Model> Model::copyValues() const {
  auto copy = std::make_unique<Model>();
  copy->hasText_ = false;
  for (const auto &[path, obj] : byPath_) {
    auto c = std::make_unique<Object>();
    c->path = obj->path;
    c->order = obj->order;
    for (const Param &p : obj->params) c->params.push_back(Param{p.name, p.value, LineIt{}});
    copy->byOrder_.emplace(c->order, c.get());
    copy->byPath_.emplace(path, std::move(c));
  }
  return copy;
}

const Object *Model::find(std::string_view path) const {
  auto it = byPath_.find(path);
  return it == byPath_.end() ? nullptr : it->second.get();
}

Object *Model::find(std::string_view path) {
  auto it = byPath_.find(path);
  return it == byPath_.end() ? nullptr : it->second.get();
}

std::vector<const Object *> Model::subtree(std::string_view path) const {
  std::vector<const Object *> out;
  subtree(path, &out);
  return out;
}

void Model::subtree(std::string_view path, std::vector<const Object *> *out) const {
  if (const Object *self = find(path)) out->push_back(self);
  const size_t first = out->size();
  // "path." on the stack for any path a request can name.
  char shortPrefix[512];
  std::string longPrefix;
  std::string_view prefix;
  if (path.size() < sizeof shortPrefix) {
    std::memcpy(shortPrefix, path.data(), path.size());
    shortPrefix[path.size()] = '.';
    prefix = std::string_view(shortPrefix, path.size() + 1);
  } else {
    longPrefix = std::string(path) + ".";
    prefix = longPrefix;
  }
  for (auto it = byPath_.lower_bound(prefix); it != byPath_.end() && startsWith(it->first, prefix);
       ++it) {
    out->push_back(it->second.get());
  }
  sortByOrder(*out, first);
}

// Visits the children `table.SEG` of a table once each (SEG the first segment
// after the table). A child's subtree is stepped over key by key while it is
// small, else skipped with one jump past "table.SEG/".
template <typename Visit>
static void forEachChild(const std::map<std::string, std::unique_ptr<Object>, std::less<>> &index,
                         std::string_view table, Visit visit) {
  constexpr int kSteps = 8;
  std::string prefix = std::string(table) + ".";
  auto it = index.lower_bound(prefix);
  while (it != index.end() && startsWith(it->first, prefix)) {
    std::string_view rest = std::string_view(it->first).substr(prefix.size());
    std::string_view segment = rest.substr(0, rest.find('.'));
    visit(segment, segment.size() == rest.size() ? it->second.get() : nullptr);
    std::string_view child = std::string_view(it->first).substr(0, prefix.size() + segment.size());
    auto inChild = [&](const std::string &key) {
      return key.size() > child.size() && key[child.size()] == '.' && startsWith(key, child);
    };
    int steps = 0;
    for (++it; it != index.end() && inChild(it->first); ++it) {
      if (++steps == kSteps) {
        it = index.lower_bound(std::string(child) + "/");
        break;
      }
    }
  }
}

std::vector<const Object *> Model::instances(std::string_view table) const {
  std::vector<const Object *> out;
  forEachChild(byPath_, table, [&](std::string_view segment, const Object *obj) {
    if (obj != nullptr && isNumber(segment)) out.push_back(obj);
  });
  sortByOrder(out, 0);
  return out;
}

unsigned long Model::maxInstance(std::string_view table) const {
  unsigned long max = 0;
  forEachChild(byPath_, table, [&](std::string_view segment, const Object *) {
    if (isNumber(segment)) max = std::max(max, toNumber(segment));
  });
  return max;
}

LineIt Model::appendLine(std::string text, const char *eol) {
  return lines_.insert(lines_.end(), Line{std::move(text), eol});
}

Object *Model::appendObject(std::string path, LineIt header) {
  if (byPath_.count(path) != 0) return nullptr;
  auto obj = std::make_unique<Object>();
  obj->path = std::move(path);
  obj->order = orderAfter(nullptr);
  obj->header = obj->last = header;
  Object *raw = obj.get();
  byOrder_.emplace(raw->order, raw);
  byPath_.emplace(raw->path, std::move(obj));
  return raw;
}

void Model::appendParams(Object &obj, std::vector<Param> *params) {
  if (params->empty()) return;
  obj.params.reserve(obj.params.size() + params->size());
  for (Param &p : *params) obj.params.push_back(std::move(p));
  obj.last = obj.params.back().line;
}

int Model::lineNumber(LineIt line) {
  int number = 1;
  for (auto it = lines_.begin(); it != lines_.end() && it != line; ++it) ++number;
  return number;
}

void Model::setValue(Param &param, std::string value) {
  if (hasText_) param.line->text = rewriteParamLine(param.line->text, value);
  param.value = std::move(value);
}

// A position key directly after `anchor` (at the end when anchor is null).
uint64_t Model::orderAfter(const Object *anchor) {
  constexpr uint64_t kLimit = std::numeric_limits<uint64_t>::max() - kGap;
  if (anchor == nullptr) {
    if (byOrder_.empty()) return kGap;
    if (byOrder_.rbegin()->first >= kLimit) renumber();
    return byOrder_.rbegin()->first + kGap;
  }
  auto next = byOrder_.upper_bound(anchor->order);
  if (next == byOrder_.end()) {
    if (anchor->order >= kLimit) renumber();
    return anchor->order + kGap;
  }
  if (next->first - anchor->order < 2) {
    renumber();
    next = byOrder_.upper_bound(anchor->order);
  }
  return anchor->order + (next->first - anchor->order) / 2;
}

void Model::renumber() {
  std::map<uint64_t, Object *> fresh;
  uint64_t key = 0;
  for (auto &[order, obj] : byOrder_) {
    (void)order;
    key += kGap;
    obj->order = key;
    fresh.emplace(key, obj);
  }
  byOrder_.swap(fresh);
}

Object &Model::addInstance(std::string_view table, const std::string &path,
                           const std::vector<std::pair<std::string, std::string>> &params) {
  // The anchor: the latest object of any instance subtree, else the table.
  const Object *anchor = nullptr;
  std::string prefix = std::string(table) + ".";
  for (auto it = byPath_.lower_bound(prefix); it != byPath_.end() && startsWith(it->first, prefix);
       ++it) {
    std::string_view rest = std::string_view(it->first).substr(prefix.size());
    if (!isNumber(rest.substr(0, rest.find('.')))) continue;
    if (anchor == nullptr || it->second->order > anchor->order) anchor = it->second.get();
  }
  if (anchor == nullptr) anchor = find(table);

  auto obj = std::make_unique<Object>();
  obj->path = path;
  obj->order = orderAfter(anchor);
  if (hasText_) {
    LineIt pos = lines_.end();
    const char *eol = "\n";
    LineIt before = anchor != nullptr ? anchor->last
                                      : (lines_.empty() ? lines_.end() : std::prev(lines_.end()));
    if (before != lines_.end()) {
      if (before->eol[0] == '\0') before->eol = "\n";
      eol = before->eol;
      pos = std::next(before);
      lines_.insert(pos, Line{"", eol});
    }
    obj->header = obj->last = lines_.insert(pos, Line{"[" + path + "]", eol});
    for (const auto &[name, value] : params) {
      obj->last = lines_.insert(pos, Line{paramLine(name, value), eol});
      obj->params.push_back(Param{name, value, obj->last});
    }
  } else {
    for (const auto &[name, value] : params) obj->params.push_back(Param{name, value, LineIt{}});
  }
  Object &ref = *obj;
  byOrder_.emplace(ref.order, &ref);
  byPath_.emplace(ref.path, std::move(obj));
  return ref;
}

// Removes an object's section: its header through its last parameter line,
// and the blank line that separates it from what comes before.
void Model::eraseSection(Object &obj) {
  if (!hasText_) return;
  LineIt begin = obj.header;
  if (begin != lines_.begin() && isBlankLine(std::prev(begin)->text)) --begin;
  lines_.erase(begin, std::next(obj.last));
}

void Model::eraseObject(const std::string &path) {
  auto it = byPath_.find(path);
  if (it == byPath_.end()) return;
  byOrder_.erase(it->second->order);
  byPath_.erase(it);
}

bool Model::removeSubtree(std::string_view path) {
  std::vector<std::string> victims;
  for (const Object *obj : subtree(path)) victims.push_back(obj->path);
  for (const std::string &victim : victims) {
    eraseSection(*find(victim));
    eraseObject(victim);
  }
  return !victims.empty();
}

std::string Model::text() const {
  std::string out;
  for (const Line &line : lines_) {
    out += line.text;
    out += line.eol;
  }
  return out;
}

}  // namespace calsim

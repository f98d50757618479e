// Gets. The kind of a get follows from the list flags and the parameters:
//   0x100 with a parameter that carries a value    filter
//   0x1100 without values                          leaf get
//   0x40                                           defaults get
//   anything else (0x100 alone, 0x1004, ...)       plain get

#include <algorithm>

#include "request.h"

namespace calsim {
namespace {

enum class GetKind { Filter, Leaf, Defaults, Plain };

struct Answer {
  const Object *object;
  std::vector<const Param *> params;
};

GetKind kindOf(uint32_t flags, const Incoming &in) {
  bool anyValue = false;
  for (const InParam &p : in.params) anyValue = anyValue || !p.value.empty();
  if ((flags & SOPT_LEAFNODE) && anyValue) return GetKind::Filter;
  if ((flags & (SOPT_LEAFNODE | SOPT_TREE)) == (SOPT_LEAFNODE | SOPT_TREE)) return GetKind::Leaf;
  if (flags & SOPT_DEFVAL) return GetKind::Defaults;
  return GetKind::Plain;
}

// The named parameters, first occurrence of each, without empty names.
std::vector<std::string_view> namesOf(Incoming::Params params) {
  std::vector<std::string_view> names;
  for (const InParam &p : params) {
    if (!p.name.empty() && std::find(names.begin(), names.end(), p.name) == names.end()) {
      names.push_back(p.name);
    }
  }
  return names;
}

// An answer with all parameters, or with those of `names` it has (in the
// order asked); false when names were given and it has none of them.
bool select(const Object *obj, const std::vector<std::string_view> &names, Answer *answer) {
  answer->object = obj;
  answer->params.clear();
  if (names.empty()) {
    answer->params.reserve(obj->params.size());
    for (const Param &p : obj->params) answer->params.push_back(&p);
    return true;
  }
  for (std::string_view name : names) {
    if (const Param *p = obj->find(name)) answer->params.push_back(p);
  }
  return !answer->params.empty();
}

// Filter: every filter parameter's value begins with the filter's value
// (case-sensitive, over the filter value's length); a missing one fails.
bool matches(const Object *instance, Incoming::Params filter) {
  for (const InParam &f : filter) {
    if (f.name.empty()) continue;
    const Param *p = instance->find(f.name);
    if (p == nullptr || p->value.compare(0, f.value.size(), f.value) != 0) return false;
  }
  return true;
}

void addSubtree(const Model &model, const Object *top, std::vector<Answer> *answers) {
  for (const Object *obj : model.subtree(top->path)) {
    Answer a;
    select(obj, {}, &a);
    answers->push_back(std::move(a));
  }
}

// Answers one request object; false when nothing at all was found for it.
bool answerOne(GetKind kind, const Model &live, const Model &defaults, std::string_view name,
               Incoming::Params params, std::vector<Answer> *answers) {
  std::string_view path = withoutDot(name);
  std::vector<std::string_view> names = namesOf(params);
  Answer a;
  switch (kind) {
    case GetKind::Filter: {
      bool found = false;
      for (const Object *instance : live.instances(path)) {
        if (!matches(instance, params)) continue;
        found = true;
        addSubtree(live, instance, answers);
      }
      return found;
    }
    case GetKind::Leaf: {
      const Object *obj = live.find(path);
      if (obj == nullptr) return false;
      if (select(obj, names, &a)) answers->push_back(std::move(a));
      return true;
    }
    case GetKind::Defaults:
    case GetKind::Plain: {
      std::vector<const Object *> objects =
          (kind == GetKind::Defaults ? defaults : live).subtree(path);
      for (const Object *obj : objects) {
        if (select(obj, names, &a)) answers->push_back(a);
      }
      return !objects.empty();
    }
  }
  return false;
}

std::string pathList(const Incoming &in) {
  std::string out;
  for (const InObject &r : in.objects) {
    if (!out.empty()) out += ", ";
    out += withoutDot(r.name);
  }
  return out;
}

}  // namespace

int runGet(const Model &live, const Model &defaults, MsgHeader *msg, const Incoming &in,
           std::string *error) {
  if (in.objects.empty()) {
    *error = "the request names no object";
    return -1;
  }
  GetKind kind = kindOf(msg->unListFlags, in);
  std::vector<Answer> answers;
  bool found = false;
  for (const InObject &r : in.objects) {
    found = answerOne(kind, live, defaults, r.name, in.paramsOf(r), &answers) || found;
  }
  if (!found) {
    if (kind == GetKind::Filter) {
      *error = "no instance matches the filter under " + pathList(in);
      return CAL_ERR_NO_MATCH;
    }
    *error = "no object at " + pathList(in);
    return CAL_ERR_NO_OBJECT;
  }

  help_emptyObjList(msg);  // `in` saw these nodes: it is not read from here on
  auto *head = static_cast<ObjList *>(msg->pObjList);
  for (const Answer &a : answers) {
    ObjList *node = help_addObjList(head, a.object->path.c_str(), 0, 0, 0, 0);
    if (node == nullptr) {
      *error = "out of memory";
      return -1;
    }
    for (const Param *p : a.params) {
      if (help_addParamList(node, p->name.c_str(), 0, p->value.c_str(), 0) == nullptr) {
        *error = "out of memory";
        return -1;
      }
    }
  }
  return 0;
}

}  // namespace calsim

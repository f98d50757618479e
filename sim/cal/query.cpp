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

GetKind kindOf(uint32_t flags, const Incoming &in) {
  bool anyValue = false;
  for (const InParam &p : in.params) anyValue = anyValue || !p.value.empty();
  if ((flags & SOPT_LEAFNODE) && anyValue) return GetKind::Filter;
  if ((flags & (SOPT_LEAFNODE | SOPT_TREE)) == (SOPT_LEAFNODE | SOPT_TREE)) return GetKind::Leaf;
  if (flags & SOPT_DEFVAL) return GetKind::Defaults;
  return GetKind::Plain;
}

// The named parameters, first occurrence of each, without empty names.
void namesOf(Incoming::Params params, std::vector<std::string_view> *names) {
  names->clear();
  for (const InParam &p : params) {
    if (!p.name.empty() && std::find(names->begin(), names->end(), p.name) == names->end()) {
      names->push_back(p.name);
    }
  }
}

// Answers an object with all its parameters (no names) or with those of
// `names` it has, in the order asked; false when names were given and it has
// none of them.
bool select(const Object *obj, const std::vector<std::string_view> *names, GetScratch *work) {
  const size_t before = work->params.size();
  if (names == nullptr || names->empty()) {
    for (const Param &p : obj->params) work->params.push_back(&p);
  } else {
    for (std::string_view name : *names) {
      if (const Param *p = obj->find(name)) work->params.push_back(p);
    }
    if (work->params.size() == before) return false;
  }
  work->answers.emplace_back(obj, work->params.size());
  return true;
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

// Answers the objects of a subtree, each with the parameters `names` asks
// for (all without names); false when the subtree is empty.
bool answerSubtree(const Model &model, std::string_view path,
                   const std::vector<std::string_view> *names, GetScratch *work) {
  work->objects.clear();
  model.subtree(path, &work->objects);
  for (const Object *obj : work->objects) select(obj, names, work);
  return !work->objects.empty();
}

// Answers one request object; false when nothing at all was found for it.
bool answerOne(GetKind kind, const Model &live, const Model &defaults, std::string_view name,
               Incoming::Params params, GetScratch *work) {
  std::string_view path = withoutDot(name);
  switch (kind) {
    case GetKind::Filter: {
      bool found = false;
      for (const Object *instance : live.instances(path)) {
        if (!matches(instance, params)) continue;
        found = true;
        answerSubtree(live, instance->path, nullptr, work);
      }
      return found;
    }
    case GetKind::Leaf: {
      const Object *obj = live.find(path);
      if (obj == nullptr) return false;
      namesOf(params, &work->names);
      select(obj, &work->names, work);
      return true;
    }
    case GetKind::Defaults:
    case GetKind::Plain:
      namesOf(params, &work->names);
      return answerSubtree(kind == GetKind::Defaults ? defaults : live, path, &work->names, work);
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
           GetScratch *work, std::string *error) {
  if (in.objects.empty()) {
    *error = "the request names no object";
    return -1;
  }
  GetKind kind = kindOf(msg->unListFlags, in);
  work->answers.clear();
  work->params.clear();
  bool found = false;
  for (const InObject &r : in.objects) {
    found = answerOne(kind, live, defaults, r.name, in.paramsOf(r), work) || found;
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
  size_t from = 0;
  for (const auto &[object, end] : work->answers) {
    ObjList *node = help_addObjList(head, object->path.c_str(), 0, 0, 0, 0);
    if (node == nullptr) {
      *error = "out of memory";
      return -1;
    }
    for (; from < end; ++from) {
      const Param *p = work->params[from];
      if (help_addParamList(node, p->name.c_str(), 0, p->value.c_str(), 0) == nullptr) {
        *error = "out of memory";
        return -1;
      }
    }
  }
  return 0;
}

}  // namespace calsim

// Sets. Each object's operation: 4 modify existing parameters, 1 add the next
// instance of a table, 2 delete an instance with its subtree. A message is
// all-or-nothing: every object is checked against the store first, then all
// are applied in request order.

#include <algorithm>
#include <cstring>

#include "request.h"

namespace calsim {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

bool isDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string_view lastSegment(std::string_view path) {
  size_t dot = path.rfind('.');
  return dot == std::string_view::npos ? path : path.substr(dot + 1);
}

// Values are kept on one model line each.
bool checkValues(std::string_view path, const Pairs &params, std::string *error) {
  for (const auto &[name, value] : params) {
    if (value.find_first_of("\r\n") != std::string::npos) {
      *error = "value of " + name + " for " + std::string(path) + " contains a line break";
      return false;
    }
  }
  return true;
}

int checkModify(const Model &model, std::string_view path, const Pairs &params,
                std::string *error) {
  const Object *obj = model.find(path);
  if (obj == nullptr) {
    *error = "no object at " + std::string(path);
    return CAL_ERR_NO_OBJECT;
  }
  for (const auto &[name, value] : params) {
    if (obj->find(name) == nullptr) {
      *error = std::string(path) + " has no parameter " + name;
      return CAL_ERR_NO_OBJECT;
    }
  }
  return checkValues(path, params, error) ? 0 : -1;
}

int checkAdd(std::string_view table, const Pairs &params, unsigned long number,
             std::string *error) {
  if (!isObjectPath(table) || isDigits(lastSegment(table))) {
    *error = "cannot add an instance to " + std::string(table) + ": not a table path";
    return -1;
  }
  std::string path = std::string(table) + "." + std::to_string(number);
  if (path.size() >= HELP_MAX_NAME_LEN) {
    *error = "new instance path " + path + " is longer than 255 characters";
    return -1;
  }
  for (const auto &[name, value] : params) {
    if (!isParamName(name)) {
      *error = "bad parameter name '" + name + "' for a new instance of " + std::string(table);
      return -1;
    }
  }
  return checkValues(table, params, error) ? 0 : -1;
}

int checkDelete(const Model &model, std::string_view path, std::string *error) {
  if (!isObjectPath(path) || !isDigits(lastSegment(path)) || path.find('.') == path.npos) {
    *error = "cannot delete " + std::string(path) + ": not a table instance";
    return -1;
  }
  if (model.subtree(path).empty()) {
    *error = "no object at " + std::string(path);
    return CAL_ERR_NO_OBJECT;
  }
  return 0;
}

// The parameters of a new instance: one per name, the last value given wins.
Pairs uniqueParams(const Pairs &params) {
  Pairs out;
  for (const auto &[name, value] : params) {
    auto it = out.begin();
    while (it != out.end() && it->first != name) ++it;
    if (it == out.end()) {
      out.emplace_back(name, value);
    } else {
      it->second = value;
    }
  }
  return out;
}

// An object's parameters as owned texts (sets are rare and keep what they apply).
Pairs pairsOf(const Incoming &in, const InObject &r) {
  Pairs out;
  out.reserve(r.count);
  for (const InParam &p : in.paramsOf(r)) out.emplace_back(p.name, p.value);
  return out;
}

std::string journalLine(const char *verb, std::string_view path, const Pairs &params) {
  std::string line = std::string(verb) + " " + std::string(path);
  for (const auto &[name, value] : params) line += " " + name + "=" + value;
  return line;
}

}  // namespace

int runSet(Model &model, const Incoming &in, std::vector<std::string> *journal,
           std::string *error) {
  if (in.objects.empty()) {
    *error = "the request names no object";
    return -1;
  }
  // Instance numbers that adds of this message will take, per table.
  std::vector<std::pair<std::string, unsigned long>> nextNumber;
  std::vector<Pairs> params;
  params.reserve(in.objects.size());
  for (const InObject &r : in.objects) params.push_back(pairsOf(in, r));
  for (size_t i = 0; i < in.objects.size(); ++i) {
    const InObject &r = in.objects[i];
    std::string_view path = withoutDot(r.name);
    int rc;
    switch (r.objOper) {
      case OBJOPT_MODIFY:
        rc = checkModify(model, path, params[i], error);
        break;
      case OBJOPT_ADD: {
        auto it = nextNumber.begin();
        while (it != nextNumber.end() && it->first != path) ++it;
        if (it == nextNumber.end()) {
          it = nextNumber.emplace(nextNumber.end(), std::string(path), model.maxInstance(path));
        }
        rc = checkAdd(path, params[i], ++it->second, error);
        break;
      }
      case OBJOPT_DEL:
        rc = checkDelete(model, path, error);
        break;
      default:
        *error = "unsupported object operation " + std::to_string(r.objOper) + " for " +
                 std::string(path) + " (1 add, 2 del, 4 set)";
        rc = -1;
    }
    if (rc != 0) return rc;
  }

  for (size_t i = 0; i < in.objects.size(); ++i) {
    const InObject &r = in.objects[i];
    // The name as sent: an add below renames its own node, not this one.
    const std::string path(withoutDot(r.name));
    if (r.objOper == OBJOPT_MODIFY) {
      // An object deleted (or re-created) earlier in this message keeps what it has.
      if (Object *obj = model.find(path)) {
        for (const auto &[name, value] : params[i]) {
          if (Param *param = obj->find(name)) model.setValue(*param, value);
        }
      }
      journal->push_back(journalLine("set", path, params[i]));
    } else if (r.objOper == OBJOPT_ADD) {
      std::string added = path + "." + std::to_string(model.maxInstance(path) + 1);
      Pairs unique = uniqueParams(params[i]);
      model.addInstance(path, added, unique);
      ObjList *node = r.node;
      size_t n = std::min(added.size(), sizeof node->sObjName - 1);
      memcpy(node->sObjName, added.data(), n);
      node->sObjName[n] = '\0';
      journal->push_back(journalLine("add", added, unique));
    } else {
      model.removeSubtree(path);
      journal->push_back(journalLine("del", path, {}));
    }
  }
  return 0;
}

}  // namespace calsim

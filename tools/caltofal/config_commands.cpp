// Commands on configuration objects: get, set, host lookup, the apply journal
// and the reset of the working copy.
#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <regex>
#include <utility>

#include "caltofal.h"
#include "commands.h"
#include "failure.h"
#include "help_objlist.h"
#include "output.h"
#include "request.h"

namespace cli {

namespace {

constexpr std::size_t kMaxPathLength = HELP_MAX_NAME_LEN - 1;
constexpr std::size_t kMaxNameLength = HELP_MAX_NAME_LEN - 1;
constexpr std::size_t kMaxValueLength = HELP_MAX_VALUE_LEN - 1;

// Objects are shown as answers name them: without a trailing dot.
std::string shownPath(const std::string &path) {
  return !path.empty() && path.back() == '.' ? path.substr(0, path.size() - 1) : path;
}

}  // namespace

std::string objectPathProblem(const std::string &path) {
  if (path.empty()) return "must not be empty";
  if (path.size() > kMaxPathLength) {
    return "longer than " + std::to_string(kMaxPathLength) + " characters";
  }
  if (path.find('&') != std::string::npos) return "cannot hold '&'";
  if (strcasecmp(path.c_str(), "query") == 0) return "'query' is not an object path";
  return {};
}

std::string paramNameProblem(const std::string &name) {
  if (name.empty()) return "must not be empty";
  if (name.size() > kMaxNameLength) {
    return "longer than " + std::to_string(kMaxNameLength) + " characters";
  }
  return {};
}

std::string assignmentProblem(const std::string &assignment) {
  std::size_t eq = assignment.find('=');
  if (eq == std::string::npos) return "no '=' in '" + assignment + "'";
  if (eq == 0) return "no name before '=' in '" + assignment + "'";
  if (eq > kMaxNameLength) {
    return "name longer than " + std::to_string(kMaxNameLength) + " characters";
  }
  if (assignment.size() - eq - 1 > kMaxValueLength) {
    return "value of " + assignment.substr(0, eq) + " longer than " +
           std::to_string(kMaxValueLength) + " characters";
  }
  return {};
}

std::string interfaceProblem(const std::string &name) {
  static const std::regex kName("[A-Za-z0-9][A-Za-z0-9._-]{0,14}");
  if (std::regex_match(name, kName)) return {};
  return "'" + name +
         "' is no interface name (a letter or digit, then up to 14 letters, digits, '.', '_' "
         "or '-')";
}

std::string notEmptyProblem(const std::string &text) {
  return text.empty() ? "must not be empty" : std::string();
}

int runGet(const Options &options, const std::string &path, const std::vector<std::string> &names) {
  std::vector<const char *> args;
  for (const std::string &name : names) args.push_back(name.c_str());
  Request request;
  int rc = faltocal_send_main_multi_obj_No_variable(request.get(), path.c_str(), "get", "get",
                                                    static_cast<int>(args.size()), args.data());
  if (rc != 0) return reportFailure("cannot get " + path, rc, path);
  std::vector<ObjectValues> objects = request.answer();

  if (options.json) {
    writeJson(std::cout, objectsJson(objects));
  } else {
    writeObjects(std::cout, objects);
  }
  int result = kOk;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string &name = names[i];
    if (std::find(names.begin(), names.begin() + static_cast<long>(i), name) !=
        names.begin() + static_cast<long>(i)) {
      continue;  // reported once
    }
    bool found = std::any_of(objects.begin(), objects.end(), [&](const ObjectValues &object) {
      return std::any_of(object.params.begin(), object.params.end(),
                         [&](const auto &param) { return param.first == name; });
    });
    if (!found) result = reportError("no parameter " + name + " at or under " + path);
  }
  return result;
}

int runSet(const Options &options, const std::string &path,
           const std::vector<std::string> &assignments, bool dbOnly) {
  ObjectValues written{shownPath(path), {}};
  for (const std::string &assignment : assignments) {
    std::size_t eq = assignment.find('=');  // there is one: NAME=VALUE was checked
    written.params.emplace_back(assignment.substr(0, eq), assignment.substr(eq + 1));
  }
  std::vector<const char *> args;
  for (const auto &[name, value] : written.params) {
    args.push_back(name.c_str());
    args.push_back(value.c_str());
  }
  int count = static_cast<int>(written.params.size());

  Request request;
  int rc = 0;
  if (!dbOnly) {
    rc = faltocal_send_main_multi_obj_No_variable(request.get(), path.c_str(), "set", "set", count,
                                                  args.data());
  } else {
    // A store-only set that starts a message would be applied; queue the
    // object first and send the collected message as a store-only query.
    std::string queued = path + "&";
    rc = faltocal_send_main_multi_obj_No_variable(request.get(), queued.c_str(), "set_only_db",
                                                  "set", count, args.data());
    if (rc == 0) {
      rc = faltocal_send_main_multi_obj_No_variable(request.get(), "query", "set_only_db", "set", 0,
                                                    nullptr);
    }
  }
  if (rc != 0) return reportFailure("cannot set " + path, rc, path);

  if (options.json) {
    Json params = Json::object();
    for (const auto &[name, value] : written.params) params[name] = value;
    writeJson(std::cout,
              Json{{"object", written.name}, {"parameters", params}, {"applied", !dbOnly}});
  } else {
    writeObjects(std::cout, {written});
    std::cout << (dbOnly ? "stored only\n" : "applied\n");
  }
  return kOk;
}

int runHost(const Options &options, const std::string &address) {
  int instance = GetDeviceID(address.c_str());
  if (instance <= 0) return reportNotFound("no host with address " + address);
  if (options.json) {
    writeJson(std::cout, Json{{"address", address},
                              {"instance", instance},
                              {"object", "Device.Hosts.Host." + std::to_string(instance)}});
  } else {
    std::cout << instance << '\n';
  }
  return kOk;
}

int runJournal(const Options &options, const ModelFile &model) {
  std::string path = journalPathOf(model.path);
  std::vector<std::string> lines;
  std::ifstream in(path, std::ios::binary);
  if (!in.is_open()) {
    if (errno != ENOENT) return reportError("cannot read the journal " + path);
  } else {
    std::string line;
    while (std::getline(in, line)) lines.push_back(line);
    if (in.bad()) return reportError("cannot read the journal " + path);
  }
  if (options.json) {
    Json entries = Json::array();
    for (const std::string &line : lines) entries.push_back(line);
    writeJson(std::cout, Json{{"journal", path}, {"entries", entries}});
  } else if (lines.empty()) {
    std::cout << "the journal is empty\n";
  } else {
    for (const std::string &line : lines) std::cout << printable(line) << '\n';
  }
  return kOk;
}

int runReset(const Options &options) {
  if (!options.model.empty()) {
    throw UsageError(
        "reset starts the working copy over; it never removes a model named with "
        "--model");
  }
  std::string path = workingCopyPath();
  if (path.empty()) return reportError("no home directory: nothing to reset");
  bool removed = false;
  for (const std::string &file : {path, journalPathOf(path)}) {
    if (unlink(file.c_str()) == 0) {
      removed = true;
    } else if (errno != ENOENT) {
      return reportError("cannot remove " + file + ": " + errnoText(errno));
    }
  }
  if (options.json) {
    writeJson(std::cout, Json{{"workingCopy", path}, {"removed", removed}});
  } else if (removed) {
    std::cout << "removed " << printable(path) << "; the next command starts from the sample\n";
  } else {
    std::cout << "nothing to reset: no working copy at " << printable(path) << '\n';
  }
  return kOk;
}

}  // namespace cli

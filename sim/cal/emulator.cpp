#include "emulator.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "sample_path.h"

namespace calsim {
namespace {

constexpr size_t kMaxLoggedRequests = 10000;

const char *entryName(Entry entry) {
  switch (entry) {
    case Entry::Get:
      return "get";
    case Entry::Set:
      return "set";
    case Entry::SetToDb:
      return "setToDb";
  }
  return "";
}

}  // namespace

// CALTOFAL_FAIL and CALTOFAL_MODEL as getenv finds them (the first of each),
// in one pass over the environment: every request reads both.
Emulator::Settings Emulator::settings() {
  Settings found;
  for (char **entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    const char *e = *entry;
    if (e[0] != 'C' || std::strncmp(e, "CALTOFAL_", 9) != 0) continue;
    if (found.fail == nullptr && std::strncmp(e + 9, "FAIL=", 5) == 0) {
      found.fail = e + 14;
    } else if (found.model == nullptr && std::strncmp(e + 9, "MODEL=", 6) == 0) {
      found.model = e + 15;
    }
  }
  return found;
}

namespace {

std::string hex(uint32_t value) {
  char buf[16];
  snprintf(buf, sizeof buf, "0x%x", static_cast<unsigned>(value));
  return buf;
}

}  // namespace

Emulator &Emulator::instance() {
  // Never destroyed: hosts may still call in while the process exits.
  static Emulator *emulator = new Emulator;
  return *emulator;
}

int Emulator::request(Entry entry, MsgHeader *msg, std::string *error) {
  std::lock_guard<std::mutex> lock(mutex_);
  readMessage(msg, &incoming_);
  log(entry, msg, incoming_);  // as sent: an add renames its node
  return serve(entry, msg, incoming_, error);
}

void Emulator::log(Entry entry, const MsgHeader *msg, const Incoming &in) {
  Logged logged;
  if (requests_.size() >= kMaxLoggedRequests) {
    logged = std::move(requests_.front());
    requests_.pop_front();
  }
  Request &header = logged.header;
  header = Request{};
  header.entry = entryName(entry);
  if (msg != nullptr) {
    header.hasMessage = true;
    header.mainOper = msg->unMainOper;
    header.listFlags = msg->unListFlags;
    header.owner = msg->unOwner;
    header.init = msg->unInit;
    header.reserved = msg->unReserved;
    header.hasList = msg->pObjList != nullptr;
  }
  size_t textSize = 0;
  for (const InObject &object : in.objects) textSize += object.name.size();
  for (const InParam &param : in.params) textSize += param.name.size() + param.value.size();
  logged.texts.clear();
  logged.texts.reserve(textSize);
  logged.shape.clear();
  logged.shape.reserve(3 * in.objects.size() + 2 * in.params.size());
  for (const InObject &object : in.objects) {
    logged.shape.push_back(object.objOper);
    logged.shape.push_back(static_cast<uint32_t>(object.name.size()));
    logged.shape.push_back(static_cast<uint32_t>(object.count));
    logged.texts += object.name;
    for (const InParam &param : in.paramsOf(object)) {
      logged.shape.push_back(static_cast<uint32_t>(param.name.size()));
      logged.shape.push_back(static_cast<uint32_t>(param.value.size()));
      logged.texts += param.name;
      logged.texts += param.value;
    }
  }
  requests_.push_back(std::move(logged));
}

Request Emulator::unpack(const Logged &logged) {
  Request request = logged.header;
  size_t at = 0;
  auto text = [&](uint32_t size) {
    std::string out = logged.texts.substr(at, size);
    at += size;
    return out;
  };
  for (size_t i = 0; i + 2 < logged.shape.size();) {
    RequestObject object;
    object.objOper = logged.shape[i];
    object.name = text(logged.shape[i + 1]);
    const uint32_t count = logged.shape[i + 2];
    i += 3;
    for (uint32_t p = 0; p < count && i + 1 < logged.shape.size(); ++p, i += 2) {
      std::string name = text(logged.shape[i]);
      object.params.emplace_back(std::move(name), text(logged.shape[i + 1]));
    }
    request.objects.push_back(std::move(object));
  }
  return request;
}

int Emulator::serve(Entry entry, MsgHeader *msg, const Incoming &in, std::string *error) {
  if (injectSkip_ > 0) {
    --injectSkip_;
  } else if (injectCount_ > 0) {
    --injectCount_;
    *error = "injected failure " + std::to_string(injectCode_);
    return injectCode_;
  }
  const Settings named = settings();
  if (int code = failureOnDemand(in, named.fail, error); code != 0) return code;
  if (!ensureLoaded(named.model, error)) return -1;
  if (msg == nullptr) {
    *error = "no message";
    return -1;
  }
  if (msg->pObjList == nullptr) {
    *error = "the message has no object list";
    return -1;
  }
  uint32_t wanted = entry == Entry::Get ? MOPT_GET : MOPT_SET;
  if (msg->unMainOper != wanted) {
    *error = std::string(entry == Entry::Get ? "a get" : "a set") + " needs main operation " +
             std::to_string(wanted) + ", not " + std::to_string(msg->unMainOper);
    return -1;
  }
  if (!(msg->unListFlags & SOPT_OBJVALUE_MASK)) {
    *error = "only value lists are served; list flags " + hex(msg->unListFlags) +
             " select attribute nodes";
    return -1;
  }
  // Until the first set the model is as loaded: it answers defaults gets too.
  if (entry == Entry::Get) {
    return runGet(*live_, defaults_ ? *defaults_ : *live_, msg, in, &getWork_, error);
  }
  return set(entry, in, error);
}

int Emulator::set(Entry entry, const Incoming &in, std::string *error) {
  std::vector<std::string> applied;
  if (!defaults_) defaults_ = live_->copyValues();  // the model as loaded, kept from now on
  int rc = runSet(*live_, in, &applied, error);
  if (rc != 0) return rc;
  if (fileBacked_) {
    std::string writeError;
    if (!replaceFile(source_, live_->text(), &writeError)) {
      // The file is as it was: take the store back from it.
      std::string reloadError;
      loadFromFile(source_, true, &reloadError);
      *error = "nothing changed: " + writeError;
      return -1;
    }
    stamp_ = stampOf(source_);
  }
  if (entry != Entry::Set) return 0;
  if (!fileBacked_) {
    memoryJournal_.insert(memoryJournal_.end(), applied.begin(), applied.end());
    return 0;
  }
  std::string lines;
  for (const std::string &line : applied) lines += line + "\n";
  std::string journalError;
  if (!appendFile(source_ + ".journal", lines, &journalError)) {
    *error = "the change is stored, but the journal is not: " + journalError;
    return -1;
  }
  return 0;
}

int Emulator::failureOnDemand(const Incoming &in, const char *text, std::string *error) {
  if (text == nullptr) text = "";
  if (failText_ != text) {
    failText_ = text;
    failError_.clear();
    if (!failMap_.parse(failText_, &failError_)) failMap_ = FailureMap();
  }
  if (!failError_.empty()) {
    *error = "CALTOFAL_FAIL refused: " + failError_;
    return -1;
  }
  auto hit = failMap_.match(in);
  if (!hit) return 0;
  *error = hit->first + " fails on demand with " + std::to_string(hit->second) + " (CALTOFAL_FAIL)";
  return hit->second;
}

bool Emulator::ensureLoaded(const char *named, std::string *error) {
  if (pinned_ && !fileBacked_) {
    if (live_) return true;
    *error = loadError_;
    return false;
  }
  std::string_view path = pinned_            ? std::string_view(source_)
                          : named != nullptr ? std::string_view(named)
                                             : std::string_view();
  // Without a named model the bundled sample is served read-only: changes
  // stay in this process and the sample file is never written.
  const bool sample = path.empty();
  if (sample) path = sampleModelPath();
  if (path == source_ && (live_ || !loadError_.empty()) && stampOf(source_) == stamp_ &&
      fileBacked_ == !sample) {
    if (live_) return true;
    *error = loadError_;
    return false;
  }
  if (sample) memoryJournal_.clear();
  bool ok = loadFromFile(std::string(path), false, error);
  if (sample) fileBacked_ = false;
  return ok;
}

bool Emulator::loadFromFile(const std::string &path, bool keepDefaults, std::string *error) {
  source_ = path;
  fileBacked_ = true;
  stamp_ = stampOf(path);
  std::string text;
  std::unique_ptr<Model> model;
  if (readFile(path, &text, error)) model = parseModel(text, path, error);
  if (!model) {
    live_.reset();
    defaults_.reset();
    loadError_ = *error;
    return false;
  }
  live_ = std::move(model);
  if (!keepDefaults) defaults_.reset();  // taken at the first set
  loadError_.clear();
  return true;
}

void Emulator::resetModel() {
  pinned_ = false;
  fileBacked_ = false;
  source_.clear();
  stamp_ = FileStamp{};
  loadError_.clear();
  live_.reset();
  defaults_.reset();
  memoryJournal_.clear();
}

bool Emulator::loadString(const std::string &text, const std::string &name, std::string *error) {
  std::lock_guard<std::mutex> lock(mutex_);
  resetModel();
  pinned_ = true;
  source_ = name;
  std::string reason;
  live_ = parseModel(text, name, &reason);
  if (!live_) {
    loadError_ = reason;
    if (error) *error = reason;
    return false;
  }
  return true;
}

bool Emulator::loadFile(const std::string &path, std::string *error) {
  std::lock_guard<std::mutex> lock(mutex_);
  resetModel();
  pinned_ = true;
  std::string reason;
  bool ok = loadFromFile(path, false, &reason);
  if (!ok && error) *error = reason;
  return ok;
}

void Emulator::injectFailure(int code, int count, int skip) {
  std::lock_guard<std::mutex> lock(mutex_);
  injectCode_ = code;
  injectCount_ = count > 0 ? count : 0;
  injectSkip_ = skip > 0 && injectCount_ > 0 ? skip : 0;
}

std::vector<Request> Emulator::requests() {
  std::lock_guard<std::mutex> lock(mutex_);
  std::vector<Request> out;
  out.reserve(requests_.size());
  for (const Logged &logged : requests_) out.push_back(unpack(logged));
  return out;
}

void Emulator::clearRequests() {
  std::lock_guard<std::mutex> lock(mutex_);
  requests_.clear();
}

std::vector<std::string> Emulator::journal() {
  std::lock_guard<std::mutex> lock(mutex_);
  std::string ignored;
  ensureLoaded(settings().model, &ignored);
  if (fileBacked_) return readLines(source_ + ".journal");
  return memoryJournal_;
}

std::optional<std::string> Emulator::value(const std::string &path, const std::string &param) {
  std::lock_guard<std::mutex> lock(mutex_);
  std::string ignored;
  if (!ensureLoaded(settings().model, &ignored)) return std::nullopt;
  const Object *obj = live_->find(withoutDot(path));
  const Param *p = obj != nullptr ? obj->find(param) : nullptr;
  if (p == nullptr) return std::nullopt;
  return p->value;
}

void Emulator::reset() {
  std::lock_guard<std::mutex> lock(mutex_);
  resetModel();
  requests_.clear();
  injectCode_ = 0;
  injectCount_ = 0;
  injectSkip_ = 0;
}

}  // namespace calsim

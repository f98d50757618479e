// The entry points of libcal.so and the test interface.

#include <new>

#pragma GCC visibility push(default)
#include "libcal.h"
#pragma GCC visibility pop

#include "calsim.h"
#include "emulator.h"
#include "failmap.h"

namespace {

// In the static TLS block: the library is loaded with the program.
__attribute__((tls_model("initial-exec"))) thread_local std::string t_lastError;

int serve(calsim::Entry entry, MsgHeader *msg) noexcept {
  std::string error;
  int rc;
  try {
    rc = calsim::Emulator::instance().request(entry, msg, &error);
  } catch (const std::bad_alloc &) {
    rc = -1;
    error = "out of memory";
  } catch (const std::exception &e) {
    rc = -1;
    error = e.what();
  }
  try {
    if (rc != 0 && error.empty()) error = "failed with code " + std::to_string(rc);
    t_lastError = rc == 0 ? std::string() : std::move(error);
  } catch (...) {
    t_lastError.clear();
  }
  return rc;
}

}  // namespace

extern "C" {

int cal_getValue(MsgHeader *msg) {
  return serve(calsim::Entry::Get, msg);
}
int cal_setValue(MsgHeader *msg) {
  return serve(calsim::Entry::Set, msg);
}
int cal_setValueToDb(MsgHeader *msg) {
  return serve(calsim::Entry::SetToDb, msg);
}

const char *calsim_lastError(void) {
  return t_lastError.c_str();
}

const char *calsim_failureMapProblem(const char *map) {
  static thread_local std::string problem;
  try {
    problem.clear();
    calsim::FailureMap parsed;
    parsed.parse(map != nullptr ? map : "", &problem);
  } catch (...) {
    problem = "out of memory";
  }
  return problem.c_str();
}

}  // extern "C"

namespace calsim {

bool loadModelString(const std::string &text, const std::string &name, std::string *error) {
  return Emulator::instance().loadString(text, name, error);
}

bool loadModelFile(const std::string &path, std::string *error) {
  return Emulator::instance().loadFile(path, error);
}

void injectFailure(int code, int count, int skip) {
  Emulator::instance().injectFailure(code, count, skip);
}

std::vector<Request> requests() {
  return Emulator::instance().requests();
}

void clearRequests() {
  Emulator::instance().clearRequests();
}

std::vector<std::string> journal() {
  return Emulator::instance().journal();
}

std::optional<std::string> value(const std::string &path, const std::string &param) {
  return Emulator::instance().value(path, param);
}

void reset() {
  Emulator::instance().reset();
}

}  // namespace calsim

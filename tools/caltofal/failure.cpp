#include "failure.h"

#include <dlfcn.h>

#include <cstring>
#include <iostream>

#include "libcal.h"
#include "output.h"

namespace cli {

std::string platformLastError() {
  using LastErrorFn = const char *(*)();
  // Looked up at run time: the emulator has it, a device's platform does not.
  void *symbol = dlsym(RTLD_DEFAULT, "calsim_lastError");
  if (symbol == nullptr) return {};
  const char *text = reinterpret_cast<LastErrorFn>(symbol)();
  return text != nullptr ? std::string(text) : std::string();
}

std::string failureReason(int code, std::string_view path) {
  std::string text = platformLastError();
  return text.empty() ? codeReason(code, path) : text;
}

std::string codeReason(int code, std::string_view path) {
  switch (code) {
    case CAL_ERR_NO_OBJECT:
      return "no such object: " + std::string(path);
    case CAL_ERR_NO_MATCH:
      return "no matching instance";
    default:
      return "request failed (code " + std::to_string(code) + ")";
  }
}

int reportFailure(std::string_view what, int code, std::string_view path) {
  return reportError(std::string(what) + ": " + failureReason(code, path));
}

int reportNotFound(std::string_view what) {
  std::string text = platformLastError();
  return reportError(text.empty() ? std::string(what) : std::string(what) + ": " + text);
}

std::string errnoText(int code) {
  char buf[256] = {};
  // The GNU strerror_r returns the text, which may or may not live in buf.
  return std::string(strerror_r(code, buf, sizeof buf));
}

int reportError(std::string_view message) {
  std::cout.flush();
  std::cerr << "caltofal: " << printable(message) << '\n';
  return kFailed;
}

}  // namespace cli

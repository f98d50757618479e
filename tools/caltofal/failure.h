// Exit codes and the reporting of failed library calls.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace cli {

enum Exit : int {
  kOk = 0,
  kFailed = 1,  // a call into the library failed
  kUsage = 2,   // unknown command, missing or bad argument
};

// A bad argument found after parsing; main prints it with the command's
// usage line and exits with kUsage.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The emulator's text for the calling thread's last failure; empty when the
// platform keeps no such text (on a device) or has none to tell.
std::string platformLastError();

// Why a call with result `code` failed: the platform's own text when it has
// one, else a translation of the code (`path` names the object asked for).
std::string failureReason(int code, std::string_view path = {});

// The translation of a result code alone: -202 an absent object (`path`),
// -208 no matching instance, anything else the number.
std::string codeReason(int code, std::string_view path = {});

// Prints "caltofal: WHAT: REASON" on standard error and returns kFailed.
int reportFailure(std::string_view what, int code, std::string_view path = {});

// For getters whose -1 also means "nothing found": prints "caltofal: WHAT",
// followed by the platform's text when it has one; returns kFailed.
int reportNotFound(std::string_view what);

// The text of an errno value.
std::string errnoText(int code);

// Prints "caltofal: MESSAGE" on standard error and returns kFailed.
int reportError(std::string_view message);

}  // namespace cli

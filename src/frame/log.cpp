// Frame log and console trace.
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string_view>

#include "caltofal.h"
#include "frame/os.h"
#include "frame/trace.h"
#include "help_objlist.h"

CALTOFAL_API uint16_t unfaltocalLogType = 1;
CALTOFAL_API uint16_t unfaltocalLogLevel = 5;

namespace caltofal {
namespace {

constexpr std::size_t kLineMax = 1024;

struct Level {
  unsigned priority;
  const char *label;
  const char *colour;
};
constexpr Level kLevels[] = {
    {2, "CRITICAL", "\033[31m"},
    {3, "ERROR", "\033[38;5;214m"},
};

const Level *levelOf(unsigned priority) {
  for (const Level &level : kLevels) {
    if (level.priority == priority) return &level;
  }
  return nullptr;
}

void colourPrint(const Level &level, const char *message) {
  char when[50] = "";
  std::tm now{};
  if (os::localNow(&now)) {
    if (std::strftime(when, sizeof when, "%d-%m-%Y %T", &now) == 0) when[0] = '\0';
  }
  char prefix[256];
  std::snprintf(prefix, sizeof prefix, "%s<%s> [%s] ", level.colour, when, level.label);
  os::stdoutWrite(prefix, std::strlen(prefix));
  os::stdoutWrite(message, std::strlen(message));
  static constexpr char kReset[] = "\033[0m";
  os::stdoutWrite(kReset, sizeof kReset - 1);
}

// A console line put together piece by piece, cut where vsnprintf into a
// kLineMax buffer would cut it. Trace lines go out on every page; this
// costs a tenth of formatting them.
class ConsoleLine {
 public:
  ConsoleLine &operator<<(std::string_view text) {
    const std::size_t n = std::min(text.size(), kLineMax - 1 - size_);
    std::memcpy(text_ + size_, text.data(), n);
    size_ += n;
    return *this;
  }
  ConsoleLine &operator<<(const char *text) {
    return *this << std::string_view(text != nullptr ? text : "(null)");
  }
  ConsoleLine &operator<<(int number) {
    char digits[12];  // "-2147483648" at most
    char *const end = digits + sizeof digits;
    char *at = end;
    const unsigned bits = static_cast<unsigned>(number);
    unsigned magnitude = number < 0 ? 0U - bits : bits;
    do {
      *--at = static_cast<char>('0' + magnitude % 10);
      magnitude /= 10;
    } while (magnitude != 0);
    if (number < 0) *--at = '-';
    return *this << std::string_view(at, static_cast<std::size_t>(end - at));
  }
  int write() const { return os::consoleWrite(text_, size_); }

 private:
  char text_[kLineMax];
  std::size_t size_ = 0;
};

}  // namespace

void traceTag(const char *unit, int line, const char *function) {
  (ConsoleLine() << "[ZINTU VOLA FAL] (" << unit << ":" << line << ", " << function << ") ")
      .write();
}

void traceAt(const char *function, int line) {
  (ConsoleLine() << "\n\n\t[" << function << " : " << line << "] ").write();
}

void traceAtCode(const char *function, int line, int code) {
  (ConsoleLine() << "\n\n\t[" << function << " : " << line << "] (" << code << ")").write();
}

}  // namespace caltofal

using namespace caltofal;

extern "C" void faltocal_logLine(unsigned prio, const char *fmt, ...) {
  if (unfaltocalLogLevel < prio || fmt == nullptr) return;
  char text[kLineMax];
  va_list args;
  va_start(args, fmt);
  int n = std::vsnprintf(text, sizeof text, fmt, args);
  va_end(args);
  if (n < 0) return;
  if (unfaltocalLogType & 1) os::syslogLine(static_cast<int>(prio), text);
  if (unfaltocalLogType & 2) {
    if (const Level *level = levelOf(prio)) colourPrint(*level, text);
  }
}

extern "C" CALTOFAL_API int PRINT_TO_CONSOLE(const char *format, ...) noexcept {
  // A format without conversions is its own text (cut as vsnprintf cuts it).
  if (format != nullptr && std::strchr(format, '%') == nullptr) {
    return os::consoleWrite(format, strnlen(format, kLineMax - 1));
  }
  char text[kLineMax] = "";
  if (format != nullptr) {
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
  }
  return os::consoleWrite(text, std::strlen(text));
}

// Text helpers and reading a command's first output line.
#include <cctype>
#include <cstdio>
#include <cstring>

#include "caltofal.h"
#include "frame/os.h"
#include "frame/trace.h"

using namespace caltofal;

namespace {

constexpr int kWork = 128;  // work buffers of remove_rss_tag and shell output

void reverseInPlace(char *text) {
  std::size_t n = std::strlen(text);
  if (n < 2) return;
  for (std::size_t i = 0, j = n - 1; i < j; ++i, --j) {
    char c = text[i];
    text[i] = text[j];
    text[j] = c;
  }
}

bool isBlankButNewline(char c) {
  return c != '\n' && std::isspace(static_cast<unsigned char>(c)) != 0;
}

}  // namespace

extern "C" {

CALTOFAL_API char *strupr(char *text) noexcept {
  if (text == nullptr) return nullptr;
  for (char *p = text; *p != '\0'; ++p) {
    if (*p >= 'a' && *p <= 'z') *p = static_cast<char>(*p - 32);
  }
  return text;
}

CALTOFAL_API void reverse_string(char *text) noexcept {
  if (text != nullptr) reverseInPlace(text);
}

CALTOFAL_API char *trim_start_space(char *text) noexcept {
  if (text == nullptr) return nullptr;
  while (isBlankButNewline(*text)) ++text;
  return text;
}

CALTOFAL_API char *remove_rss_tag(char *text, const char *openTag) noexcept {
  if (text == nullptr || openTag == nullptr) return text;
  const char *element = trim_start_space(text);
  std::size_t tagLength = std::strlen(openTag);
  char body[kWork];
  std::snprintf(body, sizeof body, "%s",
                std::strlen(element) >= tagLength ? element + tagLength : "");
  reverseInPlace(body);
  const char *close = std::strstr(body, "/<");
  if (close == nullptr) return text;  // no closing tag: left as it is
  char payload[kWork];
  std::snprintf(payload, sizeof payload, "%s", close + 2);
  reverseInPlace(payload);
  std::snprintf(text, kWork, "%s", payload);
  return text;
}

CALTOFAL_API char *get_from_shell(const char *command, char *output) noexcept {
  static constexpr char kFunction[] = "get_from_shell";
  if (command == nullptr || command[0] == '\0' || output == nullptr) {
    traceTag(kUnitMesh, 95, kFunction);
    PRINT_TO_CONSOLE("[ERROR] Received arg CMD [%s] or return buffer is NULL \n", orNull(command));
    if (output != nullptr) std::memset(output, 0, kWork);
  } else if (os::Stream *pipe = os::openCommand(command); pipe == nullptr) {
    traceTag(kUnitMesh, 102, kFunction);
    PRINT_TO_CONSOLE("[ERROR] popen failed with [%s] \n", command);
    std::memset(output, 0, kWork);
  } else if (os::readLine(pipe, output, kWork) == nullptr) {
    traceTag(kUnitMesh, 110, kFunction);
    PRINT_TO_CONSOLE("[ERROR] fgets function failed. \n");
    os::close(pipe);
    std::memset(output, 0, kWork);
  } else {
    os::close(pipe);
    std::size_t n = std::strlen(output);
    if (n > 0 && std::isspace(static_cast<unsigned char>(output[n - 1]))) output[n - 1] = '\0';
    return output;
  }
  traceTag(kUnitMesh, 134, kFunction);
  PRINT_TO_CONSOLE("[ERROR] Received CMD [%s] returns [%s] \n", orNull(command), orNull(output));
  return output;
}

}  // extern "C"

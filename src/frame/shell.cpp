#include "frame/shell.h"

#include <cstring>

namespace caltofal::shell {
namespace {

bool isAlnum(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

bool isPlain(char c) {
  return isAlnum(c) || std::strchr("._/:-", c) != nullptr;
}

}  // namespace

bool isInterfaceName(const char *name) {
  if (name == nullptr || !isAlnum(name[0])) return false;
  std::size_t length = 1;
  for (const char *p = name + 1; *p != '\0'; ++p, ++length) {
    if (length == 15 || !(isAlnum(*p) || *p == '.' || *p == '_' || *p == '-')) return false;
  }
  return true;
}

std::string word(std::string_view text) {
  bool plain = true;
  for (char c : text) plain = plain && c != '\0' && isPlain(c);
  if (plain) return std::string(text);
  std::string quoted = "'";
  for (char c : text) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}

}  // namespace caltofal::shell

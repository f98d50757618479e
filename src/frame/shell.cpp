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

std::string inSingleQuotes(std::string_view text) {
  std::string out;
  for (char c : text) {
    if (c == '\'') {
      out += "'\\''";
    } else {
      out += c;
    }
  }
  return out;
}

std::string jsonEscaped(std::string_view text) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string out;
  for (char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (byte < 0x20) {
      out += "\\u00";
      out += kHex[byte >> 4];
      out += kHex[byte & 0xf];
    } else {
      out += c;
    }
  }
  return out;
}

std::string word(std::string_view text) {
  bool plain = !text.empty();
  for (char c : text) plain = plain && isPlain(c);
  return plain ? std::string(text) : "'" + inSingleQuotes(text) + "'";
}

}  // namespace caltofal::shell

#include "failmap.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <map>

namespace calsim {
namespace {

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

// A whole decimal integer of the int range, not 0.
bool parseCode(std::string_view text, int *code) {
  std::string digits(text);
  if (digits.empty() || digits.find_first_of(" \t") != std::string::npos) return false;
  char *end = nullptr;
  errno = 0;
  long value = std::strtol(digits.c_str(), &end, 10);
  if (errno != 0 || end == digits.c_str() || *end != '\0' || value == 0 || value < INT_MIN ||
      value > INT_MAX) {
    return false;
  }
  *code = static_cast<int>(value);
  return true;
}

}  // namespace

bool FailureMap::parse(std::string_view text, std::string *error) {
  std::map<std::string, int, std::less<>> entries;
  if (trimmed(text).empty()) {
    entries_.clear();
    return true;
  }
  std::size_t number = 0;
  while (true) {
    ++number;
    std::size_t comma = text.find(',');
    std::string_view raw = text.substr(0, comma);
    std::string_view entry = trimmed(raw);
    auto shown = [&] { return "entry " + std::to_string(number) + " '" + std::string(raw) + "'"; };
    std::size_t eq = entry.find('=');
    if (entry.empty()) {
      *error = "entry " + std::to_string(number) + " is empty (want PATH=CODE)";
      return false;
    }
    if (eq == std::string_view::npos) {
      *error = shown() + " has no '=' (want PATH=CODE)";
      return false;
    }
    std::string_view path = withoutDot(trimmed(entry.substr(0, eq)));
    if (path.empty()) {
      *error = shown() + " names no object path";
      return false;
    }
    int code = 0;
    if (!parseCode(trimmed(entry.substr(eq + 1)), &code)) {
      *error = shown() + ": the code must be a non-zero integer";
      return false;
    }
    // A later entry for the same path wins; a long map costs log n an entry.
    if (auto it = entries.find(path); it != entries.end()) {
      it->second = code;
    } else {
      entries.emplace(std::string(path), code);
    }
    if (comma == std::string_view::npos) break;
    text.remove_prefix(comma + 1);
  }
  entries_ = std::move(entries);
  return true;
}

std::optional<std::pair<std::string, int>> FailureMap::match(const Incoming &in) const {
  if (entries_.empty()) return std::nullopt;
  for (const InObject &r : in.objects) {
    if (auto it = entries_.find(withoutDot(r.name)); it != entries_.end()) {
      return std::make_pair(it->first, it->second);
    }
  }
  return std::nullopt;
}

}  // namespace calsim

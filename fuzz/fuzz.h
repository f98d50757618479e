// Shared by the fuzz targets: the input as terminated heap copies, so that
// AddressSanitizer sees every byte read past a text's end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace fuzz {

// The input as a terminated text of exactly its own size (NULs included:
// the text ends at the first one).
inline std::unique_ptr<char[]> text(const uint8_t *data, std::size_t size) {
  std::unique_ptr<char[]> out(new char[size + 1]);
  std::memcpy(out.get(), data, size);
  out[size] = '\0';
  return out;
}

// Splits the input at its first NUL into two texts (the second may be empty).
inline std::pair<std::string, std::string> split(const uint8_t *data, std::size_t size) {
  std::string_view all(reinterpret_cast<const char *>(data), size);
  std::size_t at = all.find('\0');
  if (at == std::string_view::npos) return {std::string(all), std::string()};
  return {std::string(all.substr(0, at)), std::string(all.substr(at + 1))};
}

// Stops the run: a property the target checks does not hold.
[[noreturn]] inline void fail(const char *what) {
  std::fprintf(stderr, "fuzz property failed: %s\n", what);
  std::abort();
}

}  // namespace fuzz

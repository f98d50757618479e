// The JSON escaper of the scan request: the escaped text, put between
// quotes, parses back as exactly the input (texts end at their first NUL, as
// the C strings the library gets do), and holds no raw control character.
#include <nlohmann/json.hpp>

#include "frame/shell.h"
#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  const std::string input = fuzz::text(data, size).get();
  const std::string escaped = caltofal::shell::jsonEscaped(input);
  for (char c : escaped) {
    if (static_cast<unsigned char>(c) < 0x20) fuzz::fail("raw control character");
  }
  const auto parsed = nlohmann::json::parse("\"" + escaped + "\"", nullptr, false, false);
  if (parsed.is_discarded()) {
    // Only bytes that are not UTF-8 may keep it from parsing; they pass as they are.
    for (char c : input) {
      if (static_cast<unsigned char>(c) >= 0x80) return 0;
    }
    fuzz::fail("escaped text does not parse");
  }
  if (parsed.get<std::string>() != input) fuzz::fail("escaped text reads back differently");
  return 0;
}

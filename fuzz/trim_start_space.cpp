// trim_start_space: a pointer into the text past its leading blanks other
// than newlines.
#include <cctype>

#include "caltofal.h"
#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  auto text = fuzz::text(data, size);
  char *out = trim_start_space(text.get());
  if (out < text.get() || out > text.get() + std::strlen(text.get())) fuzz::fail("inside the text");
  for (char *p = text.get(); p < out; ++p) {
    if (*p == '\n' || !std::isspace(static_cast<unsigned char>(*p))) fuzz::fail("only blanks");
  }
  if (*out != '\n' && std::isspace(static_cast<unsigned char>(*out))) fuzz::fail("all blanks");
  return 0;
}

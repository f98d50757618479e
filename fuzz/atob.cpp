// atob: 1 for "1" and any case of "true", else 0.
#include <strings.h>

#include "caltofal.h"
#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  auto text = fuzz::text(data, size);
  const int expected = std::strcmp(text.get(), "1") == 0 || strcasecmp(text.get(), "true") == 0;
  if (atob(text.get()) != expected) fuzz::fail("1 or true");
  return 0;
}

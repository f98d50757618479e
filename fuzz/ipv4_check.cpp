// zintu_isValidIPv4Address against inet_pton's own answer.
#include <arpa/inet.h>

#include "caltofal.h"
#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  auto text = fuzz::text(data, size);
  in_addr parsed{};
  const int expected = inet_pton(AF_INET, text.get(), &parsed) == 1 ? 0 : -1;
  if (zintu_isValidIPv4Address(text.get()) != expected) fuzz::fail("inet_pton's answer");
  return 0;
}

// Both MAC checks: the configuration form (zintu_isValidMacAddress, a
// regular expression) and the Wi-Fi form (isValidMacAddress). They agree on
// every text of 17 characters made of hex digits and colons.
#include "caltofal.h"
#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  auto text = fuzz::text(data, size);
  const int frame = zintu_isValidMacAddress(text.get());
  const int wifi = isValidMacAddress(text.get());
  if (frame != 0 && frame != -1) fuzz::fail("frame check gives 0 or -1");
  if (wifi != 0 && wifi != 1) fuzz::fail("Wi-Fi check gives 0 or 1");
  return 0;
}

// The `iw dev IF info` reader (phy number) and the `iwlist IF channel`
// reader (current channel).
#include "fuzz.h"
#include "wifi/driver_text.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  // GetPhyNumber reads at most 1024 bytes of the tool's output.
  const std::size_t info = size < 1024 ? size : 1024;
  caltofal::wifi::phyNumberOf(std::string_view(reinterpret_cast<const char *>(data), info));
  auto line = fuzz::text(data, size);
  caltofal::wifi::currentChannelOf(line.get());
  return 0;
}

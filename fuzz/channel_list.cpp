// The channel listing reader (`iw phy PHY show_channel`): one line at a time,
// with DFS on or off and either radio, as GetChannelList reads them.
#include "fuzz.h"
#include "wifi/driver_text.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  const bool dfs = (data[0] & 1) != 0;
  const int radio = (data[0] & 2) != 0 ? 2 : 1;
  auto all = fuzz::text(data + 1, size - 1);
  // Lines as fgets gives them from a 128-byte buffer.
  char line[128];
  for (const char *p = all.get(); *p != '\0';) {
    std::size_t n = std::strcspn(p, "\n");
    if (p[n] == '\n') ++n;
    if (n > sizeof line - 1) n = sizeof line - 1;
    std::memcpy(line, p, n);
    line[n] = '\0';
    p += n;
    WifiChannelEntry entry{};
    if (caltofal::wifi::channelEntryOf(line, dfs, radio, &entry) && entry.bandwidths[0] != 20) {
      fuzz::fail("every channel allows 20 MHz");
    }
  }
  return 0;
}

// The peer-flow status reader: the driver's station lines to a station list.
// The first input byte chooses the MAC filter's length (0: no filter).
#include "fuzz.h"
#include "wifi/driver_text.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t filterLength = data[0] % 20;
  std::string filter;
  if (filterLength > 0 && size > filterLength) {
    filter.assign(reinterpret_cast<const char *>(data + 1), filterLength);
    filter = filter.c_str();
  }
  const std::size_t skip = filterLength > 0 && size > filterLength ? filterLength + 1 : 1;
  auto list = std::make_unique<WifiStaList>();
  const int n = caltofal::wifi::stationsOf(
      std::string_view(reinterpret_cast<const char *>(data + skip), size - skip),
      filterLength > 0 ? filter.c_str() : nullptr, list.get());
  if (n < 0 || n > 128 || static_cast<int>(list->count) != n) fuzz::fail("station count");
  return 0;
}

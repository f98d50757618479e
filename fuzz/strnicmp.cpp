// my_strnicmp: two texts (split at the input's first NUL) and a count from
// the first byte. Its answer is its own (the last differing position decides,
// texts both shorter than the count are equal), but always -1, 0 or 1, and
// for a positive count swapping the texts swaps the sign.
#include "caltofal.h"
#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  const int n = static_cast<int>(data[0] % 64) - 2;  // a few negative counts too
  auto [a, b] = fuzz::split(data + 1, size - 1);
  auto left = fuzz::text(reinterpret_cast<const uint8_t *>(a.c_str()), a.size());
  auto right = fuzz::text(reinterpret_cast<const uint8_t *>(b.c_str()), b.size());
  const int got = my_strnicmp(left.get(), right.get(), n);
  if (got < -1 || got > 1) fuzz::fail("-1, 0 or 1");
  if (n > 0 && my_strnicmp(right.get(), left.get(), n) != -got) fuzz::fail("antisymmetric");
  return 0;
}

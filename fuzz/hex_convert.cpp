// The hex converters: text to bytes into a buffer of exactly len/2 + 1 bytes,
// bytes to text into one of exactly 2n + 1; bytes -> hex -> bytes is the
// identity.
#include "caltofal.h"
#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  auto hex = fuzz::text(data, size);
  const std::size_t length = std::strlen(hex.get());
  auto bytes = std::make_unique<char[]>(length / 2 + 1);
  if (ConvHexDecToCharStr(hex.get(), bytes.get()) != 1) fuzz::fail("hex to bytes");

  const int count = static_cast<int>(size);
  auto text = std::make_unique<char[]>(2 * size + 1);
  if (ConvCharStrToHexDec(reinterpret_cast<const char *>(data), count, text.get()) != 1) {
    fuzz::fail("bytes to hex");
  }
  auto back = std::make_unique<char[]>(size + 1);
  ConvHexDecToCharStr(text.get(), back.get());
  if (std::memcmp(back.get(), data, size) != 0) fuzz::fail("bytes -> hex -> bytes");
  return 0;
}

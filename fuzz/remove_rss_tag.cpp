// remove_rss_tag: the element text and the opening tag, split at the first
// NUL of the input; the text lives in a buffer of exactly its own size.
#include "caltofal.h"
#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  auto [text, tag] = fuzz::split(data, size);
  auto buffer = std::make_unique<char[]>(text.size() + 1);
  std::memcpy(buffer.get(), text.c_str(), text.size() + 1);
  const std::size_t before = std::strlen(buffer.get());
  char *out = remove_rss_tag(buffer.get(), tag.c_str());
  if (out != buffer.get()) fuzz::fail("returns the text");
  if (std::strlen(out) > before) fuzz::fail("the text never grows");
  return 0;
}

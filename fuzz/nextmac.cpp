// The nextmac.conf reader: the file's text comes from the input, the
// interface name from the file's first line (cut to 15 characters).
#include "caltofal.h"
#include "fake_os.h"
#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  fakeos::reset();
  const std::string content(reinterpret_cast<const char *>(data), size);
  const std::string name = content.substr(0, content.find_first_of("\n>\0", 0, 3)).substr(0, 15);
  fakeos::setFile("/opt/lantiq/etc/nextmac.conf", content);
  auto mac = std::make_unique<char[]>(18);
  const int rc = zintu_scapi_getMacFromFile(name.c_str(), mac.get());
  if (rc != 0 && rc != -1) fuzz::fail("result is 0 or -1");
  if (rc == 0 && std::strlen(mac.get()) > 17) fuzz::fail("MAC cut at 17 characters");
  return 0;
}

// The CLI's argument handling: the input is split at NULs into arguments and
// handed to the tool's entry point, which must answer with a status (0, 1 or
// 2) and never crash. The tool runs over the fake OS seam and the emulator,
// on a scratch copy of the sample model (a --model of the input's own is
// dropped: the input chooses no file to write), with its state folder in a
// scratch directory and the device sandbox off.
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <vector>

#include "calsim.h"
#include "fake_os.h"
#include "fuzz.h"

int caltofal_cli_main(int argc, char **argv);

namespace {

std::string scratchModel() {
  static const std::string path = [] {
    char dir[] = "/tmp/caltofal-fuzz-cli-XXXXXX";
    if (mkdtemp(dir) == nullptr) fuzz::fail("scratch directory");
    setenv("XDG_STATE_HOME", dir, 1);
    setenv("HOME", dir, 1);
    setenv("CALTOFAL_SANDBOX", "off", 1);
    unsetenv("CALTOFAL_FAIL");
    return std::string(dir) + "/gateway.model";
  }();
  std::ifstream in(CALTOFAL_SAMPLE_MODEL, std::ios::binary);
  std::ofstream(path, std::ios::binary) << in.rdbuf();
  return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  std::vector<std::string> words = {"caltofal", "--model", scratchModel()};
  std::string_view rest(reinterpret_cast<const char *>(data), size);
  while (!rest.empty() && words.size() < 40) {
    const std::size_t end = rest.find('\0');
    const std::string word(rest.substr(0, end));
    if (word.rfind("--m", 0) != 0) words.push_back(word);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  std::vector<char *> argv;
  for (std::string &w : words) argv.push_back(w.data());
  argv.push_back(nullptr);
  fakeos::reset();
  fakeos::setCapture(false);
  calsim::reset();
  const int status = caltofal_cli_main(static_cast<int>(words.size()), argv.data());
  calsim::reset();
  if (status < 0 || status > 2) fuzz::fail("status 0, 1 or 2");
  return 0;
}

// The CLI's argument handling: the input is split at NULs into arguments and
// handed to the tool's entry point, which must answer with a status (0, 1 or
// 2) and never crash. The tool runs over the fake OS seam and the emulator,
// on a scratch copy of the sample model (a --model of the input's own is
// dropped: the input chooses no file to write), with its state folder in a
// scratch directory and the device sandbox off. Every input starts from the
// same state: the copy is renewed when a command changed it and the journal
// of earlier inputs is removed (a growing journal made every later `journal`
// command slower and the target's behaviour depend on input order).
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <vector>

#include "calsim.h"
#include "fake_os.h"
#include "fuzz.h"

int caltofal_cli_main(int argc, char **argv);

namespace {

struct Scratch {
  std::string model;
  std::string journal;
  std::string sample;
  struct stat written {};
};

// The scratch folder lives in memory when the host has /dev/shm, so renewing
// the model costs no disk writes.
Scratch &scratch() {
  static Scratch s = [] {
    Scratch made;
    char shm[] = "/dev/shm/caltofal-fuzz-cli-XXXXXX";
    char tmp[] = "/tmp/caltofal-fuzz-cli-XXXXXX";
    const char *dir = mkdtemp(shm);
    if (dir == nullptr) dir = mkdtemp(tmp);
    if (dir == nullptr) fuzz::fail("scratch directory");
    setenv("XDG_STATE_HOME", dir, 1);
    setenv("HOME", dir, 1);
    setenv("CALTOFAL_SANDBOX", "off", 1);
    unsetenv("CALTOFAL_FAIL");
    made.model = std::string(dir) + "/gateway.model";
    made.journal = made.model + ".journal";
    std::ifstream in(CALTOFAL_SAMPLE_MODEL, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    made.sample = text.str();
    return made;
  }();
  return s;
}

bool sameFile(const struct stat &a, const struct stat &b) {
  return a.st_ino == b.st_ino && a.st_size == b.st_size && a.st_mtim.tv_sec == b.st_mtim.tv_sec &&
         a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

// The scratch model as the sample has it, with no journal.
const std::string &freshModel() {
  Scratch &s = scratch();
  struct stat now {};
  if (stat(s.model.c_str(), &now) != 0 || !sameFile(now, s.written)) {
    std::ofstream(s.model, std::ios::binary | std::ios::trunc) << s.sample;
    if (stat(s.model.c_str(), &s.written) != 0) fuzz::fail("scratch model");
  }
  unlink(s.journal.c_str());
  return s.model;
}

// Descriptors open in this process (the listing's own one not counted).
int openDescriptors() {
  DIR *dir = opendir("/proc/self/fd");
  if (dir == nullptr) return -1;
  int count = 0;
  while (readdir(dir) != nullptr) ++count;
  closedir(dir);
  return count - 3;  // ".", ".." and the listing's own descriptor
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  std::vector<std::string> words = {"caltofal", "--model", freshModel()};
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
  // The tool may open what it keeps for the process (its /dev/null stream,
  // the log connection) the first time a command needs it; beyond those few,
  // a run that leaves a descriptor open leaks one per run.
  static int baseline = -1;
  const int status = caltofal_cli_main(static_cast<int>(words.size()), argv.data());
  calsim::reset();
  if (status < 0 || status > 2) fuzz::fail("status 0, 1 or 2");
  const int open = openDescriptors();
  if (baseline < 0) baseline = open;
  if (open > baseline + 4) fuzz::fail("runs leave descriptors open");
  return 0;
}

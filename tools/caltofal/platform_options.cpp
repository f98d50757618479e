#include "platform_options.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <streambuf>
#include <vector>

#include "failure.h"

namespace cli {

namespace {

// Buffered writes to one descriptor, whatever the C streams point at.
class DescriptorBuf : public std::streambuf {
 public:
  explicit DescriptorBuf(int fd) : fd_(fd) { setp(buffer_, buffer_ + sizeof buffer_); }

 protected:
  int_type overflow(int_type c) override {
    if (!flush()) return traits_type::eof();
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
      *pptr() = traits_type::to_char_type(c);
      pbump(1);
    }
    return traits_type::not_eof(c);
  }
  int sync() override { return flush() ? 0 : -1; }

 private:
  bool flush() {
    const char *data = pbase();
    std::size_t n = static_cast<std::size_t>(pptr() - pbase());
    setp(buffer_, buffer_ + sizeof buffer_);
    while (n > 0) {
      ssize_t written = ::write(fd_, data, n);
      if (written < 0 && errno == EINTR) continue;
      if (written <= 0) return false;
      data += written;
      n -= static_cast<std::size_t>(written);
    }
    return true;
  }
  int fd_;
  char buffer_[4096];
};

using ProblemFn = const char *(*)(const char *);

// The emulator's check of a failure map; nullptr on a platform without one.
ProblemFn failureMapCheck() {
  return reinterpret_cast<ProblemFn>(dlsym(RTLD_DEFAULT, "calsim_failureMapProblem"));
}

}  // namespace

void routeLibraryNotes(bool trace) {
  if (trace) return;
  // Never destroyed: the streams are flushed once more when the program ends.
  static DescriptorBuf *toStdout = new DescriptorBuf(STDOUT_FILENO);
  static DescriptorBuf *toStderr = new DescriptorBuf(STDERR_FILENO);
  std::cout.flush();
  std::cerr.flush();
  std::fflush(nullptr);
  std::cout.rdbuf(toStdout);
  std::cerr.rdbuf(toStderr);
  // The C library lets the standard streams be assigned: what the library
  // writes to stdout and stderr (its notes, survey lines it could not read,
  // its coloured log) now goes to /dev/null.
  // One stream for the process: the tool's entry point can run more than
  // once in a process (its tests), and each run would leave a descriptor.
  static FILE *nowhere = std::fopen("/dev/null", "we");
  if (nowhere != nullptr) {
    stdout = nowhere;
    stderr = nowhere;
  }
}

namespace {

// The launcher: beside the tool when installed, else the build's own.
std::string launcherPath() {
  std::error_code ignored;
  std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", ignored);
  std::filesystem::path beside = self.parent_path() / "caltofal-device";
  if (!self.empty() && access(beside.c_str(), X_OK) == 0) return beside;
  if (access(CALTOFAL_DEVICE_LAUNCHER, X_OK) == 0) return CALTOFAL_DEVICE_LAUNCHER;
  return {};
}

}  // namespace

std::string runOnDevice(int argc, char **argv, bool trace) {
  const char *inside = std::getenv("CALTOFAL_DEVICE");
  const char *sandbox = std::getenv("CALTOFAL_SANDBOX");
  if ((inside != nullptr && inside[0] != '\0') ||
      (sandbox != nullptr && std::string(sandbox) == "off") ||
      access("/proc/net/mtlk", F_OK) == 0) {
    return {};
  }
  if (geteuid() != 0) {
    return "this command needs the radio driver (/proc/net/mtlk); on a PC it runs in the device "
           "sandbox, which needs root: run it as root, or set CALTOFAL_SANDBOX=off to run it here "
           "without the driver";
  }
  const std::string launcher = launcherPath();
  if (launcher.empty()) return "the device sandbox caltofal-device is not beside caltofal";
  std::error_code ignored;
  const std::string self = std::filesystem::read_symlink("/proc/self/exe", ignored).string();
  std::vector<std::string> words = {launcher};
  if (trace) words.emplace_back("--console-to-stderr");
  words.emplace_back("--");
  words.push_back(self);
  for (int i = 1; i < argc; ++i) words.emplace_back(argv[i]);
  std::vector<char *> args;
  for (std::string &word : words) args.push_back(word.data());
  args.push_back(nullptr);
  std::cout.flush();
  execv(launcher.c_str(), args.data());
  return "cannot start the device sandbox " + launcher + ": " + errnoText(errno);
}

std::string applyFailures(const std::vector<std::string> &failures) {
  const char *fromEnvironment = std::getenv("CALTOFAL_FAIL");
  std::string map = fromEnvironment != nullptr ? fromEnvironment : "";
  if (failures.empty() && map.empty()) return {};
  ProblemFn check = failureMapCheck();
  if (check == nullptr) {
    std::string what = failures.empty() ? "CALTOFAL_FAIL" : "--fail";
    return what + " needs the emulator's libcal.so: this platform makes no failures on demand";
  }
  if (const char *problem = check(map.c_str()); problem[0] != '\0') {
    return "CALTOFAL_FAIL: " + std::string(problem);
  }
  for (const std::string &entry : failures) {
    if (const char *problem = check(entry.c_str()); problem[0] != '\0' || entry.empty()) {
      throw UsageError("--fail " + entry + ": " + (entry.empty() ? "want PATH=CODE" : problem));
    }
    if (!map.empty()) map += ',';
    map += entry;
  }
  if (setenv("CALTOFAL_FAIL", map.c_str(), 1) != 0) return "cannot set CALTOFAL_FAIL";
  return {};
}

}  // namespace cli

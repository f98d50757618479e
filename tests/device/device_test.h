// Shared by the sandbox tests: a scratch folder per test (skipped without
// root, which the sandbox needs), commands run through sh with their output
// captured, files read whole, texts quoted for sh.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace devicetest {

namespace fs = std::filesystem;

// Runs what follows as the unprivileged user nobody.
constexpr char kAsNobody[] = "setpriv --reuid=65534 --regid=65534 --clear-groups ";

inline std::string readFile(const fs::path &path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

// Single-quotes a text for /bin/sh.
inline std::string quoted(const std::string &text) {
  std::string out = "'";
  for (char c : text) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return out + "'";
}

struct Outcome {
  int status = -1;
  std::string out, err;
};

class DeviceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "the device sandbox needs root";
    char tmpl[] = "/tmp/device-test-XXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    dir_ = tmpl;
  }
  void TearDown() override {
    if (!dir_.empty()) fs::remove_all(dir_);
  }

  // Runs `command` with sh, HOME and the state folder in the scratch folder.
  Outcome shell(const std::string &command) {
    const int wstatus = std::system(
        ("HOME=" + dir_.string() + " XDG_STATE_HOME=" + (dir_ / "state").string() + " " + command +
         " >" + (dir_ / "out").string() + " 2>" + (dir_ / "err").string())
            .c_str());
    return {WIFEXITED(wstatus) ? WEXITSTATUS(wstatus) : -1, readFile(dir_ / "out"),
            readFile(dir_ / "err")};
  }
  // Runs `command` in the sandbox, the run folder kept in dir_/run for log().
  Outcome inSandbox(const std::string &command, const std::string &options = "") {
    fs::remove_all(dir_ / "run");
    return shell(std::string(CALTOFAL_DEVICE_LAUNCHER) + " " + options + " --run " +
                 (dir_ / "run").string() + " -- " + command);
  }
  std::string log(const std::string &name) { return readFile(dir_ / "run" / name); }

  fs::path dir_;
};

}  // namespace devicetest

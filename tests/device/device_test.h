// Shared by the sandbox tests: a scratch folder per test (skipped without
// root, which the sandbox needs), files read whole, texts quoted for sh.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace devicetest {

namespace fs = std::filesystem;

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

  fs::path dir_;
};

}  // namespace devicetest

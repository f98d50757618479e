// Test support for the network getters: models from this folder or inline
// text, a failure on the n-th request to the configuration layer, console
// comparison, and text renderings of records and requests.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "calsim.h"
#include "caltofal.h"
#include "fake_os.h"

namespace nettest {

std::string modelPath(const std::string &name);  // tests/network/models/NAME
std::string readFile(const std::string &path);   // "" when absent

// From now on the n-th get sent to the configuration layer (1-based)
// returns `code`; n = 0: none fails.
void failRequest(int n, int code);

// The console equals `expected`, where each '#' stands for a line number.
::testing::AssertionResult consoleIs(const std::string &expected);

// One line per request: "ENTRY owner=N flags=0xN OBJECT[ NAME=VALUE...]".
std::string requestLog();
// Every non-empty field of the record, one "name = value" line each.
std::string renderWan(const ZintuWanInfo &info);

class NetTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;  // also checks that every message was released
  void loadFile(const std::string &name);
  void loadText(const std::string &text);

 private:
  long liveBefore_ = 0;
};

inline ZintuWanInfo zeroWan() {
  ZintuWanInfo info;
  std::memset(&info, 0, sizeof info);
  return info;
}

template <std::size_t N>
std::string text(const char (&field)[N]) {
  return std::string(field, strnlen(field, N));
}

template <std::size_t N>
bool allBytes(const char (&field)[N], char byte) {
  for (char c : field) {
    if (c != byte) return false;
  }
  return true;
}

}  // namespace nettest

// Shared pieces of the Wi-Fi tests that run against the emulator.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "caltofal.h"

namespace wifitest {

std::string readFile(const std::string &path);
// "OBJECT PARAMETER=VALUE" per row in use.
std::vector<std::string> rowsOf(const WifiParamTable &table);
// The console with the line numbers of traces shown as '#'.
std::string console();
// "ENTRY flags=0xN OBJECT( NAME[=VALUE]... )..." per request.
std::vector<std::string> requestLog();

// wifi.model loaded; no message may be left behind.
class WifiTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

 private:
  long live_ = 0;
};

}  // namespace wifitest

// Shared pieces of the Wi-Fi tests: the emulator with wifi.model loaded,
// readers of tables, requests and the console, a shell that reads command
// words back, and a failing allocation on demand.
#pragma once

#include <string>
#include <vector>

#include "caltofal.h"
#include "emulator_test.h"

namespace wifitest {

using Lines = std::vector<std::string>;

// "OBJECT PARAMETER=VALUE" per row in use.
Lines rowsOf(const WifiParamTable &table);
// The console with the line numbers of traces shown as '#'.
std::string console();
// A trace line of the Wi-Fi unit as console() shows it.
std::string trace(const std::string &function, const std::string &text);
// "ENTRY flags=0xN OBJECT( NAME[=VALUE]... )..." per request.
Lines requestLog();
// What /bin/sh prints for the command line.
std::string shellOutput(const std::string &command);
// Makes the library's n-th help_calloc from now fail (0: none fails).
void failAllocation(int n);

// wifi.model loaded; no message may be left behind.
class WifiTest : public EmulatorTest {
 protected:
  void SetUp() override;
};

}  // namespace wifitest

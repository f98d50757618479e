// What the tool arranges around the library before a command runs: where
// the library's own notes go, and failures on demand in the emulator.
#pragma once

#include <string>
#include <vector>

namespace cli {

// The library writes notes for the device's log on standard error ("Get test
// failure" after a failed request) and standard output (survey lines it
// could not read). Unless `trace`, they go nowhere; the tool's own output
// (std::cout, std::cerr) and sanitizer reports still reach descriptors 1
// and 2.
void routeLibraryNotes(bool trace);

// Adds the --fail entries after those of CALTOFAL_FAIL and hands the whole
// map to the emulator through CALTOFAL_FAIL. A bad --fail entry throws
// UsageError; a bad CALTOFAL_FAIL or a platform without failure maps gives
// what is wrong (empty when all is fine).
std::string applyFailures(const std::vector<std::string> &failures);

// The shell-driven pages need the radio driver's files (/proc/net/mtlk). On
// a PC, where they are missing, the tool runs itself again in the device
// sandbox (caltofal-device) with the same arguments: this call then does not
// return. It returns "" to run here (on a device, inside the sandbox, or with
// CALTOFAL_SANDBOX=off), else why the command cannot run.
std::string runOnDevice(int argc, char **argv, bool trace);

}  // namespace cli

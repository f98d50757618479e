// The tool's commands. Each returns an exit code (failure.h); output goes
// to standard output, failures to standard error. Their arguments have
// passed the checks below.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "model_location.h"

namespace CLI {
class App;
}

namespace cli {

struct Options {
  bool json = false;
  bool showSecrets = false;
  bool trace = false;                 // the library's own notes on standard error too
  std::string model;                  // --model FILE, empty for the working copy
  std::vector<std::string> failures;  // --fail PATH=CODE...
};

// Argument checks for the parser, run before anything is touched: empty
// when the argument is fine, else what is wrong with it.
// An object path must be one the request frame sends as one object: not
// empty, at most 255 characters, without '&' (its queue mark) and not "query".
std::string objectPathProblem(const std::string &path);
std::string paramNameProblem(const std::string &name);         // not empty, at most 255
std::string assignmentProblem(const std::string &assignment);  // NAME=VALUE, as above
std::string notEmptyProblem(const std::string &text);
// The library runs no command for any other interface name.
std::string interfaceProblem(const std::string &name);

// Configuration objects.
int runGet(const Options &options, const std::string &path, const std::vector<std::string> &names);
int runSet(const Options &options, const std::string &path,
           const std::vector<std::string> &assignments, bool dbOnly);
int runHost(const Options &options, const std::string &address);
int runJournal(const Options &options, const ModelFile &model);
int runReset(const Options &options);
// The objects at or under `path` in the model-file format; secrets masked
// unless options.showSecrets.
int runExport(const Options &options, const std::string &path);

// Network pages.
int runOpMode(const Options &options);
int runWan(const Options &options);
int runWanBridge(const Options &options, bool wifi);
int runWanDns(const Options &options, const std::string &ipInterface, bool staticOnly);
int runWanUciSection(const Options &options, const std::string &connMode, bool byConnMode);
int runWanLowerLayers(const Options &options, const std::string &path);
int runWanEthObject(const Options &options);
int runIpv6Pd(const Options &options);
int runAtm(const Options &options);
int runWanIfName(const Options &options);

// DSL, LAN, multi-WAN and IPTV pages, lookups and address checks.
int runDsl(const Options &options);
int runDslModes(const Options &options);
int runLan(const Options &options);
int runLan6(const Options &options);
int runMultiWan(const Options &options);
int runIptv(const Options &options);
// OBJECT PARAM VALUE WANTED.
int runFind(const Options &options, const std::vector<std::string> &words);
int runIpToUint(const Options &options, const std::string &address);
int runIpv6Check(const Options &options, const std::string &address);

// Wi-Fi pages: one SSID (configuration number) or one radio.
struct WifiTarget {
  bool radio = false;
  int number = 0;
};
struct WifiSetFlags {
  bool dbOnly = false;
  bool force = false;   // queue values that are already current too
  bool dryRun = false;  // compare only, send nothing
};
int runWifi(const Options &options);
int runWifiPage(const Options &options, const WifiTarget &target);
int runWifiSet(const Options &options, const WifiTarget &target,
               const std::vector<std::string> &assignments, const WifiSetFlags &flags);
int runConvert(const Options &options, const std::string &setting, const std::string &value,
               bool toConfig);
int runUciEscape(const Options &options, const std::string &text);
// Adds wifi, convert and uci-escape to the parser. Their callbacks set
// `action`; convert and uci-escape clear `needsModel` (they read none).
void addWifiCommands(CLI::App &app, const Options &options, std::function<int()> &action,
                     bool &needsModel);
// Adds the driver-side pages under wifi (channels, channel, side, phy,
// stations, clients, acl) and repeater; those that run the driver's tools set
// `needsDevice`. Call after addWifiCommands.
void addDriverCommands(CLI::App &app, const Options &options, std::function<int()> &action,
                       bool &needsDevice);
// Adds mesh, wifi survey, wifi scan and wps. Call after addWifiCommands.
void addMeshCommands(CLI::App &app, const Options &options, std::function<int()> &action,
                     bool &needsDevice);

}  // namespace cli

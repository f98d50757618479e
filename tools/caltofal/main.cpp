// caltofal: reads and changes the gateway's configuration through the
// library, one command per run. Exit status: 0 done, 1 a call failed,
// 2 a usage error.
#include <CLI/CLI.hpp>
#include <cstring>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "commands.h"
#include "failure.h"
#include "help_text.h"
#include "model_location.h"
#include "output.h"
#include "platform_options.h"

namespace {

using cli::Options;

constexpr const char *kProgram = "caltofal [--model FILE] [--json] ";
// Global options that take a value.
constexpr const char *kValueOptions[] = {"--model", "--fail"};
// Commands that have commands of their own.
constexpr const char *kParents[] = {"wan", "dsl", "wifi", "mesh"};

struct UsageLine {
  const char *command;
  const char *line;
};

// One usage line per command, printed with a usage error.
constexpr UsageLine kUsageLines[] = {
    {"get", "get PATH [PARAM...]"},
    {"set", "set PATH NAME=VALUE... [--db-only]"},
    {"host", "host MAC|IP"},
    {"journal", "journal"},
    {"reset", "reset"},
    {"export", "export [PATH] [--show-secrets]"},
    {"opmode", "opmode"},
    {"wan",
     "wan [--show-secrets] | wan {bridge|dns|uci-section|lower-layers|eth-object|ifname} ..."},
    {"wan bridge", "wan bridge [--wifi]"},
    {"wan dns", "wan dns IFACE [--static]"},
    {"wan uci-section", "wan uci-section [CONNMODE]"},
    {"wan lower-layers", "wan lower-layers PATH"},
    {"wan eth-object", "wan eth-object"},
    {"wan ifname", "wan ifname"},
    {"ipv6pd", "ipv6pd"},
    {"atm", "atm"},
    {"dsl", "dsl [modes]"},
    {"dsl modes", "dsl modes"},
    {"lan", "lan"},
    {"lan6", "lan6"},
    {"multiwan", "multiwan"},
    {"iptv", "iptv"},
    {"find", "find OBJECT PARAM VALUE WANTED"},
    {"ip-to-uint", "ip-to-uint ADDRESS"},
    {"ipv6-check", "ipv6-check ADDRESS"},
    {"wifi",
     "wifi | wifi {ssid|radio} N | wifi set {ssid|radio} N NAME=VALUE... [--db-only] "
     "[--force] [--dry-run] | wifi {channels|channel|side|phy|stations|clients|acl|survey|scan} "
     "..."},
    {"wifi ssid", "wifi ssid N"},
    {"wifi radio", "wifi radio N"},
    {"wifi set", "wifi set {ssid|radio} N NAME=VALUE... [--db-only] [--force] [--dry-run]"},
    {"wifi channels", "wifi channels IF RADIO"},
    {"wifi channel", "wifi channel IF"},
    {"wifi side", "wifi side CHANNEL COUNTRY"},
    {"wifi phy", "wifi phy IF"},
    {"wifi stations", "wifi stations IF [MAC]"},
    {"wifi clients", "wifi clients RADIO"},
    {"wifi acl", "wifi acl SSID"},
    {"wifi survey", "wifi survey [SSID]"},
    {"wifi scan", "wifi scan IF SSID"},
    {"repeater", "repeater"},
    {"mesh", "mesh [on|off|sync] | mesh ip MAC"},
    {"mesh on", "mesh on"},
    {"mesh off", "mesh off"},
    {"mesh sync", "mesh sync"},
    {"mesh ip", "mesh ip MAC"},
    {"wps", "wps pbc|cancel|reset"},
    {"convert", "convert SETTING VALUE [--to-ui|--to-config]"},
    {"uci-escape", "uci-escape TEXT"},
};
constexpr const char *kAnyCommand =
    "{get|set|host|journal|reset|export|opmode|wan|ipv6pd|atm|dsl|lan|lan6|multiwan|iptv|find|"
    "ip-to-uint|ipv6-check|wifi|repeater|mesh|wps|convert|uci-escape} [ARG...]  (caltofal "
    "--help)";

const char *usageOf(const std::string &command) {
  for (const UsageLine &usage : kUsageLines) {
    if (command == usage.command) return usage.line;
  }
  return kAnyCommand;
}

bool isCommand(const std::string &word, const std::string &prefix) {
  std::string wanted = prefix.empty() ? word : prefix + " " + word;
  for (const UsageLine &usage : kUsageLines) {
    if (wanted == usage.command) return true;
  }
  return false;
}

// The command that the arguments name (for its usage line), found without
// the parser, which may have stopped anywhere. `unknown` receives the first
// word when it names no command.
template <std::size_t N>
bool isOneOf(const std::string &word, const char *const (&list)[N]) {
  for (const char *entry : list) {
    if (word == entry) return true;
  }
  return false;
}

std::string commandOf(int argc, char **argv, std::string *unknown) {
  std::string command;
  for (int i = 1; i < argc; ++i) {
    std::string word = argv[i];
    if (word == "--") break;
    if (isOneOf(word, kValueOptions)) {
      ++i;
      continue;
    }
    if (word.empty() || word[0] == '-') continue;
    if (command.empty() && isCommand(word, {})) {
      command = word;
      if (!isOneOf(command, kParents)) break;
    } else if (!command.empty() && isCommand(word, command)) {
      return command + " " + word;
    } else {
      if (command.empty()) *unknown = word;
      break;
    }
  }
  return command;
}

int usageError(const std::string &message, const std::string &command) {
  std::cout.flush();
  std::cerr << "caltofal: " << cli::printable(message) << '\n'
            << "usage: " << kProgram << usageOf(command) << '\n';
  return cli::kUsage;
}

// The model of a command that calls the library, chosen before its first call.
bool prepareModel(const Options &options) {
  cli::ModelFile model;
  std::string error;
  if (!cli::locateModel(options.model, true, &model, &error) || !cli::selectModel(model, &error)) {
    cli::reportError(error);
    return false;
  }
  return true;
}

int run(int argc, char **argv) {
  CLI::App app{"Reads and changes the gateway's configuration through libcaltofal.", "caltofal"};
  Options options;
  CLI::Option *modelOption = app.add_option(
      "--model", options.model, "Run on this model file (default: a working copy of the sample)");
  app.add_flag("--json", options.json, "Print JSON");
  app.add_flag("--show-secrets", options.showSecrets, "Show secrets: the PPP password, Wi-Fi keys, exported secrets");
  app.add_flag("--trace", options.trace,
               "Also show the library's own notes for the device's log on standard error");
  app.add_option("--fail", options.failures,
                 "Make every request naming the object PATH fail with CODE (emulator only; "
                 "repeatable, added to CALTOFAL_FAIL)")
      ->type_name("PATH=CODE")
      ->expected(1)
      ->take_all();
  app.require_subcommand(1);
  app.fallthrough();

  const CLI::Validator objectPath(cli::objectPathProblem, "");
  const CLI::Validator paramName(cli::paramNameProblem, "");
  const CLI::Validator assignment(cli::assignmentProblem, "");
  const CLI::Validator notEmpty(cli::notEmptyProblem, "");

  std::function<int()> action;
  std::string path;
  std::vector<std::string> words;
  bool flag = false;

  CLI::App *get = app.add_subcommand("get", "Print objects and their parameters");
  get->add_option("PATH", path, "Object path")->required()->check(objectPath);
  get->add_option("PARAM", words, "Only these parameters")->check(paramName);
  get->callback([&] { action = [&] { return cli::runGet(options, path, words); }; });

  CLI::App *set = app.add_subcommand("set", "Write parameters of one object");
  set->add_option("PATH", path, "Object path")->required()->check(objectPath);
  set->add_option("NAME=VALUE", words, "Parameter and its new value")
      ->required()
      ->check(assignment);
  set->add_flag("--db-only", flag, "Store only, do not apply");
  set->callback([&] { action = [&] { return cli::runSet(options, path, words, flag); }; });

  CLI::App *host = app.add_subcommand("host", "Print the host table instance of an address");
  host->add_option("ADDRESS", path, "MAC or IPv4 address")->required();
  host->callback([&] { action = [&] { return cli::runHost(options, path); }; });

  CLI::App *journal = app.add_subcommand("journal", "Show what was applied to the model");
  CLI::App *reset = app.add_subcommand("reset", "Start the working copy over from the sample");

  CLI::App *exportModel =
      app.add_subcommand("export", "Write the configuration (or a subtree) as a model file");
  exportModel->add_option("PATH", path, "Object path (default Device.)")->check(objectPath);
  exportModel->callback([&] {
    if (options.json) throw CLI::ValidationError("export", "writes a model file, not JSON");
    if (path.empty()) path = "Device.";
    action = [&] { return cli::runExport(options, path); };
  });

  CLI::App *opmode = app.add_subcommand("opmode", "Print the operation mode");
  opmode->callback([&] { action = [&] { return cli::runOpMode(options); }; });

  CLI::App *wan = app.add_subcommand("wan", "The default WAN summary, or one of its pages");
  wan->require_subcommand(0, 1);
  wan->callback([&] {
    if (!action) action = [&] { return cli::runWan(options); };
  });
  CLI::App *bridge = wan->add_subcommand("bridge", "The bridged WAN");
  bridge->add_flag("--wifi", flag, "The WAN link is Wi-Fi");
  bridge->callback([&] { action = [&] { return cli::runWanBridge(options, flag); }; });
  CLI::App *dns = wan->add_subcommand("dns", "DNS servers of a WAN IP interface");
  dns->add_option("IFACE", path, "IP interface path")->required()->check(notEmpty);
  dns->add_flag("--static", flag, "Only statically configured servers");
  dns->callback([&] { action = [&] { return cli::runWanDns(options, path, flag); }; });
  CLI::App *uci = wan->add_subcommand("uci-section", "UCI section of a connection mode");
  CLI::Option *connMode =
      uci->add_option("CONNMODE", path, "Connection mode (default WAN)")->check(notEmpty);
  uci->callback([&] {
    action = [&] { return cli::runWanUciSection(options, path, connMode->count() > 0); };
  });
  CLI::App *lower = wan->add_subcommand("lower-layers", "LowerLayers of an object");
  lower->add_option("PATH", path, "Object path")->required()->check(objectPath);
  lower->callback([&] { action = [&] { return cli::runWanLowerLayers(options, path); }; });
  CLI::App *eth = wan->add_subcommand("eth-object", "IP interface of the Ethernet WAN");
  eth->callback([&] { action = [&] { return cli::runWanEthObject(options); }; });

  CLI::App *ifname = wan->add_subcommand("ifname", "Linux name of the default WAN interface");
  ifname->callback([&] { action = [&] { return cli::runWanIfName(options); }; });

  CLI::App *ipv6pd = app.add_subcommand("ipv6pd", "Is IPv6 prefix delegation on?");
  ipv6pd->callback([&] { action = [&] { return cli::runIpv6Pd(options); }; });
  CLI::App *atm = app.add_subcommand("atm", "The ATM link");
  atm->callback([&] { action = [&] { return cli::runAtm(options); }; });

  CLI::App *dsl = app.add_subcommand("dsl", "The DSL line, or the enabled DSL modes");
  dsl->require_subcommand(0, 1);
  dsl->callback([&] {
    if (!action) action = [&] { return cli::runDsl(options); };
  });
  CLI::App *modes = dsl->add_subcommand("modes", "The ten DSL modes, on or off");
  modes->callback([&] { action = [&] { return cli::runDslModes(options); }; });
  CLI::App *lan = app.add_subcommand("lan", "The LAN IPv4 and DHCP server settings");
  lan->callback([&] { action = [&] { return cli::runLan(options); }; });
  CLI::App *lan6 = app.add_subcommand("lan6", "The LAN IPv6 settings");
  lan6->callback([&] { action = [&] { return cli::runLan6(options); }; });
  CLI::App *multiwan = app.add_subcommand("multiwan", "The multi-WAN settings");
  multiwan->callback([&] { action = [&] { return cli::runMultiWan(options); }; });
  CLI::App *iptv = app.add_subcommand("iptv", "Is the IPTV set-top-box bridge on?");
  iptv->callback([&] { action = [&] { return cli::runIptv(options); }; });
  CLI::App *find = app.add_subcommand(
      "find", "WANTED of the first instance of OBJECT whose PARAM begins with VALUE");
  find->add_option("OBJECT PARAM VALUE WANTED", words, "Table, filter, its value, wanted")
      ->required()
      ->expected(4);
  find->callback([&] {
    for (const std::string &word : words) {
      if (word.empty()) throw CLI::ValidationError("find", "no argument may be empty");
    }
    action = [&] { return cli::runFind(options, words); };
  });
  CLI::App *ipToUint = app.add_subcommand("ip-to-uint", "An IPv4 address as a 32-bit number");
  ipToUint->add_option("ADDRESS", path, "IPv4 address")->required();
  // The address checks, like the value conversions, need no configuration.
  bool needsModel = true;
  ipToUint->callback([&] {
    needsModel = false;
    action = [&] { return cli::runIpToUint(options, path); };
  });
  CLI::App *ipv6Check = app.add_subcommand("ipv6-check", "Is the text an IPv6 address?");
  ipv6Check->add_option("ADDRESS", path, "IPv6 address")->required();
  ipv6Check->callback([&] {
    needsModel = false;
    action = [&] { return cli::runIpv6Check(options, path); };
  });
  cli::addWifiCommands(app, options, action, needsModel);
  bool needsDevice = false;
  cli::addDriverCommands(app, options, action, needsDevice);
  cli::addMeshCommands(app, options, action, needsDevice);
  cli::useCommandList(app, [](const std::string &name) {
    const char *usage = usageOf(name);
    return usage == kAnyCommand ? std::string() : std::string(usage);
  });

  std::string unknown;
  std::string command = commandOf(argc, argv, &unknown);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success &e) {
    return app.exit(e);
  } catch (const CLI::ParseError &e) {
    return usageError(unknown.empty() ? e.what() : "unknown command " + unknown, command);
  }
  if (modelOption->count() > 0 && options.model.empty()) {
    return usageError("--model needs a file name", command);
  }

  try {
    if (reset->parsed()) return cli::runReset(options);
    if (journal->parsed()) {
      cli::ModelFile model;
      std::string error;
      if (!cli::locateModel(options.model, false, &model, &error)) return cli::reportError(error);
      return cli::runJournal(options, model);
    }
    if (!action) return usageError("no command", command);
    if (needsDevice) {
      if (std::string problem = cli::runOnDevice(argc, argv, options.trace); !problem.empty()) {
        return cli::reportError(problem);
      }
    }
    cli::routeLibraryNotes(options.trace);
    if (std::string problem = cli::applyFailures(options.failures); !problem.empty()) {
      return cli::reportError(problem);
    }
    if (needsModel && !prepareModel(options)) return cli::kFailed;
    return action();
  } catch (const cli::UsageError &e) {
    return usageError(e.what(), command);
  }
}

}  // namespace

int main(int argc, char **argv) {
  int status = cli::kFailed;
  try {
    status = run(argc, argv);
  } catch (const std::exception &e) {
    std::cerr << "caltofal: " << cli::printable(e.what()) << '\n';
    status = cli::kFailed;
  }
  std::cout.flush();
  if (!std::cout) {
    std::cerr << "caltofal: cannot write the output\n";
    return cli::kFailed;
  }
  return status;
}

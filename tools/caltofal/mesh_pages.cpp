// The mesh switch and the satellites' sync, a satellite's IP address, the
// site survey, WPS push-button and scan requests.
#include <CLI/CLI.hpp>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

#include "caltofal.h"
#include "commands.h"
#include "failure.h"
#include "output.h"

namespace cli {

namespace {

constexpr char kSatellites[] = "gddbc -i -g /runtime/singlesignoninfo/livingslave/ishasrptslave";
// The two bands' survey results, joined for the page.
constexpr char kSurvey24[] = "/tmp/wlan_wave/wlan0_scan_by_User.result";
constexpr char kSurvey5[] = "/tmp/wlan_wave/wlan2_scan_by_User.result";
constexpr char kSurvey[] = "/tmp/wlan_wave/site_survey.result";

// What the mesh is doing: its switch, the device's role, the satellites.
struct MeshState {
  bool enabled = false;
  int mode = -1;
  bool master = false;
  int satellites = 0;
};

MeshState meshState() {
  MeshState s;
  s.enabled = ZINTU_meshgrove_check_is_enabled() == 1;
  s.mode = ZintuGet_OperMode();
  s.master = s.mode != -1 && (s.mode & 4) != 0;
  char count[128] = {};
  ZINTU_meshgrove_get_from_shell(kSatellites, count);
  s.satellites = std::atoi(count);
  return s;
}

int runMesh(const Options &options) {
  const MeshState s = meshState();
  Page page;
  page.section("Mesh");
  page.flag("enabled", "Mesh", s.enabled ? 1 : 0, "on", "off");
  page.flag("master", "Role", s.master ? 1 : 0, "master (router)", "not the master");
  page.number("satellites", "Satellites connected", s.satellites > 0 ? s.satellites : 0);
  page.write(std::cout, options.json);
  return kOk;
}

int runMeshSwitch(const Options &options, bool on) {
  if (ZINTU_meshgrove_set_enable_value(on ? 1 : 0) != 0) {
    return reportFailure(std::string("cannot switch the mesh ") + (on ? "on" : "off"), -1,
                         "Device.WiFi.X_ZINTU_RoamingMesh");
  }
  if (options.json) {
    writeJson(std::cout, Json{{"enabled", on}});
  } else {
    std::cout << "mesh " << (on ? "on" : "off") << '\n';
  }
  return kOk;
}

int runMeshSync(const Options &options) {
  const MeshState s = meshState();
  std::string skipped;
  if (!s.enabled) {
    skipped = "the mesh is off";
  } else if (!s.master) {
    skipped = "this device is not the mesh master";
  } else if (s.satellites <= 0) {
    skipped = "no satellite is connected";
  }
  if (skipped.empty()) ZINTU_meshgrove_sync_to_slave();
  if (options.json) {
    writeJson(std::cout, Json{{"synced", skipped.empty()},
                              {"satellites", s.satellites > 0 ? s.satellites : 0},
                              {"reason", skipped.empty() ? Json(nullptr) : Json(skipped)}});
  } else if (skipped.empty()) {
    std::cout << "the mesh daemon pushes the settings to " << s.satellites << " satellite"
              << (s.satellites == 1 ? "" : "s") << '\n';
  } else {
    std::cout << "nothing to sync: " << skipped << '\n';
  }
  return kOk;
}

int runMeshIp(const Options &options, const std::string &mac) {
  char buffer[128] = {};
  mac.copy(buffer, sizeof buffer - 1);
  ZINTU_meshgrove_get_IP_from_MAC(buffer);
  const std::string ip = fieldText(buffer);
  if (ip.empty()) return reportError("no mesh unit with the MAC address " + mac);
  if (options.json) {
    writeJson(std::cout, Json{{"mac", mac}, {"ip", ip}});
  } else {
    std::cout << printable(ip) << '\n';
  }
  return kOk;
}

int runSurvey(const Options &options, const std::string &ssid) {
  CombineScanResultFiles(kSurvey24, kSurvey5, kSurvey);
  SiteSurveyList list{0, nullptr};
  const int count = GetSiteSurveyList(kSurvey, &list, ssid.c_str());
  std::unique_ptr<SiteSurveyEntry, decltype(&std::free)> owned(list.entries, &std::free);
  if (options.json) {
    Json networks = Json::array();
    for (int i = 0; i < count; ++i) {
      const SiteSurveyEntry &e = list.entries[i];
      networks.push_back(Json{{"ssid", fieldText(e.ssid)},
                              {"channel", e.channel},
                              {"rssi", e.rssi},
                              {"security", fieldText(e.security)},
                              {"encryption", fieldText(e.encryption)},
                              {"macaddr", fieldText(e.macaddr)},
                              {"bandwidth", e.bandwidth},
                              {"phymode", fieldText(e.phymode)},
                              {"sideband", fieldText(e.sideband)},
                              {"product", e.product}});
    }
    writeJson(std::cout, Json{{"networks", networks}});
    return kOk;
  }
  if (count == 0) {
    std::cout << (ssid.empty() ? "no networks found\n" : "no network named " + ssid + "\n");
    return kOk;
  }
  std::cout << "SSID                      Ch  RSSI  Security      Encryption  MAC                "
               "MHz  Mode   Side\n";
  for (int i = 0; i < count; ++i) {
    const SiteSurveyEntry &e = list.entries[i];
    char line[512];
    std::snprintf(
        line, sizeof line, "%-24s %3d  %4d  %-12s  %-10s  %-17s  %3d  %-5s  %s",
        printable(fieldText(e.ssid)).c_str(), e.channel, e.rssi,
        printable(fieldText(e.security)).c_str(), printable(fieldText(e.encryption)).c_str(),
        printable(fieldText(e.macaddr)).c_str(), e.bandwidth,
        printable(fieldText(e.phymode)).c_str(), printable(fieldText(e.sideband)).c_str());
    std::cout << line << '\n';
  }
  return kOk;
}

int runWps(const Options &options, const std::string &action) {
  const int ran = action == "pbc"      ? ReqWPSActive()
                  : action == "cancel" ? ReqWPSCancel()
                                       : ReqWPSReset();
  if (ran != 1) return reportError("the shell could not ask the service daemon for WPS " + action);
  if (options.json) {
    writeJson(std::cout, Json{{"wps", action}, {"requested", true}});
  } else {
    std::cout << "WPS " << action << " requested\n";
  }
  return kOk;
}

int runScan(const Options &options, const std::string &ifname, const std::string &ssid) {
  if (ReqScan(ifname.c_str(), ssid.c_str()) != 1) {
    return reportError("the shell could not ask the service daemon to scan on " + ifname);
  }
  if (options.json) {
    writeJson(std::cout, Json{{"interface", ifname}, {"ssid", ssid}, {"requested", true}});
  } else {
    std::cout << "scan for " << printable(ssid) << " on " << ifname << " requested\n";
  }
  return kOk;
}

}  // namespace

void addMeshCommands(CLI::App &app, const Options &options, std::function<int()> &action,
                     bool &needsDevice) {
  struct State {
    std::string mac, ssid, ifname, wps;
  };
  auto st = std::make_shared<State>();

  CLI::App *mesh = app.add_subcommand("mesh", "The mesh: its state, or a change");
  mesh->require_subcommand(0, 1);
  mesh->callback([&] {
    if (action) return;
    needsDevice = true;
    action = [&options] { return runMesh(options); };
  });
  for (const char *word : {"on", "off"}) {
    const bool on = std::string(word) == "on";
    mesh->add_subcommand(word, on ? "Switch the mesh on" : "Switch the mesh off")
        ->callback([&, on] { action = [&options, on] { return runMeshSwitch(options, on); }; });
  }
  mesh->add_subcommand("sync", "Push the settings to the connected satellites")->callback([&] {
    needsDevice = true;
    action = [&options] { return runMeshSync(options); };
  });
  CLI::App *ip = mesh->add_subcommand("ip", "The IP address of a mesh unit");
  ip->add_option("MAC", st->mac, "Its MAC address")->required();
  ip->callback([&, st] {
    needsDevice = true;
    action = [&options, st] { return runMeshIp(options, st->mac); };
  });

  CLI::App *wifi = app.get_subcommand("wifi");
  CLI::App *survey = wifi->add_subcommand("survey", "The networks the last scan found");
  survey->add_option("SSID", st->ssid, "Only this network");
  survey->callback([&, st] {
    needsDevice = true;
    action = [&options, st] { return runSurvey(options, st->ssid); };
  });
  CLI::App *scan = wifi->add_subcommand("scan", "Ask for a scan for a network");
  scan->add_option("IF", st->ifname, "Interface")
      ->required()
      ->check(CLI::Validator(interfaceProblem, ""));
  scan->add_option("SSID", st->ssid, "Network name")->required();
  scan->callback([&, st] {
    needsDevice = true;
    action = [&options, st] { return runScan(options, st->ifname, st->ssid); };
  });

  CLI::App *wps = app.add_subcommand("wps", "WPS push-button run, cancel or reset");
  wps->add_option("ACTION", st->wps, "pbc, cancel or reset")
      ->required()
      ->check(CLI::IsMember({"pbc", "cancel", "reset"}));
  wps->callback([&, st] {
    needsDevice = true;
    action = [&options, st] { return runWps(options, st->wps); };
  });
}

}  // namespace cli

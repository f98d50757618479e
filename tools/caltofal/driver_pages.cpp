// The driver-side Wi-Fi pages: a radio's channels, the channel in use, the
// secondary channel's side, the radio number, the stations and their signal,
// the client count, the MAC access list and the repeater link.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "caltofal.h"
#include "commands.h"
#include "failure.h"
#include "output.h"
#include "request.h"

namespace cli {

namespace {

// Channels 52 to 144 are radar (DFS) channels of the 5 GHz band.
bool isRadarChannel(const WifiChannelEntry &e) {
  return e.frequency >= 5250 && e.frequency <= 5730;
}

// Whether 802.11h is on for a radio; false when it cannot be read.
bool dot11hEnabled(int radio) {
  Request request;
  std::string path = "Device.WiFi.Radio." + std::to_string(radio);
  if (faltocal_send_main(request.get(), path.c_str(), "get", "get", 1, "IEEE80211hEnabled") != 0) {
    return false;
  }
  for (const ObjectValues &object : request.answer()) {
    for (const auto &[name, value] : object.params) {
      if (name == "IEEE80211hEnabled") return ConvStrToBool(value.c_str()) != 0;
    }
  }
  return false;
}

std::string widthsOf(const WifiChannelEntry &e) {
  std::string text;
  for (int32_t width : e.bandwidths) {
    if (width == 0) break;
    text += (text.empty() ? "" : "/") + std::to_string(width);
  }
  return text;
}

int runChannels(const Options &options, const std::string &ifname, int radio) {
  WifiChannelList list{};
  int count = GetChannelList(ifname.c_str(), radio, &list);
  if (count == 0)
    return reportNotFound("no channels for " + ifname + " on radio " + std::to_string(radio));
  const bool dfs = dot11hEnabled(radio);
  if (options.json) {
    Json channels = Json::array();
    for (int i = 0; i < count; ++i) {
      const WifiChannelEntry &e = list.entries[i];
      Json widths = Json::array();
      for (int32_t width : e.bandwidths) {
        if (width != 0) widths.push_back(width);
      }
      Json entry{{"channel", e.channel},
                 {"frequency", e.frequency},
                 {"bandwidths", widths},
                 {"aboveChannel", e.aboveChannel},
                 {"belowChannel", e.belowChannel}};
      if (dfs) entry["dfs"] = isRadarChannel(e);
      channels.push_back(entry);
    }
    writeJson(std::cout, Json{{"interface", ifname}, {"radio", radio}, {"channels", channels}});
    return kOk;
  }
  std::cout << "Channel   MHz  Widths (MHz)  Above  Below" << (dfs ? "  DFS" : "") << '\n';
  for (int i = 0; i < count; ++i) {
    const WifiChannelEntry &e = list.entries[i];
    char line[128];
    std::snprintf(line, sizeof line, "%7d  %4d  %-12s  %5s  %5s", e.channel, e.frequency,
                  widthsOf(e).c_str(),
                  e.aboveChannel ? std::to_string(e.aboveChannel).c_str() : "-",
                  e.belowChannel ? std::to_string(e.belowChannel).c_str() : "-");
    std::cout << line << (dfs ? (isRadarChannel(e) ? "  yes" : "  -") : "") << '\n';
  }
  return kOk;
}

int runChannel(const Options &options, const std::string &ifname) {
  int channel = -1;
  if (GetCurrentChannel(ifname.c_str(), 0, &channel) != 1) {
    return reportError("cannot ask the driver about " + ifname);
  }
  if (channel == -1) return reportError("the driver reports no current channel of " + ifname);
  if (options.json) {
    writeJson(std::cout, Json{{"interface", ifname}, {"channel", channel}});
  } else {
    std::cout << channel << '\n';
  }
  return kOk;
}

int runSide(const Options &options, int channel, const std::string &country) {
  static constexpr char kEither[] = "either";
  const char *side = GetSideChannel(channel, country.c_str(), kEither);
  const bool either = side == kEither;
  if (options.json) {
    writeJson(std::cout, Json{{"channel", channel},
                              {"country", country},
                              {"side", either ? Json(nullptr) : Json(side)}});
  } else {
    std::cout << (either ? "either side" : side) << '\n';
  }
  return kOk;
}

int runPhy(const Options &options, const std::string &ifname) {
  int phy = GetPhyNumber(ifname.c_str());
  if (phy < 0) return reportError("the driver names no radio for " + ifname);
  if (options.json) {
    writeJson(std::cout, Json{{"interface", ifname}, {"phy", phy}});
  } else {
    std::cout << "phy" << phy << '\n';
  }
  return kOk;
}

std::string rssiText(int32_t value) {
  return value >= -127 && value < 0 ? std::to_string(value) : "-";
}

int runStations(const Options &options, const std::string &ifname, const std::string &mac) {
  auto list = std::make_unique<WifiStaList>();
  int count = GetStaInfo(ifname.c_str(), mac.empty() ? nullptr : mac.c_str(), list.get());
  if (options.json) {
    Json stations = Json::array();
    for (int i = 0; i < count; ++i) {
      const WifiStaEntry &e = list->entries[i];
      stations.push_back(Json{{"mac", fieldText(e.mac)},
                              {"rssiAverage", e.rssiAverage},
                              {"rssi", {e.rssi[0], e.rssi[1], e.rssi[2], e.rssi[3]}}});
    }
    writeJson(std::cout, Json{{"interface", ifname}, {"stations", stations}});
    return kOk;
  }
  if (count == 0) {
    std::cout << "no stations on " << printable(ifname) << '\n';
    return kOk;
  }
  std::cout << "MAC                RSSI  Antennas (dBm)\n";
  for (int i = 0; i < count; ++i) {
    const WifiStaEntry &e = list->entries[i];
    char line[256];
    std::snprintf(line, sizeof line, "%-17s  %4s  %s %s %s %s", printable(fieldText(e.mac)).c_str(),
                  rssiText(e.rssiAverage).c_str(), rssiText(e.rssi[0]).c_str(),
                  rssiText(e.rssi[1]).c_str(), rssiText(e.rssi[2]).c_str(),
                  rssiText(e.rssi[3]).c_str());
    std::cout << line << '\n';
  }
  return kOk;
}

int runClients(const Options &options, int radio) {
  if (radio != 1 && radio != 2) throw UsageError("RADIO: the gateway has radios 1 and 2");
  int clients = GetAssociatedDeviceNumberOfEntries(radio);
  if (options.json) {
    writeJson(std::cout, Json{{"radio", radio}, {"clients", clients}});
  } else {
    std::cout << clients << '\n';
  }
  return kOk;
}

int runAcl(const Options &options, int ssid) {
  const std::string table =
      "Device.WiFi.AccessPoint." + std::to_string(ssid) + ".X_LANTIQ_COM_Vendor.MACFilter";
  Request request;
  int rc = faltocal_send_main(request.get(), (table + ".").c_str(), "get", "get", 0);
  auto list = std::make_unique<MacAccessList>();
  if (rc == 0) {
    auto *head = static_cast<ObjList *>(request.get()->pObjList);
    ObjList *obj = nullptr;
    HELP_FOR_EACH_OBJ(head, obj) {
      GetMacAccessList(obj, table.c_str(), list.get());
    }
  }
  if (options.json) {
    Json entries = Json::array();
    for (int i = 0; i < list->count; ++i) {
      const MacAccessEntry &e = list->entries[i];
      entries.push_back(Json{{"index", e.index},
                             {"name", fieldText(e.name)},
                             {"macAddress", fieldText(e.macAddress)}});
    }
    writeJson(std::cout, Json{{"ssid", ssid}, {"entries", entries}});
  } else if (list->count == 0) {
    std::cout << "the access list of SSID " << ssid << " is empty\n";
  } else {
    for (int i = 0; i < list->count; ++i) {
      const MacAccessEntry &e = list->entries[i];
      std::cout << e.index << "  " << printable(fieldText(e.macAddress)) << "  "
                << printable(fieldText(e.name)) << '\n';
    }
  }
  return kOk;
}

int runRepeater(const Options &options) {
  char ifname[128] = {};
  int endpoint = GetEPEnable(ifname);
  if (endpoint == 0) return reportFailure("cannot read the repeater endpoints", -1);
  Page page;
  page.section("Repeater");
  if (endpoint < 0) {
    page.labelled("endpoint", "Endpoint", 0, "none enabled");
    page.write(std::cout, options.json);
    return kOk;
  }
  char mac[128] = {};
  const bool connected = GetEPContection(ifname, mac) == 1;
  int32_t values[64] = {};  // one per width and primary channel line of the driver
  const bool figures = ReqEPChannelInfo(ifname, values) == 1;
  page.number("endpoint", "Endpoint", endpoint);
  page.text("interface", "Interface", fieldText(ifname));
  page.flag("connected", "Connected", connected ? 1 : 0, "yes", "no");
  page.text("upstream", "Upstream access point", connected ? fieldText(mac) : "");
  page.section("Upstream link");
  page.number("width", "Width (MHz)", figures ? values[0] : 0);
  page.number("channel", "Primary channel", figures ? values[1] : 0);
  page.write(std::cout, options.json);
  return kOk;
}

}  // namespace

void addDriverCommands(CLI::App &app, const Options &options, std::function<int()> &action,
                       bool &needsDevice) {
  struct State {
    std::string ifname, country, mac;
    int number = 0;
  };
  auto st = std::make_shared<State>();
  CLI::App *wifi = app.get_subcommand("wifi");
  const CLI::Validator interfaceName(interfaceProblem, "");

  CLI::App *channels = wifi->add_subcommand("channels", "The channels a radio may use");
  channels->add_option("IF", st->ifname, "Interface")->required()->check(interfaceName);
  channels->add_option("RADIO", st->number, "Radio instance (1 or 2)")->required();
  channels->callback([&, st] {
    needsDevice = true;
    action = [&options, st] { return runChannels(options, st->ifname, st->number); };
  });
  CLI::App *channel = wifi->add_subcommand("channel", "The channel in use now");
  channel->add_option("IF", st->ifname, "Interface")->required()->check(interfaceName);
  channel->callback([&, st] {
    needsDevice = true;
    action = [&options, st] { return runChannel(options, st->ifname); };
  });
  CLI::App *side = wifi->add_subcommand("side", "The side of the secondary 40 MHz channel");
  side->add_option("CHANNEL", st->number, "Channel")->required();
  side->add_option("COUNTRY", st->country, "Country code")->required();
  side->callback(
      [&, st] { action = [&options, st] { return runSide(options, st->number, st->country); }; });
  CLI::App *phy = wifi->add_subcommand("phy", "The radio (phy) of an interface");
  phy->add_option("IF", st->ifname, "Interface")->required()->check(interfaceName);
  phy->callback([&, st] {
    needsDevice = true;
    action = [&options, st] { return runPhy(options, st->ifname); };
  });
  CLI::App *stations = wifi->add_subcommand("stations", "The stations and their signal");
  stations->add_option("IF", st->ifname, "Interface")->required()->check(interfaceName);
  stations->add_option("MAC", st->mac, "Only this station");
  stations->callback([&, st] {
    needsDevice = true;
    action = [&options, st] { return runStations(options, st->ifname, st->mac); };
  });
  CLI::App *clients = wifi->add_subcommand("clients", "Clients of a radio's active SSIDs");
  clients->add_option("RADIO", st->number, "Radio instance (1 or 2)")->required();
  clients->callback(
      [&, st] { action = [&options, st] { return runClients(options, st->number); }; });
  CLI::App *acl = wifi->add_subcommand("acl", "The MAC access list of an SSID");
  acl->add_option("SSID", st->number, "SSID instance")->required()->check(CLI::PositiveNumber);
  acl->callback([&, st] { action = [&options, st] { return runAcl(options, st->number); }; });

  CLI::App *repeater =
      app.add_subcommand("repeater", "The repeater endpoint and its upstream link");
  repeater->callback([&] {
    needsDevice = true;
    action = [&options] { return runRepeater(options); };
  });
}

}  // namespace cli

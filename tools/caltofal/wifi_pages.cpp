// The Wi-Fi pages: the SSIDs of both radios, one SSID's or one radio's
// settings in the UI's words, saving only what changed, value conversion
// and the escaping of texts for UCI command lines.
#include <CLI/CLI.hpp>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "caltofal.h"
#include "commands.h"
#include "failure.h"
#include "output.h"
#include "request.h"
#include "wifi_settings.h"

namespace cli {

namespace {

using wifi::findSetting;
using wifi::Kind;

constexpr std::string_view kSsidPrefix = "Device.WiFi.SSID.";
constexpr std::string_view kRadioPrefix = "Device.WiFi.Radio.";
constexpr std::size_t kMaxValue = sizeof(WifiParamRow::value) - 2;

// Access points 1-8 are radio 1's, the rest the other radio's.
int radioOfSsid(int ssid) {
  return ssid <= 8 ? 1 : 2;
}

struct Shown {
  const char *section;
  const char *param;
  const char *label;
};

constexpr Shown kSsidPage[] = {
    {"SSID", "SSID", "Name"},
    {"SSID", "Enable", "Enabled"},
    {"SSID", "X_ZINTU_Active", "On the air"},
    {"SSID", "BSSID", "BSSID"},
    {"SSID", "X_ZINTU_NetworkType", "Network type"},
    {"Access point", "SSIDAdvertisementEnabled", "Advertised"},
    {"Access point", "IsolationEnable", "Isolation"},
    {"Access point", "X_ZINTU_WebUIAccessPermit", "Web UI access"},
    {"Access point", "X_ZINTU_InternetOnly", "Internet only"},
    {"Access point", "MACAddressControlEnabled", "MAC filter"},
    {"Security", "ModeEnabled", "Mode"},
    {"Security", "X_ZINTU_EncryptionType", "Encryption"},
    {"Security", "KeyPassphrase", "Passphrase"},
    {"Security", "RekeyingInterval", "Rekeying interval (s)"},
    {"Security", "RadiusServerIPAddr", "RADIUS server"},
    {"Security", "RadiusServerPort", "RADIUS port"},
    {"Security", "RadiusSecret", "RADIUS secret"},
    {"Security", "X_ZINTU_Wep_Encryption", "WEP encryption"},
    {"Security", "X_ZINTU_Wep_KeyType", "WEP key type"},
    {"Security", "WEPKey", "WEP key"},
};

constexpr Shown kRadioPage[] = {
    {"Radio", "Enable", "Enabled"},
    {"Radio", "Channel", "Channel"},
    {"Radio", "AutoChannelEnable", "Auto channel"},
    {"Radio", "OperatingStandards", "Standards"},
    {"Radio", "OperatingChannelBandwidth", "Bandwidth (MHz)"},
    {"Radio", "ExtensionChannel", "Side band"},
    {"Radio", "GuardInterval", "Short guard interval"},
    {"Radio", "TransmitPower", "Transmit power"},
    {"Radio", "BeaconPeriod", "Beacon period"},
    {"Radio", "DTIMPeriod", "DTIM period"},
    {"Radio", "FragmentationThreshold", "Fragmentation threshold"},
    {"Radio", "RTSThreshold", "RTS threshold"},
    {"Radio", "IEEE80211hEnabled", "802.11h"},
    {"Radio", "RegulatoryDomain", "Regulatory domain"},
    {"Vendor", "Dot11dEnable", "802.11d"},
    {"Vendor", "Dot11nProtection", "802.11n protection"},
    {"Vendor", "WaveExplicitBeamforming", "Explicit beamforming"},
    {"Vendor", "VhtSUbeamformerEnabled", "VHT SU beamformer"},
    {"Vendor", "VhtGuardInterval", "VHT short guard interval"},
    {"Vendor", "WaveInterfererDetectionThreshold", "Interferer threshold"},
    {"Vendor", "CoexEnabled", "20/40 coexistence"},
    {"Vendor", "WaveIgnore40MhzIntolerant", "Ignore 40 MHz intolerant"},
    {"Vendor", "WaveMuOperation", "MU operation"},
    {"WMM", "WMMEnable", "WMM"},
    {"WMM", "UAPSDEnable", "U-APSD"},
    {"WMM", "X_ZINTU_WMMOption", "WMM option"},
    {"WMM", "X_ZINTU_WMMAckPolicy", "Ack policy"},
};

bool isSecret(std::string_view param) {
  return param == "KeyPassphrase" || param == "RadiusSecret" || param == "WEPKey";
}

std::string shownSecret(const std::string &param, const std::string &value, bool reveal) {
  return isSecret(param) && !reveal && !value.empty() ? "********" : value;
}

// A snapshot of one SSID or one radio, on the heap (64 KB).
struct Snapshot {
  std::unique_ptr<WifiParamTable> table = std::make_unique<WifiParamTable>();

  int take(const WifiTarget &target) {
    return target.radio ? GetWireInfoFromFapiToBuff(target.number, table.get())
                        : GetSsIdInfoFromFapiToBuff(target.number, table.get());
  }
  // The first row of a parameter.
  const WifiParamRow *find(std::string_view param) const {
    for (int i = 0; i < table->count; ++i) {
      if (fieldText(table->rows[i].parameter) == param) return &table->rows[i];
    }
    return nullptr;
  }
  std::string value(std::string_view param) const {
    const WifiParamRow *row = find(param);
    return row != nullptr ? fieldText(row->value) : std::string();
  }
  // Whether the SSID or radio object itself answered: the access point of
  // a radio that does not exist may still.
  bool hasTarget(const WifiTarget &target) const {
    const std::string object =
        std::string(target.radio ? kRadioPrefix : kSsidPrefix) + std::to_string(target.number);
    for (int i = 0; i < table->count; ++i) {
      if (fieldText(table->rows[i].object) == object) return true;
    }
    return false;
  }
};

std::string targetName(const WifiTarget &target) {
  return (target.radio ? "radio " : "ssid ") + std::to_string(target.number);
}

// Takes the snapshot; false after reporting why it failed.
bool takeSnapshot(Snapshot &snap, const WifiTarget &target, int *exitCode) {
  if (int rc = snap.take(target); rc != 0) {
    *exitCode = reportFailure("cannot read " + targetName(target), rc);
    return false;
  }
  if (!snap.hasTarget(target)) {
    *exitCode = reportError("no " + targetName(target) + " in the configuration");
    return false;
  }
  return true;
}

// The value the page shows: the UI's word where the UI has its own.
std::string uiValue(const std::string &param, const std::string &value) {
  const wifi::Setting *s = findSetting(param);
  if (s == nullptr || (s->kind != Kind::kWords && s->kind != Kind::kPower)) return value;
  return wifi::toUi(*s, value);
}

template <std::size_t N>
void addRows(Page &page, const Snapshot &snap, const Shown (&rows)[N], const Options &options,
             const std::string &wmmTitle) {
  std::string section = rows[0].section;  // the caller's first section
  for (const Shown &row : rows) {
    if (section != row.section) {
      section = row.section;
      page.section(section == "WMM" ? wmmTitle : section);
    }
    if (snap.find(row.param) == nullptr) {
      page.note(row.label, "(not in the configuration)");  // and no JSON key
      continue;
    }
    const std::string value = uiValue(row.param, snap.value(row.param));
    if (isSecret(row.param)) {
      page.secret(row.param, row.label, value, options.showSecrets);
    } else {
      page.text(row.param, row.label, value);
    }
  }
}

// Instance numbers of a table's answer ("PREFIX" digits).
std::optional<int> instanceOf(std::string_view name, std::string_view prefix) {
  if (name.substr(0, prefix.size()) != prefix || name.size() == prefix.size()) return {};
  int n = 0;
  for (char c : name.substr(prefix.size())) {
    if (c < '0' || c > '9' || n > 100000) return {};
    n = n * 10 + (c - '0');
  }
  return n;
}

int getTable(Request &request, const char *table, const char *param) {
  const char *names[] = {param};
  return faltocal_send_main_multi_obj_No_variable(request.get(), table, "get", "get", 1, names);
}

std::vector<std::string> commaList(const std::string &text) {
  std::vector<std::string> items;
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t comma = text.find(',', start);
    if (comma == std::string::npos) comma = text.size();
    if (comma > start) items.push_back(text.substr(start, comma - start));
    start = comma + 1;
  }
  return items;
}

// A radio that lists what it supports (its `supportedParam`) takes only
// those values; one that lists nothing takes every value of the setting.
void checkSupported(int radio, const std::string &param, const char *supportedParam,
                    const std::string &config, const wifi::Setting &setting) {
  Request request;
  const std::string object = std::string(kRadioPrefix) + std::to_string(radio);
  if (getTable(request, object.c_str(), supportedParam) != 0) return;
  std::vector<ObjectValues> answer = request.answer();
  if (answer.empty() || answer[0].params.empty()) return;
  std::vector<std::string> supported = commaList(answer[0].params[0].second);
  if (supported.empty()) return;
  std::string words;
  for (const std::string &item : supported) {
    if (item == config) return;
    words += (words.empty() ? "" : ", ") + wifi::toUi(setting, item);
  }
  throw UsageError(param + " of radio " + std::to_string(radio) + " takes " + words + ", not '" +
                   wifi::toUi(setting, config) + "'");
}

struct SsidLine {
  int ssid, radio, number;
  std::string name, band, security;
  bool enabled;
};

void writeSsidLines(const std::vector<SsidLine> &lines) {
  std::vector<std::vector<std::string>> cells = {
      {"SSID", "RADIO", "NO", "BAND", "STATE", "SECURITY", "NAME"}};
  for (const SsidLine &l : lines) {
    cells.push_back({std::to_string(l.ssid), std::to_string(l.radio), std::to_string(l.number),
                     l.band.empty() ? "-" : printable(l.band), l.enabled ? "on" : "off",
                     l.security.empty() ? "-" : printable(l.security),
                     l.name.empty() ? "-" : printable(l.name)});
  }
  std::vector<std::size_t> width(cells[0].size(), 0);
  for (const auto &row : cells) {
    for (std::size_t i = 0; i < row.size(); ++i) width[i] = std::max(width[i], row[i].size());
  }
  for (const auto &row : cells) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += row[i];
      if (i + 1 < row.size()) line += std::string(width[i] - row[i].size() + 2, ' ');
    }
    std::cout << line << '\n';
  }
}

}  // namespace

int runWifi(const Options &options) {
  std::map<int, std::string> bands;
  {
    Request radios;
    if (getTable(radios, "Device.WiFi.Radio.", "OperatingFrequencyBand") == 0) {
      for (const ObjectValues &radio : radios.answer()) {
        std::optional<int> n = instanceOf(radio.name, kRadioPrefix);
        if (n && !radio.params.empty()) {
          bands[*n] = wifi::toUi(*findSetting("band"), radio.params[0].second);
        }
      }
    }
  }
  Request ssids;
  int rc = getTable(ssids, "Device.WiFi.SSID.", "SSID");
  if (rc != 0) return reportFailure("cannot list the SSIDs", rc, "Device.WiFi.SSID.");

  std::vector<SsidLine> lines;
  for (const ObjectValues &object : ssids.answer()) {
    std::optional<int> ssid = instanceOf(object.name, kSsidPrefix);
    if (!ssid || *ssid < 1 || *ssid > 16) continue;  // the UI counts eight per radio
    Snapshot snap;
    int failed = kOk;
    if (!takeSnapshot(snap, WifiTarget{false, *ssid}, &failed)) return failed;
    const int radio = radioOfSsid(*ssid);
    lines.push_back(SsidLine{*ssid, radio, ConvSsidIdxToUI(radio, *ssid), snap.value("SSID"),
                             bands[radio], uiValue("ModeEnabled", snap.value("ModeEnabled")),
                             ConvStrToBool(snap.value("Enable").c_str()) != 0});
  }
  if (options.json) {
    Json list = Json::array();
    for (const SsidLine &l : lines) {
      list.push_back(Json{{"ssid", l.ssid},
                          {"radio", l.radio},
                          {"number", l.number},
                          {"name", l.name},
                          {"band", l.band},
                          {"enabled", l.enabled},
                          {"security", l.security}});
    }
    writeJson(std::cout, list);
  } else {
    writeSsidLines(lines);
  }
  return kOk;
}

int runWifiPage(const Options &options, const WifiTarget &target) {
  Snapshot snap;
  int failed = kOk;
  if (!takeSnapshot(snap, target, &failed)) return failed;
  Page page;
  if (target.radio) {
    page.section("Radio");
    page.number("radio", "Radio", target.number);
    const int accessPoint = ConvSsidIdxToFapi(target.number, 0);
    addRows(page, snap, kRadioPage, options,
            "WMM (access point " + std::to_string(accessPoint) + ")");
  } else {
    const int radio = radioOfSsid(target.number);
    page.section("SSID");
    page.number("ssid", "SSID", target.number);
    page.number("radio", "Radio", radio);
    page.number("number", "Number on the radio", ConvSsidIdxToUI(radio, target.number));
    addRows(page, snap, kSsidPage, options, {});
  }
  page.write(std::cout, options.json);
  return kOk;
}

int runWifiSet(const Options &options, const WifiTarget &target,
               const std::vector<std::string> &assignments, const WifiSetFlags &flags) {
  Snapshot snap;
  int failed = kOk;
  if (!takeSnapshot(snap, target, &failed)) return failed;

  // Every wanted value is checked and converted before anything is queued.
  struct Wanted {
    std::string object, param, value;
  };
  std::vector<Wanted> wanted;
  for (const std::string &assignment : assignments) {
    const std::size_t eq = assignment.find('=');
    const std::string param = assignment.substr(0, eq), value = assignment.substr(eq + 1);
    const WifiParamRow *row = snap.find(param);
    if (row == nullptr) {
      std::string names;
      for (int i = 0; i < snap.table->count; ++i) {
        names += (i == 0 ? "" : ", ") + fieldText(snap.table->rows[i].parameter);
      }
      throw UsageError(targetName(target) + " has no setting " + param + "; it has " + names);
    }
    for (const Wanted &w : wanted) {
      if (w.param == param) throw UsageError(param + " is given twice");
    }
    // The change table keeps 126 characters of a value: a longer one would
    // be saved cut.
    if (value.size() > kMaxValue) {
      throw UsageError(param + " holds at most " + std::to_string(kMaxValue) + " characters");
    }
    const wifi::Setting *s = findSetting(param);
    std::string config = s != nullptr ? wifi::toConfig(*s, value) : value;
    if (target.radio && param == "OperatingChannelBandwidth") {
      checkSupported(target.number, param, "SupportedOperatingChannelBandwidths", config, *s);
    }
    wanted.push_back({fieldText(row->object), param, config});
  }

  Json changed = Json::array(), current = Json::array();
  WifiParamTable changes{};
  for (const Wanted &w : wanted) {
    const int before = changes.count;
    const int rc = ComparOrSetParam(snap.table.get(), &changes, w.object.c_str(), w.param.c_str(),
                                    w.value.c_str(), flags.force ? 1 : 0);
    if (rc != 0) return reportError("cannot queue " + w.param + ": the change table is full");
    const std::string old = shownSecret(w.param, snap.value(w.param), options.showSecrets);
    const std::string now = shownSecret(w.param, w.value, options.showSecrets);
    if (changes.count > before) {
      changed.push_back(
          Json{{"object", w.object}, {"parameter", w.param}, {"from", old}, {"to", now}});
    } else {
      current.push_back(Json{{"object", w.object}, {"parameter", w.param}, {"value", now}});
    }
  }

  const bool send = changes.count > 0 && !flags.dryRun;
  if (send) {
    Request request;
    int rc = 0;
    if (flags.dbOnly) {
      // A message that the write-back itself starts would be applied: queue
      // every object and send the message as a store-only query.
      rc = faltocal_fromDB(request.get(), &changes, 1, 1);
      if (rc == 0)
        rc = faltocal_send_main_multi_obj(request.get(), "query", "set_only_db", "set", 0);
    } else {
      rc = faltocal_fromDB(request.get(), &changes, 0, 0);
    }
    if (rc != 0) return reportFailure("cannot save " + targetName(target), rc);
  }

  const char *outcome = !send ? (changes.count == 0 ? "nothing to send: every value is current"
                                                    : "dry run: nothing sent")
                        : flags.dbOnly ? "stored only"
                                       : "applied";
  if (options.json) {
    writeJson(std::cout, Json{{"target", targetName(target)},
                              {"changed", changed},
                              {"current", current},
                              {"sent", send},
                              {"applied", send && !flags.dbOnly}});
    return kOk;
  }
  for (const Json &c : changed) {
    std::cout << "changed  " << printable(c["object"].get<std::string>()) << ' '
              << printable(c["parameter"].get<std::string>()) << ": "
              << printable(c["from"].get<std::string>()) << " -> "
              << printable(c["to"].get<std::string>()) << '\n';
  }
  for (const Json &c : current) {
    std::cout << "current  " << printable(c["object"].get<std::string>()) << ' '
              << printable(c["parameter"].get<std::string>()) << ": "
              << printable(c["value"].get<std::string>()) << '\n';
  }
  std::cout << outcome << '\n';
  return kOk;
}

int runConvert(const Options &options, const std::string &name, const std::string &value,
               bool toConfig) {
  const wifi::Setting *s = findSetting(name);
  if (s == nullptr) {
    throw UsageError("unknown setting " + name + "; settings: " + wifi::settingNames());
  }
  const std::string converted = toConfig ? wifi::toConfig(*s, value) : wifi::toUiChecked(*s, value);
  if (options.json) {
    writeJson(std::cout, Json{{"setting", s->name},
                              {"parameter", s->param},
                              {"direction", toConfig ? "to-config" : "to-ui"},
                              {"value", value},
                              {"converted", converted}});
  } else {
    std::cout << printable(converted) << '\n';
  }
  return kOk;
}

int runUciEscape(const Options &options, const std::string &text) {
  std::string escaped(4 * text.size() + 1, '\0');
  ConvSpecialChar_forUciCli(text.c_str(), &escaped[0]);
  escaped.resize(std::char_traits<char>::length(escaped.c_str()));
  if (options.json) {
    writeJson(std::cout, Json{{"text", text}, {"escaped", escaped}});
  } else {
    std::cout << printable(escaped) << '\n';
  }
  return kOk;
}

void addWifiCommands(CLI::App &app, const Options &options, std::function<int()> &action,
                     bool &needsModel) {
  struct State {
    WifiTarget target;
    std::string kind, text, value;
    std::vector<std::string> assignments;
    WifiSetFlags flags;
    bool toUi = false, toConfig = false;
  };
  auto st = std::make_shared<State>();
  const CLI::Validator assignment(assignmentProblem, "");
  const CLI::Validator positive(
      [](const std::string &text) {
        return text.find_first_not_of("0123456789") == std::string::npos && text.size() < 6 &&
                       std::atoi(text.c_str()) >= 1
                   ? std::string()
                   : "must be a number of 1 or more, not '" + text + "'";
      },
      "");

  CLI::App *wifi =
      app.add_subcommand("wifi", "The SSIDs of both radios, or one of the Wi-Fi pages");
  wifi->require_subcommand(0, 1);
  wifi->callback([&action, &options] {
    if (!action) action = [&options] { return runWifi(options); };
  });
  for (const char *kind : {"ssid", "radio"}) {
    CLI::App *page =
        wifi->add_subcommand(kind, std::string("Settings of one ") + kind + " in the UI's words");
    page->add_option("N", st->target.number, "Its number in the configuration")
        ->required()
        ->check(positive);
    const bool radio = std::string(kind) == "radio";
    page->callback([&action, &options, st, radio] {
      st->target.radio = radio;
      action = [&options, st] { return runWifiPage(options, st->target); };
    });
  }
  CLI::App *set = wifi->add_subcommand("set", "Change settings of an SSID or a radio");
  set->add_option("KIND", st->kind, "ssid or radio")
      ->required()
      ->check(CLI::IsMember({"ssid", "radio"}));
  set->add_option("N", st->target.number, "Its number in the configuration")
      ->required()
      ->check(positive);
  set->add_option("NAME=VALUE", st->assignments, "Setting and its UI value")
      ->required()
      ->check(assignment);
  set->add_flag("--db-only", st->flags.dbOnly, "Store only, do not apply");
  set->add_flag("--force", st->flags.force, "Send values that are already current too");
  set->add_flag("--dry-run", st->flags.dryRun, "Compare only, send nothing");
  set->callback([&action, &options, st] {
    st->target.radio = st->kind == "radio";
    action = [&options, st] { return runWifiSet(options, st->target, st->assignments, st->flags); };
  });

  CLI::App *convert =
      app.add_subcommand("convert", "Convert a Wi-Fi value between the UI and the configuration");
  convert->add_option("SETTING", st->kind, "Setting: " + wifi::settingNames())->required();
  convert->add_option("VALUE", st->value, "The value")->required();
  CLI::Option *toUi = convert->add_flag("--to-ui", st->toUi, "Configuration value to UI (default)");
  convert->add_flag("--to-config", st->toConfig, "UI value to configuration")->excludes(toUi);
  convert->callback([&action, &options, &needsModel, st] {
    needsModel = false;
    action = [&options, st] { return runConvert(options, st->kind, st->value, st->toConfig); };
  });

  CLI::App *escape = app.add_subcommand("uci-escape", "Escape a text for a quoted UCI argument");
  escape->add_option("TEXT", st->text, "The text")->required();
  escape->callback([&action, &options, &needsModel, st] {
    needsModel = false;
    action = [&options, st] { return runUciEscape(options, st->text); };
  });
}

}  // namespace cli

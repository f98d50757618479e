// Every getter against every model of this folder: what it returns, writes,
// prints and asks for (golden files MODEL.golden beside the models), with
// each request failing in turn, and with values longer than any field.
// CALTOFAL_UPDATE_GOLDEN=1 rewrites the golden files.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "help_sim.h"
#include "net_test.h"

namespace {

using nettest::failRequest;

const char *const kModels[] = {"dhcp", "static", "pppoe_vlan", "pppoa_atm", "bridge"};
constexpr int kGuard = 64;

// The caller's memory for one getter, with guard bytes around each part.
template <typename T>
struct Guarded {
  char before[kGuard];
  T value;
  char after[kGuard];
  Guarded() {
    std::memset(before, 'G', kGuard);
    std::memset(&value, 0, sizeof value);
    std::memset(after, 'G', kGuard);
  }
  bool intact() const {
    for (int i = 0; i < kGuard; ++i) {
      if (before[i] != 'G' || after[i] != 'G') return false;
    }
    return true;
  }
};

struct Buffers {
  Guarded<ZintuWanInfo> wan;
  Guarded<char[128]> text;
  Guarded<char[16]> dns1;
  Guarded<char[16]> dns2;
  int32_t dnsAuto = -7;
  bool intact() const { return wan.intact() && text.intact() && dns1.intact() && dns2.intact(); }
  std::string render() const {
    std::string out = nettest::renderWan(wan.value);
    if (text.value[0] != '\0') out += "text = " + nettest::text(text.value) + "\n";
    if (dns1.value[0] != '\0') out += "dns1 = " + nettest::text(dns1.value) + "\n";
    if (dns2.value[0] != '\0') out += "dns2 = " + nettest::text(dns2.value) + "\n";
    if (dnsAuto != -7) out += "dnsAuto = " + std::to_string(dnsAuto) + "\n";
    return out;
  }
};

struct Getter {
  const char *name;
  std::function<int(Buffers &, const char *wan)> call;
};

const Getter kGetters[] = {
    {"ZintuGet_OperMode", [](Buffers &, const char *) { return ZintuGet_OperMode(); }},
    {"ZintuGet_DefGw", [](Buffers &b, const char *) { return ZintuGet_DefGw(&b.wan.value); }},
    {"ZintuGet_UciSectionByConnMode",
     [](Buffers &b, const char *) { return ZintuGet_UciSectionByConnMode("ppp", b.text.value); }},
    {"ZintuGet_UciSectionOfDefGw",
     [](Buffers &b, const char *) { return ZintuGet_UciSectionOfDefGw(b.text.value); }},
    {"ZintuGet_LowerLayers",
     [](Buffers &b, const char *wan) { return ZintuGet_LowerLayers(wan, b.text.value); }},
    {"ZintuGet_EthWanObjName",
     [](Buffers &b, const char *) { return ZintuGet_EthWanObjName(b.text.value); }},
    {"ZintuGet_WanDns",
     [](Buffers &b, const char *wan) { return ZintuGet_WanDns(wan, b.dns1.value, b.dns2.value); }},
    {"ZintuGet_WanStaticDns",
     [](Buffers &b, const char *wan) {
       return ZintuGet_WanStaticDns(wan, &b.dnsAuto, b.dns1.value, b.dns2.value);
     }},
    {"ZintuGet_BrWanInfo",
     [](Buffers &b, const char *) { return ZintuGet_BrWanInfo(0, &b.wan.value); }},
    {"ZintuGet_WanIPv6",
     [](Buffers &b, const char *wan) {
       std::snprintf(b.wan.value.sWanIpInterface, 256, "%s", wan);
       const std::size_t prefix = std::strlen("Device.IP.Interface.");
       b.wan.value.nWanIpIfIndex = std::strlen(wan) > prefix ? std::atoi(wan + prefix) : 0;
       return ZintuGet_WanIPv6(&b.wan.value);
     }},
    {"ZintuGet_DefWanInfo",
     [](Buffers &b, const char *) { return ZintuGet_DefWanInfo(&b.wan.value); }},
    {"ZintuGet_IPv6PD", [](Buffers &, const char *) { return ZintuGet_IPv6PD(); }},
    {"ZintuGet_AtmInfo", [](Buffers &b, const char *) { return ZintuGet_AtmInfo(&b.wan.value); }},
};

// The console with escaped line ends; line numbers of traces become '#'
// except the lines that the system pins.
std::string consoleText() {
  static const std::regex tag("(ZintuNetworkGet:|\\[\\w+ : )([0-9]+)");
  static const std::set<std::string> pinned = {"636", "1442", "1475", "1513"};
  const std::string console = fakeos::console();
  std::string masked;
  auto last = console.cbegin();
  for (std::sregex_iterator it(console.begin(), console.end(), tag), end; it != end; ++it) {
    masked.append(last, (*it)[2].first);
    masked += pinned.count((*it)[2].str()) ? (*it)[2].str() : "#";
    last = (*it)[2].second;
  }
  masked.append(last, console.cend());
  std::string out;
  for (char c : masked) out += c == '\n' ? "\\n" : c == '\t' ? "\\t" : std::string(1, c);
  return out;
}

class Models : public nettest::NetTest {
 protected:
  // The model's WAN interface, as the current network names it.
  std::string wan() {
    return calsim::value("Device.X_ZINTU_CurrentNetwork", "WanIpInterface").value_or("");
  }
};

TEST_F(Models, GoldenResults) {
  for (const char *model : kModels) {
    SCOPED_TRACE(model);
    loadFile(std::string(model) + ".model");
    const std::string iface = wan();
    std::string actual;
    for (const Getter &g : kGetters) {
      fakeos::reset();
      calsim::clearRequests();
      Buffers b;
      int rc = g.call(b, iface.c_str());
      EXPECT_TRUE(b.intact()) << g.name;
      actual +=
          std::string("== ") + g.name + "\nresult = " + std::to_string(rc) + "\n" + b.render();
      if (!fakeos::console().empty()) actual += "console = " + consoleText() + "\n";
      actual += nettest::requestLog();
    }
    const std::string path = nettest::modelPath(std::string(model) + ".golden");
    if (std::getenv("CALTOFAL_UPDATE_GOLDEN") != nullptr) std::ofstream(path) << actual;
    EXPECT_EQ(actual, nettest::readFile(path));
  }
}

TEST_F(Models, EachRequestFailingInTurnLeaksNothing) {
  for (const char *model : kModels) {
    loadFile(std::string(model) + ".model");
    const std::string iface = wan();
    for (const Getter &g : kGetters) {
      SCOPED_TRACE(std::string(model) + " " + g.name);
      calsim::clearRequests();
      Buffers clean;
      g.call(clean, iface.c_str());
      const int requests = static_cast<int>(calsim::requests().size());
      for (int code : {-5, -202, -208}) {
        for (int n = 1; n <= requests; ++n) {
          long live = help_liveAllocations();
          failRequest(n, code);
          Buffers b;
          int rc = g.call(b, iface.c_str());
          failRequest(0, 0);
          EXPECT_EQ(help_liveAllocations(), live) << "request " << n;
          EXPECT_TRUE(b.intact()) << "request " << n;
          EXPECT_LE(rc, 1) << "request " << n;
        }
      }
    }
  }
}

// Every value made longer than any field: kept as a prefix (references
// and prefix tests still match) or replaced.
TEST_F(Models, OverlongValuesNeverLeaveTheirFields) {
  static const std::regex line("^([A-Za-z0-9_]+) = (.*)$", std::regex::multiline);
  for (const char *model : kModels) {
    const std::string original =
        nettest::readFile(nettest::modelPath(std::string(model) + ".model"));
    for (const char *replacement : {"$1 = $2", "$1 = "}) {
      std::string text = std::regex_replace(original, line, replacement + std::string(900, 'z'));
      ASSERT_GT(text.size(), original.size() + 20 * 900);
      loadText(text);
      const std::string iface = wan();
      for (const Getter &g : kGetters) {
        Buffers b;
        g.call(b, iface.c_str());
        EXPECT_TRUE(b.intact()) << model << " " << g.name;
      }
    }
  }
}

}  // namespace

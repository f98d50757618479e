// The network getters driven by the case files of cases/: each case names a
// model, fills the caller's buffers, may make one request fail, and calls
// getters. What each call returns, writes, prints and asks for must equal
// cases/NAME.golden (CALTOFAL_UPDATE_GOLDEN=1 rewrites it). Every call also
// runs with each of its requests failing in turn, and with every value of
// its model longer than any field: no message may be left behind and no
// byte around the caller's buffers may change.
//
// A case file: lines before its first case apply to every case of the file,
// lines after "--- TITLE" and before the next case to those of that group.
//   # comment                     == TITLE          starts a case
//   template NAME / lines / end   text with ${VAR}, "\n", "{N*c}" (N times c)
//   model FILE.model | NAME       a model of models/, or a template
//   model / lines / end           the case's own model text
//   let VAR = VALUE               a template variable
//   fill FIELD = VALUE            a record field, text, dns1, dns2 or dnsAuto,
//                                 before each following call
//   fail N CODE                   the n-th request of the following calls fails
//   extra N OBJECT                the n-th answer of the following calls ends
//                                 with an object OBJECT without parameters
//   call GETTER ARG... !OUT...    ARG: text, "", null, $wan (the model's WAN);
//                                 !info !text !text2 !dns1 !dns2 !auto !dsl
//                                 !modes !lan4 !lan6 !mwan pass null
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "calsim.h"
#include "caltofal.h"
#include "fake_os.h"
#include "help_objlist.h"
#include "help_sim.h"
#include "libcal.h"

// The library's gets pass through here (the program links with --wrap): the
// chosen one gets an injected failure, then goes to the emulator as usual.
extern "C" int __real_cal_getValue(MsgHeader *msg);

namespace {

int g_failAt = 0, g_failCode = 0, g_seen = 0;
int g_extraAt = 0;
std::string g_extraName;

void failRequest(int n, int code) {
  g_seen = 0;
  g_failCode = code;
  g_failAt = n;
}

}  // namespace

extern "C" int __wrap_cal_getValue(MsgHeader *msg) {
  if (++g_seen == g_failAt) calsim::injectFailure(g_failCode, 1);
  int rc = __real_cal_getValue(msg);
  if (rc == 0 && g_seen == g_extraAt) {  // an object the emulator would never answer
    help_addObjList(static_cast<ObjList *>(msg->pObjList), g_extraName.c_str(), 0, 0, 0, 0);
  }
  return rc;
}

namespace {

const std::string kDir = NETWORK_TEST_DIR;
const std::string kCurrent = "Device.X_ZINTU_CurrentNetwork";

std::string readFile(const std::string &path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

// Case text to bytes: "\n", "\t", "\0" and "{N*c}".
std::string expand(const std::string &text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    int count = 0, used = 0;
    char c = 0;
    if (text[i] == '\\' && i + 1 < text.size()) {
      c = text[++i];
      out += c == 'n' ? '\n' : c == 't' ? '\t' : c == '0' ? '\0' : c;
    } else if (std::sscanf(text.c_str() + i, "{%d*%c}%n", &count, &c, &used) == 2 && used > 0) {
      out.append(count, c);
      i += used - 1;
    } else {
      out += text[i];
    }
  }
  return out;
}

// Bytes to case text, the other way round; trailing NULs are left out.
std::string show(const char *at, std::size_t size) {
  while (size > 0 && at[size - 1] == '\0') --size;
  std::string out;
  for (std::size_t i = 0; i < size;) {
    std::size_t run = 1;
    while (i + run < size && at[i + run] == at[i]) ++run;
    if (run >= 8 && at[i] > ' ') {
      out += "{" + std::to_string(run) + "*" + at[i] + "}";
      i += run;
      continue;
    }
    char c = at[i++];
    out += c == '\0' ? "\\0" : c == '\n' ? "\\n" : c == '\t' ? "\\t" : std::string(1, c);
  }
  return out;
}

struct Field {
  const char *name;
  std::size_t offset;
  std::size_t size;
};
// clang-format off
#define F(m) {#m, offsetof(ZintuWanInfo, m), sizeof(ZintuWanInfo::m)}
constexpr Field kWanFields[] = {
    F(sStatus), F(sWanIpType), F(sWanLinkType), F(sOperMode), F(sIpv4Mode), F(sIPAddress),
    F(sSubnetMask), F(sGateway), F(sName), F(sWanIpInterface), F(nWanIpIfIndex), F(sLowerLayers),
    F(sReserved1), F(sDescription), F(sPppStaticAddress), F(sUsername), F(sPassword),
    F(sConnectionTrigger), F(nIdleDisconnectTime), F(nMaxMRUSize), F(sACName), F(sServiceName),
    F(sPppInterface), F(bDnsAuto), F(sDNS1), F(sDNS2), F(sReserved2), F(nAtmVpi), F(nAtmVci),
    F(sAtmQoSClass), F(sReserved3), F(bVlanEnable), F(nVlanID), F(sReserved4), F(bIpv6Enable),
    F(sIpv6Type), F(sIpv6Address), F(sIpv6NextHop)};
#undef F
#define F(m) {#m, offsetof(ZintuDslLineInfo, m), sizeof(ZintuDslLineInfo::m)}
constexpr Field kDslFields[] = {
    F(sStatus), F(sCurrentProfile), F(sReserved), F(nUpstreamCurrRate), F(nDownstreamCurrRate),
    F(nUpstreamMaxBitRate), F(nDownstreamMaxBitRate), F(nUpstreamNoiseMargin),
    F(nDownstreamNoiseMargin), F(sLATNds), F(sLATNus), F(nXTURCRCErrors), F(nXTUCCRCErrors)};
#undef F
#define F(m) {#m, offsetof(LANv4Info, m), sizeof(LANv4Info::m)}
constexpr Field kLanv4Fields[] = {
    F(bDHCPv4Active), F(sIPv4Address), F(sIPv4Subnet), F(sDHCPv4StartIP), F(sDHCPv4EndIP),
    F(sMACAddr), F(nLeaseTimeSec)};
#undef F
#define F(m) {#m, offsetof(LANv6Info, m), sizeof(LANv6Info::m)}
constexpr Field kLanv6Fields[] = {
    F(bIPv6Active), F(sIPv6Address), F(nPrefixLength), F(sLANv6Mode), F(sDNSv6Primary),
    F(sDNSv6Secondary), F(sDomainNamev6), F(sDHCPv6StartIP), F(sDHCPv6EndIP), F(nLeaseTimeSec),
    F(bPDActive), F(sManualPrefix), F(nManualPrefixLength)};
#undef F
#define F(m) {#m, offsetof(ZintuMultiWanInfo, m), sizeof(ZintuMultiWanInfo::m)}
constexpr Field kMultiWanFields[] = {
    F(nEnabled), F(nFailOver), F(nWan1Type), F(nWan2Type), F(sWan1Interface), F(sWan2Interface)};
// clang-format on
#undef F

constexpr int kGuard = 64;

// The caller's memory for one output, with guard bytes around it.
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
    const std::string guard(kGuard, 'G');
    return std::memcmp(before, guard.data(), kGuard) == 0 &&
           std::memcmp(after, guard.data(), kGuard) == 0;
  }
};

// Every output a getter can write, as a list of named fields. The WAN
// summary's fields go by their own names, those of the other records with
// the record's name before them ("lan4.sMACAddr").
struct Buffers {
  Guarded<ZintuWanInfo> wan;
  Guarded<ZintuDslLineInfo> dsl;
  Guarded<int32_t[10]> modes;
  Guarded<LANv4Info> lan4;
  Guarded<LANv6Info> lan6;
  Guarded<ZintuMultiWanInfo> mwan;
  Guarded<char[128]> text;
  Guarded<char[128]> text2;
  Guarded<char[16]> dns1;
  Guarded<char[16]> dns2;
  int32_t dnsAuto = -7;  // shown when changed

  struct Area {
    std::string name;
    char *at;
    std::size_t size;
    bool text;  // characters, else a number
  };
  template <std::size_t N>
  static void add(std::vector<Area> &all, const std::string &prefix, const Field (&fields)[N],
                  void *record) {
    for (const Field &f : fields) {
      all.push_back(
          {prefix + f.name, static_cast<char *>(record) + f.offset, f.size, f.name[0] == 's'});
    }
  }
  std::vector<Area> areas() {
    std::vector<Area> all;
    add(all, "", kWanFields, &wan.value);
    add(all, "dsl.", kDslFields, &dsl.value);
    for (int i = 0; i < 10; ++i) {
      all.push_back({"modes[" + std::to_string(i) + "]", reinterpret_cast<char *>(&modes.value[i]),
                     sizeof(int32_t), false});
    }
    add(all, "lan4.", kLanv4Fields, &lan4.value);
    add(all, "lan6.", kLanv6Fields, &lan6.value);
    add(all, "mwan.", kMultiWanFields, &mwan.value);
    all.insert(all.end(), {{"text", text.value, sizeof text.value, true},
                           {"text2", text2.value, sizeof text2.value, true},
                           {"dns1", dns1.value, sizeof dns1.value, true},
                           {"dns2", dns2.value, sizeof dns2.value, true},
                           {"dnsAuto", reinterpret_cast<char *>(&dnsAuto), sizeof dnsAuto, false}});
    return all;
  }
  bool intact() const {
    return wan.intact() && dsl.intact() && modes.intact() && lan4.intact() && lan6.intact() &&
           mwan.intact() && text.intact() && text2.intact() && dns1.intact() && dns2.intact();
  }

  void fill(const std::string &name, const std::string &value) {
    for (const Area &a : areas()) {
      if (name != a.name) continue;
      const int32_t number = std::atoi(value.c_str());  // a uint8 takes the low byte
      ASSERT_LE(a.text ? value.size() : sizeof number, a.text ? a.size : sizeof number);
      std::memcpy(a.at, a.text ? value.data() : reinterpret_cast<const char *>(&number),
                  a.text ? value.size() : a.size);
      return;
    }
    ADD_FAILURE() << "no field " << name;
  }

  std::string render() {
    std::string out;
    for (const Area &a : areas()) {
      if (a.text) {  // text up to its end; reserved bytes all
        const bool reserved = a.name.find("sReserved") != std::string::npos;
        if (std::string text = show(a.at, reserved ? a.size : strnlen(a.at, a.size)); !text.empty())
          out += a.name + " = " + text + "\n";
        continue;
      }
      int32_t number = static_cast<uint8_t>(a.at[0]);
      if (a.size == sizeof number) std::memcpy(&number, a.at, sizeof number);
      if (number != (a.name == "dnsAuto" ? -7 : 0))
        out += a.name + " = " + std::to_string(number) + "\n";
    }
    return out;
  }
};

// What a call passes: its arguments, and the caller's buffers or null.
struct Pass {
  std::vector<const char *> args;
  const char *arg;  // the last argument
  ZintuWanInfo *info;
  char *text, *dns1, *dns2;
  int32_t *dnsAuto;
  ZintuDslLineInfo *dsl;
  int32_t *modes;
  LANv4Info *lan4;
  LANv6Info *lan6;
  ZintuMultiWanInfo *mwan;
  char *text2;
  const char *at(std::size_t i) const { return i < args.size() ? args[i] : nullptr; }
};

// The WAN fields that the summary fills before it asks for the IPv6 block.
ZintuWanInfo *onWan(ZintuWanInfo *info, const char *wan) {
  if (info == nullptr) return nullptr;
  std::snprintf(info->sWanIpInterface, sizeof info->sWanIpInterface, "%s", wan);
  info->nWanIpIfIndex = std::atoi(wan + std::min<std::size_t>(std::strlen(wan), 20));
  return info;
}

// clang-format off
const std::pair<const char *, int32_t (*)(const Pass &)> kGetters[] = {
    {"ZintuGet_OperMode", [](const Pass &) { return ZintuGet_OperMode(); }},
    {"ZintuGet_DefGw", [](const Pass &p) { return ZintuGet_DefGw(p.info); }},
    {"ZintuGet_UciSectionByConnMode",
     [](const Pass &p) { return ZintuGet_UciSectionByConnMode(p.arg, p.text); }},
    {"ZintuGet_UciSectionOfDefGw", [](const Pass &p) { return ZintuGet_UciSectionOfDefGw(p.text); }},
    {"ZintuGet_LowerLayers", [](const Pass &p) { return ZintuGet_LowerLayers(p.arg, p.text); }},
    {"ZintuGet_EthWanObjName", [](const Pass &p) { return ZintuGet_EthWanObjName(p.text); }},
    {"ZintuGet_WanDns", [](const Pass &p) { return ZintuGet_WanDns(p.arg, p.dns1, p.dns2); }},
    {"ZintuGet_WanStaticDns",
     [](const Pass &p) { return ZintuGet_WanStaticDns(p.arg, p.dnsAuto, p.dns1, p.dns2); }},
    {"ZintuGet_BrWanInfo",
     [](const Pass &p) { return ZintuGet_BrWanInfo(std::strtoul(p.arg, nullptr, 0), p.info); }},
    {"ZintuGet_WanIPv6", [](const Pass &p) { return ZintuGet_WanIPv6(onWan(p.info, p.arg)); }},
    {"ZintuGet_DefWanInfo", [](const Pass &p) { return ZintuGet_DefWanInfo(p.info); }},
    {"ZintuGet_IPv6PD", [](const Pass &) { return ZintuGet_IPv6PD(); }},
    {"ZintuGet_AtmInfo", [](const Pass &p) { return ZintuGet_AtmInfo(p.info); }},
    {"ZintuGet_LineInfo", [](const Pass &p) { return ZintuGet_LineInfo(p.dsl); }},
    {"ZintuGet_DslMode", [](const Pass &p) { return ZintuGet_DslMode(p.modes); }},
    {"ZintuGet_LANv4Info", [](const Pass &p) { return ZintuGet_LANv4Info(p.lan4); }},
    {"ZintuGet_LANv6Info", [](const Pass &p) { return ZintuGet_LANv6Info(p.lan6); }},
    {"ZintuGet_MultiWanInfo", [](const Pass &p) { return ZintuGet_MultiWanInfo(p.mwan); }},
    {"zintu_GetWanIfName", [](const Pass &p) { return zintu_GetWanIfName(p.text); }},
    {"zintu_GetValueFromDBInfo", [](const Pass &p) {
       return zintu_GetValueFromDBInfo(p.at(0), p.at(1), p.at(2), p.at(3), p.text, p.text2);
     }},
    {"Zintu_isEnabledIptvStb", [](const Pass &) { return Zintu_isEnabledIptvStb(); }},
};
// clang-format on

struct Call {
  std::string line;
  std::vector<std::pair<std::string, std::string>> fills;
  int failAt = 0, failCode = 0;
  int extraAt = 0;
  std::string extraName;
};

struct Case {
  std::string title, model, ownModel;
  std::map<std::string, std::string> lets;
  Call next;  // fills and failure for the calls that follow
  std::vector<Call> calls;
};

struct CaseFile {
  std::map<std::string, std::string> templates;
  std::vector<Case> cases;

  explicit CaseFile(const std::string &path) {
    Case prelude, top;
    bool inPrelude = true, inTop = true;
    std::istringstream in(readFile(path));
    std::string line;
    auto block = [&in]() {
      std::string text, row;
      while (std::getline(in, row) && row != "end") text += row + "\n";
      return text;
    };
    while (std::getline(in, line)) {
      if (line.empty() || line[0] == '#') continue;
      Case &c = inPrelude ? prelude : cases.back();
      const std::string word = line.substr(0, line.find(' '));
      const std::string rest = line.size() > word.size() ? line.substr(word.size() + 1) : "";
      const std::string key = rest.substr(0, rest.find(" ="));
      const std::string value = rest.size() > key.size() + 3 ? rest.substr(key.size() + 3) : "";
      if (inTop && (word == "==" || word == "---")) top = prelude;
      inTop = inTop && word != "==" && word != "---";
      if (word == "==") {
        cases.push_back(prelude);
        cases.back().title = rest;
        inPrelude = false;
      } else if (word == "---") {
        prelude = top;
        inPrelude = true;
      } else if (word == "template") {
        templates[rest] = block();
      } else if (word == "model") {
        c.model = rest;
        c.ownModel = rest.empty() ? block() : "";
      } else if (word == "let") {
        c.lets[key] = value;
      } else if (word == "fill") {
        c.next.fills.emplace_back(key, value);
      } else if (word == "fail") {
        EXPECT_EQ(std::sscanf(rest.c_str(), "%d %d", &c.next.failAt, &c.next.failCode), 2) << line;
      } else if (word == "extra") {
        c.next.extraAt = std::atoi(rest.c_str());
        c.next.extraName = rest.substr(rest.find(' ') + 1);
      } else if (word == "call") {
        c.calls.push_back(c.next);
        c.calls.back().line = rest;
      } else {
        ADD_FAILURE() << path << ": what is [" << line << "]";
      }
    }
  }

  std::string modelText(const Case &c) const {
    if (c.model.find(".model") != std::string::npos) return readFile(kDir + "/models/" + c.model);
    auto found = templates.find(c.model);
    std::string text = c.model.empty() ? c.ownModel : found != templates.end() ? found->second : "";
    EXPECT_FALSE(text.empty()) << c.title << ": no model";
    for (std::size_t at = 0; (at = text.find("${", at)) != std::string::npos;) {
      std::size_t close = text.find('}', at);
      auto let = c.lets.find(text.substr(at + 2, close - at - 2));
      if (let == c.lets.end()) {
        ADD_FAILURE() << c.title << ": no value for " << text.substr(at, close - at + 1);
        return "";
      }
      text.replace(at, close - at + 1, let->second);
      at += let->second.size();
    }
    return expand(text);
  }
};

// The console with escaped line ends; line numbers of traces become '#'
// except the lines that the system pins.
std::string consoleText() {
  static const std::regex tag("(ZintuNetworkGet:|\\[\\w+ : )([0-9]+)");
  static const std::set<std::string> pinned = {
      "636",  "1442", "1475", "1513", "1556", "1566", "1572", "1629", "1670",
      "1674", "1678", "1682", "1774", "1811", "1875", "2012", "2018", "2031",
      "2035", "2039", "2055", "2058", "2061", "2084", "2090"};
  const std::string console = fakeos::console();
  std::string masked;
  auto last = console.cbegin();
  for (std::sregex_iterator it(console.begin(), console.end(), tag), end; it != end; ++it) {
    masked.append(last, (*it)[2].first);
    masked += pinned.count((*it)[2].str()) ? (*it)[2].str() : "#";
    last = (*it)[2].second;
  }
  masked.append(last, console.cend());
  return show(masked.data(), masked.size());
}

// One line per request: "ENTRY owner=N flags=0xN OBJECT[ NAME=VALUE...]".
std::string requestLog() {
  std::ostringstream out;
  for (const calsim::Request &r : calsim::requests()) {
    out << r.entry << " owner=" << r.owner << " flags=0x" << std::hex << r.listFlags << std::dec;
    for (const calsim::RequestObject &o : r.objects) {
      out << ' ' << o.name;
      for (const auto &[name, value] : o.params) out << ' ' << name << '=' << value;
    }
    out << '\n';
  }
  return out.str();
}

// Runs one call on fresh buffers, request `failAt` failing with `code`,
// after checking that it left no message and no guard byte changed; returns
// its outcome as golden text.
std::string run(const Case &c, const Call &call, int failAt, int code, int *result = nullptr) {
  fakeos::reset();
  calsim::clearRequests();
  Buffers b;
  for (const auto &[name, value] : call.fills) b.fill(name, expand(value));
  std::istringstream words(call.line);
  std::string name, word;
  std::vector<std::optional<std::string>> args;
  std::set<std::string> nulls;
  for (words >> name; words >> word;) {
    if (word[0] == '!') {
      nulls.insert(word);
      continue;
    }
    if (word == "null") {
      args.emplace_back();
    } else {
      args.emplace_back(word == "\"\""   ? ""
                        : word == "$wan" ? calsim::value(kCurrent, "WanIpInterface").value_or("")
                                         : expand(word));
    }
  }
  std::vector<const char *> argv;
  for (const auto &a : args) argv.push_back(a ? a->c_str() : nullptr);
  auto pass = [&nulls](const char *out, auto *buffer) {  // "!OUT" passes null
    return nulls.count(std::string("!") + out) == 0 ? buffer : nullptr;
  };
  const Pass p{argv,
               argv.empty() ? nullptr : argv.back(),
               pass("info", &b.wan.value),
               pass("text", b.text.value),
               pass("dns1", b.dns1.value),
               pass("dns2", b.dns2.value),
               pass("auto", &b.dnsAuto),
               pass("dsl", &b.dsl.value),
               pass("modes", b.modes.value),
               pass("lan4", &b.lan4.value),
               pass("lan6", &b.lan6.value),
               pass("mwan", &b.mwan.value),
               pass("text2", b.text2.value)};
  auto getter = std::find_if(std::begin(kGetters), std::end(kGetters),
                             [&name](const auto &g) { return name == g.first; });
  if (getter == std::end(kGetters)) {
    ADD_FAILURE() << "no getter " << name;
    return "";
  }
  const long live = help_liveAllocations();
  failRequest(failAt, code);
  g_extraAt = call.extraAt;
  g_extraName = call.extraName;
  const int rc = getter->second(p);
  failRequest(0, 0);
  g_extraAt = 0;
  EXPECT_EQ(help_liveAllocations(), live) << c.title << ": " << call.line << " left a message";
  EXPECT_TRUE(b.intact()) << c.title << ": " << call.line << " wrote beside its buffers";
  if (result != nullptr) *result = rc;
  std::string out = "> " + call.line + "\nresult = " + std::to_string(rc) + "\n" + b.render();
  if (!fakeos::console().empty()) out += "console = " + consoleText() + "\n";
  return out + requestLog();
}

class Cases : public ::testing::TestWithParam<const char *> {
 protected:
  void SetUp() override { calsim::reset(); }
  void TearDown() override { calsim::reset(); }
  bool load(const Case &c, const std::string &text) {
    std::string error;
    const bool loaded = calsim::loadModelString(text, c.title, &error);
    EXPECT_TRUE(loaded) << c.title << ": " << error;
    return loaded;
  }
  const CaseFile file{kDir + "/cases/" + GetParam() + ".cases"};
};

TEST_P(Cases, MatchTheGoldenFile) {
  ASSERT_FALSE(file.cases.empty());
  std::string actual;
  for (const Case &c : file.cases) {
    actual += "== " + c.title + "\n";
    if (!load(c, file.modelText(c))) continue;
    for (const Call &call : c.calls) actual += run(c, call, call.failAt, call.failCode);
  }
  const std::string path = kDir + "/cases/" + GetParam() + ".golden";
  if (std::getenv("CALTOFAL_UPDATE_GOLDEN") != nullptr) std::ofstream(path) << actual;
  const std::string golden = readFile(path);
  std::istringstream got(actual), want(golden);
  std::string gotLine, wantLine;
  int n = 1;
  while (std::getline(got, gotLine) && std::getline(want, wantLine) && gotLine == wantLine) ++n;
  EXPECT_TRUE(actual == golden) << path << ":" << n << " differs (CALTOFAL_UPDATE_GOLDEN=1 and a "
                                << "diff show all)\n  golden: " << wantLine
                                << "\n  actual: " << gotLine;
}

TEST_P(Cases, EachRequestFailingInTurnLeaksNothing) {
  for (const Case &c : file.cases) {
    if (!load(c, file.modelText(c))) continue;
    for (const Call &call : c.calls) {
      run(c, call, 0, 0);
      const int requests = static_cast<int>(calsim::requests().size());
      for (int code : {-5, -202, -208}) {
        for (int n = 1; n <= requests; ++n) {
          int rc = 0;
          run(c, call, n, code, &rc);
          EXPECT_LE(rc, 1) << c.title << ": " << call.line << " request " << n;
        }
      }
    }
  }
}

// The helper library's allocation fails at call i, for each i the call makes
// (its own messages' nodes and the emulator's answer nodes alike): no crash,
// no message left, nothing written beside the records, a failure result.
TEST_P(Cases, EachAllocationFailingInTurnLeaksNothing) {
  long injected = 0;
  for (const Case &c : file.cases) {
    if (!load(c, file.modelText(c))) continue;
    for (const Call &call : c.calls) {
      const long before = help_allocationCount();
      run(c, call, 0, 0);
      const long allocations = help_allocationCount() - before;
      for (long n = 1; n <= allocations; ++n) {
        int rc = 0;
        help_failAllocationAt(n);
        run(c, call, 0, 0, &rc);
        help_failAllocationAt(0);
        EXPECT_LE(rc, 1) << c.title << ": " << call.line << " allocation " << n;
        ++injected;
      }
    }
  }
  EXPECT_GT(injected, 0);
}

// Every value of a model made longer than any field, `size` characters (the
// helper library keeps the first 1023 of a value): kept as a prefix
// (references and prefix tests still match), or replaced.
std::string overlong(const std::string &model, bool keepValue, std::size_t size) {
  static const std::regex param("([A-Za-z0-9_]+) =(?: (.*))?");
  std::istringstream in(model);
  std::string line, out;
  std::smatch m;
  while (std::getline(in, line)) {
    if (std::regex_match(line, m, param))
      line = m[1].str() + " = " +
             ((keepValue ? m[2].str() : "") + std::string(size, 'z')).substr(0, size);
    out += line + "\n";
  }
  return out;
}

// Values of 1000 characters and of 1023, the most a parameter node carries
// (longer ones, 4 KiB or 1 MiB, are cut to 1023 by the helper library: see
// the helper's tests). The guard bytes around every record stay intact.
TEST_P(Cases, OverlongValuesNeverLeaveTheirFields) {
  for (const Case &c : file.cases) {
    for (std::size_t size : {std::size_t{1000}, std::size_t{1023}}) {
      for (bool keepValue : {true, false}) {
        const std::string text = overlong(file.modelText(c), keepValue, size);
        ASSERT_NE(text.find(std::string(900, 'z')), std::string::npos) << c.title;
        if (!load(c, text)) continue;
        for (const Call &call : c.calls) run(c, call, 0, 0);
      }
    }
  }
}

// Without its record a getter makes the requests and prints the traces that
// it makes and prints with one, up to where it would write: when its first
// request fails, the call looks the same as with the record.
TEST(NoRecord, AFailingFirstRequestIsTracedAsWithTheRecord) {
  const std::pair<const char *, const char *> kCalls[] = {
      {"ZintuGet_DefGw", "!info"},        {"ZintuGet_AtmInfo", "!info"},
      {"ZintuGet_LineInfo", "!dsl"},      {"ZintuGet_DslMode", "!modes"},
      {"ZintuGet_LANv4Info", "!lan4"},    {"ZintuGet_LANv6Info", "!lan6"},
      {"ZintuGet_MultiWanInfo", "!mwan"}, {"zintu_GetWanIfName", "!text"}};
  calsim::reset();
  std::string error;
  ASSERT_TRUE(
      calsim::loadModelString(readFile(kDir + "/models/pppoe_vlan.model"), "sample", &error))
      << error;
  Case c;
  c.title = "no record";
  auto outcome = [&c](const std::string &line, int code) {
    Call call;
    call.line = line;
    const std::string text = run(c, call, 1, code);
    return text.substr(text.find('\n'));  // all but the call's own line
  };
  for (const auto &[getter, noRecord] : kCalls) {
    for (int code : {-5, -1}) {
      const std::string without = outcome(std::string(getter) + " " + noRecord, code);
      EXPECT_NE(without.find("result = -1\n"), std::string::npos) << getter << " " << code;
      EXPECT_EQ(without, outcome(getter, code)) << getter << " " << code;
    }
  }
  calsim::reset();
}

INSTANTIATE_TEST_SUITE_P(Network, Cases,
                         ::testing::Values("models", "getters", "dns", "bridge_ipv6", "def_wan",
                                           "dsl", "lan", "multiwan"),
                         [](const auto &info) { return std::string(info.param); });

}  // namespace

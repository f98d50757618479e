#include "net_test.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <fstream>
#include <regex>
#include <sstream>

#include "help_sim.h"
#include "libcal.h"

// The library's gets pass through here (the test program links with
// --wrap): the chosen one gets an injected failure, then goes to the
// emulator as usual.
extern "C" int __real_cal_getValue(MsgHeader *msg);

namespace {

std::atomic<int> g_failAt{0};
std::atomic<int> g_failCode{0};
std::atomic<int> g_seen{0};

}  // namespace

extern "C" int __wrap_cal_getValue(MsgHeader *msg) {
  if (++g_seen == g_failAt) calsim::injectFailure(g_failCode, 1);
  return __real_cal_getValue(msg);
}

namespace nettest {

std::string modelPath(const std::string &name) {
  return std::string(NETWORK_MODELS_DIR) + "/" + name;
}

std::string readFile(const std::string &path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

void failRequest(int n, int code) {
  g_seen = 0;
  g_failCode = code;
  g_failAt = n;
}

::testing::AssertionResult consoleIs(const std::string &expected) {
  std::string pattern;
  for (char c : expected) {
    if (c == '#') {
      pattern += "[0-9]+";
      continue;
    }
    if (std::strchr("\\^$.|?*+()[]{}", c) != nullptr) pattern += '\\';
    pattern += c;
  }
  std::string actual = fakeos::console();
  if (std::regex_match(actual, std::regex(pattern))) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "console was [" << actual << "]";
}

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

namespace {
struct Field {
  const char *name;  // s: text, n/b: number, sReserved: never written
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
// clang-format on
#undef F
}  // namespace

std::string renderWan(const ZintuWanInfo &info) {
  std::ostringstream out;
  for (const Field &f : kWanFields) {
    const char *at = reinterpret_cast<const char *>(&info) + f.offset;
    if (std::strncmp(f.name, "sReserved", 9) == 0) {
      if (std::any_of(at, at + f.size, [](char c) { return c != 0; }))
        out << f.name << " written\n";
    } else if (f.name[0] == 's') {
      if (at[0] != '\0') out << f.name << " = " << std::string(at, strnlen(at, f.size)) << '\n';
    } else {
      int32_t value = static_cast<uint8_t>(at[0]);
      if (f.size == sizeof value) std::memcpy(&value, at, sizeof value);
      if (value != 0) out << f.name << " = " << value << '\n';
    }
  }
  return out.str();
}

void NetTest::SetUp() {
  fakeos::reset();
  calsim::reset();
  failRequest(0, 0);
  liveBefore_ = help_liveAllocations();
}

void NetTest::TearDown() {
  EXPECT_EQ(help_liveAllocations(), liveBefore_) << "a request message was not released";
  failRequest(0, 0);
  calsim::reset();
}

void NetTest::loadFile(const std::string &name) {
  std::string error;
  ASSERT_TRUE(calsim::loadModelFile(modelPath(name), &error)) << error;
  calsim::clearRequests();
}

void NetTest::loadText(const std::string &text) {
  std::string error;
  ASSERT_TRUE(calsim::loadModelString(text, "inline.model", &error)) << error;
  calsim::clearRequests();
}

}  // namespace nettest

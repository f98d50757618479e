// Every page against the shipped library and the emulator: each getter on
// the sample gateway, and the calls whose cost grows with the gateway (the
// host table, a lookup in a large answer, the emulator's load and subtree
// get). scripts/perf/bench.sh runs each size in a process of its own.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

#include "calsim.h"
#include "caltofal.h"
#include "help_objlist.h"

namespace {

std::string readFile(const char *path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

void loadText(const std::string &text) {
  std::string error;
  if (!calsim::loadModelString(text, "bench.model", &error)) {
    std::fprintf(stderr, "bench: %s\n", error.c_str());
    std::abort();
  }
}

void loadSample() {
  static const std::string sample = readFile(CALTOFAL_SAMPLE_MODEL);
  loadText(sample);
}

// A gateway with `hosts` host entries of the sample's shape.
std::string hostsModel(int hosts) {
  std::string text = "[Device.Hosts]\nHostNumberOfEntries = " + std::to_string(hosts) + "\n";
  char section[512];
  for (int i = 1; i <= hosts; ++i) {
    std::snprintf(section, sizeof section,
                  "[Device.Hosts.Host.%d]\nAlias = cpe-Host-%d\nPhysAddress = 02:00:00:%02X:%02X:%02X\n"
                  "IPAddress = 10.%d.%d.%d\nAddressSource = DHCP\nLeaseTimeRemaining = 3600\n"
                  "Layer1Interface = Device.Ethernet.Interface.1.\nLayer3Interface = "
                  "Device.IP.Interface.1.\nHostName = host%d\nActive = true\n"
                  "IPv4AddressNumberOfEntries = 1\n[Device.Hosts.Host.%d.IPv4Address.1]\n"
                  "IPAddress = 10.%d.%d.%d\n",
                  i, i, (i >> 16) & 0xff, (i >> 8) & 0xff, i & 0xff, (i >> 16) & 0xff,
                  (i >> 8) & 0xff, i & 0xff, i, i, (i >> 16) & 0xff, (i >> 8) & 0xff, i & 0xff);
    text += section;
  }
  return text;
}

void pageBenchmark(benchmark::State &state, const std::function<void()> &call) {
  loadSample();
  call();
  for (auto _ : state) call();
}

#define PAGE(name, ...)                                                                    \
  void BM_##name(benchmark::State &state) { pageBenchmark(state, [] { __VA_ARGS__; }); } \
  BENCHMARK(BM_##name)

PAGE(ZintuGet_OperMode, ZintuGet_OperMode());
PAGE(ZintuGet_DefGw, ZintuWanInfo info{}; ZintuGet_DefGw(&info));
PAGE(ZintuGet_DefWanInfo, ZintuWanInfo info{}; ZintuGet_DefWanInfo(&info));
PAGE(ZintuGet_UciSectionOfDefGw, char text[128] = {}; ZintuGet_UciSectionOfDefGw(text));
PAGE(ZintuGet_UciSectionByConnMode, char text[128] = {};
     ZintuGet_UciSectionByConnMode("PPPoE", text));
PAGE(ZintuGet_LowerLayers, char text[128] = {};
     ZintuGet_LowerLayers("Device.IP.Interface.3.", text));
PAGE(ZintuGet_EthWanObjName, char text[128] = {}; ZintuGet_EthWanObjName(text));
PAGE(ZintuGet_WanDns, char a[16] = {}; char b[16] = {};
     ZintuGet_WanDns("Device.IP.Interface.3", a, b));
PAGE(ZintuGet_WanStaticDns, char a[16] = {}; char b[16] = {}; int32_t automatic = 0;
     ZintuGet_WanStaticDns("Device.IP.Interface.3", &automatic, a, b));
PAGE(ZintuGet_BrWanInfo, ZintuWanInfo info{}; ZintuGet_BrWanInfo(0, &info));
PAGE(ZintuGet_WanIPv6, ZintuWanInfo info{};
     std::strcpy(info.sWanIpInterface, "Device.IP.Interface.3"); info.nWanIpIfIndex = 3;
     ZintuGet_WanIPv6(&info));
PAGE(ZintuGet_IPv6PD, ZintuGet_IPv6PD());
PAGE(ZintuGet_AtmInfo, ZintuWanInfo info{}; ZintuGet_AtmInfo(&info));
PAGE(ZintuGet_LineInfo, ZintuDslLineInfo info{}; ZintuGet_LineInfo(&info));
PAGE(ZintuGet_DslMode, int32_t modes[10] = {}; ZintuGet_DslMode(modes));
PAGE(ZintuGet_LANv4Info, LANv4Info info{}; ZintuGet_LANv4Info(&info));
PAGE(ZintuGet_LANv6Info, LANv6Info info{}; ZintuGet_LANv6Info(&info));
PAGE(ZintuGet_MultiWanInfo, ZintuMultiWanInfo info{}; ZintuGet_MultiWanInfo(&info));
PAGE(zintu_GetWanIfName, char text[128] = {}; zintu_GetWanIfName(text));
PAGE(Zintu_isEnabledIptvStb, Zintu_isEnabledIptvStb());
PAGE(ZINTU_meshgrove_check_is_enabled, ZINTU_meshgrove_check_is_enabled());
PAGE(GetDeviceID, GetDeviceID("5A:E0:33:C4:61:41"));
PAGE(GetAssociatedDeviceNumberOfEntries, GetAssociatedDeviceNumberOfEntries(1));
PAGE(GetEPEnable, char name[128] = {}; GetEPEnable(name));
PAGE(GetSsIdInfoFromFapiToBuff, static WifiParamTable table; table.count = 0;
     GetSsIdInfoFromFapiToBuff(1, &table));
PAGE(GetWireInfoFromFapiToBuff, static WifiParamTable table; table.count = 0;
     GetWireInfoFromFapiToBuff(1, &table));

// The write-back of one changed value, stored only (nothing is applied).
void BM_faltocal_fromDB(benchmark::State &state) {
  loadSample();
  static WifiParamTable current, changes;
  current.count = 0;
  GetSsIdInfoFromFapiToBuff(1, &current);
  for (auto _ : state) {
    changes.count = 0;
    ComparOrSetParam(&current, &changes, "Device.WiFi.SSID.1.", "SSID", "Garden", 1);
    MsgHeader header{};
    benchmark::DoNotOptimize(faltocal_fromDB(&header, &changes, 0, 1));
    help_delMsg(&header, 1);
  }
}
BENCHMARK(BM_faltocal_fromDB);

// The last host of a table of N: the whole table is read on every call.
void BM_GetDeviceID_Hosts(benchmark::State &state) {
  const int hosts = static_cast<int>(state.range(0));
  loadText(hostsModel(hosts));
  char ip[32];
  std::snprintf(ip, sizeof ip, "10.%d.%d.%d", (hosts >> 16) & 0xff, (hosts >> 8) & 0xff,
                hosts & 0xff);
  if (GetDeviceID(ip) != hosts) std::abort();
  for (auto _ : state) benchmark::DoNotOptimize(GetDeviceID(ip));
  state.counters["per_host_ns"] = benchmark::Counter(
      static_cast<double>(hosts), benchmark::Counter::kIsIterationInvariantRate |
                                      benchmark::Counter::kInvert);
}
BENCHMARK(BM_GetDeviceID_Hosts)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

// A parameter of the last host, looked up in an answer of N hosts.
void BM_paramValue_get_Hosts(benchmark::State &state) {
  const int hosts = static_cast<int>(state.range(0));
  loadText(hostsModel(hosts));
  MsgHeader header{};
  faltocal_send_main(&header, "Device.Hosts.", "get", "get", 0);
  const std::string last = "Device.Hosts.Host." + std::to_string(hosts) + ".IPv4Address";
  char value[128];
  char *out = value;
  for (auto _ : state) {
    benchmark::DoNotOptimize(caltofal_paramValue_get(header.pObjList, last.c_str(), "IPAddress",
                                                     &out));
  }
  help_delMsg(&header, 1);
  state.counters["per_host_ns"] = benchmark::Counter(
      static_cast<double>(hosts), benchmark::Counter::kIsIterationInvariantRate |
                                      benchmark::Counter::kInvert);
}
BENCHMARK(BM_paramValue_get_Hosts)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

// A model of N parameters (ten an object).
std::string parametersModel(long parameters) {
  std::string text;
  text.reserve(static_cast<std::size_t>(parameters) * 24);
  char line[64];
  for (long i = 0; i < parameters; ++i) {
    if (i % 10 == 0) {
      std::snprintf(line, sizeof line, "[Device.X.Table.%ld]\n", i / 10 + 1);
      text += line;
    }
    std::snprintf(line, sizeof line, "P%ld = %ld\n", i % 10, i);
    text += line;
  }
  return text;
}

void BM_EmulatorLoad_Parameters(benchmark::State &state) {
  const std::string text = parametersModel(state.range(0));
  for (auto _ : state) loadText(text);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_EmulatorLoad_Parameters)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);

// One object's subtree out of models of N parameters: the cost must follow
// the subtree, not the model.
void BM_SubtreeGet_Parameters(benchmark::State &state) {
  loadText(parametersModel(state.range(0)));
  for (auto _ : state) {
    MsgHeader header{};
    benchmark::DoNotOptimize(faltocal_send_main(&header, "Device.X.Table.7.", "get", "get", 0));
    help_delMsg(&header, 1);
  }
}
BENCHMARK(BM_SubtreeGet_Parameters)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);

}  // namespace

// Request round trips through the shipped library and the emulator on a
// large gateway: a subtree get must not cost in proportion to the store.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "calsim.h"
#include "caltofal.h"
#include "help_objlist.h"

namespace {

// A model with `hosts` host entries and as many IP interfaces.
std::string bigModel(int hosts) {
  std::string text = "[Device.Hosts]\nHostNumberOfEntries = " + std::to_string(hosts) + "\n";
  char line[256];
  for (int i = 1; i <= hosts; ++i) {
    std::snprintf(line, sizeof line,
                  "[Device.Hosts.Host.%d]\nPhysAddress = 02:00:00:%02X:%02X:%02X\n"
                  "IPAddress = 10.%d.%d.%d\nHostName = host%d\n",
                  i, (i >> 16) & 0xff, (i >> 8) & 0xff, i & 0xff, (i >> 16) & 0xff, (i >> 8) & 0xff,
                  i & 0xff, i);
    text += line;
    std::snprintf(line, sizeof line,
                  "[Device.IP.Interface.%d]\nEnable = true\nName = if%d\n"
                  "[Device.IP.Interface.%d.IPv4Address.1]\nIPAddress = 10.0.%d.1\n",
                  i, i, i, i & 0xff);
    text += line;
  }
  return text;
}

void load(int hosts) {
  std::string error;
  if (!calsim::loadModelString(bigModel(hosts), "bench.model", &error)) std::abort();
}

void BM_SubtreeGet(benchmark::State &state) {
  load(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    MsgHeader header{};
    int rc = faltocal_send_main(&header, "Device.IP.Interface.7.", "get", "get", 0);
    benchmark::DoNotOptimize(rc);
    help_delMsg(&header, 1);
  }
  state.SetLabel("store of " + std::to_string(state.range(0) * 3) + " objects");
}
BENCHMARK(BM_SubtreeGet)->Arg(100)->Arg(1000)->Arg(10000);

void BM_LeafGetOfTwoObjects(benchmark::State &state) {
  load(1000);
  for (auto _ : state) {
    MsgHeader header{};
    faltocal_send_main_multi_obj(&header, "Device.IP.Interface.3.&", "get_leaf_node", "get", 1,
                                 "Name");
    int rc = faltocal_send_main_multi_obj(&header, "Device.Hosts.Host.3.", "get_leaf_node", "get",
                                          1, "IPAddress");
    benchmark::DoNotOptimize(rc);
    help_delMsg(&header, 1);
  }
}
BENCHMARK(BM_LeafGetOfTwoObjects);

void BM_GetDeviceIdLastHost(benchmark::State &state) {
  const int hosts = static_cast<int>(state.range(0));
  load(hosts);
  char ip[32];
  std::snprintf(ip, sizeof ip, "10.%d.%d.%d", (hosts >> 16) & 0xff, (hosts >> 8) & 0xff,
                hosts & 0xff);
  for (auto _ : state) benchmark::DoNotOptimize(GetDeviceID(ip));
}
BENCHMARK(BM_GetDeviceIdLastHost)->Arg(16)->Arg(256);

void BM_BuildAndReleaseMessage(benchmark::State &state) {
  for (auto _ : state) {
    MsgHeader *header = faltocal_createMessage(1, 0x1004);
    void *node = nullptr;
    faltocal_FillObject(&node, header->pObjList, "Device.WiFi.Radio.1", 1, 8, 4);
    for (const char *name : {"Enable", "Channel", "TransmitPower", "RegulatoryDomain"}) {
      faltocal_FillParam(&node, 1, name, 0, nullptr);
    }
    faltocal_finalize(header);
    help_free(header);
  }
}
BENCHMARK(BM_BuildAndReleaseMessage);

}  // namespace

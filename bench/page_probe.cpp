// One page call, measured: the shipped library and the emulator on the
// sample gateway. The call runs once to warm up, then `measured` runs it
// again; the probe prints the heap allocations and minor page faults of that
// second call. Under callgrind, --toggle-collect=measured counts only it.
//
//   page_probe NAME [MODEL]      page_probe --list
#include <malloc.h>
#include <sys/resource.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "calsim.h"
#include "caltofal.h"

// Every allocation of the process passes here, the libraries' too.
extern "C" void *__libc_malloc(size_t size);
extern "C" void *__libc_calloc(size_t count, size_t size);
extern "C" void *__libc_realloc(void *p, size_t size);
extern "C" void __libc_free(void *p);

namespace {
std::atomic<long> g_allocations{0};
}  // namespace

extern "C" void *malloc(size_t size) {
  g_allocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_malloc(size);
}
extern "C" void *calloc(size_t count, size_t size) {
  g_allocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_calloc(count, size);
}
extern "C" void *realloc(void *p, size_t size) {
  g_allocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_realloc(p, size);
}
extern "C" void free(void *p) {
  __libc_free(p);
}

namespace {

using Call = std::function<void()>;

std::map<std::string, Call> pages() {
  auto wan = std::make_shared<ZintuWanInfo>();
  auto table = std::make_shared<WifiParamTable>();
  return {
      {"ZintuGet_OperMode", [] { ZintuGet_OperMode(); }},
      {"ZintuGet_DefGw",
       [wan] {
         *wan = {};
         ZintuGet_DefGw(wan.get());
       }},
      {"ZintuGet_DefWanInfo",
       [wan] {
         *wan = {};
         ZintuGet_DefWanInfo(wan.get());
       }},
      {"ZintuGet_WanDns",
       [] {
         char dns1[16] = {}, dns2[16] = {};
         ZintuGet_WanDns("Device.IP.Interface.3", dns1, dns2);
       }},
      {"ZintuGet_WanStaticDns",
       [] {
         char dns1[16] = {}, dns2[16] = {};
         int32_t automatic = 0;
         ZintuGet_WanStaticDns("Device.IP.Interface.3", &automatic, dns1, dns2);
       }},
      {"ZintuGet_UciSectionOfDefGw",
       [] {
         char section[128] = {};
         ZintuGet_UciSectionOfDefGw(section);
       }},
      {"ZintuGet_AtmInfo",
       [wan] {
         *wan = {};
         ZintuGet_AtmInfo(wan.get());
       }},
      {"ZintuGet_LineInfo",
       [] {
         ZintuDslLineInfo info{};
         ZintuGet_LineInfo(&info);
       }},
      {"ZintuGet_DslMode",
       [] {
         int32_t modes[10] = {};
         ZintuGet_DslMode(modes);
       }},
      {"ZintuGet_LANv4Info",
       [] {
         LANv4Info info{};
         ZintuGet_LANv4Info(&info);
       }},
      {"ZintuGet_LANv6Info",
       [] {
         LANv6Info info{};
         ZintuGet_LANv6Info(&info);
       }},
      {"ZintuGet_MultiWanInfo",
       [] {
         ZintuMultiWanInfo info{};
         ZintuGet_MultiWanInfo(&info);
       }},
      {"Zintu_isEnabledIptvStb", [] { Zintu_isEnabledIptvStb(); }},
      {"GetDeviceID", [] { GetDeviceID("5A:E0:33:C4:61:41"); }},
      {"GetSsIdInfoFromFapiToBuff",
       [table] {
         table->count = 0;
         GetSsIdInfoFromFapiToBuff(1, table.get());
       }},
      {"GetWireInfoFromFapiToBuff",
       [table] {
         table->count = 0;
         GetWireInfoFromFapiToBuff(1, table.get());
       }},
      {"GetAssociatedDeviceNumberOfEntries", [] { GetAssociatedDeviceNumberOfEntries(1); }},
  };
}

long minorFaults() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_minflt;
}

}  // namespace

// The measured call; its name is what callgrind's --toggle-collect names.
extern "C" __attribute__((noinline)) void measured(const Call *call) {
  (*call)();
}

int main(int argc, char **argv) {
  const std::map<std::string, Call> all = pages();
  if (argc >= 2 && std::strcmp(argv[1], "--list") == 0) {
    for (const auto &[name, call] : all) std::printf("%s\n", name.c_str());
    return 0;
  }
  if (argc < 2 || all.count(argv[1]) == 0) {
    std::fprintf(stderr, "usage: page_probe NAME [MODEL] | page_probe --list\n");
    return 2;
  }
  if (argc >= 3) {
    std::string error;
    if (!calsim::loadModelFile(argv[2], &error)) {
      std::fprintf(stderr, "page_probe: %s\n", error.c_str());
      return 1;
    }
  }
  const Call &call = all.at(argv[1]);
  call();  // warm-up: the model is loaded, the first pages are touched
  const long allocations = g_allocations.load();
  const long faults = minorFaults();
  measured(&call);
  std::printf("%s allocations=%ld minor_faults=%ld\n", argv[1], g_allocations.load() - allocations,
              minorFaults() - faults);
  return 0;
}

// The shell-driven pages, run in the device sandbox (scripts/perf/bench.sh
// starts this program there), beside their floor: starting /bin/sh -c true.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cstdlib>

#include "caltofal.h"

extern char **environ;

namespace {

void BM_ShellFloor(benchmark::State &state) {
  char sh[] = "/bin/sh";
  char dashC[] = "-c";
  char command[] = "true";
  char *argv[] = {sh, dashC, command, nullptr};
  for (auto _ : state) {
    pid_t pid;
    if (posix_spawn(&pid, sh, nullptr, nullptr, argv, environ) != 0) std::abort();
    int status;
    waitpid(pid, &status, 0);
  }
}
BENCHMARK(BM_ShellFloor)->Unit(benchmark::kMicrosecond);

void BM_GetCurrentChannel(benchmark::State &state) {
  int channel = 0;
  for (auto _ : state) benchmark::DoNotOptimize(GetCurrentChannel("wlan2", 0, &channel));
}
BENCHMARK(BM_GetCurrentChannel)->Unit(benchmark::kMicrosecond);

void BM_GetPhyNumber(benchmark::State &state) {
  for (auto _ : state) benchmark::DoNotOptimize(GetPhyNumber("wlan2"));
}
BENCHMARK(BM_GetPhyNumber)->Unit(benchmark::kMicrosecond);

void BM_GetStaInfo(benchmark::State &state) {
  static WifiStaList list;
  for (auto _ : state) benchmark::DoNotOptimize(GetStaInfo("wlan0", nullptr, &list));
}
BENCHMARK(BM_GetStaInfo)->Unit(benchmark::kMicrosecond);

void BM_ReqEPChannelInfo(benchmark::State &state) {
  int32_t values[16];
  for (auto _ : state) benchmark::DoNotOptimize(ReqEPChannelInfo("wlan2.7", values));
}
BENCHMARK(BM_ReqEPChannelInfo)->Unit(benchmark::kMicrosecond);

}  // namespace

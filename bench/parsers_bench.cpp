// The pure parts: converters, the readers of tool and driver text, the
// shell quoting, on canned text; one and two threads (they share nothing, so
// two threads should give twice the throughput). And the site survey over
// result files of N lines, through the real file system.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "caltofal.h"
#include "frame/shell.h"
#include "wifi/driver_text.h"

namespace {

void BM_Converters(benchmark::State &state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(BandWidth_ConvStr("40MHz", 1));
    benchmark::DoNotOptimize(SecurityType_FapiToUi_Table[0][0]);
    benchmark::DoNotOptimize(FapiToUi_Str("WPA2-Personal", SecurityType_FapiToUi_Table, 8));
    benchmark::DoNotOptimize(ConvFreqChannel(5180));
    benchmark::DoNotOptimize(isValidMacAddress("0A:1B:2C:5A:3C:01"));
    benchmark::DoNotOptimize(my_strnicmp("0a:1b:2c:5a:3c:01", "0A:1B:2C:5A:3C:01", 17));
    benchmark::DoNotOptimize(ConvTransmitPower(75));
  }
}
BENCHMARK(BM_Converters)->Threads(1)->Threads(2)->UseRealTime();

void BM_ChannelLines(benchmark::State &state) {
  WifiChannelEntry entry;
  for (auto _ : state) {
    benchmark::DoNotOptimize(caltofal::wifi::channelEntryOf("52 5260 160 80 40+ - DFS", true, 2,
                                                            &entry));
    benchmark::DoNotOptimize(caltofal::wifi::channelEntryOf("1 2412 - - 40+ - -", false, 1,
                                                            &entry));
  }
}
BENCHMARK(BM_ChannelLines)->Threads(1)->Threads(2)->UseRealTime();

const std::string kPeers = [] {
  std::string text;
  for (int i = 0; i < 8; ++i) {
    char line[64];
    std::snprintf(line, sizeof line, "0A:1B:2C:00:00:%02X : STA MAC\n", i);
    text += line;
    for (int a = 0; a < 4; ++a) text += "-55 : Short-term RSSI average per antenna [dBm]\n";
  }
  return text;
}();

void BM_StationLines(benchmark::State &state) {
  static thread_local WifiStaList list;
  for (auto _ : state) {
    list.count = 0;
    benchmark::DoNotOptimize(caltofal::wifi::stationsOf(kPeers, nullptr, &list));
  }
}
BENCHMARK(BM_StationLines)->Threads(1)->Threads(2)->UseRealTime();

void BM_SurveyLine(benchmark::State &state) {
  const char *line = "My Net\t36\t-57\tWPA2-PSK\tAES\t0e:77:12:9a:00:21\t80\t11ac\tupper\t0\n";
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        caltofal::wifi::surveyEntryOf(caltofal::wifi::surveyColumnsOf(line)));
  }
}
BENCHMARK(BM_SurveyLine)->Threads(1)->Threads(2)->UseRealTime();

void BM_ShellWords(benchmark::State &state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(caltofal::shell::word("My Wi-Fi's \"net\""));
    benchmark::DoNotOptimize(caltofal::shell::jsonEscaped("My \"Net\"\n"));
  }
}
BENCHMARK(BM_ShellWords)->Threads(1)->Threads(2)->UseRealTime();

// The survey of a result file of N lines.
void BM_SiteSurvey_Lines(benchmark::State &state) {
  char path[] = "/tmp/survey-bench-XXXXXX";
  const int fd = mkstemp(path);
  if (fd < 0) std::abort();
  close(fd);
  {
    std::ofstream out(path);
    for (long i = 0; i < state.range(0); ++i) {
      out << "Net " << i << "\t36\t-57\tWPA2-PSK\tAES\t0e:77:12:9a:00:21\t80\t11ac\tupper\t0\n";
    }
  }
  for (auto _ : state) {
    SiteSurveyList list{0, nullptr};
    benchmark::DoNotOptimize(GetSiteSurveyList(path, &list, ""));
    std::free(list.entries);
  }
  unlink(path);
  state.counters["per_line_ns"] = benchmark::Counter(
      static_cast<double>(state.range(0)), benchmark::Counter::kIsIterationInvariantRate |
                                               benchmark::Counter::kInvert);
}
BENCHMARK(BM_SiteSurvey_Lines)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

}  // namespace

// Eight threads make mixed calls at once (getters against the emulator,
// converters, snapshots, the driver-text parsers, text checks, the mesh
// switch and sync, the site survey, WPS and scan requests): every result
// equals the one a single thread gets. Run under ThreadSanitizer by
// scripts/tsan; CALTOFAL_STRESS_CALLS sets the calls per thread.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "calsim.h"
#include "caltofal.h"
#include "fake_os.h"
#include "wifi/driver_text.h"

namespace {

// A call and what it produced: its result and the bytes of its record.
using Call = std::function<std::string()>;

template <typename Record>
std::string bytesOf(int rc, const Record &record) {
  return std::to_string(rc) + ":" +
         std::string(reinterpret_cast<const char *>(&record), sizeof record);
}

template <typename Record, typename Getter>
Call recordCall(Getter getter) {
  return [getter] {
    auto record = std::make_unique<Record>();
    const int rc = getter(record.get());
    return bytesOf(rc, *record);
  };
}

std::string text(const char *p) {
  return p != nullptr ? p : "(null)";
}

const char kPeers[] =
    "AA:BB:CC:00:00:01 : STA MAC\n-41 : Short-term RSSI average per antenna [dBm]\n"
    "-43 : Short-term RSSI average per antenna [dBm]\n"
    "aa:bb:cc:00:00:02 : STA MAC\n-60 : Short-term RSSI average per antenna [dBm]\n";

// Two networks of a survey result file (tab-separated columns).
const char kSurveyFile[] =
    "Home\t6\t-48\tWPA2-PSK\tAES\t0a:1b:2c:00:00:01\t40\t11ng\tupper\t1\n"
    "My Cafe\t36\t-60\tNONE\tNONE\t0a:1b:2c:00:00:02\t80\t11ac\tlower\t0\n";

std::vector<Call> mixedCalls() {
  return {
      recordCall<ZintuWanInfo>(ZintuGet_DefWanInfo),
      recordCall<LANv4Info>(ZintuGet_LANv4Info),
      recordCall<LANv6Info>(ZintuGet_LANv6Info),
      recordCall<ZintuDslLineInfo>(ZintuGet_LineInfo),
      recordCall<ZintuMultiWanInfo>(ZintuGet_MultiWanInfo),
      [] {
        int32_t modes[10] = {0};
        const int rc = ZintuGet_DslMode(modes);
        return bytesOf(rc, modes);
      },
      [] { return std::to_string(ZintuGet_OperMode()) + std::to_string(Zintu_isEnabledIptvStb()); },
      [] { return std::to_string(GetDeviceID("192.168.1.10")); },
      recordCall<WifiParamTable>([](WifiParamTable *t) { return GetSsIdInfoFromFapiToBuff(1, t); }),
      recordCall<WifiParamTable>([](WifiParamTable *t) { return GetWireInfoFromFapiToBuff(2, t); }),
      [] {
        return text(BandWidth_ConvStr("80MHz", 0)) + text(WMMOption_ConvStr("true", 1)) +
               std::to_string(ConvInt("42")) + std::to_string(ConvFreqChannel(5180));
      },
      recordCall<WifiStaList>(
          [](WifiStaList *list) { return caltofal::wifi::stationsOf(kPeers, nullptr, list); }),
      [] {
        WifiChannelEntry entry{};
        const bool ok =
            caltofal::wifi::channelEntryOf("52 5260 160 80 40+ - DFS\n", true, 2, &entry);
        return bytesOf(ok, entry);
      },
      [] {
        char tagged[] = "  <title>Gateway</title>";
        return text(remove_rss_tag(tagged, "<title>")) +
               std::to_string(zintu_isValidMacAddress("0A:1B:2C:5A:3E:10")) +
               std::to_string(zintu_isValidIPv4Address("10.0.0.1"));
      },
      [] {
        // Switching the mesh on when it is on already changes nothing.
        return std::to_string(ZINTU_meshgrove_check_is_enabled()) +
               std::to_string(ZINTU_meshgrove_set_enable_value(1)) +
               std::to_string(ZINTU_meshgrove_sync_to_slave()) + [] {
                 char mac[128] = "0A:1B:2C:5A:3E:10";  // the answer's buffer: 128 bytes
                 return text(ZINTU_meshgrove_get_IP_from_MAC(mac));
               }();
      },
      [] {
        SiteSurveyList list{0, nullptr};
        std::string out = std::to_string(GetSiteSurveyList("/tmp/survey.result", &list, ""));
        for (int i = 0; i < list.count; ++i) out += bytesOf(i, list.entries[i]);
        std::free(list.entries);
        return out + std::to_string(GetFileLineCnt("/tmp/survey.result"));
      },
      [] {
        return std::to_string(ReqWPSActive()) + std::to_string(ReqWPSCancel()) +
               std::to_string(ReqScan("wlan0", "My Cafe")) + std::to_string(ReqScan("wlan0;", "x"));
      },
  };
}

std::string readFile(const char *path) {
  std::ifstream in(path);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

int callsPerThread() {
  const char *env = std::getenv("CALTOFAL_STRESS_CALLS");
  const int n = env != nullptr ? std::atoi(env) : 0;
  return n > 0 ? n : 300;  // the unit suite's short form
}

TEST(Stress, EightThreadsGetWhatOneThreadGets) {
  fakeos::reset();
  fakeos::setCapture(false);  // thousands of traces: nothing is kept
  calsim::reset();
  std::string error;
  ASSERT_TRUE(calsim::loadModelString(readFile(SAMPLE_MODEL), "gateway.model", &error)) << error;
  fakeos::setFile("/tmp/survey.result", kSurveyFile);

  const std::vector<Call> calls = mixedCalls();
  std::vector<std::string> expected;
  for (const Call &call : calls) expected.push_back(call());
  // The sample gateway answers every getter of the mix (result 0).
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(expected[i].substr(0, 2), "0:") << "call " << i;
  // The mesh is on and the sync has nothing to wait for; both survey lines
  // are read; the requests ran, the bad interface name is refused.
  EXPECT_EQ(expected[expected.size() - 3].substr(0, 3), "100");
  EXPECT_EQ(expected[expected.size() - 2].substr(0, 3), "20:");
  EXPECT_EQ(expected.back(), "1110");

  constexpr int kThreads = 8;
  const int perThread = callsPerThread();
  std::vector<int> mismatches(kThreads, 0);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      for (int k = 0; k < perThread; ++k) {
        const std::size_t i = static_cast<std::size_t>(t * 5 + k) % calls.size();
        if (calls[i]() != expected[i]) ++mismatches[t];
      }
    });
  }
  for (std::thread &thread : threads) thread.join();
  fakeos::setCapture(true);
  calsim::reset();
  for (int t = 0; t < kThreads; ++t) EXPECT_EQ(mismatches[t], 0) << "thread " << t;
}

}  // namespace

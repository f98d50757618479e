// The bounded soak: CALLS mixed calls (default one million) in one process
// over the shipped library, the emulator and real commands. After a warm-up
// of a tenth of the calls, resident memory may grow by at most 64 KiB, the
// open descriptors must stay the same and no child may be left unreaped.
// The memory bound needs the long form: the emulator keeps a log of the
// latest requests, which fills up to its cap during the first tens of
// thousands of calls; with fewer than 1,000,000 calls it is not applied.
// In the device sandbox (caltofal-device) the mix also runs the shell-driven
// pages every 400 calls: site survey, WPS and scan requests, the mesh switch
// and address lookup, the station list.
// Prints the figures; exit status 1 when a bound is broken.
//   caltofal_soak [CALLS]        (CALTOFAL_MODEL names the model; see scripts/soak)
#include <dirent.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "caltofal.h"

// AddressSanitizer keeps freed memory in quarantine: under it resident memory
// says nothing about leaks, so the memory bound holds only without it.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kMemoryBound = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kMemoryBound = false;
#else
constexpr bool kMemoryBound = true;
#endif
#else
constexpr bool kMemoryBound = true;
#endif

namespace {

long residentKiB() {
  long pages = 0, resident = 0;
  FILE *f = std::fopen("/proc/self/statm", "re");
  if (f == nullptr) return -1;
  if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = -1;
  std::fclose(f);
  return resident < 0 ? -1 : resident * (sysconf(_SC_PAGESIZE) / 1024);
}

int openDescriptors() {
  DIR *dir = opendir("/proc/self/fd");
  if (dir == nullptr) return -1;
  int n = 0;
  while (dirent *entry = readdir(dir)) n += entry->d_name[0] != '.';
  closedir(dir);
  return n - 1;  // less the directory's own
}

bool childrenLeft() {
  int status = 0;
  return !(waitpid(-1, &status, WNOHANG) == -1 && errno == ECHILD);
}

// The driver's files are there: the program runs in the device sandbox.
const bool kOnDevice = access("/proc/net/mtlk/wlan0", F_OK) == 0;

// One of the shell-driven pages, in turn; false when its answer is wrong.
bool deviceCall(long k) {
  switch (k % 5) {
    case 0: {
      SiteSurveyList list{0, nullptr};
      const int n = GetSiteSurveyList("/tmp/wlan_wave/wlan0_scan_by_User.result", &list, "");
      std::free(list.entries);
      return n > 0 && n == list.count;
    }
    case 1:
      return ReqWPSActive() == 1;
    case 2:
      return ReqScan("wlan0", "Soak Net") == 1;
    case 3: {
      // (The sync waits 5 s when a satellite is connected: not in a soak.)
      char mac[128] = "0A:1B:2C:6B:10:01";
      ZINTU_meshgrove_get_IP_from_MAC(mac);
      return ZINTU_meshgrove_check_is_enabled() == 1 && std::strcmp(mac, "192.168.1.2") == 0;
    }
    default: {
      WifiStaList stations;
      std::memset(&stations, 0, sizeof stations);
      const int n = GetStaInfo("wlan0", nullptr, &stations);
      return n > 0 && static_cast<unsigned>(n) == stations.count;
    }
  }
}

// One call of the mix; false when its answer is not the expected one.
bool call(long i) {
  switch (i % 8) {
    case 0: {
      MsgHeader msg{};
      int rc = faltocal_send_main(&msg, "Device.DeviceInfo.", "get", "get", 1, "ModelName");
      char value[128] = "";
      char *out = value;
      rc = rc != 0 ? rc : caltofal_paramValue_get(msg.pObjList, "DeviceInfo", "ModelName", &out);
      faltocal_finalize(&msg);
      return rc == 0 && value[0] != '\0';
    }
    case 1: {
      MsgHeader msg{};
      const char *names[] = {"Enable", "SSID"};
      int rc = faltocal_send_main_multi_obj_No_variable(&msg, "Device.WiFi.SSID.1", "get_leaf_node",
                                                        "get", 2, names);
      faltocal_finalize(&msg);
      return rc == 0;
    }
    case 2:
      return zintu_isValidMacAddress("0A:1B:2C:5A:3E:10") == 0 &&
             zintu_isValidIPv4Address("192.168.1.1") == 0;
    case 3:
      return std::strcmp(BandWidth_ConvStr("80MHz", 0), BandWidth_ConvStr("80MHz", 0)) == 0 &&
             ConvFreqChannel(5180) == 36;
    case 4: {
      char tagged[] = "<t>soak</t>";
      return std::strcmp(remove_rss_tag(tagged, "<t>"), "soak") == 0;
    }
    case 5: {
      if (i % 400 == 205 && kOnDevice) return deviceCall(i / 400);
      if (i % 400 != 5) return atob("true") == 1;  // a command every 400 calls
      char out[128] = "";
      return std::strcmp(get_from_shell("echo soak", out), "soak") == 0;
    }
    case 6: {
      char word[] = "soak";
      reverse_string(word);
      return std::strcmp(strupr(word), "KAOS") == 0;
    }
    default: {
      char digits[16] = "";
      return itoa(static_cast<int>(i % 100000) + 1, digits) == 0 && digits[0] != '\0';
    }
  }
}

}  // namespace

int main(int argc, char **argv) {
  // The library's own notes on standard output (the survey's reports of
  // invalid lines) are not figures: they go to /dev/null, the figures to the
  // program's standard output as it was.
  FILE *report = fdopen(dup(STDOUT_FILENO), "w");
  const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (report == nullptr || null < 0 || dup2(null, STDOUT_FILENO) < 0) {
    std::perror("caltofal_soak: standard output");
    return 1;
  }
  close(null);
  const long calls = argc > 1 ? std::atol(argv[1]) : 1000000;
  const long warmUp = calls / 10;
  long wrong = 0, rssStart = 0, fdsStart = 0, rssPeak = 0;
  const auto start = std::chrono::steady_clock::now();
  for (long i = 0; i < calls; ++i) {
    if (i == warmUp) {
      rssStart = residentKiB();
      fdsStart = openDescriptors();
    }
    if (!call(i)) {
      if (++wrong <= 5) std::fprintf(stderr, "soak: call %ld gave a wrong answer\n", i);
    }
    if (i > warmUp && i % 10000 == 0) {
      const long rss = residentKiB();
      if (rss > rssPeak) rssPeak = rss;
    }
  }
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  const long rssEnd = residentKiB();
  if (rssEnd > rssPeak) rssPeak = rssEnd;
  const int fdsEnd = openDescriptors();
  const bool zombies = childrenLeft();
  const long growth = rssPeak - rssStart;
  std::fprintf(report, "soak: %ld calls in %.1f s, %ld wrong answers%s\n", calls, seconds, wrong,
               kOnDevice ? " (shell-driven pages included: device sandbox)" : "");
  std::fprintf(
      report,
      "soak: resident %ld KiB after warm-up, %ld KiB at most after, growth %ld KiB (limit 64%s)\n",
      rssStart, rssPeak, growth,
      !kMemoryBound     ? ", not applied under AddressSanitizer"
      : calls < 1000000 ? ", applied from 1,000,000 calls"
                        : "");
  std::fprintf(report, "soak: descriptors %ld after warm-up, %d at the end; children left: %s\n",
               fdsStart, fdsEnd, zombies ? "yes" : "none");
  const bool memoryBound = kMemoryBound && calls >= 1000000;
  const bool ok = wrong == 0 && (growth <= 64 || !memoryBound) && fdsEnd == fdsStart && !zombies;
  std::fprintf(report, "soak: %s\n", ok ? "within bounds" : "BOUND BROKEN");
  std::fclose(report);
  return ok ? 0 : 1;
}

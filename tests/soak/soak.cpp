// The bounded soak: CALLS mixed calls (default one million) in one process
// over the shipped library, the emulator and real commands. After a warm-up
// of a tenth of the calls, resident memory may grow by at most 64 KiB, the
// open descriptors must stay the same and no child may be left unreaped.
// The memory bound needs the long form: the emulator keeps a log of the
// latest requests, which fills up to its cap during the first tens of
// thousands of calls; with fewer than 1,000,000 calls it is not applied.
// Prints the figures; exit status 1 when a bound is broken.
//   caltofal_soak [CALLS]        (CALTOFAL_MODEL names the model; see scripts/soak)
#include <dirent.h>
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
  const long calls = argc > 1 ? std::atol(argv[1]) : 1000000;
  const long warmUp = calls / 10;
  long wrong = 0, rssStart = 0, fdsStart = 0, rssPeak = 0;
  const auto start = std::chrono::steady_clock::now();
  for (long i = 0; i < calls; ++i) {
    if (i == warmUp) {
      rssStart = residentKiB();
      fdsStart = openDescriptors();
    }
    if (!call(i)) ++wrong;
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
  std::printf("soak: %ld calls in %.1f s, %ld wrong answers\n", calls, seconds, wrong);
  std::printf(
      "soak: resident %ld KiB after warm-up, %ld KiB at most after, growth %ld KiB (limit 64%s)\n",
      rssStart, rssPeak, growth,
      !kMemoryBound     ? ", not applied under AddressSanitizer"
      : calls < 1000000 ? ", applied from 1,000,000 calls"
                        : "");
  std::printf("soak: descriptors %ld after warm-up, %d at the end; children left: %s\n", fdsStart,
              fdsEnd, zombies ? "yes" : "none");
  const bool memoryBound = kMemoryBound && calls >= 1000000;
  const bool ok = wrong == 0 && (growth <= 64 || !memoryBound) && fdsEnd == fdsStart && !zombies;
  std::printf("soak: %s\n", ok ? "within bounds" : "BOUND BROKEN");
  return ok ? 0 : 1;
}

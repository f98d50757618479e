// Site-survey results: joining the per-band result files, counting their
// lines, parsing them into the survey page's entries, and clearing the
// generated Wi-Fi configuration folder.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "caltofal.h"
#include "frame/boundary.h"
#include "frame/message.h"
#include "frame/os.h"
#include "frame/shell.h"
#include "frame/trace.h"
#include "wifi/driver_text.h"

using namespace caltofal;
using namespace caltofal::wifi;

namespace {

constexpr char kConfs[] = "/opt/lantiq/wave/confs";

// The console line of a result line with an empty column, and the line
// itself on standard output.
void reportInvalid(const char *function, int count, const SurveyColumns &c) {
  traceTag(kUnitWifi, __LINE__, function);
  PRINT_TO_CONSOLE("invalid scan result entry\n");
  const std::string line =
      "scan[" + std::to_string(count) + "] ssid:" + c.text[0] + " channel:" + c.text[1] +
      " rssi:" + c.text[2] + " security:" + c.text[3] + " encryption:" + c.text[4] +
      " macaddr:" + c.text[5] + " bandwidth:" + c.text[6] + " phymode:" + c.text[7] +
      " sideband:" + c.text[8] + " product:" + c.text[9] + "\n";
  os::stdoutWrite(line.data(), line.size());
}

}  // namespace

extern "C" {

CALTOFAL_API int Remove_Confs_File(void) noexcept {
  if (!os::exists(kConfs)) return 0;
  char command[128] = {0};
  formatCut(command, sizeof command, "rm -rf %s/*", kConfs);
  os::run(command);
  return 0;
}

CALTOFAL_API int GetFileLineCnt(const char *path) noexcept {
  if (path == nullptr || path[0] == '\0') return 0;
  os::Stream *file = os::openFile(path, "r");
  if (file == nullptr) return 0;
  int lines = 0;
  char buf[1000];
  while (os::readLine(file, buf, sizeof buf) != nullptr) ++lines;
  os::close(file);
  return lines;
}

CALTOFAL_API int CombineScanResultFiles(const char *first, const char *second,
                                        const char *target) noexcept {
  if (first == nullptr || second == nullptr || target == nullptr || second[0] == '\0' ||
      target[0] == '\0') {
    return 0;
  }
  return guarded(0, [&] {
    const std::string from = shell::word(first);
    const std::string also = shell::word(second);
    const std::string into = shell::word(target);
    char command[1024] = {0};
    formatCut(command, sizeof command, "cat %s > %s; cat %s >> %s", from.c_str(), into.c_str(),
              also.c_str(), into.c_str());
    os::run(command);
    return GetFileLineCnt(target);
  });
}

CALTOFAL_API int GetSiteSurveyList(const char *path, SiteSurveyList *list,
                                   const char *ssidFilter) noexcept {
  static constexpr char kFunction[] = "GetSiteSurveyList";
  traceTag(kUnitWifi, __LINE__, kFunction);
  PRINT_TO_CONSOLE("START_FUNCTION \n");
  if (list == nullptr) return 0;
  if (path == nullptr || path[0] == '\0') {
    PRINT_TO_CONSOLE("s_file_path is invlid parameter \n");
    return list->count;
  }
  const bool filtered = ssidFilter != nullptr && ssidFilter[0] != '\0';
  const int lines = GetFileLineCnt(path);
  if (lines == 0) {
    PRINT_TO_CONSOLE("%s does not exist of line count zero \n", path);
    return list->count;
  }
  list->entries = static_cast<SiteSurveyEntry *>(std::malloc(sizeof(SiteSurveyEntry) * lines));
  if (list->entries == nullptr) {
    PRINT_TO_CONSOLE("fail to alloc memory");
    return list->count;
  }
  os::Stream *file = os::openFile(path, "r");
  if (file == nullptr) {
    PRINT_TO_CONSOLE("%s does not exist\n", "/tmp/wlan_wave/%s_scan_by_User.result");
    return list->count;
  }
  char line[128];
  while (os::readLine(file, line, sizeof line) != nullptr) {
    const SurveyColumns columns = surveyColumnsOf(line);
    if (!columns.complete()) {
      guarded(0, [&] {
        reportInvalid(kFunction, list->count, columns);
        return 0;
      });
      continue;
    }
    if (filtered && std::strncmp(columns.text[0], ssidFilter, 127) != 0) continue;
    // The array holds one entry per line counted, whatever count was before.
    if (list->count < 0 || list->count >= lines) continue;
    list->entries[list->count++] = surveyEntryOf(columns);
  }
  os::close(file);
  return list->count;
}

}  // extern "C"

// WPS push-button runs and site-survey scans, asked of the service daemon
// over the message bus through a shell line.
#include <cstdio>
#include <string>

#include "caltofal.h"
#include "frame/boundary.h"
#include "frame/message.h"
#include "frame/os.h"
#include "frame/shell.h"
#include "frame/trace.h"

using namespace caltofal;

namespace {

// Runs a notification command: 1 when the shell ran, 0 when it could not.
int notify(const char *function, const char *command) {
  traceTag(kUnitWifi, __LINE__, function);
  PRINT_TO_CONSOLE("Call system function with [%s] \n", command);
  int status = os::run(command);
  return status == 127 || status == -1 ? 0 : 1;
}

// The WPS command with its action word, cut at `width` - 1 characters.
int wpsAction(const char *function, const char *action, std::size_t width) {
  char command[1024] = {0};
  formatCut(command, width,
            "source /opt/lantiq/etc/ugw_notify_defs.sh; ubus call servd notify '{\"notify_id\": "
            "'$NOTIFY_WIFI_WPS_ACTION', \"type\": false, \"pn1\": \"Action\", \"pv1\": \"%s\"}' > "
            "/dev/null\n",
            action);
  return notify(function, command);
}

}  // namespace

extern "C" {

CALTOFAL_API int ReqWPSActive(void) noexcept {
  return wpsAction("ReqWPSActive", "PBC", 1024);
}

CALTOFAL_API int ReqWPSCancel(void) noexcept {
  return wpsAction("ReqWPSCancel", "CancelWPS", 256);
}

CALTOFAL_API int ReqWPSReset(void) noexcept {
  return wpsAction("ReqWPSReset", "ResetWPS", 256);
}

CALTOFAL_API int ReqScan(const char *ifname, const char *ssid) noexcept {
  if (ifname == nullptr && ssid == nullptr) return 0;
  if (!shell::isInterfaceName(ifname)) return 0;
  return guarded(0, [&] {
    // The SSID stands in a JSON string inside a single-quoted shell word.
    const std::string network =
        shell::inSingleQuotes(shell::jsonEscaped(ssid != nullptr ? ssid : "(null)"));
    char command[1024] = {0};
    formatCut(command, 256,
              "source /opt/lantiq/etc/ugw_notify_defs.sh; ubus call servd notify '{\"nid\": "
              "'$NOTIFY_WIFI_SCAN_ACTION',\"type\": false,\"pn1\": \"Action\", \"pv1\": \"%s\","
              "\"pn2\": \"Name\", \"pv2\": \"%s\", \"pn3\": \"SSID\", \"pv3\": \"%s\"}'>/dev/null",
              "SCAN", ifname, network.c_str());
    return notify("ReqScan", command);
  });
}

}  // extern "C"

// The radio's channels and the channel in use, from the driver's tools, and
// the side of the secondary 40 MHz channel.
#include <cstdio>
#include <cstring>

#include "caltofal.h"
#include "frame/message.h"
#include "frame/os.h"
#include "frame/shell.h"
#include "frame/trace.h"
#include "wifi/driver_text.h"

using namespace caltofal;
using namespace caltofal::wifi;

namespace {

constexpr int kLine = 128;
constexpr std::size_t kChannels = sizeof(WifiChannelList::entries) / sizeof(WifiChannelEntry);

// Whether the radio offers radar channels: every IEEE80211hEnabled answered;
// none means no. The message is released before the tools run.
bool dfsEnabled(Message &msg) {
  bool enabled = false;
  for (ObjList *obj : objectsOf(msg)) {
    for (ParamList *param : paramsOf(obj)) {
      if (sameName(param->sParamName, "IEEE80211hEnabled")) {
        enabled = ConvStrToBool(param->sParamValue) != 0;
      }
    }
  }
  msg.release();
  return enabled;
}

// The channel listing's command line for the interface's radio.
void channelCommand(const char *ifname, char (&command)[kLine]) {
  static constexpr char kFunction[] = "GetChannelList";
  int phy = GetPhyNumber(ifname);
  if (phy < 0) {
    traceTag(kUnitWifi, __LINE__, kFunction);
    PRINT_TO_CONSOLE("GetPhyNumber Fail!!!\n");
    formatCut(command, sizeof command, "%s %s %s", "iw phy",
              DevToPhy_Str(ifname, Interface_DevToPhy_Table, 4), "show_channel");
  } else {
    formatCut(command, sizeof command, "%s phy%d %s", "iw phy", phy, "show_channel");
    traceTag(kUnitWifi, __LINE__, kFunction);
    PRINT_TO_CONSOLE("GetPhyNumber %s\n", command);
  }
}

// Starts a tool for reading; nullptr after the console line when it cannot.
os::Stream *openTool(const char *function, int line, const char *command) {
  os::Stream *pipe = os::openCommand(command);
  if (pipe == nullptr) {
    traceTag(kUnitWifi, line, function);
    PRINT_TO_CONSOLE("popen()");
  }
  return pipe;
}

}  // namespace

extern "C" {

CALTOFAL_API int GetPhyNumber(const char *ifname) noexcept {
  if (ifname == nullptr || ifname[0] == '\0' || !shell::isInterfaceName(ifname)) return -1;
  char command[kLine] = {0};
  formatCut(command, sizeof command, "%s %s %s | grep \"wiphy\"", "iw dev", ifname, "info");
  os::Stream *pipe = os::openCommand(command);
  if (pipe == nullptr) return -1;
  char text[1024] = {0};
  std::size_t n = os::readBytes(pipe, text, sizeof text);
  os::close(pipe);
  if (n == 0) return -1;
  return phyNumberOf(std::string_view(text, n));
}

CALTOFAL_API int GetChannelList(const char *ifname, int radioIndex,
                                WifiChannelList *list) noexcept {
  static constexpr char kFunction[] = "GetChannelList";
  if (list == nullptr) return 0;
  std::memset(list, 0, sizeof *list);
  if (!shell::isInterfaceName(ifname)) return 0;

  char radio[kLine] = {0};
  formatCut(radio, sizeof radio, "%s%d", "Device.WiFi.Radio.", radioIndex);
  Message msg;
  if (faltocal_send_main_multi_obj(msg.get(), radio, "get_leaf_node", "get", 1,
                                   "IEEE80211hEnabled") == -1) {
    traceAt(kFunction, __LINE__);
    PRINT_TO_CONSOLE("faltocal_send_main_multi_obj is Failure\n");
    return 0;
  }
  const bool dfs = dfsEnabled(msg);

  char command[kLine] = {0};
  channelCommand(ifname, command);
  os::Stream *pipe = openTool(kFunction, __LINE__, command);
  if (pipe == nullptr) return 0;
  char line[kLine];
  while (os::readLine(pipe, line, sizeof line) != nullptr) {
    WifiChannelEntry entry;
    if (list->count < kChannels && channelEntryOf(line, dfs, radioIndex, &entry)) {
      list->entries[list->count++] = entry;
    }
  }
  os::close(pipe);
  return static_cast<int>(list->count);
}

CALTOFAL_API int GetCurrentChannel(const char *ifname, int ignored, int *channel) noexcept {
  static constexpr char kFunction[] = "GetCurrentChannel";
  (void)ignored;
  traceTag(kUnitWifi, __LINE__, kFunction);
  PRINT_TO_CONSOLE("START_FUNCTION \n");
  if (!shell::isInterfaceName(ifname)) return 0;
  char command[kLine] = {0};
  formatCut(command, sizeof command, "%s %s channel", "iwlist", ifname);
  os::Stream *pipe = openTool(kFunction, __LINE__, command);
  if (pipe == nullptr) return 0;
  char line[kLine];
  while (os::readLine(pipe, line, sizeof line) != nullptr) {
    auto current = currentChannelOf(line);
    if (!current) continue;
    if (channel == nullptr) {  // a channel to report and nowhere to store it
      os::close(pipe);
      return 0;
    }
    *channel = *current;
  }
  os::close(pipe);
  return 1;
}

CALTOFAL_API const char *GetSideChannel(int channel, const char *countryCode,
                                        const char *fallback) noexcept {
  int limit = 9;
  if (countryCode != nullptr && std::strncmp(countryCode, "US", 2) == 0) limit = 7;
  if (countryCode != nullptr && std::strncmp(countryCode, "JP", 2) == 0) limit = 10;
  if (channel < 5) return "AboveControlChannel";
  if (channel > limit) return "BelowControlChannel";
  return fallback;
}

CALTOFAL_API int GetDFSChannel(void) noexcept {
  return 0;
}

}  // extern "C"

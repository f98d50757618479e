// The repeater's endpoint: which of the two is enabled and its interface,
// whether it is connected upstream, and the upstream link's channel figures.
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "caltofal.h"
#include "frame/message.h"
#include "frame/os.h"
#include "frame/shell.h"
#include "frame/trace.h"

using namespace caltofal;

namespace {

constexpr int kLine = 128;
constexpr char kEndPoint[] = "Device.WiFi.EndPoint.";
constexpr char kPeerFile[] = "/tmp/wlan_wave/%s_peer_info";

// What the configuration says of one endpoint.
struct EndPointState {
  char instance[kLine] = {0};  // "Device.WiFi.EndPoint.N"
  char enable[kLine] = {0};
  char reference[kLine] = {0};
};

void traceMultiFailure(const char *function, int line) {
  traceAt(function, line);
  PRINT_TO_CONSOLE("faltocal_send_main_multi_obj is Failure\n");
}

// The "Name" of the object a reference names, into `ifnameOut`; false when
// it could not be asked.
bool readReferencedName(Message &msg, const char *reference, char *ifnameOut) {
  msg.release();
  if (faltocal_send_main_multi_obj(msg.get(), reference, "get_leaf_node", "get", 1, "Name") == -1) {
    traceMultiFailure("GetEPEnable", __LINE__);
    return false;
  }
  const char *name = "";
  for (ObjList *obj : objectsOf(msg)) {
    for (ParamList *param : paramsOf(obj)) {
      if (sameName(param->sParamName, "Name")) name = param->sParamValue;
    }
  }
  std::memset(ifnameOut, 0, kLine);
  copyPadded(ifnameOut, name, 126);
  return true;
}

// Runs "cat /proc/net/mtlk/IFNAME/DRIVERFILE | FILTER > PEERFILE" (cut at
// 255 characters), which leaves the selected lines of a driver file in the
// interface's peer file, and opens that file. nullptr when the interface
// name is refused (no command runs), or after the console line when the
// command cannot run or the file cannot be opened (`missing` is what that
// line calls the file).
os::Stream *runIntoPeerFile(const char *function, int line, const char *ifname,
                            const char *driverFile, const char *filter, const char *missing) {
  if (ifname == nullptr || !shell::isInterfaceName(ifname)) return nullptr;
  char peer[kLine] = {0};
  formatCut(peer, sizeof peer, kPeerFile, ifname);
  char command[256] = {0};
  formatCut(command, sizeof command, "cat /proc/net/mtlk/%s/%s | %s > %s", ifname, driverFile,
            filter, peer);
  int status = os::run(command);
  if (status == 127 || status == -1) {
    traceTag(kUnitWifi, line, function);
    PRINT_TO_CONSOLE("%s system command fail\n", command);
    return nullptr;
  }
  os::Stream *file = os::openFile(peer, "r");
  if (file == nullptr) {
    traceTag(kUnitWifi, line, function);
    PRINT_TO_CONSOLE("%s does not exist\n", missing);
  }
  return file;
}

// The first line of a file without one trailing newline.
void chomp(char *line) {
  std::size_t n = std::strlen(line);
  if (n > 0 && line[n - 1] == '\n') line[n - 1] = '\0';
}

}  // namespace

extern "C" {

CALTOFAL_API int GetEPEnable(char *ifnameOut) noexcept {
  static constexpr char kFunction[] = "GetEPEnable";
  EndPointState endpoints[2];
  char objects[2][kLine] = {};
  for (int i = 0; i < 2; ++i) {
    formatCut(endpoints[i].instance, kLine, "%s%d", kEndPoint, i + 1);
    if (i == 0) {
      formatCut(objects[i], kLine, "%s%d%s", kEndPoint, i + 1, "&");
    } else {
      formatCut(objects[i], kLine, "%s%d", kEndPoint, i + 1);
    }
  }
  Message msg;
  for (const char *object : objects) {
    if (faltocal_send_main_multi_obj(msg.get(), object, "get_leaf_node", "get", 2, "Enable",
                                     "SSIDReference") == -1) {
      traceMultiFailure(kFunction, __LINE__);
      return 0;
    }
  }
  for (ObjList *obj : objectsOf(msg)) {
    EndPointState *ep = nullptr;
    for (EndPointState &candidate : endpoints) {
      if (std::strncmp(obj->sObjName, candidate.instance, std::strlen(candidate.instance)) == 0) {
        ep = &candidate;
        break;
      }
    }
    if (ep == nullptr) continue;
    for (ParamList *param : paramsOf(obj)) {
      if (sameName(param->sParamName, "Enable")) copyPadded(ep->enable, param->sParamValue, 126);
      if (sameName(param->sParamName, "SSIDReference")) {
        copyPadded(ep->reference, param->sParamValue, 126);
      }
    }
  }
  int result = -1;
  for (int i = 0; i < 2 && result == -1; ++i) {
    if (std::strcmp(endpoints[i].enable, "true") == 0) result = i + 1;
  }
  if (result == -1 || ifnameOut == nullptr) return result;
  readReferencedName(msg, endpoints[result - 1].reference, ifnameOut);
  return result;
}

CALTOFAL_API int GetEPContection(const char *ifname, char *macOut) noexcept {
  // The peer MAC addresses, one a line.
  os::Stream *file = runIntoPeerFile(
      "GetEPContection", __LINE__, ifname, "PeerFlowStatus",
      "grep \"STA MAC\" | sed -e 's/: STA MAC//' -e 's/\\t//' -e 's/ //g'", kPeerFile);
  if (file == nullptr) return 0;
  char line[kLine] = {0};
  if (os::readLine(file, line, sizeof line) == nullptr) line[0] = '\0';
  os::close(file);
  chomp(line);
  if (isValidMacAddress(line) != 1) return 0;
  if (macOut != nullptr) copyCut(macOut, kLine, line);
  return 1;
}

CALTOFAL_API int GetEPConnectionStatus(char *macOut) noexcept {
  char name[kLine] = {0};
  if (GetEPEnable(name) == -1) return 0;
  return GetEPContection(name, macOut);
}

CALTOFAL_API int ReqEPChannelInfo(const char *ifname, int32_t *values) noexcept {
  // The channel figures, one number a line. A missing file is called by the
  // survey file's name, as the system has always said here.
  os::Stream *file = runIntoPeerFile("ReqEPChannelInfo", __LINE__, ifname, "channel",
                                     "grep -e width: -e primary_channel: | sed 's/[^0-9]*//g'",
                                     "/tmp/wlan_wave/%s_scan_by_User.result");
  if (file == nullptr) return 0;
  bool stored = false;
  int count = 0;
  char line[kLine];
  while (os::readLine(file, line, sizeof line) != nullptr) {
    chomp(line);
    const int value = ConvInt(line);
    if (value == 0) {
      os::close(file);
      return 0;
    }
    if (values != nullptr) {
      values[count++] = value;
      stored = true;
    }
  }
  os::close(file);
  return stored ? 1 : 0;
}

}  // extern "C"

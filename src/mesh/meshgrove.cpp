// The roaming mesh: its enable switch, the mesh helper commands, and telling
// the mesh daemon to push new settings to the connected satellites.
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "caltofal.h"
#include "frame/message.h"
#include "frame/os.h"
#include "frame/trace.h"

using namespace caltofal;

namespace {

constexpr char kMeshObject[] = "Device.WiFi.X_ZINTU_RoamingMesh.";
constexpr int kOutput = 128;   // one output line
constexpr int kCommand = 512;  // a command line

void traceMesh(int line, const char *function) {
  traceTag(kUnitMesh, line, function);
}

// The decimal number a command printed, as atoi reads it, held to the int
// range.
long numberOf(const char *text) {
  long value = std::strtol(text, nullptr, 10);
  return value < INT_MIN ? INT_MIN : value > INT_MAX ? INT_MAX : value;
}

}  // namespace

extern "C" {

CALTOFAL_API int ZINTU_meshgrove_check_is_enabled(void) noexcept {
  static constexpr char kFunction[] = "ZINTU_meshgrove_check_is_enabled";
  char value[kOutput] = {0};
  Message msg;
  int rc = faltocal_send_main_multi_obj(msg.get(), kMeshObject, "get", "get", 1, "Enable");
  if (rc != -1) {
    bool found = false;
    for (ObjList *obj : objectsOf(msg)) {
      for (ParamList *param : paramsOf(obj)) {
        if (!found && sameName(param->sParamName, "Enable")) {
          copyPadded(value, param->sParamValue, sizeof value);
          found = true;
        }
      }
    }
  } else {
    traceAt(kFunction, 193);
    PRINT_TO_CONSOLE("faltocal_send_main_multi_obj function failed with object [%s] param [%s] \n",
                     kMeshObject, "Enable");
  }
  msg.release();
  if (rc == 0) {
    value[sizeof value - 1] = '\0';
    return atob(value);
  }
  traceMesh(210, kFunction);
  PRINT_TO_CONSOLE("[ERROR] Return [false] \n");
  return 0;
}

CALTOFAL_API int ZINTU_meshgrove_set_enable_value(uint8_t enable) noexcept {
  static constexpr char kFunction[] = "ZINTU_meshgrove_set_enable_value";
  traceMesh(296, kFunction);
  PRINT_TO_CONSOLE("START_FUNCTION : FAL with arg [%d] \n", enable);
  Message msg;
  int rc = faltocal_send_main_multi_obj(msg.get(), kMeshObject, "set", "set", 1, "Enable",
                                        enable != 0 ? "true" : "false");
  if (rc == -1) {
    traceAt(kFunction, 301);
    PRINT_TO_CONSOLE("faltocal_send_main_multi_obj is Failure\n");
  }
  return rc;
}

CALTOFAL_API char *ZINTU_meshgrove_get_from_shell(const char *command, char *output) noexcept {
  static constexpr char kFunction[] = "ZINTU_meshgrove_get_from_shell";
  if (command == nullptr || command[0] == '\0') {
    traceMesh(228, kFunction);
    PRINT_TO_CONSOLE("Received arg CMD is NULL \n");
    if (output != nullptr) output[0] = '\0';
  } else if (os::Stream *pipe = os::openCommand(command); pipe == nullptr) {
    traceMesh(235, kFunction);
    PRINT_TO_CONSOLE("popen failed with [%s] \n", command);
    if (output != nullptr) output[0] = '\0';
  } else if (output == nullptr) {
    traceMesh(243, kFunction);
    PRINT_TO_CONSOLE("Received return buffer is NULL. Skip get return value. \n");
    os::close(pipe);
  } else if (os::readLine(pipe, output, kOutput) == nullptr) {
    traceMesh(249, kFunction);
    PRINT_TO_CONSOLE("fgets function failed. \n");
    os::close(pipe);
    output[0] = '\0';
  } else {
    os::close(pipe);
    std::size_t n = std::strlen(output);
    if (n > 0 && std::isspace(static_cast<unsigned char>(output[n - 1]))) output[n - 1] = '\0';
  }
  traceMesh(272, kFunction);
  PRINT_TO_CONSOLE("Received CMD [%s] returns [%s] \n", orNull(command), orNull(output));
  return output;
}

CALTOFAL_API char *ZINTU_meshgrove_get_IP_from_MAC(char *mac) noexcept {
  if (mac == nullptr) return nullptr;
  // Only a MAC address reaches the helper script's command line.
  if (zintu_isValidMacAddress(mac) != 0) {
    std::memset(mac, 0, kOutput);
    return mac;
  }
  char command[kCommand] = {0};
  formatCut(command, sizeof command, "%s %s", "/opt/meshgrove/scripts/find_mac_to_ip.sh", mac);
  get_from_shell(command, mac);
  return mac;
}

CALTOFAL_API int ZINTU_meshgrove_sync_to_slave(void) noexcept {
  static constexpr char kFunction[] = "ZINTU_meshgrove_sync_to_slave";
  if (ZINTU_meshgrove_check_is_enabled() == 0) {
    traceMesh(155, kFunction);
    PRINT_TO_CONSOLE("The Meshgrove is NOT enabled. Skip waiting for SSO. \n");
    return 0;
  }
  if ((ZintuGet_OperMode() & 4) == 0) {
    traceMesh(162, kFunction);
    PRINT_TO_CONSOLE("The operation mode is NOT Master. Skip waiting for SSO. \n");
    return 0;
  }
  char slaves[kOutput] = {0};
  ZINTU_meshgrove_get_from_shell("gddbc -i -g /runtime/singlesignoninfo/livingslave/ishasrptslave",
                                 slaves);
  if (numberOf(slaves) <= 0) {
    traceMesh(168, kFunction);
    PRINT_TO_CONSOLE("The connected slave is NOT exist. Skip waiting for SSO. \n");
    return 0;
  }
  ZINTU_meshgrove_get_from_shell(
      "gddbc -i -s /runtime/nimbord/sysnotifycmd \"\" ; killall -SIGUSR1 nimbord", nullptr);
  os::sleepSeconds(5);
  return 0;
}

}  // extern "C"

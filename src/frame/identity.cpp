// Device identity and address checks.
#include <arpa/inet.h>
#include <regex.h>
#include <strings.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "caltofal.h"
#include "frame/message.h"
#include "frame/os.h"
#include "frame/trace.h"
#include "help_objlist.h"

using namespace caltofal;

namespace {

constexpr char kHostPrefix[] = "Device.Hosts.Host.";  // 18 characters
constexpr char kNextMacFile[] = "/opt/lantiq/etc/nextmac.conf";

enum class IdKind { None, Mac, IPv4 };

IdKind classify(const char *id) {
  std::size_t n = std::strlen(id);
  if (n < 4) return IdKind::None;
  if (std::strchr(id, ':') != nullptr && n == 17) return IdKind::Mac;
  if (std::strchr(id, '.') != nullptr && n >= 7 && n <= 15) return IdKind::IPv4;
  return IdKind::None;
}

// The host's address parameter matches the identifier.
bool hostMatches(ObjList *host, IdKind kind, const char *id) {
  const char *wanted = kind == IdKind::Mac ? "PhysAddress" : "IPAddress";
  for (ParamList *param : paramsOf(host)) {
    if (!sameName(param->sParamName, wanted)) continue;
    if (kind == IdKind::Mac) return strncasecmp(param->sParamValue, id, 128) == 0;
    return std::strncmp(param->sParamValue, id, 128) == 0;
  }
  return false;
}

}  // namespace

extern "C" {

CALTOFAL_API int GetDeviceID(const char *identifier) noexcept {
  if (identifier == nullptr) return 0;
  IdKind kind = classify(identifier);
  if (kind == IdKind::None) return 0;

  Message msg;
  if (faltocal_send_main_multi_obj(msg.get(), "Device.Hosts.", "get", "get", 0) == -1) {
    traceAt("GetDeviceID", 1124);
    PRINT_TO_CONSOLE("faltocal_send_main_multi_obj is Failure\n");
    return 0;
  }
  bool tableSeen = false;
  for (ObjList *obj : objectsOf(msg)) {
    if (std::strstr(obj->sObjName, "Host.") == nullptr) {
      if (tableSeen) continue;
      for (ParamList *param : paramsOf(obj)) {
        tableSeen = true;
        if (sameName(param->sParamName, "HostNumberOfEntries") &&
            std::atoi(param->sParamValue) == 0) {
          traceTag(kUnitFrame, 1135, "GetDeviceID");
          PRINT_TO_CONSOLE("There is no Device.Hosts.Host entry \n");
          return 0;
        }
      }
      continue;
    }
    if (std::strstr(obj->sObjName, "Address") != nullptr) continue;
    if (hostMatches(obj, kind, identifier)) {
      std::size_t skip = sizeof kHostPrefix - 1;
      if (std::strlen(obj->sObjName) < skip) return 0;
      return std::atoi(obj->sObjName + skip);
    }
  }
  traceTag(kUnitFrame, 1169, "GetDeviceID");
  PRINT_TO_CONSOLE("INPUT arg sIdentifier = %s is NOT exist in Device.Hosts.Host.{i}.\n",
                   identifier);
  return 0;
}

CALTOFAL_API int zintu_scapi_getMacFromFile(const char *interfaceName, char *macOut) noexcept {
  os::Stream *file = os::openFile(kNextMacFile, "ab+");
  if (file == nullptr) {
    traceAt("zintu_scapi_getMacFromFile", 1240);
    PRINT_TO_CONSOLE("fopen is Failure\n");
    return -1;
  }
  if (interfaceName == nullptr) {  // the key is made from it
    os::close(file);
    return -1;
  }
  char key[32];
  std::snprintf(key, sizeof key, "%s>", interfaceName);
  char line[64];
  char *at = nullptr;
  while (os::readLine(file, line, sizeof line) != nullptr) {
    line[std::strcspn(line, "\n")] = '\0';
    at = std::strstr(line, key);
    if (at != nullptr) break;
  }
  if (at == nullptr) {
    traceAt("zintu_scapi_getMacFromFile", 1275);
    PRINT_TO_CONSOLE("Error = Couldn't get mac for the interface\n");
    os::close(file);
    return -1;
  }
  char *save = nullptr;
  strtok_r(at, "> ", &save);
  const char *mac = strtok_r(nullptr, "> ", &save);
  if (mac == nullptr) {
    traceAt("zintu_scapi_getMacFromFile", 1260);
    PRINT_TO_CONSOLE("strtok_r is Failure\n");
    os::close(file);
    return -1;
  }
  if (macOut == nullptr) {  // found, with nowhere to copy it
    os::close(file);
    return -1;
  }
  copyCut(macOut, 18, mac);
  traceTag(kUnitFrame, 1279, "zintu_scapi_getMacFromFile");
  PRINT_TO_CONSOLE("GOT MAC FROM CONFIG FILE\n");
  os::close(file);
  return 0;
}

CALTOFAL_API int zintu_isValidMacAddress(const char *mac) noexcept {
  if (mac == nullptr || mac[0] == '\0') return -1;
  regex_t regex;
  if (regcomp(&regex,
              "^[0-9A-F][0-9A-F]:[0-9A-F][0-9A-F]:[0-9A-F][0-9A-F]:[0-9A-F][0-9A-F]:"
              "[0-9A-F][0-9A-F]:[0-9A-F][0-9A-F]$",
              REG_ICASE) != 0) {
    faltocal_logLine(3, "faltocal{%s, %d}:Could not compile xRegex\n", "zintu_isValidMacAddress",
                     1301);
    return -1;
  }
  int rc = regexec(&regex, mac, 0, nullptr, 0);
  int result = rc == 0 ? 0 : -1;
  if (rc != 0 && rc != REG_NOMATCH) {
    char text[100];
    regerror(rc, &regex, text, sizeof text);
    faltocal_logLine(3, "faltocal{%s, %d}:Regex match failed: %s\n", "zintu_isValidMacAddress",
                     1313, text);
  }
  regfree(&regex);
  return result;
}

CALTOFAL_API int zintu_isValidIPv4Address(const char *address) noexcept {
  if (address == nullptr) return -1;
  in_addr parsed{};
  return inet_pton(AF_INET, address, &parsed) == 1 ? 0 : -1;
}

CALTOFAL_API int itoa(int value, char *out) noexcept {
  if (out == nullptr) return -1;
  int digits = 0;
  for (long long power = 1; power <= value; power *= 10) ++digits;
  out[digits] = '\0';
  for (int i = digits - 1; i >= 0; --i) {
    out[i] = static_cast<char>('0' + value % 10);
    value /= 10;
  }
  return 0;
}

CALTOFAL_API int atob(const char *text) noexcept {
  if (text == nullptr) return 0;
  return std::strncmp(text, "1", 128) == 0 || strcasecmp(text, "true") == 0 ? 1 : 0;
}

}  // extern "C"

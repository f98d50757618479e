// IPv4 DNS servers of a WAN interface: those its DHCP client received, or
// the DNS client's server table (all entries, or the static ones only).
#include <cstdio>
#include <cstring>

#include "caltofal.h"
#include "frame/message.h"
#include "frame/trace.h"
#include "libcal.h"
#include "network/walk.h"

using namespace caltofal;
using namespace caltofal::net;

namespace {

constexpr char kServerTable[] = "Device.DNS.Client.Server.";

// A usable IPv4 server text: not empty and not an IPv6 address.
bool isIpv4Server(const char *value) {
  return !isEmpty(value) && std::strchr(value, ':') == nullptr;
}

// The DNSServers list of the first running DHCP client of the interface,
// or nullptr.
const char *dhcpServerList(const Message &msg, const DottedPath &interface) {
  for (ObjList *client : objectsOf(msg)) {
    const char *enable = lookup(client, "Enable");
    const char *status = lookup(client, "Status");
    const char *ref = lookup(client, "Interface");
    const char *servers = lookup(client, "DNSServers");
    if (enable == nullptr || status == nullptr || ref == nullptr || servers == nullptr) continue;
    if (isOn(enable) && startsWithNoCase(status, "Enabled") && interface.matches(ref) &&
        isIpv4Server(servers)) {
      return servers;
    }
  }
  return nullptr;
}

// First server, then everything after the first separator (the rest of the
// list, cut by the field); a list of separators only stays whole in the
// first field and gives "0.0.0.0" as the second.
void splitServerList(const char *list, char *dns1, char *dns2) {
  char work[HELP_MAX_VALUE_LEN] = {0};
  std::snprintf(work, sizeof work, "%s", list);
  char *rest = nullptr;
  const char *first = strtok_r(work, ",", &rest);
  if (first != nullptr) {
    copyCut(dns1, 16, first);
    copyCut(dns2, 16, rest != nullptr ? rest : "");
  } else {
    copyCut(dns1, 16, work);
    copyCut(dns2, 16, "0.0.0.0");
  }
}

// Servers of the table that belong to the interface and pass `counts`,
// written in table order: the first to dns1, the second to dns2. Returns
// how many were written (0, 1 or 2).
template <typename Counts>
int takeTableServers(const Message &msg, Counts counts, char *dns1, char *dns2) {
  int found = 0;
  for (ObjList *server : objectsOf(msg)) {
    const char *address = counts(server);
    if (address == nullptr) continue;
    copyCut(found == 0 ? dns1 : dns2, 16, address);
    if (++found == 2) break;
  }
  return found;
}

}  // namespace

extern "C" {

CALTOFAL_API int32_t ZintuGet_WanDns(const char *ipInterface, char *dns1, char *dns2) noexcept {
  if (ipInterface == nullptr || dns1 == nullptr || dns2 == nullptr || ipInterface[0] == '\0') {
    return -1;
  }
  DottedPath interface(ipInterface);
  Message msg;
  if (getTree(msg, "Device.DHCPv4.Client.") == 0) {
    if (const char *list = dhcpServerList(msg, interface)) {
      splitServerList(list, dns1, dns2);
      return 0;
    }
  }

  int rc = getTree(msg, kServerTable);
  if (rc == CAL_ERR_NO_OBJECT) return 0;
  if (rc != 0) {
    traceFailure("ZintuGet_WanDns", __LINE__, rc, "faltocal_SendMultiObj is Failure \n");
    return -1;
  }
  takeTableServers(
      msg,
      [&interface](ObjList *server) -> const char * {
        const char *enable = lookup(server, "Enable");
        const char *status = lookup(server, "Status");
        const char *ref = lookup(server, "Interface");
        const char *address = lookup(server, "DNSServer");
        if (enable == nullptr || status == nullptr || ref == nullptr || address == nullptr) {
          return nullptr;
        }
        return isOn(enable) && interface.matches(ref) && isIpv4Server(address) ? address : nullptr;
      },
      dns1, dns2);
  return 0;
}

CALTOFAL_API int32_t ZintuGet_WanStaticDns(const char *ipInterface, int32_t *dnsAuto, char *dns1,
                                           char *dns2) noexcept {
  if (ipInterface == nullptr || dnsAuto == nullptr || dns1 == nullptr || dns2 == nullptr ||
      ipInterface[0] == '\0') {
    return -1;
  }
  DottedPath interface(ipInterface);
  Message msg;
  int rc = getTree(msg, kServerTable);
  if (rc == CAL_ERR_NO_OBJECT) {
    traceTag(kUnitNetwork, __LINE__, "ZintuGet_WanStaticDns");
    PRINT_TO_CONSOLE("no exist (%s)\n", kServerTable);
    *dnsAuto = 1;
    return 0;
  }
  if (rc != 0) {
    traceFailure("ZintuGet_WanStaticDns", __LINE__, rc, "faltocal_SendMultiObj is Failure \n");
    return -1;
  }
  int found = takeTableServers(
      msg,
      [&interface](ObjList *server) -> const char * {
        const char *ref = lookup(server, "Interface");
        const char *address = lookup(server, "DNSServer");
        const char *type = lookup(server, "Type");
        if (ref == nullptr || address == nullptr || type == nullptr) return nullptr;
        return startsWithNoCase(type, "Static") && interface.matches(ref) && isIpv4Server(address)
                   ? address
                   : nullptr;
      },
      dns1, dns2);
  *dnsAuto = found == 0 ? 1 : 0;
  return 0;
}

}  // extern "C"

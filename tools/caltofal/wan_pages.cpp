// The network pages: operation mode, the default WAN summary, the bridged
// WAN, DNS servers, UCI sections, interface lookups, prefix delegation and
// the ATM link. Every record is zero-filled before its getter runs.
#include <cstring>
#include <iostream>

#include "caltofal.h"
#include "commands.h"
#include "failure.h"
#include "output.h"

namespace cli {

namespace {

constexpr const char *kCurrentNetwork = "Device.X_ZINTU_CurrentNetwork";

template <typename Record>
void zeroFill(Record *record) {
  std::memset(record, 0, sizeof *record);
}

template <std::size_t N>
bool contains(const char (&field)[N], const char *word) {
  return fieldText(field).find(word) != std::string::npos;
}

void connectionRows(Page &page, const ZintuWanInfo &w, bool bridge) {
  page.section("Connection");
  page.text("sStatus", "Status", fieldText(w.sStatus));
  page.text("sWanIpType", "Type", fieldText(w.sWanIpType));
  page.text("sWanLinkType", "Link", fieldText(w.sWanLinkType));
  page.text("sOperMode", "Mode", fieldText(w.sOperMode));
  page.text("sIpv4Mode", "IPv4 mode", fieldText(w.sIpv4Mode));
  page.text("sName", "Name", fieldText(w.sName));
  page.text("sWanIpInterface", "IP interface", fieldText(w.sWanIpInterface));
  if (!bridge) page.number("nWanIpIfIndex", "Interface index", w.nWanIpIfIndex);
  page.text("sLowerLayers", "Lower layers", fieldText(w.sLowerLayers));
  page.text("sDescription", "Description", fieldText(w.sDescription));

  page.section("IPv4");
  page.text("sIPAddress", "Address", fieldText(w.sIPAddress));
  page.text("sSubnetMask", "Subnet mask", fieldText(w.sSubnetMask));
  page.text("sGateway", "Gateway", fieldText(w.sGateway));
}

void pppRows(Page &page, const ZintuWanInfo &w, bool reveal) {
  // Shown as text only for a PPP connection; the JSON form always has the keys.
  page.section("PPP", contains(w.sWanIpType, "ppp") || w.sPppInterface[0] != '\0');
  page.text("sPppInterface", "PPP interface", fieldText(w.sPppInterface));
  page.text("sUsername", "Username", fieldText(w.sUsername));
  page.secret("sPassword", "Password", fieldText(w.sPassword), reveal);
  page.text("sConnectionTrigger", "Connection trigger", fieldText(w.sConnectionTrigger));
  page.number("nIdleDisconnectTime", "Idle disconnect (s)", w.nIdleDisconnectTime);
  page.number("nMaxMRUSize", "Max MRU size", w.nMaxMRUSize);
  page.text("sACName", "AC name", fieldText(w.sACName));
  page.text("sServiceName", "Service name", fieldText(w.sServiceName));
  page.text("sPppStaticAddress", "Static address", fieldText(w.sPppStaticAddress));
}

void vlanAndDnsRows(Page &page, const ZintuWanInfo &w) {
  page.section("VLAN");
  page.flag("bVlanEnable", "VLAN", w.bVlanEnable, "enabled", "disabled");
  page.number("nVlanID", "VLAN ID", w.nVlanID);

  page.section("DNS");
  page.flag("bDnsAuto", "Servers", w.bDnsAuto, "automatic", "static");
  page.text("sDNS1", "Primary", fieldText(w.sDNS1));
  page.text("sDNS2", "Secondary", fieldText(w.sDNS2));
}

void ipv6Rows(Page &page, const ZintuWanInfo &w, bool addresses) {
  page.section("IPv6");
  page.flag("bIpv6Enable", "IPv6", w.bIpv6Enable, "enabled", "disabled");
  page.text("sIpv6Type", "Type", fieldText(w.sIpv6Type));
  if (addresses) {
    page.text("sIpv6Address", "Address", fieldText(w.sIpv6Address));
    page.text("sIpv6NextHop", "Next hop", fieldText(w.sIpv6NextHop));
  }
}

void atmRows(Page &page, const ZintuWanInfo &w) {
  page.section("ATM");
  page.number("nAtmVpi", "VPI", w.nAtmVpi);
  page.number("nAtmVci", "VCI", w.nAtmVci);
  page.text("sAtmQoSClass", "QoS class", fieldText(w.sAtmQoSClass));
}

void writeValue(const Options &options, const char *key, const std::string &value) {
  if (options.json) {
    writeJson(std::cout, Json{{key, value}});
  } else {
    std::cout << printable(value) << '\n';
  }
}

}  // namespace

int runOpMode(const Options &options) {
  int mode = ZintuGet_OperMode();
  if (mode == -1) return reportNotFound("no operation mode in " + std::string(kCurrentNetwork));
  // Bit value 4 marks the mesh master (router) mode; the pages tell no more.
  bool master = (mode & 4) != 0;
  if (options.json) {
    writeJson(std::cout, Json{{"OperationMode", mode}, {"meshMaster", master}});
  } else {
    std::cout << mode << (master ? " (mesh master, router mode)" : " (not the mesh master)")
              << '\n';
  }
  return kOk;
}

int runWan(const Options &options) {
  ZintuWanInfo info;
  zeroFill(&info);
  int rc = ZintuGet_DefWanInfo(&info);
  if (info.sWanIpInterface[0] == '\0') {
    return reportNotFound("no default WAN connection in " + std::string(kCurrentNetwork));
  }
  // The gateway and VLAN lookups decide the result; the page is still shown.
  // Later lookups (DNS, IPv6) have run since, so the platform's last text
  // need not be about the failed one: the code tells.
  std::string partial = codeReason(rc);

  int atm = ZintuGet_AtmInfo(&info);
  Page page;
  connectionRows(page, info, false);
  pppRows(page, info, options.showSecrets);
  vlanAndDnsRows(page, info);
  ipv6Rows(page, info, true);
  if (atm == 0) {
    atmRows(page, info);
  } else {
    page.section("ATM");
    page.note("ATM link", "none");
  }
  page.write(std::cout, options.json);
  if (rc != 0) return reportError("wan: the gateway or VLAN lookup failed: " + partial);
  return kOk;
}

int runWanBridge(const Options &options, bool wifi) {
  ZintuWanInfo info;
  zeroFill(&info);
  int rc = ZintuGet_BrWanInfo(wifi ? 2u : 0u, &info);
  if (rc == -1 && info.sOperMode[0] == '\0') {
    return reportFailure("cannot read the bridged WAN", rc);
  }
  Page page;
  connectionRows(page, info, true);
  vlanAndDnsRows(page, info);
  ipv6Rows(page, info, false);
  page.write(std::cout, options.json);
  if (rc != 0) {
    // The DNS lookup has run since: the code tells what the gateway lookup met.
    return reportError("wan bridge: the gateway lookup failed: " + codeReason(rc));
  }
  return kOk;
}

int runWanDns(const Options &options, const std::string &ipInterface, bool staticOnly) {
  char dns1[16] = {};
  char dns2[16] = {};
  int32_t dnsAuto = 0;
  int rc = staticOnly ? ZintuGet_WanStaticDns(ipInterface.c_str(), &dnsAuto, dns1, dns2)
                      : ZintuGet_WanDns(ipInterface.c_str(), dns1, dns2);
  if (rc != 0) {
    return reportFailure("cannot read the DNS servers of " + ipInterface, rc,
                         "Device.DNS.Client.Server");
  }
  Page page;
  page.section((staticOnly ? "Static DNS servers of " : "DNS servers of ") + ipInterface);
  if (staticOnly) page.flag("bDnsAuto", "Servers", dnsAuto, "automatic", "static");
  page.text("sDNS1", "Primary", fieldText(dns1));
  page.text("sDNS2", "Secondary", fieldText(dns2));
  page.write(std::cout, options.json);
  return kOk;
}

int runWanUciSection(const Options &options, const std::string &connMode, bool byConnMode) {
  char section[128] = {};
  int rc = byConnMode ? ZintuGet_UciSectionByConnMode(connMode.c_str(), section)
                      : ZintuGet_UciSectionOfDefGw(section);
  if (rc != 0) {
    return reportNotFound(byConnMode ? "no UCI section for connection mode " + connMode
                                     : std::string("no UCI section for the default WAN"));
  }
  if (options.json) {
    Json answer = Json::object();
    if (byConnMode) answer["ConnMode"] = connMode;
    answer["UciSection"] = fieldText(section);
    writeJson(std::cout, answer);
  } else {
    std::cout << printable(fieldText(section)) << '\n';
  }
  return kOk;
}

int runWanLowerLayers(const Options &options, const std::string &path) {
  char lowerLayers[128] = {};
  int rc = ZintuGet_LowerLayers(path.c_str(), lowerLayers);
  if (rc != 0) return reportFailure("cannot read LowerLayers of " + path, rc, path);
  std::string value = fieldText(lowerLayers);
  if (options.json) {
    writeJson(std::cout, Json{{"object", path}, {"LowerLayers", value}});
  } else {
    writeObjects(std::cout, {ObjectValues{path, {{"LowerLayers", value}}}});
  }
  return kOk;
}

int runWanEthObject(const Options &options) {
  char name[128] = {};
  int rc = ZintuGet_EthWanObjName(name);
  if (rc != 0) {
    return reportNotFound("no Ethernet WAN IP interface (alias cpe-EthWan-IPIntf-1)");
  }
  writeValue(options, "object", fieldText(name));
  return kOk;
}

int runIpv6Pd(const Options &options) {
  int enabled = ZintuGet_IPv6PD();
  if (enabled < 0) {
    return reportFailure("cannot read the IPv6 prefix delegation setting", enabled,
                         kCurrentNetwork);
  }
  if (options.json) {
    writeJson(std::cout, Json{{"EnableIpv6PD", enabled == 1}});
  } else {
    std::cout << (enabled == 1 ? "enabled" : "disabled") << '\n';
  }
  return kOk;
}

int runAtm(const Options &options) {
  ZintuWanInfo info;
  zeroFill(&info);
  int rc = ZintuGet_AtmInfo(&info);
  if (rc != 0) return reportFailure("cannot read the ATM link", rc, "Device.ATM.Link.1");
  Page page;
  atmRows(page, info);
  page.write(std::cout, options.json);
  return kOk;
}

}  // namespace cli

// The DSL, LAN, multi-WAN and IPTV pages, the WAN interface name, the
// find-by-value lookup and the two address checks. Every record is
// zero-filled before its getter runs.
#include <arpa/inet.h>

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <iostream>

#include "caltofal.h"
#include "commands.h"
#include "failure.h"
#include "output.h"

namespace cli {

namespace {

template <typename Record>
bool isZero(const Record &record) {
  static const Record zero{};
  return std::memcmp(&record, &zero, sizeof record) == 0;
}

void dslRows(Page &page, const ZintuDslLineInfo &d) {
  page.section("Line");
  page.text("sStatus", "Status", fieldText(d.sStatus));
  page.text("sCurrentProfile", "Profile", fieldText(d.sCurrentProfile));
  page.section("Rates (kbit/s)");
  page.number("nUpstreamCurrRate", "Upstream", d.nUpstreamCurrRate);
  page.number("nDownstreamCurrRate", "Downstream", d.nDownstreamCurrRate);
  page.number("nUpstreamMaxBitRate", "Upstream attainable", d.nUpstreamMaxBitRate);
  page.number("nDownstreamMaxBitRate", "Downstream attainable", d.nDownstreamMaxBitRate);
  page.section("Noise margin (0.1 dB)");
  page.number("nUpstreamNoiseMargin", "Upstream", d.nUpstreamNoiseMargin);
  page.number("nDownstreamNoiseMargin", "Downstream", d.nDownstreamNoiseMargin);
  page.section("Line attenuation per band (0.1 dB)");
  page.text("sLATNus", "Upstream", fieldText(d.sLATNus));
  page.text("sLATNds", "Downstream", fieldText(d.sLATNds));
  page.section("CRC errors");
  page.number("nXTURCRCErrors", "Received by the modem", d.nXTURCRCErrors);
  page.number("nXTUCCRCErrors", "Received by the exchange", d.nXTUCCRCErrors);
}

void lanv4Rows(Page &page, const LANv4Info &l) {
  page.section("LAN IPv4");
  page.text("sIPv4Address", "Address", fieldText(l.sIPv4Address));
  page.text("sIPv4Subnet", "Subnet mask", fieldText(l.sIPv4Subnet));
  page.text("sMACAddr", "MAC address", fieldText(l.sMACAddr));
  page.section("DHCP server");
  page.flag("bDHCPv4Active", "DHCP server", l.bDHCPv4Active, "on", "off");
  page.text("sDHCPv4StartIP", "First address", fieldText(l.sDHCPv4StartIP));
  page.text("sDHCPv4EndIP", "Last address", fieldText(l.sDHCPv4EndIP));
  page.number("nLeaseTimeSec", "Lease time (s)", l.nLeaseTimeSec);
}

void lanv6Rows(Page &page, const LANv6Info &l) {
  page.section("LAN IPv6");
  page.flag("bIPv6Active", "IPv6", l.bIPv6Active, "on", "off");
  page.text("sIPv6Address", "Address", fieldText(l.sIPv6Address));
  page.number("nPrefixLength", "Prefix length", l.nPrefixLength);
  page.text("sLANv6Mode", "Mode", fieldText(l.sLANv6Mode));
  page.section("DNS");
  page.text("sDNSv6Primary", "Primary", fieldText(l.sDNSv6Primary));
  page.text("sDNSv6Secondary", "Secondary", fieldText(l.sDNSv6Secondary));
  page.text("sDomainNamev6", "Domain", fieldText(l.sDomainNamev6));
  page.section("DHCPv6 server");
  page.text("sDHCPv6StartIP", "First address", fieldText(l.sDHCPv6StartIP));
  page.text("sDHCPv6EndIP", "Last address", fieldText(l.sDHCPv6EndIP));
  page.number("nLeaseTimeSec", "Preferred lifetime (s)", l.nLeaseTimeSec);
  page.section("Prefix");
  page.flag("bPDActive", "Prefix delegation", l.bPDActive, "on", "off");
  page.text("sManualPrefix", "Manual prefix", fieldText(l.sManualPrefix));
  page.number("nManualPrefixLength", "Manual prefix length", l.nManualPrefixLength);
}

// What the kinds of a multi-WAN connection mean.
const char *wanKindName(int32_t kind) {
  switch (kind) {
    case 0:
      return "Ethernet";
    case 2:
      return "tethering";
    default:
      return "neither Ethernet nor tethering";
  }
}

void wanRows(Page &page, const char *title, const char *kindKey, int32_t kind,
             const char *interfaceKey, const std::string &interface) {
  page.section(title);
  page.text(interfaceKey, "Interface", interface);
  page.labelled(kindKey, "Kind", kind, std::to_string(kind) + " (" + wanKindName(kind) + ")");
}

// A page of one record. A failed getter's record is shown only when
// `showPartial` and something was filled; the failure is reported.
template <typename Record, typename Rows>
int showPage(const Options &options, const Record &record, int rc, Rows rows,
             const std::string &what, bool showPartial = false) {
  if (rc != 0 && (!showPartial || isZero(record))) return reportFailure("cannot read " + what, rc);
  Page page;
  rows(page, record);
  page.write(std::cout, options.json);
  if (rc != 0) return reportFailure(what + ": the last request failed", rc);
  return kOk;
}

}  // namespace

int runDsl(const Options &options) {
  // A line page with some figures missing would mislead: all or nothing.
  ZintuDslLineInfo info{};
  int rc = ZintuGet_LineInfo(&info);
  return showPage(options, info, rc, dslRows, "the DSL line");
}

int runDslModes(const Options &options) {
  int32_t modes[10] = {};
  int rc = ZintuGet_DslMode(modes);
  if (rc != 0) return reportFailure("cannot read the DSL modes", rc);
  Page page;
  page.section("DSL modes");
  for (int i = 0; i < 10; ++i) page.flag(DEF_DSL_MODE[i], DEF_DSL_MODE[i], modes[i], "on", "off");
  page.write(std::cout, options.json);
  return kOk;
}

int runLan(const Options &options) {
  LANv4Info info{};
  int rc = ZintuGet_LANv4Info(&info);
  return showPage(options, info, rc, lanv4Rows, "the LAN IPv4 settings", true);
}

int runLan6(const Options &options) {
  LANv6Info info{};
  int rc = ZintuGet_LANv6Info(&info);
  return showPage(options, info, rc, lanv6Rows, "the LAN IPv6 settings");
}

int runMultiWan(const Options &options) {
  ZintuMultiWanInfo info{};
  int rc = ZintuGet_MultiWanInfo(&info);
  if (rc != 0) return reportFailure("cannot read the multi-WAN settings", rc);
  Page page;
  page.section("Multi-WAN");
  if (info.nEnabled == -1) {
    page.labelled("nEnabled", "Multi-WAN", info.nEnabled, "not configured");
  } else {
    page.flag("nEnabled", "Multi-WAN", info.nEnabled, "on", "off");
    page.flag("nFailOver", "Fail-over", info.nFailOver, "yes", "no");
    wanRows(page, "First WAN", "nWan1Type", info.nWan1Type, "sWan1Interface",
            fieldText(info.sWan1Interface));
    wanRows(page, "Second WAN", "nWan2Type", info.nWan2Type, "sWan2Interface",
            fieldText(info.sWan2Interface));
  }
  page.write(std::cout, options.json);
  return kOk;
}

int runWanIfName(const Options &options) {
  char name[128] = {};
  if (zintu_GetWanIfName(name) != 0) {
    return reportNotFound("no interface name for the default WAN connection");
  }
  if (options.json) {
    writeJson(std::cout, Json{{"ifName", fieldText(name)}});
  } else {
    std::cout << printable(fieldText(name)) << '\n';
  }
  return kOk;
}

int runIptv(const Options &options) {
  int state = Zintu_isEnabledIptvStb();
  if (state < 0) {
    return reportNotFound(
        "cannot tell: Device.X_ZINTU_Multi_Bridge has no switch or no IPTV bridge");
  }
  if (options.json) {
    writeJson(std::cout, Json{{"iptvStb", state}});
  } else {
    std::cout << (state == 1 ? "on" : "off") << '\n';
  }
  return kOk;
}

int runFind(const Options &options, const std::vector<std::string> &words) {
  const std::string &object = words[0];
  const std::string &param = words[1];
  const std::string &value = words[2];
  const std::string &wanted = words[3];
  char name[128] = {};
  char found[128] = {};
  if (zintu_GetValueFromDBInfo(object.c_str(), param.c_str(), value.c_str(), wanted.c_str(), name,
                               found) != 0) {
    return reportNotFound("no instance of " + object + " whose " + param + " begins with " + value +
                          " has " + wanted);
  }
  if (options.json) {
    writeJson(std::cout, Json{{"object", fieldText(name)}, {wanted, fieldText(found)}});
  } else {
    writeObjects(std::cout, {ObjectValues{fieldText(name), {{wanted, fieldText(found)}}}});
  }
  return kOk;
}

int runIpToUint(const Options &options, const std::string &address) {
  uint32_t value = IPConvertTouint(address.c_str());
  in_addr parsed{};
  if (inet_aton(address.c_str(), &parsed) == 0) {
    return reportError("not an IPv4 address: " + address);
  }
  char hex[16];
  std::snprintf(hex, sizeof hex, "0x%08" PRIx32, value);
  if (options.json) {
    writeJson(std::cout, Json{{"address", address}, {"value", value}, {"hex", hex}});
  } else {
    std::cout << value << " (" << hex << ", the address's bytes in memory order)\n";
  }
  return kOk;
}

int runIpv6Check(const Options &options, const std::string &address) {
  bool valid = validationCheck_IPv6Addr(address.c_str()) == 0;
  if (options.json) {
    writeJson(std::cout, Json{{"address", address}, {"valid", valid}});
  } else if (valid) {
    std::cout << "valid\n";
  }
  if (!valid) return reportError("not a valid IPv6 address: " + address);
  return kOk;
}

}  // namespace cli

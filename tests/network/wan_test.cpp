// The WAN summary records: bridged WAN, IPv6 block and the default WAN's
// mappings, DNS decision, result and failure paths.
#include <string>
#include <vector>

#include "net_test.h"

namespace {

using nettest::failRequest;
using nettest::text;

class Wan : public nettest::NetTest {};

// A bridge interface with these IPv4 address lines and two DHCP routes.
std::string bridge(const std::string &address) {
  return "[Device.IP.Interface.1]\nName = br-lan\n[Device.IP.Interface.1.IPv4Address.1]\n" +
         address +
         "[Device.Routing.Router.1.IPv4Forwarding.1]\nInterface = Device.IP.Interface.1.\n"
         "GatewayIPAddress = 10.1.1.1\nOrigin = DHCPv4\n"
         "[Device.Routing.Router.1.IPv4Forwarding.2]\nInterface = Device.IP.Interface.1.\n"
         "GatewayIPAddress = 10.1.1.254\nOrigin = Static\n"
         "[Device.Routing.Router.1.IPv4Forwarding.3]\nInterface = Device.IP.Interface.1.\n"
         "GatewayIPAddress = 10.1.1.99\nOrigin = dhcpv4\n";
}

TEST_F(Wan, BridgeFlagsAndAddressState) {
  const std::string dhcp = "X_LANTIQ_COM_Description = by DHCP\nIPAddress = 10.1.1.2\n";
  const std::pair<uint32_t, const char *> flags[] = {
      {0, "ethernet"}, {2, "wifi"}, {1 | 8, "ethernet"}, {4, nullptr}, {6, nullptr}};
  for (const auto &[bits, link] : flags) {
    loadText(bridge(dhcp + "SubnetMask = 255.0.0.0\n"));
    ZintuWanInfo info = nettest::zeroWan();
    info.nVlanID = 7;
    EXPECT_EQ(ZintuGet_BrWanInfo(bits, &info), link != nullptr ? 0 : -1);
    if (link == nullptr) {
      EXPECT_EQ(nettest::renderWan(info), "nVlanID = 7\n");
      EXPECT_TRUE(calsim::requests().empty());
      continue;
    }
    EXPECT_EQ(text(info.sWanLinkType), link);
    EXPECT_EQ(info.nVlanID, 0);
    EXPECT_EQ(text(info.sGateway), "10.1.1.254");  // the last qualifying route
  }
  const std::pair<std::string, bool> addresses[] = {
      {dhcp + "SubnetMask = 255.0.0.0\n", true},
      {"X_LANTIQ_COM_Description = Static\nIPAddress = 10.1.1.2\nSubnetMask = 255.0.0.0\n", false},
      {"X_LANTIQ_COM_Description = dhcp\nIPAddress = 10.1.1.2\nSubnetMask = 255.0.0.0\n", false},
      {"X_LANTIQ_COM_Description = DHCP\nIPAddress = 0.0.0.0\nSubnetMask = 255.0.0.0\n", false},
      {"X_LANTIQ_COM_Description = DHCP\nIPAddress =\nSubnetMask = 255.0.0.0\n", false},
      {dhcp, false},  // no mask
  };
  for (const auto &[address, up] : addresses) {
    loadText(bridge(address));
    ZintuWanInfo info = nettest::zeroWan();
    EXPECT_EQ(ZintuGet_BrWanInfo(0, &info), 0);
    EXPECT_EQ(text(info.sStatus), up ? "Up" : "Down") << address;
    EXPECT_EQ(text(info.sIPAddress), up ? "10.1.1.2" : "0.0.0.0");
    EXPECT_EQ(text(info.sSubnetMask), up ? "255.0.0.0" : "0.0.0.0");
    EXPECT_EQ(text(info.sDescription), up ? "by DHCP" : "0.0.0.0");
  }
  EXPECT_EQ(fakeos::console(), "");
  EXPECT_EQ(ZintuGet_BrWanInfo(0, nullptr), -1);
}

std::string ipv6Model(const std::string &enable, const std::string &type,
                      const std::string &address, const std::string &nextHop) {
  return "[Device.IPv6]\nEnable = " + enable +
         "\n[Device.X_ZINTU_CurrentNetwork]\nWanIpv6Type = " + type +
         "\n[Device.IP.Interface.3.IPv6Address.1]\nIPAddress = " + address +
         "\n[Device.Routing.Router.1.IPv6Forwarding.3]\nNextHop = " + nextHop + "\n";
}

ZintuWanInfo wanOn(const char *interface) {
  ZintuWanInfo info = nettest::zeroWan();
  std::strcpy(info.sWanIpInterface, interface);
  info.nWanIpIfIndex = 3;
  std::strcpy(info.sIpv6Type, "unchanged");
  return info;
}

TEST_F(Wan, Ipv6TypeAndEnable) {
  const std::vector<std::string> cases[] = {
      {"true", "dhcpv6-stateless", "1", "dhcpv6"},
      {"true", "stateful", "1", "dhcpv6"},
      {"true", "slaac+static", "1", "slaac"},
      {"true", "pppoe", "1", "dhcpv6"},
      {"true", "Static", "1", "dhcpv6"},
      {"True", "", "0", "unchanged"},
      {"1", "static", "0", "static"},
  };
  for (const auto &c : cases) {
    loadText(ipv6Model(c[0], c[1], "2001:db8::3", "fe80::3"));
    ZintuWanInfo info = wanOn("Device.IP.Interface.3");
    EXPECT_EQ(ZintuGet_WanIPv6(&info), 0);
    EXPECT_EQ(info.bIpv6Enable, std::stoi(c[2])) << c[0];
    EXPECT_EQ(text(info.sIpv6Type), c[3]) << c[1];
  }
}

TEST_F(Wan, Ipv6FailuresAndFieldWidths) {
  loadText(ipv6Model("true", "static", "2001:db8::3", "fe80::3"));
  for (int n = 1; n <= 4; ++n) {
    failRequest(n, -5);
    ZintuWanInfo info = wanOn("Device.IP.Interface.3");
    EXPECT_EQ(ZintuGet_WanIPv6(&info), n == 4 ? -1 : 0) << n;
    EXPECT_EQ(info.bIpv6Enable, n == 1 ? 0 : 1) << n;
    EXPECT_EQ(text(info.sIpv6Type), n == 2 ? "unchanged" : "static") << n;
    EXPECT_EQ(text(info.sIpv6Address), n == 3 ? "" : "2001:db8::3") << n;
    EXPECT_EQ(text(info.sIpv6NextHop), n == 4 ? "" : "fe80::3") << n;
  }
  EXPECT_EQ(fakeos::console(), "");
  EXPECT_EQ(ZintuGet_WanIPv6(nullptr), -1);

  // Values of 46 characters fill the field without terminator, 47 are left
  // out; a dotted interface gives a ".." path, as "%s.%s" says.
  loadText(ipv6Model("true", "slaac", std::string(46, 'a'), std::string(47, 'b')));
  ZintuWanInfo info = wanOn("Device.IP.Interface.3");
  std::memset(info.sIpv6NextHop, 'N', sizeof info.sIpv6NextHop);
  ASSERT_EQ(ZintuGet_WanIPv6(&info), 0);
  EXPECT_EQ(std::string(info.sIpv6Address, 46), std::string(46, 'a'));
  EXPECT_TRUE(nettest::allBytes(info.sIpv6NextHop, 'N'));
  info = wanOn("Device.IP.Interface.3.");
  ASSERT_EQ(ZintuGet_WanIPv6(&info), 0);
  EXPECT_EQ(calsim::requests().at(calsim::requests().size() - 2).objects.at(0).name,
            "Device.IP.Interface.3..IPv6Address.1");
  EXPECT_EQ(text(info.sIpv6Address), "");
}

// A default WAN on Device.IP.Interface.3 with a DHCP client serving
// 10.0.0.1,10.0.0.2, a route, and a server table with nothing for the WAN.
struct DefWan {
  std::string type = "dynamic", ipv4Mode = "dynamic", dns1, dns2;
  std::string iface = "Status = Up\n";
  std::string address = "AddressingType = DHCP\n";
  std::string extra;

  std::string model() const {
    return "[Device.X_ZINTU_CurrentNetwork]\nWanIpInterface = Device.IP.Interface.3\nWanIpType = " +
           type + "\nIpv4Mode = " + ipv4Mode +
           "\nPppStaticAddress = 10.9.8.7\nPppStaticDNS1 = " + dns1 + "\nPppStaticDNS2 = " + dns2 +
           "\n[Device.IP.Interface.3]\n" + iface + "[Device.IP.Interface.3.IPv4Address.1]\n" +
           address +
           "[Device.DHCPv4.Client.1]\nEnable = true\nStatus = Enabled\n"
           "Interface = Device.IP.Interface.3.\nDNSServers = 10.0.0.1,10.0.0.2\n"
           "[Device.DNS.Client.Server.1]\nEnable = true\nInterface = Device.IP.Interface.9.\n"
           "DNSServer = 9.9.9.9\nType = Static\n"
           "[Device.Routing.Router.1.IPv4Forwarding.1]\nInterface = Device.IP.Interface.3.\n"
           "GatewayIPAddress = 100.64.0.1\nOrigin = DHCPv4\n" +
           extra;
  }
  ZintuWanInfo run(int rc = 0) const {
    ZintuWanInfo info = nettest::zeroWan();
    EXPECT_EQ(ZintuGet_DefWanInfo(&info), rc) << model();
    return info;
  }
};

std::string staticServer(int index, const char *address) {
  return "[Device.DNS.Client.Server." + std::to_string(index) +
         "]\nEnable = true\nInterface = Device.IP.Interface.3.\nDNSServer = " + address +
         "\nType = Static\n";
}

TEST_F(Wan, DefaultWanAddressingType) {
  // AddressingType, type and IPv4 mode before, then after, and the operation mode.
  const std::vector<std::string> cases[] = {
      {"DHCP", "static", "dynamic", "dynamic", "dynamic", "router"},
      {"Static", "static", "dynamic", "static", "staticc", "router"},
      {"X_LANTIQ_COM_PPPoE", "dynamic", "dynamic", "pppoeic", "dynamic", "router"},
      {"X_LANTIQ_COM_PPPoA", "pppoe", "dynamic", "pppoa", "dynamic", "router"},
      {"X_LANTIQ_COM_PPTP", "pppoe", "dynamic", "pptpe", "dynamic", "router"},
      {"X_LANTIQ_COM_L2TP", "", "dynamic", "l2tp", "dynamic", "router"},
      {"X_LANTIQ_COM_Bridged", "", "dynamic", "dynamic", "dynamic", "bridge"},
      {"dhcp", "l2tp", "dynamic", "l2tp", "dynamic", "router"},
  };
  for (const auto &c : cases) {
    DefWan wan;
    wan.address = "AddressingType = " + c[0] + "\n";
    wan.type = c[1];
    wan.ipv4Mode = c[2];
    loadText(wan.model());
    ZintuWanInfo info = wan.run();
    EXPECT_EQ(text(info.sWanIpType), c[3]) << c[0];
    EXPECT_EQ(text(info.sIpv4Mode), c[4]) << c[0];
    EXPECT_EQ(text(info.sOperMode), c[5]) << c[0];
  }
}

TEST_F(Wan, DefaultWanConnectionTriggerAndVlan) {
  const std::pair<const char *, const char *> triggers[] = {{"ondemand", "ondemand"},
                                                            {"manual", "manual"},
                                                            {"AlwaysOn", "always"},
                                                            {"OnDemand", "always"},
                                                            {"", ""}};
  for (const auto &[value, trigger] : triggers) {
    DefWan wan;
    wan.type = "pppoa";  // "ppp" in the type is enough
    wan.iface = "LowerLayers = Device.PPP.Interface.1.\n";
    wan.address = "AddressingType = X_LANTIQ_COM_PPPoA\n";
    wan.extra = std::string("[Device.PPP.Interface.1]\nConnectionTrigger = ") + value + "\n";
    loadText(wan.model());
    EXPECT_EQ(text(wan.run().sConnectionTrigger), trigger) << value;
  }
  const std::vector<std::string> vlans[] = {
      {"true", "100", "1", "100"}, {"TRUE", "0", "1", "0"}, {"1", "abc", "1", "0"},
      {"false", "12", "0", "12"},  {"0", "-3", "0", "-3"},
  };
  for (const auto &v : vlans) {
    DefWan wan;
    wan.iface = "LowerLayers = Device.Ethernet.VLANTermination.2.\n";
    wan.extra =
        "[Device.Ethernet.VLANTermination.2]\nEnable = " + v[0] + "\nVLANID = " + v[1] + "\n";
    loadText(wan.model());
    ZintuWanInfo info = wan.run();
    EXPECT_EQ(info.bVlanEnable, std::stoi(v[2])) << v[0];
    EXPECT_EQ(info.nVlanID, std::stoi(v[3])) << v[1];
  }
}

TEST_F(Wan, DefaultWanDnsDecision) {
  const struct {
    const char *type, *addressing, *ipv4Mode, *dns1, *dns2;
    std::string servers;
    int dnsAuto;
    const char *expect1, *expect2;
  } cases[] = {
      {"dynamic", "DHCP", "dynamic", "", "", "", 1, "10.0.0.1", "10.0.0.2"},
      {"dynamic", "DHCP", "dynamic", "", "",
       staticServer(2, "8.8.8.8") + staticServer(3, "8.8.4.4"), 0, "8.8.8.8", "8.8.4.4"},
      {"dynamic", "DHCP", "dynamic", "", "", staticServer(2, "8.8.8.8"), 0, "8.8.8.8", ""},
      {"static", "Static", "static", "9.9.9.9", "", "", 0, "9.9.9.9", ""},
      {"static", "Static", "static", "0.0.0.0", "0.0.0.0", "", 0, "10.0.0.1", "10.0.0.2"},
      {"static", "Static", "static", "dns.example", "300.1.1.1", "", 0, "10.0.0.1", "10.0.0.2"},
      {"static", "Static", "static", "0.0.0.0", "1.1.1.1", "", 0, "0.0.0.0", "1.1.1.1"},
      {"pppoe", "X_LANTIQ_COM_PPPoE", "static", "1.2.3.4", "", "", 0, "1.2.3.4", ""},
      {"pppoe", "X_LANTIQ_COM_PPPoE", "dynamic", "", "", "", 1, "10.0.0.1", "10.0.0.2"},
      {"pppoa", "X_LANTIQ_COM_PPPoA", "static", "1.2.3.4", "", "", 1, "1.2.3.4", ""},
  };
  for (const auto &c : cases) {
    DefWan wan;
    wan.type = c.type;
    wan.address = std::string("AddressingType = ") + c.addressing + "\n";
    wan.ipv4Mode = c.ipv4Mode;
    wan.dns1 = c.dns1;
    wan.dns2 = c.dns2;
    wan.extra = c.servers;
    loadText(wan.model());
    ZintuWanInfo info = wan.run();
    EXPECT_EQ(info.bDnsAuto, c.dnsAuto) << wan.model();
    EXPECT_EQ(text(info.sDNS1), c.expect1) << wan.model();
    EXPECT_EQ(text(info.sDNS2), c.expect2) << wan.model();
  }
}

TEST_F(Wan, DefaultWanResultAndFailedSteps) {
  DefWan wan;  // no route of its own: the filter's code is the result
  std::string model = wan.model();
  model.replace(model.find("Device.IP.Interface.3.\nGatewayIPAddress"), 22,
                "Device.IP.Interface.30.");
  loadText(model);
  EXPECT_EQ(text(wan.run(-208).sGateway), "");

  wan.iface = "LowerLayers = Device.Ethernet.VLANTermination.9.\n";  // absent: the VLAN decides
  loadText(wan.model());
  EXPECT_EQ(text(wan.run(-1).sGateway), "100.64.0.1");

  // The first request failing: -1, nothing written but the trace.
  loadFile("pppoe_vlan.model");
  failRequest(1, -5);
  ZintuWanInfo info = nettest::zeroWan();
  EXPECT_EQ(ZintuGet_DefWanInfo(&info), -1);
  EXPECT_EQ(nettest::renderWan(info), "");
  EXPECT_EQ(calsim::requests().size(), 1u);
  EXPECT_TRUE(
      nettest::consoleIs("\n\n\t[ZintuGet_DefGw : #] (-1)faltocal_send_main is Failure \n"));
  EXPECT_EQ(ZintuGet_DefWanInfo(nullptr), -1);

  // Requests 2 interface, 3 IPv4 address, 4 PPP interface, 6 VLAN: each
  // failure leaves its own fields and the walk goes on.
  const std::string full = [] {
    ZintuWanInfo i = nettest::zeroWan();
    failRequest(0, 0);
    ZintuGet_DefWanInfo(&i);
    return nettest::renderWan(i);
  }();
  const struct {
    int n, rc;
    std::vector<const char *> lost;
  } steps[] = {
      {2, 0, {"sStatus", "sName", "sLowerLayers", "sUsername", "sPppInterface", "bVlanEnable"}},
      {3, 0, {"sIPAddress", "sSubnetMask", "sOperMode", "sDescription"}},
      {4, 0, {"sUsername", "sPassword", "sACName", "nMaxMRUSize", "bVlanEnable", "nVlanID"}},
      {6, -1, {"bVlanEnable", "nVlanID"}},
  };
  for (const auto &s : steps) {
    fakeos::reset();
    failRequest(s.n, -5);
    ZintuWanInfo i = nettest::zeroWan();
    EXPECT_EQ(ZintuGet_DefWanInfo(&i), s.rc) << s.n;
    const std::string got = nettest::renderWan(i);
    for (const char *field : s.lost) EXPECT_EQ(got.find(field), std::string::npos) << field;
    EXPECT_NE(got.find("sGateway = 84.12.0.1"), std::string::npos) << s.n;
    EXPECT_NE(got.find("sIpv6NextHop = fe80::7"), std::string::npos) << s.n;
    EXPECT_NE(full, got);
    EXPECT_EQ(fakeos::console(),
              s.n != 4 ? ""
                       : "[ZINTU VOLA FAL] (FaltoCal:830, faltocal_send_main_multi_obj) "
                         "Failure : faltocal_sendQuery() of Device.PPP.Interface.1. \n"
                         "[ZINTU VOLA FAL] (ZintuNetworkGet:636, ZintuGet_DefWanInfo) "
                         "faltocal_send_main_multi_obj function failed. \n");
  }
}

TEST_F(Wan, DefaultWanOverlongValuesStayInTheirFields) {
  DefWan wan;
  wan.iface = "Name = " + std::string(100, 'n') + "\nLowerLayers = " + std::string(300, 'l') + "\n";
  wan.address = "AddressingType = DHCP\nX_LANTIQ_COM_Description = " + std::string(300, 'd') +
                "\nIPAddress = " + std::string(40, '1') + "\nSubnetMask = 255.255.0.0\n";
  loadText(wan.model());
  ZintuWanInfo info = nettest::zeroWan();
  std::memset(info.sReserved1, 'R', sizeof info.sReserved1);
  ASSERT_EQ(ZintuGet_DefWanInfo(&info), 0);
  EXPECT_EQ(text(info.sName), std::string(31, 'n'));
  EXPECT_EQ(text(info.sWanIpInterface), "Device.IP.Interface.3");
  EXPECT_EQ(text(info.sLowerLayers), std::string(255, 'l'));
  EXPECT_TRUE(nettest::allBytes(info.sReserved1, 'R'));
  EXPECT_EQ(text(info.sDescription), std::string(255, 'd'));
  EXPECT_EQ(text(info.sPppStaticAddress), "10.9.8.7");
  EXPECT_EQ(text(info.sIPAddress), std::string(15, '1'));
  EXPECT_EQ(text(info.sSubnetMask), "255.255.0.0");
}

}  // namespace

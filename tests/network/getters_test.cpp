// Walk rules and failure paths of the small getters: operation mode,
// current network, UCI sections, lower layers, Ethernet WAN, prefix
// delegation and ATM link.
#include <string>
#include <vector>

#include "net_test.h"

namespace {

using nettest::consoleIs;
using nettest::failRequest;
using nettest::text;

class Getters : public nettest::NetTest {};

const std::string kCurrent = "[Device.X_ZINTU_CurrentNetwork]\n";
const std::string kBackup = "[Device.X_ZINTU_CurrentNetwork.Backup]\n";

TEST_F(Getters, OperModeFirstNonEmptyValueByAtoi) {
  const std::pair<std::string, int> cases[] = {
      {"OperationMode =\n" + kBackup + "OperationMode = 7\n", 7},
      {"OperationMode = 2\n" + kBackup + "OperationMode = 7\n", 2},
      {"OperationMode = abc\n", 0},
      {"OperationMode = 12abc\n", 12},
      {"OperationMode =\n", -1},
  };
  for (const auto &[model, mode] : cases) {
    loadText(kCurrent + model);
    EXPECT_EQ(ZintuGet_OperMode(), mode) << model;
  }
  loadText("[Device.Other]\nA = 1\n");
  EXPECT_EQ(ZintuGet_OperMode(), -1);
  EXPECT_TRUE(consoleIs("\n\n\t[ZintuGet_OperMode : #] (-1)faltocal_send_main is Failure \n"));
}

TEST_F(Getters, DefGwCopiesWithoutTerminatorAndWithinTheField) {
  loadText(kCurrent + "WanIpType = static\nPppStaticDNS2 = " + std::string(300, 'x') + "\n" +
           kBackup + "WanIpType = l2tp\n");
  ZintuWanInfo info = nettest::zeroWan();
  std::memcpy(info.sWanLinkType, "ethernet", 8);
  std::memset(info.sReserved2, 'R', sizeof info.sReserved2);
  ASSERT_EQ(ZintuGet_DefGw(&info), 0);
  EXPECT_EQ(text(info.sWanIpType), "l2tpic");  // a later value overwrites leading bytes only
  EXPECT_EQ(text(info.sWanLinkType), "ethernet");
  EXPECT_EQ(text(info.sDNS2), std::string(15, 'x'));
  EXPECT_TRUE(nettest::allBytes(info.sReserved2, 'R'));

  failRequest(1, -5);
  ZintuWanInfo untouched = nettest::zeroWan();
  EXPECT_EQ(ZintuGet_DefGw(&untouched), -1);
  EXPECT_EQ(nettest::renderWan(untouched), "");
  EXPECT_TRUE(consoleIs("\n\n\t[ZintuGet_DefGw : #] (-1)faltocal_send_main is Failure \n"));
  EXPECT_EQ(ZintuGet_DefGw(nullptr), -1);
}

// WAN connections of the network hardware object, for the default WAN
// Device.IP.Interface.3 named eth1.
std::string wanConnections(const std::vector<std::string> &rows) {
  std::string model = kCurrent + "WanIpInterface = Device.IP.Interface.3\n" +
                      "[Device.IP.Interface.3]\nName = eth1\n";
  for (std::size_t i = 0; i < rows.size(); ++i) {
    model +=
        "[Device.X_LANTIQ_COM_NwHardware.WANConnection." + std::to_string(i + 1) + "]\n" + rows[i];
  }
  return model;
}

TEST_F(Getters, UciSectionByConnModeFirstPrefixMatchWithASection) {
  loadText(
      wanConnections({"ConnMode = pppoe\nUciSection = wan\n",
                      "ConnMode = pppoa\nUciSection = wanoa\n", "ConnMode = dhcp\nUciSection =\n",
                      "ConnMode = dhcp\nUciSection = " + std::string(200, 's') + "\n"}));
  const std::pair<const char *, std::string> cases[] = {
      {"ppp", "wan"}, {"pppoa", "wanoa"}, {"dhcp", std::string(127, 's')}, {"PPP", "kept"}};
  for (const auto &[mode, section] : cases) {
    char buffer[160];
    std::memset(buffer, '#', sizeof buffer);
    std::strcpy(buffer, "kept");
    EXPECT_EQ(ZintuGet_UciSectionByConnMode(mode, buffer), section == "kept" ? -1 : 0) << mode;
    EXPECT_EQ(std::string(buffer), section);
    EXPECT_EQ(buffer[128], '#');
  }
  EXPECT_EQ(fakeos::console(), "");  // no match (-208) is silent

  char section[128] = "";
  calsim::clearRequests();
  EXPECT_EQ(ZintuGet_UciSectionByConnMode("", section), -1);
  EXPECT_EQ(ZintuGet_UciSectionByConnMode(nullptr, section), -1);
  EXPECT_EQ(ZintuGet_UciSectionByConnMode("ppp", nullptr), -1);
  EXPECT_TRUE(calsim::requests().empty());
  failRequest(1, -5);
  EXPECT_EQ(ZintuGet_UciSectionByConnMode("ppp", section), -1);
  EXPECT_TRUE(consoleIs(
      "\n\n\t[ZintuGet_UciSectionByConnMode : #] (-5)faltocal_SendMultiObj is Failure\n"));
}

TEST_F(Getters, UciSectionOfDefGwComparesTheNameInFull) {
  loadText(wanConnections({"ConnectionName = eth1_1\nUciSection = wan_vlan\n",
                           "ConnectionName = eth1\nUciSection =\n",
                           "ConnectionName = eth1\nUciSection = " + std::string(200, 'u') + "\n",
                           "ConnectionName = eth1\nUciSection = late\n"}));
  char buffer[160];
  std::memset(buffer, '#', sizeof buffer);
  ASSERT_EQ(ZintuGet_UciSectionOfDefGw(buffer), 0);
  EXPECT_EQ(std::string(buffer, 128), std::string(127, 'u') + "#");  // strncpy of 127
  EXPECT_TRUE(
      consoleIs("[ZINTU VOLA FAL] (ZintuNetworkGet:#, ZintuGet_UciSectionOfDefGw) "
                "UciSection[" +
                std::string(200, 'u') + "]\n"));

  for (int n = 1; n <= 3; ++n) {
    fakeos::reset();
    failRequest(n, -5);
    char section[128] = "kept";
    EXPECT_EQ(ZintuGet_UciSectionOfDefGw(section), -1);
    EXPECT_STREQ(section, "kept");
    EXPECT_TRUE(
        consoleIs("\n\n\t[ZintuGet_UciSectionOfDefGw : #] (-1)faltocal_send_main is Failure\n"))
        << n;
  }
  fakeos::reset();
  for (const std::string &model : {kCurrent + "WanIpInterface =\n",
                                   kCurrent + "WanIpInterface = Device.IP.Interface.3\n" +
                                       "[Device.IP.Interface.3]\nEnable = true\n",
                                   wanConnections({"ConnectionName = eth10\nUciSection = w\n"})}) {
    loadText(model);
    char section[128] = "kept";
    EXPECT_EQ(ZintuGet_UciSectionOfDefGw(section), -1);
  }
  EXPECT_EQ(fakeos::console(), "");
  EXPECT_EQ(ZintuGet_UciSectionOfDefGw(nullptr), -1);
}

TEST_F(Getters, LowerLayersFirstObjectWithTheParameter) {
  loadText(
      "[Device.PPP.Interface.2]\nLowerLayers =\n"
      "[Device.PPP.Interface.2.IPCP]\nLowerLayers = Device.ATM.Link.1.\n"
      "[Device.Tunnel.1]\nEnable = true\n"
      "[Device.Tunnel.1.Path]\nLowerLayers = " +
      std::string(200, 'l') +
      "\n"
      "[Device.DSL.Line.1]\nStatus = Up\n");
  const std::pair<const char *, std::string> cases[] = {
      {"Device.PPP.Interface.2", ""},  // an empty value counts
      {"Device.Tunnel.1", std::string(128, 'l') + "#"},
      {"Device.DSL.Line.1.", "kept"},
  };
  for (const auto &[object, expected] : cases) {
    char buffer[160];
    std::memset(buffer, '#', sizeof buffer);
    std::strcpy(buffer, "kept");
    EXPECT_EQ(ZintuGet_LowerLayers(object, buffer), 0);
    EXPECT_EQ(std::string(buffer, strnlen(buffer, 129)), expected) << object;
  }
  fakeos::reset();
  char buffer[128] = "";
  EXPECT_EQ(ZintuGet_LowerLayers(nullptr, buffer), -1);
  EXPECT_TRUE(consoleIs("\n\n\t[ZintuGet_LowerLayers : #] input param is NULL \n"));
  fakeos::reset();
  EXPECT_EQ(ZintuGet_LowerLayers("Device.Absent.1", buffer), -1);
  EXPECT_TRUE(
      consoleIs("\n\n\t[ZintuGet_LowerLayers : #] (-202)faltocal_SendMultiObj is Failure \n"));
}

TEST_F(Getters, EthWanObjNameLastInterfaceObjectWins) {
  loadText(
      "[Device.IP.Interface.2]\nAlias = cpe-EthWan-IPIntf-1\n"
      "[Device.IP.Interface.2.IPv4Address.1]\nIPAddress = 10.0.0.2\n"
      "[Device.IP.Interface.4]\nAlias = cpe-EthWan-IPIntf-10\n"
      "[Device.IP.Interface.4.Stats]\nBytesSent = 1\n");
  char name[128] = "";
  ASSERT_EQ(ZintuGet_EthWanObjName(name), 0);
  EXPECT_STREQ(name, "Device.IP.Interface.4");  // the alias filter is a prefix test
  failRequest(1, -5);
  EXPECT_EQ(ZintuGet_EthWanObjName(name), -1);
  EXPECT_EQ(ZintuGet_EthWanObjName(nullptr), -1);
  EXPECT_EQ(fakeos::console(), "");
}

TEST_F(Getters, IPv6PDTrueSubstringInAnyObject) {
  const std::pair<std::string, int> cases[] = {
      {"EnableIpv6PD = True\n", 0},
      {"EnableIpv6PD = 1\n", 0},
      {"EnableIpv6PD = is-true\n", 1},
      {"EnableIpv6PDx = true\n", 0},
      {"EnableIpv6PD = false\n" + kBackup + "EnableIpv6PD = true\n", 1},
      {"EnableIpv6PD = true\n" + kBackup + "EnableIpv6PD = false\n", 1},
  };
  for (const auto &[model, enabled] : cases) {
    loadText(kCurrent + model);
    EXPECT_EQ(ZintuGet_IPv6PD(), enabled) << model;
  }
  failRequest(1, -5);
  EXPECT_EQ(ZintuGet_IPv6PD(), -1);
  EXPECT_EQ(fakeos::console(),
            "\n\n\t[ZintuGet_IPv6PD : 1442] (-1)faltocal_send_main is Failure\n");
}

TEST_F(Getters, AtmDestinationAddressAndQoSClass) {
  const struct {
    std::string destination;
    int vpi;
    int vci;
  } cases[] = {
      {"0/100/7", 0, 100},
      {"x/35", 0, 35},
      {"8", 99, 99},
      {"/35", 99, 99},
      {"8//35", 8, 35},
      {std::string(28, '0') + "1/2", 1, 2},
      {std::string(29, '0') + "3/4", 99, 99},
      {"", 99, 99},
  };
  for (const auto &c : cases) {
    loadText("[Device.ATM.Link.1]\nDestinationAddress = " + c.destination +
             "\n[Device.ATM.Link.1.QoS]\nQoSClass = " + std::string(32, 'Q') + "\n");
    ZintuWanInfo info = nettest::zeroWan();
    info.nAtmVpi = info.nAtmVci = 99;
    std::memset(info.sReserved3, 'R', sizeof info.sReserved3);
    EXPECT_EQ(ZintuGet_AtmInfo(&info), 0);
    EXPECT_EQ(info.nAtmVpi, c.vpi) << c.destination;
    EXPECT_EQ(info.nAtmVci, c.vci) << c.destination;
    EXPECT_EQ(text(info.sAtmQoSClass), "");  // 32 characters are passed over
    EXPECT_TRUE(nettest::allBytes(info.sReserved3, 'R'));
  }
  loadText("[Device.ATM.Link.1]\nDestinationAddress = 1/32\n[Device.ATM.Link.1.QoS]\nQoSClass = " +
           std::string(31, 'q') + "\n");
  ZintuWanInfo info = nettest::zeroWan();
  ASSERT_EQ(ZintuGet_AtmInfo(&info), 0);
  EXPECT_EQ(text(info.sAtmQoSClass), std::string(31, 'q'));
}

TEST_F(Getters, AtmQoSRequestFailingKeepsTheCircuit) {
  loadFile("pppoa_atm.model");  // the link request failing: see the golden files
  failRequest(2, -5);
  ZintuWanInfo info = nettest::zeroWan();
  EXPECT_EQ(ZintuGet_AtmInfo(&info), -1);
  EXPECT_EQ(nettest::renderWan(info), "nAtmVpi = 8\nnAtmVci = 35\n");
  EXPECT_EQ(fakeos::console(),
            "\n\n\t[ZintuGet_AtmInfo : 1513] (-1)faltocal_send_main is Failure\n");
  EXPECT_EQ(ZintuGet_AtmInfo(nullptr), -1);
}

}  // namespace

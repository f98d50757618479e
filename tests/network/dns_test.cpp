// DNS servers of a WAN interface: the DHCP client's list, the server
// table, and the static entries only.
#include <string>
#include <vector>

#include "net_test.h"

namespace {

using nettest::consoleIs;
using nettest::failRequest;

constexpr const char *kWan = "Device.IP.Interface.3.";

// "[Device.DHCPv4.Client.N]" rows: Enable Status Interface DNSServers.
std::string clients(const std::vector<std::vector<std::string>> &rows) {
  std::string model;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    model += "[Device.DHCPv4.Client." + std::to_string(i + 1) + "]\nEnable = " + rows[i][0] +
             "\nStatus = " + rows[i][1] + "\nInterface = " + rows[i][2] +
             "\nDNSServers = " + rows[i][3] + "\n";
  }
  return model;
}

// "[Device.DNS.Client.Server.N]" rows: Enable Status Interface DNSServer Type.
std::string servers(const std::vector<std::vector<std::string>> &rows) {
  std::string model;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    model += "[Device.DNS.Client.Server." + std::to_string(i + 1) + "]\nEnable = " + rows[i][0] +
             "\nStatus = " + rows[i][1] + "\nInterface = " + rows[i][2] +
             "\nDNSServer = " + rows[i][3] + "\nType = " + rows[i][4] + "\n";
  }
  return model;
}

struct Dns {
  char dns1[16] = "before1";
  char dns2[16] = "before2";
  int32_t dnsAuto = 7;
};

class WanDns : public nettest::NetTest {
 protected:
  Dns run(const std::string &model, const char *interface = kWan, int rc = 0) {
    loadText(model.empty() ? "[Device.Other]\nA = 1\n" : model);
    Dns d;
    EXPECT_EQ(ZintuGet_WanDns(interface, d.dns1, d.dns2), rc) << model;
    return d;
  }
};

TEST_F(WanDns, DhcpListSplitsAtItsFirstComma) {
  const std::vector<std::string> cases[] = {
      {"10.0.0.1,10.0.0.2,10.0.0.3", "10.0.0.1", "10.0.0.2,10.0.0"},
      {"10.0.0.1", "10.0.0.1", ""},
      {",,,", ",,,", "0.0.0.0"},
      {",10.0.0.9", "10.0.0.9", ""},
      {"100.100.100.100x,1", "100.100.100.100", "1"},
  };
  for (const auto &c : cases) {
    Dns d = run(clients({{"true", "Enabled", kWan, c[0]}}));
    EXPECT_STREQ(d.dns1, c[1].c_str()) << c[0];
    EXPECT_STREQ(d.dns2, c[2].c_str()) << c[0];
  }
}

TEST_F(WanDns, FirstRunningClientOfTheInterfaceIsTaken) {
  const std::pair<std::vector<std::vector<std::string>>, const char *> cases[] = {
      {{{"1", "Enabled", kWan, "10.0.0.1"}}, "10.0.0.1"},
      {{{"TRUE", "ENABLED", "Device.IP.Interface.3", "10.0.0.1"}}, "10.0.0.1"},
      {{{"false", "Enabled", kWan, "10.0.0.1"}}, "before1"},
      {{{"true", "Disabled", kWan, "10.0.0.1"}}, "before1"},
      {{{"true", "Enabled", "Device.IP.Interface.30.", "10.0.0.1"}}, "before1"},
      {{{"true", "Enabled", kWan, "2001:db8::1"}, {"true", "Enabled", kWan, "10.0.0.2"}},
       "10.0.0.2"},
      {{{"true", "Enabled", kWan, ""}, {"true", "Enabled", kWan, "10.0.0.3"}}, "10.0.0.3"},
      {{{"true", "Enabled", kWan, "10.0.0.4"}, {"true", "Enabled", kWan, "10.0.0.5"}}, "10.0.0.4"},
  };
  for (const auto &[rows, dns1] : cases) {
    EXPECT_STREQ(run(clients(rows), "Device.IP.Interface.3").dns1, dns1);
  }
}

TEST_F(WanDns, ServerTableWhenNoClientIsTaken) {
  const std::vector<std::vector<std::string>> rows = {
      {"false", "Enabled", kWan, "9.9.9.9", "Static"},
      {"true", "Enabled", kWan, "2001:db8::53", "Static"},
      {"true", "Enabled", "Device.IP.Interface.1.", "2.2.2.2", "DHCPv4"},
      {"true", "Enabled", kWan, "", "Static"},
      {"1", "Error", "Device.IP.Interface.3", "1.1.1.1", "IPCP"},  // status is not read
      {"true", "Enabled", kWan, "3.3.3.3", "DHCPv4"},
      {"true", "Enabled", kWan, "4.4.4.4", "DHCPv4"},
  };
  const std::string notRunning = clients({{"true", "Disabled", kWan, "10.0.0.1"}});
  Dns d = run(notRunning + servers(rows));
  EXPECT_STREQ(d.dns1, "1.1.1.1");
  EXPECT_STREQ(d.dns2, "3.3.3.3");
  d = run(notRunning + servers({rows[4]}));
  EXPECT_STREQ(d.dns2, "before2");  // one server: dns2 keeps its text
  EXPECT_EQ(fakeos::console(), "");

  d = run(notRunning);  // no server table: nothing written, nothing said
  EXPECT_STREQ(d.dns1, "before1");
  EXPECT_EQ(fakeos::console(), "");

  failRequest(1, -5);  // the clients: silently on to the server table
  EXPECT_STREQ(run(clients({{"true", "Enabled", kWan, "10.0.0.1"}}) + servers({rows[4]})).dns1,
               "1.1.1.1");
  loadText(servers({rows[4]}));
  failRequest(2, -5);
  Dns failed;
  EXPECT_EQ(ZintuGet_WanDns(kWan, failed.dns1, failed.dns2), -1);
  EXPECT_STREQ(failed.dns1, "before1");
  EXPECT_TRUE(consoleIs("\n\n\t[ZintuGet_WanDns : #] (-5)faltocal_SendMultiObj is Failure \n"));
}

TEST_F(WanDns, BadArgumentsWriteNothingAndAskNothing) {
  loadText(clients({{"true", "Enabled", kWan, "10.0.0.1"}}));
  Dns d;
  EXPECT_EQ(ZintuGet_WanDns("", d.dns1, d.dns2), -1);
  EXPECT_EQ(ZintuGet_WanDns(nullptr, d.dns1, d.dns2), -1);
  EXPECT_EQ(ZintuGet_WanDns(kWan, nullptr, d.dns2), -1);
  EXPECT_EQ(ZintuGet_WanStaticDns("", &d.dnsAuto, d.dns1, d.dns2), -1);
  EXPECT_EQ(ZintuGet_WanStaticDns(kWan, nullptr, d.dns1, d.dns2), -1);
  EXPECT_EQ(ZintuGet_WanStaticDns(kWan, &d.dnsAuto, d.dns1, nullptr), -1);
  EXPECT_STREQ(d.dns1, "before1");
  EXPECT_EQ(d.dnsAuto, 7);
  EXPECT_TRUE(calsim::requests().empty());
}

TEST_F(WanDns, StaticEntriesOfTheInterfaceOnly) {
  const struct {
    std::vector<std::vector<std::string>> rows;
    int dnsAuto;
    const char *dns1;
    const char *dns2;
  } cases[] = {
      {{{"true", "Enabled", kWan, "1.1.1.1", "Static"}}, 0, "1.1.1.1", "before2"},
      {{{"false", "Disabled", "Device.IP.Interface.3", "1.1.1.1", "STATIC"},
        {"0", "Error", kWan, "2.2.2.2", "static"},
        {"true", "Enabled", kWan, "3.3.3.3", "Static"}},
       0,
       "1.1.1.1",
       "2.2.2.2"},
      {{{"true", "Enabled", kWan, "1.1.1.1", "DHCPv4"},
        {"true", "Enabled", "Device.IP.Interface.1.", "2.2.2.2", "Static"},
        {"true", "Enabled", kWan, "2001:db8::1", "Static"}},
       1,
       "before1",
       "before2"},
  };
  for (const auto &c : cases) {
    loadText(servers(c.rows));
    Dns d;
    EXPECT_EQ(ZintuGet_WanStaticDns(kWan, &d.dnsAuto, d.dns1, d.dns2), 0);
    EXPECT_EQ(d.dnsAuto, c.dnsAuto);
    EXPECT_STREQ(d.dns1, c.dns1);
    EXPECT_STREQ(d.dns2, c.dns2);
  }
  EXPECT_EQ(fakeos::console(), "");

  failRequest(1, -5);
  Dns d;
  EXPECT_EQ(ZintuGet_WanStaticDns(kWan, &d.dnsAuto, d.dns1, d.dns2), -1);
  EXPECT_EQ(d.dnsAuto, 7);
  EXPECT_TRUE(
      consoleIs("\n\n\t[ZintuGet_WanStaticDns : #] (-5)faltocal_SendMultiObj is Failure \n"));
}

}  // namespace

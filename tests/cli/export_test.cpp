// export: the model-file form of what the configuration layer holds, and the
// round trip that makes it useful: every page on an export answers as on the
// model it came from.
#include <nlohmann/json.hpp>

#include "tool_runner.h"

namespace clitest {
namespace {

// The pages that read the configuration (apart by commas, then every SSID's),
// as text and (withJson) as JSON too.
std::vector<Args> configurationPages(bool withJson) {
  std::vector<Args> pages = commandList(
      "opmode, wan, wan bridge, wan bridge --wifi, wan dns Device.IP.Interface.3, "
      "wan dns Device.IP.Interface.3 --static, wan uci-section, wan uci-section ETH_DHCP, "
      "wan lower-layers Device.IP.Interface.3, wan eth-object, wan ifname, ipv6pd, atm, dsl, "
      "dsl modes, lan, lan6, multiwan, iptv, host 6E:3F:12:A0:44:01, host 192.168.1.101, "
      "find Device.X_LANTIQ_COM_NwHardware.WANConnection UciSection wan ConnMode, wifi, "
      "wifi radio 1, wifi radio 2, wifi clients 1, wifi clients 2, get Device.");
  for (int ssid = 1; ssid <= 16; ++ssid) {
    pages.push_back({"wifi", "ssid", std::to_string(ssid)});
    pages.push_back({"wifi", "acl", std::to_string(ssid)});
  }
  const std::size_t textPages = withJson ? pages.size() : 0;
  for (std::size_t i = 0; i < textPages; ++i) {
    Args json{"--json"};
    json.insert(json.end(), pages[i].begin(), pages[i].end());
    pages.push_back(json);
  }
  return pages;
}

std::string joined(const Args &args) {
  std::string out;
  for (const std::string &arg : args) out += (out.empty() ? "" : " ") + arg;
  return out;
}

// Only the masked values differ between the two texts of `get`: "Name = ********"
// on the export's line where the original has a value.
void expectOnlyMaskedLinesDiffer(const std::string &original, const std::string &masked) {
  const std::vector<std::string> a = splitLines(original);
  const std::vector<std::string> b = splitLines(masked);
  ASSERT_EQ(a.size(), b.size());
  int differing = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] == b[i]) continue;
    ++differing;
    const std::size_t eq = b[i].find(" = ");
    ASSERT_NE(eq, std::string::npos) << b[i];
    EXPECT_EQ(b[i].substr(eq), " = ********") << a[i];
    EXPECT_EQ(a[i].substr(0, eq), b[i].substr(0, eq));
  }
  // The sample's secrets: 16 access points' key, SAE passphrase, PSK, RADIUS
  // secret and WEP key, some of them empty, and the PPP password.
  EXPECT_GT(differing, 16);
}

// Exports the sample (secrets as asked), then runs every page on the sample
// and on the export with the same flags: outputs, errors and statuses match.
// A masked export answers the pages alike where they mask secrets too; its
// raw `get` differs only in the masked values.
void expectRoundTrip(bool showSecrets) {
  Sandbox box;
  const std::string original = box.path("original.model");
  const std::string exported = box.path("exported.model");
  writeFile(original, readFile(CALTOFAL_SAMPLE_MODEL));
  Args exportArgs{"--model", original, "export"};
  if (showSecrets) exportArgs.push_back("--show-secrets");
  Outcome o = box.run(exportArgs, {}, exported);
  ASSERT_TRUE(endedWith(o, {0})) << o.err;
  ASSERT_EQ(o.err, "");

  for (const Args &page : configurationPages(showSecrets)) {
    Args flags;
    if (showSecrets) flags.push_back("--show-secrets");
    flags.insert(flags.end(), page.begin(), page.end());
    Args onOriginal{"--model", original};
    Args onExport{"--model", exported};
    onOriginal.insert(onOriginal.end(), flags.begin(), flags.end());
    onExport.insert(onExport.end(), flags.begin(), flags.end());
    Outcome a = box.run(onOriginal);
    Outcome b = box.run(onExport);
    EXPECT_TRUE(endedWith(a, {0})) << joined(page) << ": " << a.err;
    EXPECT_FALSE(a.out.empty()) << joined(page);
    EXPECT_EQ(a.status, b.status) << joined(page);
    EXPECT_EQ(a.err, b.err) << joined(page);
    if (!showSecrets && page[0] == "get") {
      expectOnlyMaskedLinesDiffer(a.out, b.out);
    } else {
      EXPECT_EQ(a.out, b.out) << joined(page);
    }
    // Every SSID and radio of the sample reads with every setting of its page
    // (one missing from the configuration has no key): the page's numbers and
    // the snapshot's settings.
    if (page[0] == "--json" && page.size() == 4 && (page[2] == "ssid" || page[2] == "radio")) {
      EXPECT_EQ(nlohmann::json::parse(a.out).size(), page[2] == "ssid" ? 3 + 20 : 1 + 27u)
          << joined(page);
    }
  }
}

TEST(ExportTest, EveryPageOfTheSampleAnswersAlikeOnItsExport) {
  expectRoundTrip(true);
}

TEST(ExportTest, MaskedSecretsStillAnswerEveryMaskedPageAlike) {
  expectRoundTrip(false);
}

// A model with quoting and every kind of secret, as an export writes it; the
// file read has a comment and one blank line less.
class ExportFormatTest : public ModelTest {
 protected:
  ExportFormatTest() {
    std::string text = kExported;
    text.erase(text.find("\n\n[Device.PPP"), 1);
    writeFile(model_, "# a comment that an export does not keep\n" + text);
  }

  static constexpr const char *kExported =
      "[Device.WiFi.AccessPoint.1]\n"
      "SSIDReference = Device.WiFi.SSID.1.\n"
      "\n"
      "[Device.WiFi.AccessPoint.1.Security]\n"
      "ModeEnabled = WPA2-Personal\n"
      "KeyPassphrase = \"  two words \\\" \\\\ \"\n"
      "SAEPassphrase =\n"
      "PreSharedKey = 00ff\n"
      "RadiusSecret = s3cret\n"
      "WEPKey = 0123456789\n"
      "RekeyingInterval = 3600\n"
      "X_ZINTU_Wep_KeyType = hex\n"
      "\n"
      "[Device.PPP.Interface.1]\n"
      "Username = \"\\\"quoted\"\n"
      "Password = pass word\n"
      "Alias = a \"b\" \\c\n";
};

// The export loads back to the same objects and exports to the same text.
TEST_F(ExportFormatTest, WritesSectionsAndValuesAsTheLoaderReadsThem) {
  Outcome o = tool({"export", "--show-secrets"});
  ASSERT_TRUE(endedWith(o, {0})) << o.err;
  EXPECT_EQ(o.out, std::string("# caltofal export of Device.\n# secrets shown\n\n") + kExported);
  const std::string again = box_.path("again.model");
  writeFile(again, o.out);
  Outcome before = tool({"--json", "get", "Device."});
  Outcome after = box_.run({"--model", again, "--json", "get", "Device."});
  ASSERT_TRUE(endedWith(after, {0})) << after.err;
  EXPECT_EQ(before.out, after.out);
  EXPECT_EQ(box_.run({"--model", again, "export", "--show-secrets"}).out, o.out);
}

TEST_F(ExportFormatTest, MasksEverySecretThatHasAValue) {
  Outcome o = tool({"export", "Device.WiFi.AccessPoint.1.Security"});
  ASSERT_TRUE(endedWith(o, {0})) << o.err;
  EXPECT_EQ(o.out,
            "# caltofal export of Device.WiFi.AccessPoint.1.Security\n"
            "# secrets masked as ******** (caltofal export --show-secrets keeps them)\n"
            "\n"
            "[Device.WiFi.AccessPoint.1.Security]\n"
            "ModeEnabled = WPA2-Personal\n"
            "KeyPassphrase = ********\n"
            "SAEPassphrase =\n"
            "PreSharedKey = ********\n"
            "RadiusSecret = ********\n"
            "WEPKey = ********\n"
            "RekeyingInterval = 3600\n"
            "X_ZINTU_Wep_KeyType = hex\n");
  o = tool({"export", "Device.PPP."});
  ASSERT_TRUE(endedWith(o, {0})) << o.err;
  EXPECT_NE(o.out.find("\nPassword = ********\nAlias"), std::string::npos) << o.out;
  EXPECT_EQ(o.out.find("pass word"), std::string::npos);
}

}  // namespace
}  // namespace clitest

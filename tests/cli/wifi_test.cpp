// Saving a Wi-Fi page on a copy of the bundled sample: exactly the changed
// line moves in the model file, and saving the same value again sends
// nothing.
#include <nlohmann/json.hpp>

#include "tool_runner.h"

namespace clitest {
namespace {

TEST(WifiSave, ChangesOneLineAndThenNothing) {
  Sandbox box;
  const std::string sample = readFile(CALTOFAL_SAMPLE_MODEL);
  const std::string model = box.path("copy.model");
  writeFile(model, sample);
  const Args save = {"wifi", "set", "ssid", "1", "SSID=Garden", "--model", model};

  Outcome first = box.run(save);
  ASSERT_TRUE(endedWith(first, {0})) << first.err;
  EXPECT_EQ(first.out, "changed  Device.WiFi.SSID.1 SSID: Zintu-5A3C -> Garden\napplied\n");
  const std::vector<std::string> before = splitLines(sample), after = splitLines(readFile(model));
  ASSERT_EQ(before.size(), after.size());
  std::vector<std::string> changed;
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (before[i] != after[i]) changed.push_back(before[i] + " => " + after[i]);
  }
  EXPECT_EQ(changed, std::vector<std::string>{"SSID = Zintu-5A3C => SSID = Garden"});

  const std::string saved = readFile(model);
  Outcome second = box.run(save);
  ASSERT_TRUE(endedWith(second, {0}));
  EXPECT_EQ(second.out,
            "current  Device.WiFi.SSID.1 SSID: Garden\n"
            "nothing to send: every value is current\n");
  EXPECT_EQ(readFile(model), saved);
  EXPECT_EQ(readFile(model + ".journal"), "set Device.WiFi.SSID.1 SSID=Garden\n");

  Outcome page = box.run({"wifi", "ssid", "1", "--json", "--model", model});
  ASSERT_TRUE(endedWith(page, {0}));
  ASSERT_TRUE(nlohmann::json::accept(page.out));
  EXPECT_EQ(nlohmann::json::parse(page.out)["SSID"], "Garden");
}

// Every SSID and radio of the sample reads with every setting of its page
// (a setting missing from the configuration has no key).
TEST(WifiSave, TheSampleHasEverySettingOfEveryPage) {
  Sandbox box;
  const std::string model = box.path("copy.model");
  writeFile(model, readFile(CALTOFAL_SAMPLE_MODEL));
  const struct {
    const char *kind;
    int count;
    std::size_t keys;  // the page's numbers and the snapshot's settings
  } pages[] = {{"ssid", 16, 3 + 20}, {"radio", 2, 1 + 27}};
  for (const auto &p : pages) {
    for (int n = 1; n <= p.count; ++n) {
      Outcome o = box.run({"--json", "wifi", p.kind, std::to_string(n), "--model", model});
      ASSERT_TRUE(endedWith(o, {0})) << p.kind << n << o.err;
      EXPECT_EQ(nlohmann::json::parse(o.out).size(), p.keys) << p.kind << " " << n;
    }
  }
}

}  // namespace
}  // namespace clitest

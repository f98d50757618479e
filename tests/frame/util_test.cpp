// Text utilities and get_from_shell.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "caltofal.h"
#include "fake_os.h"
#include "frame_test_util.h"

namespace {

// In-place helpers: input, expected text afterwards.
TEST(TextHelpers, InPlaceEdits) {
  struct {
    char *(*apply)(char *);
    const char *in;
    const char *out;
  } cases[] = {
      {strupr, "mac-aa:bb\xe9z", "MAC-AA:BB\xe9Z"},
      {[](char *t) { return reverse_string(t), t; }, "abcd", "dcba"},
      {[](char *t) { return reverse_string(t), t; }, "abc", "cba"},
      {[](char *t) { return reverse_string(t), t; }, "", ""},
      {[](char *t) { return remove_rss_tag(t, "<ssid>"); }, "  <ssid>Home Net</ssid>\n", "Home Net"},
      {[](char *t) { return remove_rss_tag(t, "<t>"); }, "<t>a</b>c</t> x", "a</b>c"},  // last "</"
      {[](char *t) { return remove_rss_tag(t, "<y>"); }, "<x>payload</x>", "payload"},  // not compared
      {[](char *t) { return remove_rss_tag(t, "<a>"); }, "<a>text", "<a>text"},  // no close: kept
  };
  for (const auto &c : cases) {
    char buf[256];
    std::snprintf(buf, sizeof buf, "%s", c.in);
    EXPECT_EQ(c.apply(buf), buf);
    EXPECT_STREQ(buf, c.out) << c.in;
  }
  EXPECT_EQ(strupr(nullptr), nullptr);
  EXPECT_EQ(remove_rss_tag(nullptr, "<a>"), nullptr);
}

TEST(TextHelpers, TrimStartSpaceStopsAtNewline) {
  char text[] = " \t\r\v\f \nabc";
  EXPECT_EQ(trim_start_space(text), text + 6);
  EXPECT_STREQ(text, " \t\r\v\f \nabc");
}

TEST(TextHelpers, RemoveRssTagWorksWithin127Characters) {
  // The body's first 127 characters hold no closing tag: left as it was.
  std::string element = "<a>" + std::string(200, 'p') + "</a>";
  char buf[256];
  std::snprintf(buf, sizeof buf, "%s", element.c_str());
  EXPECT_STREQ(remove_rss_tag(buf, "<a>"), element.c_str());
}

TEST(TextHelpers, AtobAcceptsOnlyOneAndTrue) {
  for (const char *yes : {"1", "true", "True", "TRUE"}) EXPECT_EQ(atob(yes), 1) << yes;
  for (const char *no : {"10", "yes", "on", "TRUE1", "", " true", "0"}) EXPECT_EQ(atob(no), 0);
  EXPECT_EQ(atob(nullptr), 0);
}

TEST(TextHelpers, ItoaWritesPositiveValuesOnly) {
  struct {
    int value;
    const char *text;
  } cases[] = {{0, ""},          {-5, ""},        {9, "9"},
               {10, "10"},       {305, "305"},    {1000000, "1000000"},
               {999999999, "999999999"}, {2147483647, "2147483647"}};
  for (const auto &c : cases) {
    char buf[16];
    std::memset(buf, 'x', sizeof buf);
    EXPECT_EQ(itoa(c.value, buf), 0);
    EXPECT_STREQ(buf, c.text) << c.value;
  }
  EXPECT_EQ(itoa(5, nullptr), -1);
}

class GetFromShellTest : public ::testing::Test {
 protected:
  void SetUp() override { fakeos::reset(); }
  static std::string trace(int line, const std::string &text) {
    return tag("ZintuMeshGrove", line, "get_from_shell") + text;
  }
};

TEST_F(GetFromShellTest, FirstLineCutAt127WithOneTrailingBlankRemoved) {
  struct {
    const char *output;
    std::string expected;
  } cases[] = {{"x\ny\n", "x"}, {"abc  \n", "abc  "}, {"abc", "abc"},
               {nullptr, std::string(127, 'z')}};
  for (const auto &c : cases) {
    std::string output = c.output != nullptr ? c.output : std::string(300, 'z') + "\n";
    fakeos::onCommand("cmd", {output});
    char out[128];
    EXPECT_EQ(get_from_shell("cmd", out), out);
    EXPECT_EQ(std::string(out), c.expected);
  }
  EXPECT_EQ(fakeos::console(), "");
}

TEST_F(GetFromShellTest, FailuresAreTracedAndClearTheOutput) {
  fakeos::onCommand("broken", {"", 0, true});
  char out[128];
  std::memset(out, 'q', sizeof out);
  get_from_shell("true", out);  // prints nothing
  EXPECT_EQ(out[0], '\0');
  EXPECT_EQ(out[127], '\0');
  get_from_shell("broken", out);
  get_from_shell("", out);
  get_from_shell(nullptr, nullptr);
  EXPECT_EQ(fakeos::console(),
            trace(110, "[ERROR] fgets function failed. \n") +
                trace(134, "[ERROR] Received CMD [true] returns [] \n") +
                trace(102, "[ERROR] popen failed with [broken] \n") +
                trace(134, "[ERROR] Received CMD [broken] returns [] \n") +
                trace(95, "[ERROR] Received arg CMD [] or return buffer is NULL \n") +
                trace(134, "[ERROR] Received CMD [] returns [] \n") +
                trace(95, "[ERROR] Received arg CMD [(null)] or return buffer is NULL \n") +
                trace(134, "[ERROR] Received CMD [(null)] returns [(null)] \n"));
  EXPECT_EQ(fakeos::commands(), (std::vector<std::string>{"true", "broken"}));
}

TEST_F(GetFromShellTest, CommandRunsAsGiven) {
  const char *command = "echo 'a;b' | tr a b; $(x) `y`";
  char out[128];
  get_from_shell(command, out);
  EXPECT_EQ(fakeos::commands(), std::vector<std::string>{command});
}

}  // namespace

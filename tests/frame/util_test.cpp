// Text utilities and get_from_shell.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "caltofal.h"
#include "fake_os.h"

namespace {

TEST(Strupr, UpperCasesAsciiLettersOnly) {
  char text[] = "mac-aa:bb\xe9z";
  EXPECT_EQ(strupr(text), text);
  EXPECT_STREQ(text, "MAC-AA:BB\xe9Z");
  EXPECT_EQ(strupr(nullptr), nullptr);
}

TEST(ReverseString, SwapsFromBothEnds) {
  struct {
    const char *in;
    const char *out;
  } cases[] = {{"abcd", "dcba"}, {"abc", "cba"}, {"a", "a"}, {"", ""}};
  for (const auto &c : cases) {
    char buf[8];
    std::strcpy(buf, c.in);
    reverse_string(buf);
    EXPECT_STREQ(buf, c.out) << c.in;
  }
  reverse_string(nullptr);
}

TEST(TrimStartSpace, StopsAtNewlineAndLeavesTextAlone) {
  char text[] = " \t\r\v\f \nabc";
  EXPECT_EQ(trim_start_space(text), text + 6);
  char plain[] = "abc";
  EXPECT_EQ(trim_start_space(plain), plain);
  char blanks[] = "   ";
  EXPECT_STREQ(trim_start_space(blanks), "");
  EXPECT_STREQ(text, " \t\r\v\f \nabc");
}

TEST(RemoveRssTag, CutsThePayloadOutInPlace) {
  struct {
    const char *in;
    const char *tag;
    const char *out;
  } cases[] = {
      {"  <ssid>Home Net</ssid>\n", "<ssid>", "Home Net"},
      {"<title>a</b>c</title> trailing", "<title>", "a</b>c"},  // last "</" closes
      {"<t></t>", "<t>", ""},
      {"<x>payload</x>", "<y>", "payload"},  // the tag's text is not compared
  };
  for (const auto &c : cases) {
    char buf[128];
    std::snprintf(buf, sizeof buf, "%s", c.in);
    EXPECT_EQ(remove_rss_tag(buf, c.tag), buf);
    EXPECT_STREQ(buf, c.out) << c.in;
  }
}

TEST(RemoveRssTag, KeepsAtMost127CharactersAndSurvivesAMissingCloseTag) {
  std::string payload(200, 'p');
  std::string element = "<a>" + payload + "</a>";
  char buf[256];
  std::snprintf(buf, sizeof buf, "%s", element.c_str());
  remove_rss_tag(buf, "<a>");
  // The 127-byte work buffer holds the body's first 127 characters, which
  // contain no closing tag: the text is left as it was.
  EXPECT_STREQ(buf, element.c_str());

  char shortElement[128] = "<a>" "0123456789" "</a>";
  remove_rss_tag(shortElement, "<a>");
  EXPECT_STREQ(shortElement, "0123456789");

  char noClose[] = "<a>text";
  EXPECT_STREQ(remove_rss_tag(noClose, "<a>"), "<a>text");
  EXPECT_EQ(remove_rss_tag(nullptr, "<a>"), nullptr);
}

class GetFromShellTest : public ::testing::Test {
 protected:
  void SetUp() override { fakeos::reset(); }
};

TEST_F(GetFromShellTest, ReturnsFirstLineWithOneTrailingBlankRemoved) {
  fakeos::onCommand("printf 'x\\ny\\n'", {"x\ny\n"});
  fakeos::onCommand("two", {"abc  \n"});
  fakeos::onCommand("noeol", {"abc"});
  char out[128];
  EXPECT_EQ(get_from_shell("printf 'x\\ny\\n'", out), out);
  EXPECT_STREQ(out, "x");
  get_from_shell("two", out);
  EXPECT_STREQ(out, "abc  ");
  get_from_shell("noeol", out);
  EXPECT_STREQ(out, "abc");
  EXPECT_EQ(fakeos::console(), "");
}

TEST_F(GetFromShellTest, LongLineIsCutAt127) {
  fakeos::onCommand("long", {std::string(300, 'z') + "\n"});
  char out[128];
  get_from_shell("long", out);
  EXPECT_EQ(std::string(out), std::string(127, 'z'));
}

TEST_F(GetFromShellTest, FailureTracesAreExact) {
  char out[128];
  std::memset(out, 'q', sizeof out);
  get_from_shell("true", out);  // prints nothing
  EXPECT_EQ(fakeos::console(),
            "[ZINTU VOLA FAL] (ZintuMeshGrove:110, get_from_shell) [ERROR] fgets function "
            "failed. \n"
            "[ZINTU VOLA FAL] (ZintuMeshGrove:134, get_from_shell) [ERROR] Received CMD [true] "
            "returns [] \n");
  EXPECT_EQ(out[0], '\0');
  EXPECT_EQ(out[127], '\0');

  fakeos::reset();
  fakeos::onCommand("broken", {"", 0, true});
  get_from_shell("broken", out);
  EXPECT_EQ(fakeos::console(),
            "[ZINTU VOLA FAL] (ZintuMeshGrove:102, get_from_shell) [ERROR] popen failed with "
            "[broken] \n"
            "[ZINTU VOLA FAL] (ZintuMeshGrove:134, get_from_shell) [ERROR] Received CMD [broken] "
            "returns [] \n");

  fakeos::reset();
  get_from_shell("", out);
  get_from_shell(nullptr, nullptr);
  EXPECT_EQ(fakeos::console(),
            "[ZINTU VOLA FAL] (ZintuMeshGrove:95, get_from_shell) [ERROR] Received arg CMD [] or "
            "return buffer is NULL \n"
            "[ZINTU VOLA FAL] (ZintuMeshGrove:134, get_from_shell) [ERROR] Received CMD [] "
            "returns [] \n"
            "[ZINTU VOLA FAL] (ZintuMeshGrove:95, get_from_shell) [ERROR] Received arg CMD "
            "[(null)] or return buffer is NULL \n"
            "[ZINTU VOLA FAL] (ZintuMeshGrove:134, get_from_shell) [ERROR] Received CMD [(null)] "
            "returns [(null)] \n");
  EXPECT_EQ(fakeos::commands().size(), 0u);
}

TEST_F(GetFromShellTest, CommandRunsAsGiven) {
  const char *command = "echo 'a;b' | tr a b; $(x) `y`";
  char out[128];
  get_from_shell(command, out);
  ASSERT_EQ(fakeos::commands().size(), 1u);
  EXPECT_EQ(fakeos::commands()[0], command);
}

TEST(Atob, OnlyOneAndTrueInAnyCase) {
  struct {
    const char *text;
    int expected;
  } cases[] = {{"1", 1},   {"true", 1},  {"True", 1}, {"TRUE", 1},  {"10", 0},  {"yes", 0},
               {"on", 0},  {"TRUE1", 0}, {"", 0},     {" true", 0}, {"0", 0}};
  for (const auto &c : cases) EXPECT_EQ(atob(c.text), c.expected) << c.text;
  EXPECT_EQ(atob(nullptr), 0);
}

TEST(Itoa, PositiveValuesOnly) {
  struct {
    int value;
    const char *text;
  } cases[] = {{0, ""},     {-5, ""},        {1, "1"},          {9, "9"},
               {10, "10"},  {305, "305"},    {999999, "999999"}, {1000000, "1000000"},
               {123456789, "123456789"}, {2147483647, "2147483647"}};
  for (const auto &c : cases) {
    char buf[16];
    std::memset(buf, 'x', sizeof buf);
    EXPECT_EQ(itoa(c.value, buf), 0);
    EXPECT_STREQ(buf, c.text) << c.value;
  }
  EXPECT_EQ(itoa(5, nullptr), -1);
}

}  // namespace

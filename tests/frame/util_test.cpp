// Text utilities and console writes.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "caltofal.h"
#include "fake_os.h"

namespace {

char *reversed(char *t) {
  return reverse_string(t), t;
}
char *dotted(char *t) {
  return zintu_InsertDotEndofObj(t), t;
}
template <const char *Tag>
char *untagged(char *t) {
  return remove_rss_tag(t, Tag);
}
constexpr char kSsid[] = "<ssid>", kT[] = "<t>", kY[] = "<y>", kA[] = "<a>";

TEST(TextHelpers, InPlaceEditsReturnTheirText) {
  const std::string longBody = "<a>" + std::string(200, 'p') + "</a>";
  struct {
    char *(*apply)(char *);
    std::string in, out;
  } cases[] = {
      {strupr, "mac-aa:bb\xe9z", "MAC-AA:BB\xe9Z"},
      {reversed, "abcd", "dcba"},
      {reversed, "abc", "cba"},
      {reversed, "", ""},
      {dotted, "Device.IP", "Device.IP."},
      {dotted, "Device.IP.", "Device.IP."},
      {dotted, "", ""},
      {dotted, "x", "x."},
      {untagged<kSsid>, "  <ssid>Home Net</ssid>\n", "Home Net"},
      {untagged<kT>, "<t>a</b>c</t> x", "a</b>c"},  // the last "</" closes
      {untagged<kY>, "<x>payload</x>", "payload"},  // the tag's text is not compared
      {untagged<kA>, "<a>text", "<a>text"},         // no closing tag: kept
      {untagged<kA>, longBody, longBody},           // closing tag beyond 127 characters
  };
  for (const auto &c : cases) {
    char buf[256];
    std::snprintf(buf, sizeof buf, "%s", c.in.c_str());
    EXPECT_EQ(c.apply(buf), buf);
    EXPECT_EQ(buf, c.out) << c.in;
  }
  char text[] = " \t\r\v\f \nabc";  // a newline stops the skipping
  EXPECT_EQ(trim_start_space(text), text + 6);
  EXPECT_STREQ(text, " \t\r\v\f \nabc");
}

TEST(Console, WritesExactBoundedBytesAndReportsFailure) {
  fakeos::reset();
  EXPECT_EQ(PRINT_TO_CONSOLE("[%s : %d] ", "f", 12), 0);
  PRINT_TO_CONSOLE("%s", "%s%n%x");  // data is never a format
  PRINT_TO_CONSOLE("%s", std::string(5000, 'a').c_str());
  EXPECT_EQ(fakeos::consoleWrites(),
            (std::vector<std::string>{"[f : 12] ", "%s%n%x", std::string(1023, 'a')}));
  fakeos::setConsoleFails(true);
  EXPECT_LT(PRINT_TO_CONSOLE("x"), 0);
}

}  // namespace

// The model text: values as read, and each kind of error with its line.

#include <gtest/gtest.h>

#include <string>

#include "sim_msg.h"

namespace {

class ModelText : public ::testing::Test {
 protected:
  void SetUp() override { calsim::reset(); }
  void TearDown() override { calsim::reset(); }
};

TEST_F(ModelText, ReadsValuesAsWritten) {
  const std::string text =
      "# gateway\n"
      "   # indented comment\n"
      "\n"
      "[Device.IP.Interface.3]\n"
      "Enable = true\n"
      "\tName\t=\tpppoe-wan \t\n"
      "Alias = \"  value with outer blanks  \"\n"
      "Quoted = \"say \\\"hi\\\" \\\\ ok\"\n"
      "Inner = a \"b\" c\n"
      "Empty =\n"
      "Url = http://x/?a=b\n"
      "X_VENDOR.Sub-name_1 = 1\n"
      "[Device.Users.User.1]\r\n"
      "Username = admin\r\n"
      "Long = " +
      std::string(1023, 'x') + "\n" + "Last = no newline";
  std::string error;
  ASSERT_TRUE(calsim::loadModelString(text, "m", &error)) << error;
  const std::pair<const char *, std::string> expected[] = {
      {"Enable", "true"},
      {"Name", "pppoe-wan"},
      {"Alias", "  value with outer blanks  "},
      {"Quoted", "say \"hi\" \\ ok"},
      {"Inner", "a \"b\" c"},
      {"Empty", ""},
      {"Url", "http://x/?a=b"},
      {"X_VENDOR.Sub-name_1", "1"},
  };
  for (const auto &[name, value] : expected) {
    EXPECT_EQ(calsim::value("Device.IP.Interface.3", name), value) << name;
  }
  EXPECT_EQ(calsim::value("Device.Users.User.1.", "Username"), "admin");
  EXPECT_EQ(calsim::value("Device.Users.User.1", "Long"), std::string(1023, 'x'));
  EXPECT_EQ(calsim::value("Device.Users.User.1", "Last"), "no newline");
  EXPECT_EQ(calsim::value("Device.Users.User.1", "Nope"), std::nullopt);
}

struct BadModel {
  const char *text;
  const char *error;
};

TEST_F(ModelText, ReportsEachErrorWithItsLine) {
  const std::string longValue = "[D.A]\nX = " + std::string(1024, 'v') + "\n";
  const BadModel cases[] = {
      {"# c\nEnable = 1\n", "m:2: parameter outside any object"},
      {"[D.A]\n\n[D.A]\n", "m:3: duplicate object D.A (first at line 1)"},
      {"[D.A]\nX = 1\n# c\nX = 2\n", "m:4: duplicate parameter X in D.A (first at line 2)"},
      {"[D.A\n", "m:1: malformed section header: expected [object path]"},
      {"[D.A] x\n", "m:1: malformed section header: expected [object path]"},
      {"[D..A]\n", "m:1: malformed section header: bad object path 'D..A'"},
      {"[D A]\n", "m:1: malformed section header: bad object path 'D A'"},
      {"[]\n", "m:1: malformed section header: bad object path ''"},
      {"[D.A.]\n", "m:1: object path D.A. ends with '.' (write it without the trailing dot)"},
      {"[D.A]\njust text\n", "m:2: expected a comment, [object path] or name = value"},
      {"[D.A]\n= 1\n", "m:2: expected a comment, [object path] or name = value"},
      {"[D.A]\nMy Name = 1\n",
       "m:2: bad parameter name 'My Name' (letters, digits, '_', '.', '-')"},
      {"[D.A]\nX = \"open\n", "m:2: unterminated quoted value"},
      {"[D.A]\nX = \"ends in escape\\\"\n", "m:2: unterminated quoted value"},
      {"[D.A]\nX = \"a\\nb\"\n", "m:2: bad escape \\n in quoted value (only \\\" and \\\\)"},
      {"[D.A]\nX = \"a\" b\n", "m:2: text after the closing quote"},
      {longValue.c_str(), "m:2: value longer than 1023 characters"},
  };
  for (const BadModel &c : cases) {
    std::string error;
    EXPECT_FALSE(calsim::loadModelString(c.text, "m", &error)) << c.text;
    EXPECT_EQ(error, c.error) << c.text;
  }
}

// A model that failed to load fails every request with its reason.
TEST_F(ModelText, FailedModelFailsEveryRequest) {
  std::string error;
  ASSERT_FALSE(calsim::loadModelString("[D.A]\nX = 1\nY\n", "bad.model", &error));
  simtest::Msg get(MOPT_GET, 0x1004, {{"D.A", {}}});
  EXPECT_EQ(cal_getValue(get.get()), -1);
  EXPECT_STREQ(calsim_lastError(),
               "bad.model:3: expected a comment, [object path] or name = value");
  simtest::Msg set(MOPT_SET, SOPT_OBJVALUE, {{"D.A", {{"X", "2"}}, OBJOPT_MODIFY}});
  EXPECT_EQ(cal_setValue(set.get()), -1);
  EXPECT_STREQ(calsim_lastError(),
               "bad.model:3: expected a comment, [object path] or name = value");
  EXPECT_EQ(get.dump(), "D.A{}");
}

}  // namespace

// Frame log gating and format, console writes.
#include <gtest/gtest.h>

#include <string>

#include "caltofal.h"
#include "fake_os.h"
#include "help_objlist.h"

namespace {

class LogTest : public ::testing::Test {
 protected:
  void SetUp() override { fakeos::reset(); }
  void TearDown() override {
    unfaltocalLogType = 1;
    unfaltocalLogLevel = 5;
  }
};

TEST_F(LogTest, InitialSettingsSendErrorsToSyslogOnly) {
  EXPECT_EQ(unfaltocalLogType, 1);
  EXPECT_EQ(unfaltocalLogLevel, 5);
  faltocal_AddFilter(nullptr, nullptr, "x");
  auto lines = fakeos::syslogLines();
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].first, 3);
  EXPECT_EQ(lines[0].second,
            "faltocal{faltocal_AddFilter, 139}:Either of Parameter Name  is mandatory\n");
  EXPECT_EQ(fakeos::stdoutText(), "");
}

struct Gate {
  uint16_t type;
  uint16_t level;
  unsigned priority;
  bool toSyslog;
  bool toStdout;
};

class LogGateTest : public LogTest, public ::testing::WithParamInterface<Gate> {};

TEST_P(LogGateTest, TypeAndLevelGateEachPriority) {
  const Gate g = GetParam();
  unfaltocalLogType = g.type;
  unfaltocalLogLevel = g.level;
  faltocal_logLine(g.priority, "faltocal{%s, %d}:text %s\n", "tag", 7, "x");
  EXPECT_EQ(fakeos::syslogLines().size(), g.toSyslog ? 1u : 0u);
  EXPECT_EQ(!fakeos::stdoutText().empty(), g.toStdout);
}

INSTANTIATE_TEST_SUITE_P(Table, LogGateTest,
                         ::testing::Values(Gate{1, 5, 3, true, false}, Gate{2, 5, 3, false, true},
                                           Gate{3, 5, 2, true, true}, Gate{3, 2, 3, false, false},
                                           Gate{3, 2, 2, true, true}, Gate{0, 7, 2, false, false},
                                           Gate{3, 0, 2, false, false},
                                           Gate{1, 3, 3, true, false}));

TEST_F(LogTest, ColourLineCarriesTimeLabelAndReset) {
  unfaltocalLogType = 2;
  std::tm when{};
  when.tm_mday = 16;
  when.tm_mon = 10;
  when.tm_year = 126;
  when.tm_hour = 3;
  when.tm_min = 51;
  when.tm_sec = 40;
  fakeos::setTime(when);
  faltocal_logLine(3, "faltocal{%s, %d}:Could not compile xRegex\n", "zintu_isValidMacAddress",
                   1301);
  faltocal_logLine(2, "faltocal{%s, %d}: malloc failed\n", "HELP_CREATE_OBJ", 102);
  EXPECT_EQ(fakeos::stdoutText(),
            "\033[38;5;214m<16-11-2026 03:51:40> [ERROR] "
            "faltocal{zintu_isValidMacAddress, 1301}:Could not compile xRegex\n\033[0m"
            "\033[31m<16-11-2026 03:51:40> [CRITICAL] "
            "faltocal{HELP_CREATE_OBJ, 102}: malloc failed\n\033[0m");
}

TEST_F(LogTest, ColourLineWithoutLocalTimeHasEmptyStamp) {
  unfaltocalLogType = 2;
  faltocal_logLine(2, "faltocal{%s, %d}:x\n", "t", 1);
  EXPECT_EQ(fakeos::stdoutText(), "\033[31m<> [CRITICAL] faltocal{t, 1}:x\n\033[0m");
}

TEST_F(LogTest, ConsoleWritesExactBytesAndReportsFailure) {
  EXPECT_EQ(PRINT_TO_CONSOLE("[%s : %d] ", "f", 12), 0);
  EXPECT_EQ(fakeos::consoleWrites(), std::vector<std::string>{"[f : 12] "});
  fakeos::setConsoleFails(true);
  EXPECT_LT(PRINT_TO_CONSOLE("x"), 0);
}

TEST_F(LogTest, ConsoleMessageIsBoundedAt1023Bytes) {
  std::string longText(5000, 'a');
  PRINT_TO_CONSOLE("%s", longText.c_str());
  ASSERT_EQ(fakeos::consoleWrites().size(), 1u);
  EXPECT_EQ(fakeos::consoleWrites()[0], std::string(1023, 'a'));
}

TEST_F(LogTest, DataIsNeverUsedAsFormat) {
  PRINT_TO_CONSOLE("%s", "%s%n%x");
  EXPECT_EQ(fakeos::console(), "%s%n%x");
}

}  // namespace

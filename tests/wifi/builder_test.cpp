// The message builder's header words and list head, its keyword table and
// a failed allocation; the UCI escaping, byte for byte and as a shell
// reads it back.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

#include "caltofal.h"
#include "fake_os.h"
#include "help_objlist.h"
#include "help_sim.h"
#include "wifi_fixture.h"

namespace {

using Words = std::array<uint32_t, 5>;

Words words(const MsgHeader &h) {
  return {h.unMainOper, h.unListFlags, h.unOwner, h.unInit, h.unReserved};
}

TEST(CreateMsg, EachKeywordGivesItsCodeAndAFreshValueList) {
  const std::pair<const char *, uint32_t> keywords[] = {{"get", 1},           {"set", 2},
                                                        {"factoryreset", 32}, {"backup", 64},
                                                        {"reboot", 128},      {"fwupgrade", 256}};
  for (const auto &[word, code] : keywords) {
    MsgHeader header;
    std::memset(&header, 0x5a, sizeof header);
    const long live = help_liveAllocations();
    ASSERT_EQ(faltocal_create_msg(&header, word), 0) << word;
    EXPECT_EQ(words(header), (Words{code, 4100, 32, 1, 0})) << word;
    auto *head = static_cast<ObjList *>(header.pObjList);
    ASSERT_NE(head, nullptr);
    EXPECT_EQ(head->xOlist.next, &head->xOlist);
    EXPECT_EQ(help_liveAllocations(), live + 1);
    EXPECT_EQ(help_delMsg(&header, 1), 0);
    EXPECT_EQ(help_liveAllocations(), live);
  }
}

TEST(CreateMsg, UnknownKeywordsLeaveTheHeaderAsItWas) {
  for (const char *word : {"GET", "get ", "", "query", "set_only_db", "get_leaf_node", "fw",
                           static_cast<const char *>(nullptr)}) {
    MsgHeader header;
    std::memset(&header, 0x5a, sizeof header);
    const MsgHeader before = header;
    EXPECT_EQ(faltocal_create_msg(&header, word), -1) << word;
    EXPECT_EQ(std::memcmp(&header, &before, sizeof header), 0) << word;
  }
  EXPECT_EQ(faltocal_create_msg(nullptr, "get"), -1);
}

TEST(CreateMsg, AFailedListAllocationIsLoggedAndStillSucceeds) {
  const uint16_t type = unfaltocalLogType, level = unfaltocalLogLevel;
  for (uint16_t logLevel : {1, 2}) {
    fakeos::reset();
    unfaltocalLogType = 3;  // syslog and coloured standard output
    unfaltocalLogLevel = logLevel;
    MsgHeader header{};
    wifitest::failAllocation(1);
    EXPECT_EQ(faltocal_create_msg(&header, "reboot"), 0);
    wifitest::failAllocation(0);
    EXPECT_EQ(words(header), (Words{128, 4100, 32, 1, 0}));
    EXPECT_EQ(header.pObjList, nullptr);
    const std::string line = "faltocal{HELP_CREATE_OBJ, 102}: malloc failed\n";
    using Syslog = std::vector<std::pair<int, std::string>>;
    EXPECT_EQ(fakeos::syslogLines(), (logLevel < 2 ? Syslog{} : Syslog{{2, line}}));
    const std::string out = fakeos::stdoutText();
    if (logLevel < 2) {
      EXPECT_EQ(out, "");
    } else {
      EXPECT_NE(out.find("\033[31m"), std::string::npos);
      EXPECT_NE(out.find("[CRITICAL] " + line), std::string::npos);
    }
  }
  unfaltocalLogType = type;
  unfaltocalLogLevel = level;
}

// The escaped text, checked against the stated capacity and the guard
// bytes behind it.
std::string escaped(const std::string &source) {
  std::string target(4 * source.size() + 1 + 16, '#');
  EXPECT_EQ(ConvSpecialChar_forUciCli(source.c_str(), &target[0]), 0);
  const std::size_t end = target.find('\0');
  EXPECT_LE(end, 4 * source.size()) << "past the stated capacity";
  EXPECT_EQ(target.substr(end + 1), std::string(target.size() - end - 1, '#')) << source;
  return target.substr(0, end);
}

TEST(UciEscape, EachSpecialCharacterAndWhatAShellReadsBack) {
  const std::pair<std::string, std::string> cases[] = {
      {"a\"b", "a\\\"b"},
      {"\\", "\\\\"},
      {"", ""},
      {"My \"Home\" Net", "My \\\"Home\\\" Net"},
      {"ends with \\", "ends with \\\\"},
      {"a\\nb", "a\\\\nb"},
      {"tab\there semi;colon & pipe | <x>", "tab\there semi;colon & pipe | <x>"},
      // Not for a double-quoted word: the quote is escaped the single-quoted
      // way, and a shell would still expand $ and `.
      {"it's", "it'\\''s"},
      {"'\"\\'", "'\\''\\\"\\\\'\\''"},
      {"$HOME `x`", "$HOME `x`"},
  };
  for (const auto &[source, target] : cases) {
    EXPECT_EQ(escaped(source), target) << source;
    if (source.find_first_of("'$`") == std::string::npos) {
      EXPECT_EQ(wifitest::shellOutput("printf %s \"" + target + "\""), source);
    }
  }
  char target[4] = "###";
  EXPECT_EQ(ConvSpecialChar_forUciCli(nullptr, target), 0);
  EXPECT_STREQ(target, "###");
  EXPECT_EQ(ConvSpecialChar_forUciCli("a", nullptr), 0);
}

}  // namespace

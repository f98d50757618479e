// Multi-object requests: queueing, query, keywords, sender choice, traces.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "caltofal.h"
#include "calsim.h"
#include "fake_os.h"
#include "frame/message.h"

namespace {

using caltofal::Message;

constexpr char kModel[] = R"(
[Device.A]
P = a
Q = aq
[Device.B]
P = b
[Device.T]
[Device.T.1]
Mode = pppoe
[Device.T.2]
Mode = dhcp
)";

class MultiTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fakeos::reset();
    calsim::reset();
    std::string error;
    ASSERT_TRUE(calsim::loadModelString(kModel, "multi.model", &error)) << error;
  }
  static std::vector<std::string> names(const Message &msg) {
    std::vector<std::string> out;
    for (ObjList *obj : caltofal::objectsOf(msg)) out.emplace_back(obj->sObjName);
    return out;
  }
};

struct FlagCase {
  const char *keyword;
  uint32_t main;
  uint32_t flags;
};

class MultiKeywordTest : public MultiTest, public ::testing::WithParamInterface<FlagCase> {};

TEST_P(MultiKeywordTest, NewMessageGetsMainOperationFlagsAndOwnerTwo) {
  const FlagCase c = GetParam();
  Message msg;
  EXPECT_EQ(faltocal_send_main_multi_obj(msg.get(), "Device.A.&", c.keyword, "get", 0), 0);
  EXPECT_EQ(msg.get()->unMainOper, c.main);
  EXPECT_EQ(msg.get()->unListFlags, c.flags);
  EXPECT_EQ(msg.get()->unOwner, 2u);
  EXPECT_EQ(calsim::requests().size(), 0u);  // queued only
}

INSTANTIATE_TEST_SUITE_P(Table, MultiKeywordTest,
                         ::testing::Values(FlagCase{"get", 1, 0x1004},
                                           FlagCase{"get_def_val", 1, 0x44},
                                           FlagCase{"get_leaf_node", 1, 0x1100},
                                           FlagCase{"get_filter_by_param_value", 1, 0x1100},
                                           FlagCase{"set", 2, 4}, FlagCase{"set_only_db", 2, 4},
                                           FlagCase{"factoryreset", 32, 4},
                                           FlagCase{"backup", 64, 4}, FlagCase{"reboot", 128, 4},
                                           FlagCase{"fwupgrade", 256, 4}));

TEST_F(MultiTest, QueuedObjectsGoOutTogetherOnTheLastCall) {
  Message msg;
  EXPECT_EQ(faltocal_send_main_multi_obj(msg.get(), "Device.A.&", "get", "get", 1, "P"), 0);
  EXPECT_EQ(faltocal_send_main_multi_obj(msg.get(), "Device.B.", "ignored", "get", 1, "P"), 0);
  auto all = calsim::requests();
  ASSERT_EQ(all.size(), 1u);
  ASSERT_EQ(all[0].objects.size(), 2u);
  EXPECT_EQ(all[0].objects[0].name, "Device.A.");  // the '&' is dropped
  EXPECT_EQ(all[0].objects[1].name, "Device.B.");
  EXPECT_EQ(names(msg), (std::vector<std::string>{"Device.A", "Device.B"}));
}

TEST_F(MultiTest, AmpersandElsewhereStillCostsTheLastCharacter) {
  Message msg;
  faltocal_send_main_multi_obj(msg.get(), "Device.&A.", "get", "get", 0);
  faltocal_send_main_multi_obj(msg.get(), "query", "get", "get", 0);
  EXPECT_EQ(calsim::requests().at(0).objects.at(0).name, "Device.&A");
}

TEST_F(MultiTest, LongPathsAreCutAt255Characters) {
  std::string path = "Device." + std::string(293, 'x');
  Message msg;
  faltocal_send_main_multi_obj(msg.get(), path.c_str(), "get", "get", 0);
  EXPECT_EQ(calsim::requests().at(0).objects.at(0).name, path.substr(0, 255));
  msg.release();
  calsim::clearRequests();
  faltocal_send_main_multi_obj(msg.get(), (path + "&").c_str(), "get", "get", 0);
  faltocal_send_main_multi_obj(msg.get(), "query", "get", "get", 0);
  EXPECT_EQ(calsim::requests().at(0).objects.at(0).name, path.substr(0, 255));
}

TEST_F(MultiTest, QueryIsCaseInsensitiveHereButAPathForSendMultiObj) {
  Message msg;
  faltocal_send_main_multi_obj(msg.get(), "Device.A.&", "get", "get", 0);
  EXPECT_EQ(faltocal_send_main_multi_obj(msg.get(), "QuErY", nullptr, nullptr, 0), 0);
  EXPECT_EQ(calsim::requests().size(), 1u);

  Message other;
  faltocal_SendMultiObj(0, 256, 2, other.get(), "Device.A.", "get", "get", 0);
  faltocal_SendMultiObj(1, 256, 2, other.get(), "QUERY", "get", "get", 0);
  auto all = calsim::requests();
  ASSERT_EQ(all.size(), 2u);
  ASSERT_EQ(all[1].objects.size(), 2u);
  EXPECT_EQ(all[1].objects[1].name, "QUERY");
}

TEST_F(MultiTest, QueryOnANewMessageIsRefusedWithItsTrace) {
  Message msg;
  EXPECT_EQ(faltocal_send_main_multi_obj(msg.get(), "query", "get", "get", 0), -1);
  const char *params[] = {nullptr};
  EXPECT_EQ(faltocal_send_main_multi_obj_No_variable(msg.get(), "query", "get", "get", 0, params),
            -1);
  EXPECT_EQ(fakeos::console(),
            "[ZINTU VOLA FAL] (FaltoCal:661, faltocal_send_main_multi_obj) Failure : Received "
            "MsgHdr is NULL. can NOT do query.\n"
            "[ZINTU VOLA FAL] (FaltoCal:1025, faltocal_send_main_multi_obj_No_variable) Failure "
            ": faltocal_sendQuery() of query \n");
  EXPECT_EQ(calsim::requests().size(), 0u);
}

TEST_F(MultiTest, StoreOnlyNeedsAnAlreadyStartedMessage) {
  // Starting with set_only_db: delivered with cal_setValue.
  Message first;
  EXPECT_EQ(faltocal_send_main_multi_obj(first.get(), "Device.A.", "set_only_db", "set", 1, "P",
                                         "1"),
            0);
  // Collected, then "query" with set_only_db: cal_setValueToDb.
  Message second;
  faltocal_send_main_multi_obj(second.get(), "Device.A.&", "set", "set", 1, "P", "2");
  faltocal_send_main_multi_obj(second.get(), "query", "set_only_db", "set", 0);
  // Collected, last object says set_only_db: cal_setValueToDb too.
  Message third;
  faltocal_send_main_multi_obj(third.get(), "Device.A.&", "set", "set", 1, "P", "3");
  faltocal_send_main_multi_obj(third.get(), "Device.B.", "set_only_db", "set", 1, "P", "4");
  auto all = calsim::requests();
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[0].entry, "set");
  EXPECT_EQ(all[1].entry, "setToDb");
  EXPECT_EQ(all[2].entry, "setToDb");
  EXPECT_EQ(all[2].objects.size(), 2u);
  EXPECT_EQ(calsim::journal(), std::vector<std::string>{"set Device.A P=1"});
}

TEST_F(MultiTest, UnknownKeywordsAreTracedWithTheirLines) {
  Message msg;
  EXPECT_EQ(faltocal_send_main_multi_obj(msg.get(), "Device.A.", "GET", "get", 0), -1);
  EXPECT_EQ(faltocal_send_main_multi_obj(msg.get(), "Device.A.", "get", "fetch", 0), -1);
  Message other;
  const char *params[] = {"P"};
  EXPECT_EQ(faltocal_send_main_multi_obj_No_variable(other.get(), "Device.A.", nullptr, "get", 1,
                                                     params),
            -1);
  EXPECT_EQ(
      faltocal_send_main_multi_obj_No_variable(other.get(), "Device.A.", "get", "x", 1, params),
      -1);
  EXPECT_EQ(fakeos::console(),
            "[ZINTU VOLA FAL] (FaltoCal:744, faltocal_send_main_multi_obj) Failure : Unknown "
            "args sMainOper = GET of Device.A. \n"
            "[ZINTU VOLA FAL] (FaltoCal:775, faltocal_send_main_multi_obj) Failure : Unknown "
            "args sMainOper = fetch of Device.A. \n"
            "[ZINTU VOLA FAL] (FaltoCal:950, faltocal_send_main_multi_obj_No_variable) Failure "
            ": Unknown args sMainOper = (null) of Device.A. \n"
            "[ZINTU VOLA FAL] (FaltoCal:981, faltocal_send_main_multi_obj_No_variable) Failure "
            ": Unknown args sMainOper = x of Device.A. \n");
}

TEST_F(MultiTest, FailedSendIsTracedWithTheObject) {
  Message msg;
  EXPECT_EQ(faltocal_send_main_multi_obj(msg.get(), "Device.Nope.", "get", "get", 0), -1);
  Message reboot;
  EXPECT_EQ(faltocal_send_main_multi_obj(reboot.get(), "Device.A.", "reboot", "act", 1, "x"), -1);
  Message array;
  const char *params[] = {"P"};
  calsim::injectFailure(-5, 1);
  EXPECT_EQ(faltocal_send_main_multi_obj_No_variable(array.get(), "Device.A.", "get", "get", 1,
                                                     params),
            -1);
  EXPECT_EQ(fakeos::console(),
            "[ZINTU VOLA FAL] (FaltoCal:830, faltocal_send_main_multi_obj) Failure : "
            "faltocal_sendQuery() of Device.Nope. \n"
            "[ZINTU VOLA FAL] (FaltoCal:830, faltocal_send_main_multi_obj) Failure : "
            "faltocal_sendQuery() of Device.A. \n"
            "[ZINTU VOLA FAL] (FaltoCal:1050, faltocal_send_main_multi_obj_No_variable) Failure "
            ": faltocal_sendQuery() of Device.A. \n");
}

TEST_F(MultiTest, ArrayParametersAsNamesOrPairs) {
  Message get;
  const char *names[] = {"Q", "P"};
  ASSERT_EQ(faltocal_send_main_multi_obj_No_variable(get.get(), "Device.A.", "get", "get", 2,
                                                     names),
            0);
  Message set;
  const char *pairs[] = {"P", "x", "Q", "y"};
  ASSERT_EQ(faltocal_send_main_multi_obj_No_variable(set.get(), "Device.A.", "set", "set", 2,
                                                     pairs),
            0);
  auto all = calsim::requests();
  ASSERT_EQ(all.size(), 2u);
  std::vector<std::pair<std::string, std::string>> asked = {{"Q", ""}, {"P", ""}};
  EXPECT_EQ(all[0].objects.at(0).params, asked);
  std::vector<std::pair<std::string, std::string>> set2 = {{"P", "x"}, {"Q", "y"}};
  EXPECT_EQ(all[1].objects.at(0).params, set2);
  EXPECT_EQ(calsim::value("Device.A", "Q"), "y");
  Message none;
  EXPECT_EQ(faltocal_send_main_multi_obj_No_variable(none.get(), "Device.A.", "get", "get", 1,
                                                     nullptr),
            -1);
}

TEST_F(MultiTest, FilterRequestsCarryNameValuePairs) {
  Message msg;
  ASSERT_EQ(faltocal_send_main_multi_obj(msg.get(), "Device.T", "get_filter_by_param_value", "get",
                                         1, "Mode", "ppp"),
            0);
  EXPECT_EQ(names(msg), std::vector<std::string>{"Device.T.1"});
  Message none;
  EXPECT_EQ(faltocal_SendMultiObj(1, 256, 2, none.get(), "Device.T", "get_filter_by_param_value",
                                  "get", 1, "Mode", "static"),
            -208);
  auto last = calsim::requests().back();
  EXPECT_EQ(last.listFlags, 256u);
  EXPECT_EQ(last.owner, 2u);
  std::vector<std::pair<std::string, std::string>> filter = {{"Mode", "static"}};
  EXPECT_EQ(last.objects.at(0).params, filter);
  EXPECT_EQ(fakeos::console(), "");  // SendMultiObj never traces
}

TEST_F(MultiTest, SendMultiObjUsesTheCallersFlagsAndOwner) {
  Message msg;
  EXPECT_EQ(faltocal_SendMultiObj(0, 0x1004, 77, msg.get(), "Device.A.", "get", "get", 1, "Q"), 0);
  EXPECT_EQ(faltocal_SendMultiObj(1, 0, 0, msg.get(), "Device.B.", "unchecked", "get", 0), 0);
  auto r = calsim::requests().at(0);
  EXPECT_EQ(r.listFlags, 0x1004u);
  EXPECT_EQ(r.owner, 77u);
  EXPECT_EQ(names(msg), (std::vector<std::string>{"Device.A"}));
  Message bad;
  EXPECT_EQ(faltocal_SendMultiObj(1, 256, 2, bad.get(), "Device.A.", "GET", "get", 0), -1);
  EXPECT_EQ(faltocal_SendMultiObj(1, 256, 2, bad.get(), "Device.A.", "get", "GET", 0), -1);
  Message absent;
  EXPECT_EQ(faltocal_SendMultiObj(1, 256, 2, absent.get(), "Device.None.", "get", "get", 0), -202);
}

TEST_F(MultiTest, DefaultsComeFromTheModelAsLoaded) {
  Message set;
  faltocal_send_main_multi_obj(set.get(), "Device.A.", "set", "set", 1, "P", "changed");
  Message def;
  ASSERT_EQ(faltocal_send_main_multi_obj(def.get(), "Device.A.", "get_def_val", "get", 1, "P"), 0);
  char buf[128];
  char *out = buf;
  ASSERT_EQ(caltofal_paramValue_get(def.get()->pObjList, "Device.A", "P", &out), 0);
  EXPECT_STREQ(buf, "a");
}

}  // namespace

// Senders and one-object requests: keywords, request shape, delivery.
#include <gtest/gtest.h>

#include <string>

#include "caltofal.h"
#include "calsim.h"
#include "fake_os.h"
#include "frame/message.h"

namespace {

using caltofal::Message;

constexpr char kModel[] = R"(
[Device.X]
A = 1
B = two
[Device.X.Sub]
C = 3
)";

class SendTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fakeos::reset();
    calsim::reset();
    std::string error;
    ASSERT_TRUE(calsim::loadModelString(kModel, "send.model", &error)) << error;
  }
  static calsim::Request only() {
    auto all = calsim::requests();
    EXPECT_EQ(all.size(), 1u);
    return all.empty() ? calsim::Request{} : all.back();
  }
};

TEST_F(SendTest, GetShapeAndAnswer) {
  Message msg;
  ASSERT_EQ(faltocal_send_main(msg.get(), "Device.X.", "get", "get", 1, "B"), 0);
  calsim::Request r = only();
  EXPECT_EQ(r.entry, "get");
  EXPECT_EQ(r.mainOper, 1u);
  EXPECT_EQ(r.listFlags, 4u);
  EXPECT_EQ(r.owner, 32u);
  EXPECT_EQ(r.init, 1u);
  ASSERT_EQ(r.objects.size(), 1u);
  EXPECT_EQ(r.objects[0].name, "Device.X.");
  EXPECT_EQ(r.objects[0].objOper, 0u);
  ASSERT_EQ(r.objects[0].params.size(), 1u);
  EXPECT_EQ(r.objects[0].params[0].first, "B");
  char buf[128] = "";
  char *out = buf;
  EXPECT_EQ(caltofal_paramValue_get(msg.get()->pObjList, "Device.X", "B", &out), 0);
  EXPECT_STREQ(buf, "two");
}

TEST_F(SendTest, SetAndToDbDeliverThroughTheirOwnEntries) {
  Message msg;
  ASSERT_EQ(faltocal_send_main(msg.get(), "Device.X.", "set", "set", 2, "A", "5", "B", "b"), 0);
  msg.release();
  ASSERT_EQ(faltocal_send_main_ToDb(msg.get(), "Device.X.", "set", "set", 1, "A", "6"), 0);
  msg.release();
  ASSERT_EQ(faltocal_send_main_ToDb(msg.get(), "Device.X.", "get", "get", 0), 0);
  auto all = calsim::requests();
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[0].entry, "set");
  EXPECT_EQ(all[0].owner, 32u);
  EXPECT_EQ(all[0].objects.at(0).objOper, 4u);
  std::vector<std::pair<std::string, std::string>> pairs = {{"A", "5"}, {"B", "b"}};
  EXPECT_EQ(all[0].objects.at(0).params, pairs);
  EXPECT_EQ(all[1].entry, "setToDb");
  EXPECT_EQ(all[1].owner, 4u);
  EXPECT_EQ(all[2].entry, "get");  // a get through the ToDb sender still reads
  EXPECT_EQ(calsim::value("Device.X", "A"), "6");
  EXPECT_EQ(calsim::journal(), std::vector<std::string>{"set Device.X A=5 B=b"});
}

TEST_F(SendTest, KeywordsAreExactAndCaseSensitive) {
  struct {
    const char *main;
    const char *sub;
  } cases[] = {{"GET", "get"}, {"get", "GET"}, {"gets", "get"}, {nullptr, "get"}, {"get", nullptr},
               {"", "get"}};
  for (const auto &c : cases) {
    Message msg;
    EXPECT_EQ(faltocal_send_main(msg.get(), "Device.X.", c.main, c.sub, 0), -1);
  }
  EXPECT_EQ(calsim::requests().size(), 0u);
  EXPECT_EQ(fakeos::console(), "");
}

TEST_F(SendTest, UnknownSubKeywordLeavesAnInitialisedMessage) {
  Message msg;
  EXPECT_EQ(faltocal_send_main(msg.get(), "Device.X.", "get", "bogus", 0), -1);
  EXPECT_EQ(msg.get()->unMainOper, 1u);
  EXPECT_NE(msg.get()->pObjList, nullptr);
}

TEST_F(SendTest, OperationsOtherThanGetAndSetAreBuiltButNeverSent) {
  for (const char *main : {"reboot", "factoryreset", "backup", "fwupgrade"}) {
    Message msg;
    EXPECT_EQ(faltocal_send_main(msg.get(), "Device.X.", main, "act", 0), -1) << main;
    EXPECT_NE(msg.get()->pObjList, nullptr);
    EXPECT_TRUE(caltofal::objectsOf(msg).begin() != caltofal::objectsOf(msg).end() ? false : true);
  }
  Message reboot;
  faltocal_send_main(reboot.get(), "Device.X.", "reboot", "act", 0);
  EXPECT_EQ(reboot.get()->unMainOper, 128u);
  EXPECT_EQ(calsim::requests().size(), 0u);
  EXPECT_EQ(faltocal_sendQuery(reboot.get()), -1);
  EXPECT_EQ(faltocal_sendQuery(nullptr), -1);
}

TEST_F(SendTest, SetWithActAddsNoObjectButStillSends) {
  Message msg;
  EXPECT_EQ(faltocal_send_main(msg.get(), "Device.X.", "set", "act", 1, "A", "1"), -1);
  calsim::Request r = only();
  EXPECT_EQ(r.entry, "set");
  EXPECT_TRUE(r.objects.empty());
  EXPECT_EQ(fakeos::stderrText(), "\n Set test failure\n");
}

TEST_F(SendTest, LayerFailuresPassThroughTheSenderAndPrintOnStderr) {
  calsim::injectFailure(-202, 1);
  Message msg;
  HELP_CREATE_OBJ(msg.get(), 1, 4, 32);
  EXPECT_EQ(faltocal_sendQuery(msg.get()), -202);
  EXPECT_EQ(fakeos::stderrText(), "\n Get test failure\n");

  msg.release();
  calsim::injectFailure(-7, 1);
  EXPECT_EQ(faltocal_send_main(msg.get(), "Device.X.", "get", "get", 0), -1);
  msg.release();
  EXPECT_EQ(faltocal_send_main(msg.get(), "Device.Absent.", "get", "get", 0), -1);
}

TEST_F(SendTest, CountZeroAsksForTheWholeObject) {
  Message msg;
  ASSERT_EQ(faltocal_send_main(msg.get(), "Device.X", "get", "get", 0), 0);
  std::vector<std::string> names;
  for (ObjList *obj : caltofal::objectsOf(msg)) names.emplace_back(obj->sObjName);
  EXPECT_EQ(names, (std::vector<std::string>{"Device.X", "Device.X.Sub"}));
}

}  // namespace

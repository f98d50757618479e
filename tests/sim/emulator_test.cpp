// The test interface (failure injection, request log) and concurrent use.

#include <gtest/gtest.h>

#include <atomic>
#include <regex>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "sim_msg.h"

namespace {

using simtest::Msg;

class Emulator : public ::testing::Test {
 protected:
  void SetUp() override {
    calsim::reset();
    std::string error;
    ASSERT_TRUE(calsim::loadModelString("[Device.A]\nX = 1\nY = 2\n[Device.T]\n", "m", &error))
        << error;
  }
  void TearDown() override { calsim::reset(); }
};

TEST_F(Emulator, InjectedFailuresChangeNothingAndAreLogged) {
  calsim::injectFailure(-202, 2);
  Msg get(MOPT_GET, 0x1004, {{"Device.A", {}}});
  EXPECT_EQ(cal_getValue(get.get()), -202);
  EXPECT_STREQ(calsim_lastError(), "injected failure -202");
  EXPECT_EQ(get.dump(), "Device.A{}");
  Msg set(MOPT_SET, SOPT_OBJVALUE, {{"Device.A", {{"X", "9"}}, OBJOPT_MODIFY}});
  EXPECT_EQ(cal_setValue(set.get()), -202);
  EXPECT_EQ(calsim::value("Device.A", "X"), "1");
  EXPECT_TRUE(calsim::journal().empty());

  EXPECT_EQ(cal_setValue(set.get()), 0);  // the third request is served again
  EXPECT_EQ(calsim::value("Device.A", "X"), "9");
  EXPECT_EQ(calsim::requests().size(), 3u);
}

TEST_F(Emulator, LogsRequestsAsSent) {
  calsim::clearRequests();
  Msg set(MOPT_SET, SOPT_OBJVALUE);
  set.get()->unOwner = 4;
  set.get()->unReserved = 7;
  set.add({"Device.A.", {{"X", "5"}, {"Y", ""}}, OBJOPT_MODIFY});
  set.add({"Device.T.", {}, OBJOPT_ADD});
  ASSERT_EQ(cal_setValueToDb(set.get()), 0);
  Msg get(MOPT_GET, 0x1100, {{"Device.T", {{"Name", "x"}}}});
  cal_getValue(get.get());
  cal_setValue(nullptr);

  std::vector<calsim::Request> log = calsim::requests();
  ASSERT_EQ(log.size(), 3u);
  const calsim::Request &r = log[0];
  EXPECT_EQ(std::make_tuple(r.entry, r.hasMessage, r.mainOper, r.listFlags, r.owner, r.init,
                            r.reserved, r.hasList),
            std::make_tuple("setToDb", true, 2u, 4u, 4u, 1u, 7u, true));
  ASSERT_EQ(r.objects.size(), 2u);
  EXPECT_EQ(r.objects[0].name, "Device.A.");  // as sent, before any answer
  EXPECT_EQ(r.objects[0].objOper, static_cast<uint32_t>(OBJOPT_MODIFY));
  EXPECT_EQ(r.objects[0].params, (simtest::Params{{"X", "5"}, {"Y", ""}}));
  EXPECT_EQ(r.objects[1].name, "Device.T.");
  EXPECT_EQ(r.objects[1].objOper, static_cast<uint32_t>(OBJOPT_ADD));

  EXPECT_EQ(log[1].entry, "get");
  EXPECT_EQ(log[1].listFlags, 0x1100u);
  EXPECT_EQ(log[1].objects[0].params, (simtest::Params{{"Name", "x"}}));
  EXPECT_EQ(log[2].entry, "set");
  EXPECT_FALSE(log[2].hasMessage);

  calsim::clearRequests();
  EXPECT_TRUE(calsim::requests().empty());
}

TEST_F(Emulator, LastErrorBelongsToTheCallingThread) {
  Msg bad(MOPT_GET, 0x1004, {{"Device.Nope", {}}});
  ASSERT_EQ(cal_getValue(bad.get()), -202);
  std::string other = "unset";
  std::thread([&] {
    Msg good(MOPT_GET, 0x1004, {{"Device.A", {}}});
    cal_getValue(good.get());
    other = calsim_lastError();
  }).join();
  EXPECT_EQ(other, "");
  EXPECT_STREQ(calsim_lastError(), "no object at Device.Nope");
}

// Writers set X and Y of their own object to one number per message while
// readers check that no answer ever mixes two messages; adders and deleters
// grow and shrink a table. Every message is whole or absent.
TEST_F(Emulator, ConcurrentRequestsSeeWholeMessages) {
  std::string error;
  std::string model;
  for (int i = 1; i <= 4; ++i) {
    model += "[Device.W." + std::to_string(i) + "]\nX = 0\nY = 0\n";
  }
  model += "[Device.T]\n";
  ASSERT_TRUE(calsim::loadModelString(model, "m", &error)) << error;
  constexpr int kRounds = 300;
  std::atomic<int> failures{0};
  std::atomic<bool> writing{true};
  std::vector<std::thread> threads;

  for (int w = 1; w <= 4; ++w) {
    threads.emplace_back([&, w] {
      std::string path = "Device.W." + std::to_string(w);
      for (int k = 1; k <= kRounds; ++k) {
        std::string v = std::to_string(k);
        Msg msg(MOPT_SET, SOPT_OBJVALUE, {{path, {{"X", v}, {"Y", v}}, OBJOPT_MODIFY}});
        if ((k % 2 ? cal_setValue(msg.get()) : cal_setValueToDb(msg.get())) != 0) ++failures;
      }
    });
  }
  threads.emplace_back([&] {
    for (int k = 0; k < kRounds; ++k) {
      Msg add(MOPT_SET, SOPT_OBJVALUE, {{"Device.T", {{"N", "x"}}, OBJOPT_ADD}});
      if (cal_setValueToDb(add.get()) != 0) ++failures;
      std::string added = HELP_OBJ_OF(add.head()->xOlist.next)->sObjName;
      Msg del(MOPT_SET, SOPT_OBJVALUE, {{added, {}, OBJOPT_DEL}});
      if (cal_setValueToDb(del.get()) != 0) ++failures;
    }
  });
  const std::regex kWritten(R"(Device\.W\.\d\{X=(\d+),Y=(\d+)\})");
  std::vector<std::thread> readers;
  for (int r = 0; r < 2; ++r) {
    readers.emplace_back([&] {
      while (writing) {
        Msg msg(MOPT_GET, 0x1004, {{"Device.W", {}}, {"Device.T", {}}});
        if (cal_getValue(msg.get()) != 0) ++failures;
        std::string answer = msg.dump();
        int objects = 0;
        for (std::sregex_iterator it(answer.begin(), answer.end(), kWritten), end; it != end;
             ++it) {
          ++objects;
          if ((*it)[1] != (*it)[2]) ++failures;
        }
        if (objects != 4 || answer.find("Device.T.") != answer.rfind("Device.T.")) ++failures;
      }
    });
  }
  for (std::thread &t : threads) t.join();
  writing = false;
  for (std::thread &t : readers) t.join();

  EXPECT_EQ(failures.load(), 0);
  for (int w = 1; w <= 4; ++w) {
    EXPECT_EQ(calsim::value("Device.W." + std::to_string(w), "X"), std::to_string(kRounds));
  }
  EXPECT_EQ(calsim::journal().size(), 4u * kRounds / 2);
  Msg left(MOPT_GET, 0x1004, {{"Device.T.", {}}});
  ASSERT_EQ(cal_getValue(left.get()), 0);
  EXPECT_EQ(left.dump(), "Device.T{}");
}

}  // namespace

// What the transcripts do not say: lists of other kinds, the request log's
// header words, the test interface's values, and threads.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <regex>
#include <thread>

#include "sim_msg.h"

namespace {

using simtest::Msg;

void load(const std::string &text) {
  calsim::reset();
  std::string error;
  ASSERT_TRUE(calsim::loadModelString(text, "m", &error)) << error;
}

// Only value lists are served; every request is logged as it was sent,
// before any answer.
TEST(Emulator, OtherListsAreRefusedAndEveryRequestIsLogged) {
  load("[Device.A]\nX = 1\nY = 2\n[Device.T]\n");
  Msg set(MOPT_SET, SOPT_OBJVALUE, "Device.A.{X=5,Y=} add:Device.T.");
  set.get()->unOwner = 4;
  set.get()->unReserved = 7;
  ASSERT_EQ(cal_setValueToDb(set.get()), 0);
  EXPECT_EQ(calsim::value("Device.A", "X"), "5");
  EXPECT_EQ(calsim::value("Device.A", "Z"), std::nullopt);
  MsgHeader *attr = simtest::newMessage(SOPT_OBJATTR);
  attr->unMainOper = MOPT_GET;
  help_addObjAttrList(static_cast<ObjAttrList *>(attr->pObjList), "Device.A.", 0, 0);
  EXPECT_EQ(cal_getValue(attr), -1);
  EXPECT_STREQ(calsim_lastError(),
               "only value lists are served; list flags 0x8 select attribute nodes");
  help_delMsg(attr, 0);
  MsgHeader noList{MOPT_GET, SOPT_OBJVALUE, 0, 0, 0, nullptr};
  EXPECT_EQ(cal_getValue(&noList), -1);
  EXPECT_STREQ(calsim_lastError(), "the message has no object list");
  EXPECT_EQ(cal_setValue(nullptr), -1);
  EXPECT_STREQ(calsim_lastError(), "no message");
  EXPECT_EQ(simtest::describe(calsim::requests()),
            "setToDb main=2 flags=0x4 owner=4 init=1 reserved=7 4:Device.A.{X=5,Y=} 1:Device.T.{}\n"
            "get main=1 flags=0x8 owner=0 init=0 reserved=0\n"
            "get main=1 flags=0x4 owner=0 init=0 reserved=0 (no list)\n"
            "set (no message)\n");
  calsim::clearRequests();
  EXPECT_TRUE(calsim::requests().empty());
}

TEST(Emulator, LastErrorBelongsToTheCallingThread) {
  load("[Device.A]\n");
  Msg bad(MOPT_GET, 0x1004, "Device.Nope");
  ASSERT_EQ(cal_getValue(bad.get()), -202);
  std::thread([] {
    Msg good(MOPT_GET, 0x1004, "Device.A");
    EXPECT_EQ(cal_getValue(good.get()), 0);
    EXPECT_STREQ(calsim_lastError(), "");
  }).join();
  EXPECT_STREQ(calsim_lastError(), "no object at Device.Nope");
}

// Writers set X and Y of their own object to one number per message while
// readers check that no answer ever mixes two messages; another thread adds
// and deletes an instance. Every message is whole or absent.
TEST(Emulator, ConcurrentRequestsSeeWholeMessages) {
  std::string model;
  for (int i = 1; i <= 4; ++i) model += "[Device.W." + std::to_string(i) + "]\nX = 0\nY = 0\n";
  load(model + "[Device.T]\n");
  constexpr int kRounds = 300;
  std::atomic<int> failures{0};
  std::atomic<bool> writing{true};
  auto send = [&](int (*entry)(MsgHeader *), const std::string &objects) {
    bool get = entry == cal_getValue;
    Msg msg(get ? MOPT_GET : MOPT_SET, get ? 0x1004 : SOPT_OBJVALUE, objects);
    if (entry(msg.get()) != 0) ++failures;
    return msg.dump();
  };
  std::vector<std::thread> threads, readers;
  for (int w = 1; w <= 4; ++w) {
    threads.emplace_back([&, w] {
      for (int k = 1; k <= kRounds; ++k) {
        std::string v = std::to_string(k);
        send(k % 2 ? cal_setValue : cal_setValueToDb,
             "Device.W." + std::to_string(w) + "{X=" + v + ",Y=" + v + "}");
      }
    });
  }
  threads.emplace_back([&] {
    for (int k = 0; k < kRounds; ++k) {
      send(cal_setValueToDb, "add:Device.T{N=x}");  // Device.T.1, as none is left
      send(cal_setValueToDb, "del:Device.T.1");
    }
  });
  const std::regex kWritten(R"(Device\.W\.\d\{X=(\d+),Y=(\d+)\})");
  for (int r = 0; r < 2; ++r) {
    readers.emplace_back([&] {
      while (writing) {
        std::string answer = send(cal_getValue, "Device.W Device.T");
        int objects = 0;
        for (std::sregex_iterator it(answer.begin(), answer.end(), kWritten), end; it != end;
             ++it, ++objects) {
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
    EXPECT_EQ(calsim::value("Device.W." + std::to_string(w) + ".", "X"), std::to_string(kRounds));
  }
  EXPECT_EQ(calsim::journal().size(), 4u * kRounds / 2);
  EXPECT_EQ(send(cal_getValue, "Device.T."), "Device.T{}\n");
}

std::string fileText(const char *path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

// Without a named model the bundled sample is served, and a set never
// writes it: the change lives in this process only.
TEST(Emulator, TheBundledSampleIsServedReadOnly) {
  calsim::reset();
  unsetenv("CALTOFAL_MODEL");
  const std::string before = fileText(SAMPLE_MODEL);
  Msg set(MOPT_SET, SOPT_OBJVALUE, "Device.DeviceInfo.{FriendlyName=changed here}");
  ASSERT_EQ(cal_setValue(set.get()), 0) << calsim_lastError();
  EXPECT_EQ(calsim::value("Device.DeviceInfo", "FriendlyName"), "changed here");
  EXPECT_EQ(calsim::journal(),
            std::vector<std::string>{"set Device.DeviceInfo FriendlyName=changed here"});
  EXPECT_EQ(fileText(SAMPLE_MODEL), before);
  EXPECT_FALSE(std::ifstream(std::string(SAMPLE_MODEL) + ".journal").good());
  calsim::reset();
}

// Only a regular file of at most 64 MiB is a model: a FIFO is refused at once
// (never waited on, so no request hangs behind it), a device is not read
// until memory runs out, and an oversized file is refused by its size.
TEST(Emulator, ModelFilesMustBeRegularAndBounded) {
  char dir[] = "/tmp/calsim-limits-XXXXXX";
  ASSERT_NE(mkdtemp(dir), nullptr);
  const std::string fifo = std::string(dir) + "/fifo.model";
  const std::string big = std::string(dir) + "/big.model";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  {
    std::ofstream out(big);
    out << "[Device.DeviceInfo]\nModelName = big\n";
  }
  ASSERT_EQ(truncate(big.c_str(), (std::int64_t{64} << 20) + 1), 0);  // sparse
  const struct {
    std::string path;
    std::string error;
  } cases[] = {
      {fifo, fifo + ": not a regular file"},
      {"/dev/zero", "/dev/zero: not a regular file"},
      {dir, std::string(dir) + ": not a regular file"},
      {big, big + ": larger than 64 MiB"},
  };
  for (const auto &c : cases) {
    calsim::reset();
    std::string error;
    EXPECT_FALSE(calsim::loadModelFile(c.path, &error)) << c.path;
    EXPECT_EQ(error, c.error);
    Msg get(MOPT_GET, SOPT_OBJVALUE, "Device.DeviceInfo.");
    EXPECT_NE(cal_getValue(get.get()), 0);
    EXPECT_EQ(std::string(calsim_lastError()), c.error);
  }
  calsim::reset();
  unlink(fifo.c_str());
  unlink(big.c_str());
  rmdir(dir);
}

}  // namespace

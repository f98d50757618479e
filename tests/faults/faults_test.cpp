// Every Wi-Fi and mesh call that reaches the configuration layer, on the
// sample gateway: request i fails (each i the call makes, with each failure
// code), then allocation i of the helper library fails (each i). No crash,
// no message left, nothing written beside the caller's record, and a result
// the call documents: its failure result or what it gives without the fault.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "calsim.h"
#include "caltofal.h"
#include "emulator_test.h"
#include "fake_os.h"
#include "frame/message.h"
#include "help_sim.h"

namespace {

// A record with guard bytes on both sides.
template <typename Record>
struct Guarded {
  unsigned char before[64];
  Record record;
  unsigned char after[64];
  Guarded() {
    std::memset(this, 0xA5, sizeof *this);
    std::memset(&record, 0, sizeof record);
  }
  bool intact() const {
    for (std::size_t i = 0; i < sizeof before; ++i) {
      if (before[i] != 0xA5 || after[i] != 0xA5) return false;
    }
    return true;
  }
};

struct Outcome {
  int result;
  bool intact;
};

// What a call may give under a fault: its failure result, or its answer
// without the fault (a fault in a request it does not depend on).
enum class Allowed { FailureOrAnswer, AtMostAnswer };

struct FaultCase {
  const char *name;
  std::function<Outcome()> run;
  int failure;
  Allowed allowed;
};

template <typename Record, typename Call>
std::function<Outcome()> withRecord(Call call) {
  return [call] {
    auto g = std::make_unique<Guarded<Record>>();
    const int rc = call(&g->record);
    return Outcome{rc, g->intact()};
  };
}

std::function<Outcome()> plain(std::function<int()> call) {
  return [call] { return Outcome{call(), true}; };
}

// A Wi-Fi snapshot of one SSID or radio into a guarded table.
FaultCase snapshot(const char *name, int (*getter)(int, WifiParamTable *), int index) {
  return {name, withRecord<WifiParamTable>([getter, index](WifiParamTable *t) {
            return getter(index, t);
          }),
          -1, Allowed::FailureOrAnswer};
}

const std::vector<FaultCase> &cases() {
  static const std::vector<FaultCase> all = {
      snapshot("GetSsIdInfoFromFapiToBuff(1)", GetSsIdInfoFromFapiToBuff, 1),
      snapshot("GetSsIdInfoFromFapiToBuff(9)", GetSsIdInfoFromFapiToBuff, 9),
      snapshot("GetWireInfoFromFapiToBuff(1)", GetWireInfoFromFapiToBuff, 1),
      snapshot("GetWireInfoFromFapiToBuff(2)", GetWireInfoFromFapiToBuff, 2),
      {"faltocal_fromDB", withRecord<WifiParamTable>([](WifiParamTable *changes) {
         SetParam(changes, "Device.WiFi.SSID.1", "SSID", "Garden");
         SetParam(changes, "Device.WiFi.Radio.1", "Channel", "6");
         caltofal::Message msg;
         return faltocal_fromDB(msg.get(), changes, 0, 0);
       }),
       -1, Allowed::FailureOrAnswer},
      {"GetAssociatedDeviceNumberOfEntries(1)",
       plain([] { return GetAssociatedDeviceNumberOfEntries(1); }), 0, Allowed::AtMostAnswer},
      {"GetChannelList(wlan2)", withRecord<WifiChannelList>([](WifiChannelList *list) {
         return GetChannelList("wlan2", 2, list);
       }),
       0, Allowed::AtMostAnswer},
      {"GetEPEnable", withRecord<char[128]>([](char(*name)[128]) { return GetEPEnable(*name); }), 0,
       Allowed::FailureOrAnswer},
      {"ZINTU_meshgrove_check_is_enabled", plain(ZINTU_meshgrove_check_is_enabled), 0,
       Allowed::FailureOrAnswer},
      {"ZINTU_meshgrove_set_enable_value(1)",
       plain([] { return ZINTU_meshgrove_set_enable_value(1); }), -1, Allowed::FailureOrAnswer},
      {"ZINTU_meshgrove_sync_to_slave", plain(ZINTU_meshgrove_sync_to_slave), 0,
       Allowed::FailureOrAnswer},
  };
  return all;
}

bool allowed(const FaultCase &c, int rc, int answer) {
  if (c.allowed == Allowed::AtMostAnswer) return rc >= c.failure && rc <= answer;
  return rc == c.failure || rc == answer;
}

class Faults : public EmulatorTest {
 protected:
  void SetUp() override {
    EmulatorTest::SetUp();
    std::ifstream in(SAMPLE_MODEL);
    model(std::string(std::istreambuf_iterator<char>(in), {}));
    fakeos::setCapture(false);
  }
  // Runs the case and checks what holds under any fault.
  int run(const FaultCase &c, const std::string &fault) {
    const long live = help_liveAllocations();
    const Outcome out = c.run();
    EXPECT_EQ(help_liveAllocations(), live) << c.name << ", " << fault << ": a message was left";
    EXPECT_TRUE(out.intact) << c.name << ", " << fault << ": written beside the record";
    return out.result;
  }
};

TEST_F(Faults, EachRequestFailingInTurn) {
  for (const FaultCase &c : cases()) {
    calsim::clearRequests();
    const int answer = run(c, "no fault");
    const int requests = static_cast<int>(calsim::requests().size());
    EXPECT_GT(requests, 0) << c.name << " reaches the configuration layer";
    for (int code : {-1, -5, -202, -208}) {
      for (int i = 1; i <= requests; ++i) {
        const std::string fault =
            "request " + std::to_string(i) + " fails with " + std::to_string(code);
        calsim::injectFailure(code, 1, i - 1);
        const int rc = run(c, fault);
        calsim::injectFailure(0, 0);
        EXPECT_TRUE(allowed(c, rc, answer)) << c.name << ", " << fault << ": " << rc;
      }
    }
  }
}

TEST_F(Faults, EachAllocationFailingInTurn) {
  for (const FaultCase &c : cases()) {
    const long before = help_allocationCount();
    const int answer = run(c, "no fault");
    const long allocations = help_allocationCount() - before;
    EXPECT_GT(allocations, 0) << c.name;
    for (long i = 1; i <= allocations; ++i) {
      const std::string fault = "allocation " + std::to_string(i) + " fails";
      help_failAllocationAt(i);
      const int rc = run(c, fault);
      help_failAllocationAt(0);
      EXPECT_TRUE(allowed(c, rc, answer)) << c.name << ", " << fault << ": " << rc;
    }
  }
}

}  // namespace

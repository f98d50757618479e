// A test against the emulator and the fake OS seam, each fresh; a model of
// the test's own; no message may be left behind.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "calsim.h"
#include "fake_os.h"
#include "help_sim.h"

class EmulatorTest : public ::testing::Test {
 protected:
  void SetUp() override {
    calsim::reset();
    fakeos::reset();
    live_ = help_liveAllocations();
  }
  void TearDown() override {
    EXPECT_EQ(help_liveAllocations(), live_) << "a message was left behind";
    calsim::reset();
  }
  void model(const std::string &text) {
    std::string error;
    ASSERT_TRUE(calsim::loadModelString(text, "test", &error)) << error;
  }

 private:
  long live_ = 0;
};

// Looking values up in an answer.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "caltofal.h"
#include "fake_os.h"
#include "frame/message.h"
#include "help_objlist.h"

namespace {

using caltofal::Message;

// An answer built by hand: two objects with parameters.
class LookupTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fakeos::reset();
    HELP_CREATE_OBJ(msg.get(), 1, 4, 2);
    auto *head = static_cast<ObjList *>(msg.get()->pObjList);
    first = help_addObjList(head, "Device.Hosts.Host.1", 0, 0, 0, 0);
    help_addParamList(first, "IPAddress", 0, "10.0.0.1", 0);
    second = help_addObjList(head, "Device.Hosts.Host.2", 0, 0, 0, 0);
    help_addParamList(second, longName('a').c_str(), 0, "first-long", 0);
    help_addParamList(second, "MACAddress", 0, std::string(300, 'm').c_str(), 0);
  }
  static std::string longName(char last) { return std::string(200, 'N') + last; }

  Message msg;
  ObjList *first = nullptr;
  ObjList *second = nullptr;
};

TEST_F(LookupTest, ParamValueGetSearchesMatchingObjectsInOrder) {
  char buf[256];
  char *out = buf;
  EXPECT_EQ(caltofal_paramValue_get(msg.get()->pObjList, "Hosts.Host", "IPAddress", &out), 0);
  EXPECT_STREQ(buf, "10.0.0.1");
  // The first matching object lacks the parameter: the search goes on.
  EXPECT_EQ(caltofal_paramValue_get(msg.get()->pObjList, "Host.", "MACAddress", &out), 0);
  EXPECT_EQ(std::string(buf, 128), std::string(128, 'm'));  // 128 bytes copied
  std::strcpy(buf, "untouched");
  EXPECT_EQ(caltofal_paramValue_get(msg.get()->pObjList, "Host.3", "IPAddress", &out), -1);
  EXPECT_EQ(caltofal_paramValue_get(msg.get()->pObjList, "host.", "IPAddress", &out), -1);
  EXPECT_STREQ(buf, "untouched");
  EXPECT_EQ(fakeos::console(), "");
}

TEST_F(LookupTest, NamesAgreeingOver128CharactersAreEqualForParamValueGetOnly) {
  char buf[256];
  char *out = buf;
  EXPECT_EQ(caltofal_paramValue_get(msg.get()->pObjList, "Host.2", longName('b').c_str(), &out),
            0);
  EXPECT_STREQ(buf, "first-long");
  const char *value = nullptr;
  EXPECT_EQ(zintu_GetParamFromObjUnit(second, longName('b').c_str(), &value), -1);
  EXPECT_EQ(zintu_GetParamFromObjUnit(second, longName('a').c_str(), &value), 0);
  EXPECT_STREQ(value, "first-long");
}

TEST_F(LookupTest, GetParamFromObjUnitPointsIntoTheMessageAndTracesMisses) {
  const char *value = nullptr;
  EXPECT_EQ(zintu_GetParamFromObjUnit(first, "IPAddress", &value), 0);
  EXPECT_STREQ(value, "10.0.0.1");
  EXPECT_EQ(value, caltofal::paramsOf(first).begin().operator*()->sParamValue);
  const char *kept = "kept";
  value = kept;
  EXPECT_EQ(zintu_GetParamFromObjUnit(first, "Missing", &value), -1);
  EXPECT_EQ(value, kept);
  EXPECT_EQ(zintu_GetParamFromObjUnit(nullptr, "x", &value), -1);
  EXPECT_EQ(zintu_GetParamFromObjUnit(first, "", &value), -1);
  EXPECT_EQ(zintu_GetParamFromObjUnit(first, "x", nullptr), -1);
  EXPECT_EQ(fakeos::console(),
            "[ZINTU VOLA FAL] (FaltoCal:1357, zintu_GetParamFromObjUnit) Can't find "
            "Param(Missing) in Obj\n"
            "[ZINTU VOLA FAL] (FaltoCal:1347, zintu_GetParamFromObjUnit) invalid parameter\n"
            "[ZINTU VOLA FAL] (FaltoCal:1347, zintu_GetParamFromObjUnit) invalid parameter\n"
            "[ZINTU VOLA FAL] (FaltoCal:1347, zintu_GetParamFromObjUnit) invalid parameter\n");
}

TEST(InsertDot, AppendsOnlyWhenMissing) {
  struct {
    const char *in;
    const char *out;
  } cases[] = {{"Device.IP", "Device.IP."}, {"Device.IP.", "Device.IP."}, {"", ""}, {"x", "x."}};
  for (const auto &c : cases) {
    char buf[32];
    std::strcpy(buf, c.in);
    zintu_InsertDotEndofObj(buf);
    EXPECT_STREQ(buf, c.out);
  }
  zintu_InsertDotEndofObj(nullptr);
}

}  // namespace

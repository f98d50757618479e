// Gets: plain, named, leaf, filtered and defaults, and the refusals.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim_msg.h"

namespace {

using simtest::Msg;
using simtest::names;
using simtest::ReqObj;

// Interface.1's Stats section comes late in the text: descendants follow
// store order, not path order.
const char kModel[] =
    "[Device.IP]\n"
    "IPv4Enable = true\n"
    "[Device.IP.Interface.1]\n"
    "Enable = true\n"
    "Name = br-lan\n"
    "Alias = cpe-LAN\n"
    "[Device.IP.Interface.1.IPv4Address.1]\n"
    "IPAddress = 192.168.1.1\n"
    "[Device.IP.Interface.2]\n"
    "Enable = false\n"
    "Name = pppoe-wan\n"
    "Alias = cpe-WAN\n"
    "[Device.IP.Interface.10]\n"
    "Name = ppp-backup\n"
    "Alias = cpe-WAN2\n"
    "[Device.IP.Interface.1.Stats]\n"
    "BytesSent = 5\n"
    "[Device.IP.Interface.2.IPv4Address.1]\n"
    "IPAddress = 10.0.0.2\n"
    "[Device.IP.InterfaceNumberOfEntries]\n"
    "[Device.DSL.Line.1]\n"
    "Status = Up\n";

const char kIf1[] =
    "Device.IP.Interface.1{Enable=true,Name=br-lan,Alias=cpe-LAN} "
    "Device.IP.Interface.1.IPv4Address.1{IPAddress=192.168.1.1} "
    "Device.IP.Interface.1.Stats{BytesSent=5}";
const char kIf2[] =
    "Device.IP.Interface.2{Enable=false,Name=pppoe-wan,Alias=cpe-WAN} "
    "Device.IP.Interface.2.IPv4Address.1{IPAddress=10.0.0.2}";
const char kIf10[] = "Device.IP.Interface.10{Name=ppp-backup,Alias=cpe-WAN2}";

class Get : public ::testing::Test {
 protected:
  void SetUp() override {
    calsim::reset();
    std::string error;
    ASSERT_TRUE(calsim::loadModelString(kModel, "get.model", &error)) << error;
  }
  void TearDown() override { calsim::reset(); }
};

struct GetCase {
  const char *what;
  uint32_t flags;
  std::vector<ReqObj> objects;
  int rc;
  std::string answer;  // the list afterwards
};

TEST_F(Get, AnswersByKind) {
  const std::string table =
      "Device.IP.Interface.1{Enable=true,Name=br-lan,Alias=cpe-LAN} "
      "Device.IP.Interface.1.IPv4Address.1{IPAddress=192.168.1.1} "
      "Device.IP.Interface.2{Enable=false,Name=pppoe-wan,Alias=cpe-WAN} "
      "Device.IP.Interface.10{Name=ppp-backup,Alias=cpe-WAN2} "
      "Device.IP.Interface.1.Stats{BytesSent=5} "
      "Device.IP.Interface.2.IPv4Address.1{IPAddress=10.0.0.2}";
  const GetCase cases[] = {
      {"subtree, object first then store order", 0x1004, {{"Device.IP.Interface.1.", {}}}, 0, kIf1},
      {"path without dot", 0x1004, {{"Device.IP.Interface.1", {}}}, 0, kIf1},
      {"table without its own section", 0x1004, {{"Device.IP.Interface.", {}}}, 0, table},
      {"0x100 alone is a plain get", 0x100, {{"Device.IP.Interface.2", {}}}, 0, kIf2},
      {"plain 4", SOPT_OBJVALUE, {{"Device.IP.Interface.10.", {}}}, 0, kIf10},
      {"named, in the order asked, objects without them left out",
       0x1004,
       {{"Device.IP.Interface.", names({"IPAddress", "Name", "Nope"})}},
       0,
       "Device.IP.Interface.1{Name=br-lan} "
       "Device.IP.Interface.1.IPv4Address.1{IPAddress=192.168.1.1} "
       "Device.IP.Interface.2{Name=pppoe-wan} Device.IP.Interface.10{Name=ppp-backup} "
       "Device.IP.Interface.2.IPv4Address.1{IPAddress=10.0.0.2}"},
      {"named parameters found nowhere",
       0x1004,
       {{"Device.IP.Interface.1", names({"Nope"})}},
       0,
       ""},
      {"leaf: the object alone",
       0x1100,
       {{"Device.IP.Interface.1.", {}}},
       0,
       "Device.IP.Interface.1{Enable=true,Name=br-lan,Alias=cpe-LAN}"},
      {"leaf with names",
       0x1100,
       {{"Device.IP.Interface.2", names({"Alias", "Nope"})}},
       0,
       "Device.IP.Interface.2{Alias=cpe-WAN}"},
      {"leaf: an object without parameters",
       0x1100,
       {{"Device.IP.InterfaceNumberOfEntries", {}}},
       0,
       "Device.IP.InterfaceNumberOfEntries{}"},
      {"leaf: descendants do not answer",
       0x1100,
       {{"Device.IP.Interface.", {}}},
       -202,
       "Device.IP.Interface.{}"},
      {"filter: strncmp prefix over the filter's length",
       0x1100,
       {{"Device.IP.Interface", {{"Alias", "cpe-WAN"}}}},
       0,
       std::string(kIf2) + " " + kIf10},
      {"filter with 0x100 alone",
       0x100,
       {{"Device.IP.Interface.", {{"Name", "ppp"}}}},
       0,
       std::string(kIf2) + " " + kIf10},
      {"filter: every parameter must match",
       0x1100,
       {{"Device.IP.Interface", {{"Alias", "cpe-WAN"}, {"Name", "pppoe"}}}},
       0,
       kIf2},
      {"filter is case-sensitive",
       0x1100,
       {{"Device.IP.Interface", {{"Alias", "CPE"}}}},
       -208,
       "Device.IP.Interface{Alias=CPE}"},
      {"filter: instances lacking the parameter",
       0x1100,
       {{"Device.IP.Interface", {{"IPAddress", "1"}}}},
       -208,
       "Device.IP.Interface{IPAddress=1}"},
      {"filter on an absent table",
       0x1100,
       {{"Device.Nope", {{"A", "1"}}}},
       -208,
       "Device.Nope{A=1}"},
      {"several objects, absent skipped",
       0x1004,
       {{"Device.Nope.", {}}, {"Device.IP.Interface.10.", {}}, {"Device.DSL.Line.1", {}}},
       0,
       std::string(kIf10) + " Device.DSL.Line.1{Status=Up}"},
      {"all absent",
       0x1004,
       {{"Device.Nope.", {}}, {"Device.IP.Interface.3", {}}},
       -202,
       "Device.Nope.{} Device.IP.Interface.3{}"},
      {"paths are not normalised", 0x1004, {{"Device..IP", {}}}, -202, "Device..IP{}"},
      {"only one trailing dot is dropped",
       0x1004,
       {{"Device.IP.Interface.1..", {}}},
       -202,
       "Device.IP.Interface.1..{}"},
      {"a path prefix is not a parent",
       0x1004,
       {{"Device.IP.Inter", {}}},
       -202,
       "Device.IP.Inter{}"},
      {"defaults get before any set", 0x44, {{"Device.IP.Interface.", {}}}, 0, table},
  };
  for (const GetCase &c : cases) {
    SCOPED_TRACE(c.what);
    Msg msg(MOPT_GET, c.flags, c.objects);
    EXPECT_EQ(cal_getValue(msg.get()), c.rc) << calsim_lastError();
    EXPECT_EQ(msg.dump(), c.answer);
    EXPECT_EQ(std::string(calsim_lastError()).empty(), c.rc == 0);
  }
}

TEST_F(Get, ErrorsSayWhatWasMissing) {
  Msg absent(MOPT_GET, 0x1004, {{"Device.Foo.", {}}});
  EXPECT_EQ(cal_getValue(absent.get()), -202);
  EXPECT_STREQ(calsim_lastError(), "no object at Device.Foo");
  Msg filter(MOPT_GET, 0x1100, {{"Device.IP.Interface.", {{"Alias", "x"}}}});
  EXPECT_EQ(cal_getValue(filter.get()), -208);
  EXPECT_STREQ(calsim_lastError(), "no instance matches the filter under Device.IP.Interface");
}

TEST_F(Get, DefaultsKeepTheLoadedValues) {
  Msg set(MOPT_SET, SOPT_OBJVALUE, {{"Device.IP.Interface.2", {{"Name", "wan0"}}, OBJOPT_MODIFY}});
  ASSERT_EQ(cal_setValue(set.get()), 0);
  Msg del(MOPT_SET, SOPT_OBJVALUE, {{"Device.IP.Interface.10.", {}, OBJOPT_DEL}});
  ASSERT_EQ(cal_setValue(del.get()), 0);

  Msg live(MOPT_GET, 0x1004, {{"Device.IP.Interface.", names({"Name"})}});
  ASSERT_EQ(cal_getValue(live.get()), 0);
  EXPECT_EQ(live.dump(), "Device.IP.Interface.1{Name=br-lan} Device.IP.Interface.2{Name=wan0}");
  Msg defaults(MOPT_GET, 0x44, {{"Device.IP.Interface.", names({"Name"})}});
  ASSERT_EQ(cal_getValue(defaults.get()), 0);
  EXPECT_EQ(defaults.dump(),
            "Device.IP.Interface.1{Name=br-lan} Device.IP.Interface.2{Name=pppoe-wan} "
            "Device.IP.Interface.10{Name=ppp-backup}");
}

TEST_F(Get, RefusesWhatItCannotServe) {
  Msg wrongMain(MOPT_SET, 0x1004, {{"Device.IP", {}}});
  EXPECT_EQ(cal_getValue(wrongMain.get()), -1);
  EXPECT_STREQ(calsim_lastError(), "a get needs main operation 1, not 2");
  EXPECT_EQ(wrongMain.dump(), "Device.IP{}");

  MsgHeader *attr = simtest::newMessage(SOPT_OBJATTR);
  attr->unMainOper = MOPT_GET;
  help_addObjAttrList(static_cast<ObjAttrList *>(attr->pObjList), "Device.IP.", 0, 0);
  EXPECT_EQ(cal_getValue(attr), -1);
  EXPECT_STREQ(calsim_lastError(),
               "only value lists are served; list flags 0x8 select attribute nodes");
  help_delMsg(attr, 0);

  Msg setAsGet(MOPT_GET, SOPT_OBJVALUE, {{"Device.IP", {{"IPv4Enable", "x"}}, OBJOPT_MODIFY}});
  EXPECT_EQ(cal_setValue(setAsGet.get()), -1);
  EXPECT_STREQ(calsim_lastError(), "a set needs main operation 2, not 1");
  EXPECT_EQ(cal_setValueToDb(setAsGet.get()), -1);
  EXPECT_EQ(calsim::value("Device.IP", "IPv4Enable"), "true");

  MsgHeader noList{};
  noList.unMainOper = MOPT_GET;
  noList.unListFlags = SOPT_OBJVALUE;
  EXPECT_EQ(cal_getValue(&noList), -1);
  EXPECT_EQ(cal_getValue(nullptr), -1);
  EXPECT_STREQ(calsim_lastError(), "no message");
  Msg none(MOPT_GET, 0x1004);
  EXPECT_EQ(cal_getValue(none.get()), -1);
  EXPECT_STREQ(calsim_lastError(), "the request names no object");
}

}  // namespace

// Sets: modify, add, del, their refusals, all-or-nothing and the journal.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim_msg.h"

namespace {

using simtest::Msg;
using simtest::ReqObj;

const char kModel[] =
    "[Device.IP.Interface.1]\n"
    "Enable = true\n"
    "Name = br-lan\n"
    "[Device.IP.Interface.1.Stats]\n"
    "BytesSent = 5\n"
    "[Device.IP.Interface.2]\n"
    "Name = wan\n"
    "[Device.IP.Interface.20]\n"
    "Name = spare\n"
    "[Device.IP.Interface.20.IPv4Address.1]\n"
    "IPAddress = 10.1.1.1\n"
    "[Device.NAT]\n"
    "PortMappingNumberOfEntries = 0\n";

class Set : public ::testing::Test {
 protected:
  void SetUp() override {
    calsim::reset();
    std::string error;
    ASSERT_TRUE(calsim::loadModelString(kModel, "set.model", &error)) << error;
  }
  void TearDown() override { calsim::reset(); }

  static std::string get(const char *path) {
    Msg msg(MOPT_GET, 0x1004, {{path, {}}});
    int rc = cal_getValue(msg.get());
    return rc == 0 ? msg.dump() : std::to_string(rc);
  }
};

TEST_F(Set, ModifyChangesOnlyTheNamedValues) {
  Msg msg(MOPT_SET, SOPT_OBJVALUE,
          {{"Device.IP.Interface.1.", {{"Name", "lan0"}, {"Enable", "false"}}, OBJOPT_MODIFY}});
  ASSERT_EQ(cal_setValue(msg.get()), 0) << calsim_lastError();
  EXPECT_STREQ(calsim_lastError(), "");
  EXPECT_EQ(msg.dump(), "Device.IP.Interface.1.{Name=lan0,Enable=false}");
  EXPECT_EQ(
      get("Device.IP.Interface.1"),
      "Device.IP.Interface.1{Enable=false,Name=lan0} Device.IP.Interface.1.Stats{BytesSent=5}");
  EXPECT_EQ(calsim::journal(),
            std::vector<std::string>{"set Device.IP.Interface.1 Name=lan0 Enable=false"});
}

TEST_F(Set, AddTakesTheNextNumberAndNamesItInTheAnswer) {
  Msg msg(MOPT_SET, SOPT_OBJVALUE);
  ObjList *first = msg.add({"Device.IP.Interface.", {{"Name", "x"}, {"Enable", "1"}}, OBJOPT_ADD});
  ObjList *second = msg.add({"Device.IP.Interface", {}, OBJOPT_ADD});
  ObjList *fresh = msg.add({"Device.NAT.PortMapping.", {{"Name", "a"}, {"Name", "b"}}, OBJOPT_ADD});
  ASSERT_EQ(cal_setValue(msg.get()), 0) << calsim_lastError();
  EXPECT_STREQ(first->sObjName, "Device.IP.Interface.21");
  EXPECT_STREQ(second->sObjName, "Device.IP.Interface.22");
  EXPECT_STREQ(fresh->sObjName, "Device.NAT.PortMapping.1");
  EXPECT_EQ(get("Device.IP.Interface.21"), "Device.IP.Interface.21{Name=x,Enable=1}");
  EXPECT_EQ(get("Device.IP.Interface.22"), "Device.IP.Interface.22{}");
  EXPECT_EQ(get("Device.NAT.PortMapping.1"), "Device.NAT.PortMapping.1{Name=b}");
  EXPECT_EQ(calsim::journal(), (std::vector<std::string>{
                                   "add Device.IP.Interface.21 Name=x Enable=1",
                                   "add Device.IP.Interface.22",
                                   "add Device.NAT.PortMapping.1 Name=b",
                               }));
}

TEST_F(Set, DelRemovesTheWholeSubtree) {
  Msg msg(MOPT_SET, SOPT_OBJVALUE, {{"Device.IP.Interface.20.", {}, OBJOPT_DEL}});
  ASSERT_EQ(cal_setValue(msg.get()), 0) << calsim_lastError();
  EXPECT_EQ(get("Device.IP.Interface.20"), "-202");
  EXPECT_EQ(get("Device.IP.Interface.2"), "Device.IP.Interface.2{Name=wan}");
  EXPECT_EQ(calsim::journal(), std::vector<std::string>{"del Device.IP.Interface.20"});
  // The next add takes the number after the largest one left.
  Msg add(MOPT_SET, SOPT_OBJVALUE);
  ObjList *node = add.add({"Device.IP.Interface", {}, OBJOPT_ADD});
  ASSERT_EQ(cal_setValue(add.get()), 0);
  EXPECT_STREQ(node->sObjName, "Device.IP.Interface.3");
}

struct Refusal {
  const char *what;
  std::vector<ReqObj> objects;
  int rc;
  const char *error;
};

// A refused message changes nothing, not even its valid objects.
TEST_F(Set, RefusesWholeMessages) {
  const Refusal cases[] = {
      {"absent object",
       {{"Device.IP.Interface.1", {{"Name", "x"}}, OBJOPT_MODIFY},
        {"Device.IP.Interface.7", {{"Name", "x"}}, OBJOPT_MODIFY}},
       -202,
       "no object at Device.IP.Interface.7"},
      {"absent parameter",
       {{"Device.IP.Interface.1", {{"Name", "x"}, {"Foo", "1"}}, OBJOPT_MODIFY}},
       -202,
       "Device.IP.Interface.1 has no parameter Foo"},
      {"del of an absent instance",
       {{"Device.IP.Interface", {}, OBJOPT_ADD}, {"Device.IP.Interface.9", {}, OBJOPT_DEL}},
       -202,
       "no object at Device.IP.Interface.9"},
      {"del of a table",
       {{"Device.IP.Interface.", {}, OBJOPT_DEL}},
       -1,
       "cannot delete Device.IP.Interface: not a table instance"},
      {"add to an instance",
       {{"Device.IP.Interface.1.", {}, OBJOPT_ADD}},
       -1,
       "cannot add an instance to Device.IP.Interface.1: not a table path"},
      {"add with a bad name",
       {{"Device.IP.Interface", {{"A B", "1"}}, OBJOPT_ADD}},
       -1,
       "bad parameter name 'A B' for a new instance of Device.IP.Interface"},
      {"line break in a value",
       {{"Device.IP.Interface.1", {{"Name", "a\nb"}}, OBJOPT_MODIFY}},
       -1,
       "value of Name for Device.IP.Interface.1 contains a line break"},
      {"get as a sub-operation",
       {{"Device.IP.Interface.1", {{"Name", "x"}}, OBJOPT_GET}},
       -1,
       "unsupported object operation 8 for Device.IP.Interface.1 (1 add, 2 del, 4 set)"},
      {"act",
       {{"Device.IP.Interface.1", {}, OBJOPT_ACT}},
       -1,
       "unsupported object operation 16 for Device.IP.Interface.1 (1 add, 2 del, 4 set)"},
      {"no object", {}, -1, "the request names no object"},
  };
  for (const Refusal &c : cases) {
    SCOPED_TRACE(c.what);
    Msg msg(MOPT_SET, SOPT_OBJVALUE, c.objects);
    std::string before = msg.dump();
    EXPECT_EQ(cal_setValue(msg.get()), c.rc);
    EXPECT_STREQ(calsim_lastError(), c.error);
    EXPECT_EQ(msg.dump(), before);
    EXPECT_EQ(calsim::value("Device.IP.Interface.1", "Name"), "br-lan");
    EXPECT_EQ(get("Device.IP.Interface.21"), "-202");
  }
  EXPECT_TRUE(calsim::journal().empty());
}

TEST_F(Set, ObjectsApplyInRequestOrder) {
  Msg msg(MOPT_SET, SOPT_OBJVALUE,
          {{"Device.IP.Interface.20", {}, OBJOPT_DEL},
           {"Device.IP.Interface.", {{"Name", "new"}}, OBJOPT_ADD},
           {"Device.IP.Interface.1", {{"Name", "a"}}, OBJOPT_MODIFY},
           {"Device.IP.Interface.1", {{"Name", "b"}}, OBJOPT_MODIFY}});
  ASSERT_EQ(cal_setValue(msg.get()), 0) << calsim_lastError();
  EXPECT_EQ(get("Device.IP.Interface.3"), "Device.IP.Interface.3{Name=new}");
  EXPECT_EQ(calsim::value("Device.IP.Interface.1", "Name"), "b");
  EXPECT_EQ(calsim::journal().size(), 4u);
}

TEST_F(Set, StoreOnlySetsKeepTheJournalEmpty) {
  Msg msg(MOPT_SET, SOPT_OBJVALUE,
          {{"Device.IP.Interface.2", {{"Name", "x"}}, OBJOPT_MODIFY},
           {"Device.IP.Interface", {}, OBJOPT_ADD}});
  ASSERT_EQ(cal_setValueToDb(msg.get()), 0);
  EXPECT_EQ(calsim::value("Device.IP.Interface.2", "Name"), "x");
  EXPECT_EQ(get("Device.IP.Interface.21"), "Device.IP.Interface.21{}");
  EXPECT_TRUE(calsim::journal().empty());
}

// Adds land between the table's last instance and the next object; many of
// them force the store positions to be renumbered, and the order must hold.
TEST_F(Set, ManyAddsKeepStoreOrder) {
  for (int i = 0; i < 40; ++i) {
    Msg msg(MOPT_SET, SOPT_OBJVALUE, {{"Device.IP.Interface", {}, OBJOPT_ADD}});
    ASSERT_EQ(cal_setValueToDb(msg.get()), 0);
  }
  std::string expected =
      "Device.IP.Interface.1{Enable=true,Name=br-lan} Device.IP.Interface.1.Stats{BytesSent=5} "
      "Device.IP.Interface.2{Name=wan} Device.IP.Interface.20{Name=spare} "
      "Device.IP.Interface.20.IPv4Address.1{IPAddress=10.1.1.1}";
  for (int i = 21; i <= 60; ++i) expected += " Device.IP.Interface." + std::to_string(i) + "{}";
  expected += " Device.NAT{PortMappingNumberOfEntries=0}";
  EXPECT_EQ(get("Device"), expected);
}

// Instances with large subtrees are stepped over, not missed.
TEST_F(Set, FindsInstancesPastLargeSubtrees) {
  std::string model = "[Device.T.1]\nName = na\n";
  for (int i = 1; i <= 20; ++i) model += "[Device.T.1.S." + std::to_string(i) + "]\n";
  model += "[Device.T.1-x]\n[Device.T.7]\nName = nb\n[Device.T.7.S.1]\n[Device.T.10]\nName = nc\n";
  std::string error;
  ASSERT_TRUE(calsim::loadModelString(model, "big.model", &error)) << error;
  Msg filter(MOPT_GET, 0x1100, {{"Device.T", {{"Name", "n"}}}});
  ASSERT_EQ(cal_getValue(filter.get()), 0);
  EXPECT_EQ(filter.dump().find("Device.T.1-x"), std::string::npos);
  EXPECT_NE(filter.dump().find(
                "Device.T.1.S.20{} Device.T.7{Name=nb} Device.T.7.S.1{} Device.T.10{Name=nc}"),
            std::string::npos);
  Msg named(MOPT_GET, 0x1100, {{"Device.T", {{"Name", "nb"}}}});
  ASSERT_EQ(cal_getValue(named.get()), 0);
  EXPECT_EQ(named.dump(), "Device.T.7{Name=nb} Device.T.7.S.1{}");
  Msg add(MOPT_SET, SOPT_OBJVALUE);
  ObjList *node = add.add({"Device.T", {}, OBJOPT_ADD});
  ASSERT_EQ(cal_setValue(add.get()), 0);
  EXPECT_STREQ(node->sObjName, "Device.T.11");
}

}  // namespace

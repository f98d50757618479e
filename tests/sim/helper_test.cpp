// The object-list helper: linking order, bounded texts, release by kind.

#include <gtest/gtest.h>

#include <string>

#include "help_sim.h"
#include "sim_msg.h"

namespace {

std::string dump(MsgHeader *msg) {
  std::string out;
  ObjList *obj;
  HELP_FOR_EACH_OBJ(static_cast<ObjList *>(msg->pObjList), obj) {
    out += std::string(obj->sObjName) + "(";
    ParamList *p;
    HELP_FOR_EACH_PARAM(obj, p) out += std::string(p->sParamName) + "=" + p->sParamValue + ";";
    out += ")";
  }
  return out;
}

TEST(Helper, AppendsAtTheTailWithBoundedTexts) {
  MsgHeader *msg = simtest::newMessage(SOPT_OBJVALUE);
  auto *head = static_cast<ObjList *>(msg->pObjList);
  ObjList *a = help_addObjList(head, "Device.A.", 1, 2, OBJOPT_ADD, 5);
  ObjList *b = help_addObjList(head, nullptr, 0, 0, 0, 0);
  help_addParamList(a, "X", 7, "1", 3);
  help_addParamList(a, "Y", 0, nullptr, 0);
  help_addParamList(b, nullptr, 0, "v", 0);
  EXPECT_EQ(dump(msg), "Device.A.(X=1;Y=;)(=v;)");
  EXPECT_EQ(a->unObjOper, static_cast<uint32_t>(OBJOPT_ADD));

  std::string longName(300, 'n'), longValue(2000, 'v');
  ObjList *c = help_addObjList(head, longName.c_str(), 0, 0, 0, 0);
  ParamList *p = help_addParamList(c, longName.c_str(), 0, longValue.c_str(), 0);
  EXPECT_EQ(std::string(c->sObjName), longName.substr(0, 255));
  EXPECT_EQ(std::string(p->sParamName), longName.substr(0, 255));
  EXPECT_EQ(std::string(p->sParamValue), longValue.substr(0, 1023));

  EXPECT_EQ(help_addObjList(nullptr, "Device.A.", 0, 0, 0, 0), nullptr);
  EXPECT_EQ(help_addObjAttrList(nullptr, "Device.A.", 0, 0), nullptr);
  EXPECT_EQ(help_addParamList(nullptr, "X", 0, "1", 0), nullptr);
  EXPECT_EQ(help_addParamAttrList(nullptr, "X", 0, 0, 0, 0, 0, 0, 0, 0, 0), nullptr);
  EXPECT_EQ(help_delMsg(msg, 0), 0);
}

// Every kind's nodes go back, whatever word 2 selects (ASan checks that each
// node is freed from its own start).
TEST(Helper, DelMsgReleasesEveryNodeByKind) {
  const uint32_t kinds[] = {SOPT_OBJVALUE, 0x1004, 0x100, 0x40, SOPT_OBJATTR, SOPT_OBJACSATTR};
  for (uint32_t flags : kinds) {
    SCOPED_TRACE(flags);
    long before = help_liveAllocations();
    MsgHeader *msg = simtest::newMessage(flags);
    for (int i = 0; i < 3; ++i) {
      if (flags & SOPT_OBJVALUE_MASK) {
        ObjList *obj = help_addObjList(static_cast<ObjList *>(msg->pObjList), "O", 0, 0, 0, 0);
        help_addParamList(obj, "P", 0, "v", 0);
        help_addParamList(obj, "Q", 0, "w", 0);
      } else if (flags & SOPT_OBJATTR) {
        auto *head = static_cast<ObjAttrList *>(msg->pObjList);
        help_addParamAttrList(help_addObjAttrList(head, "O", 0, 0), "P", 0, 0, 0, 0, 0, 0, 0, 0, 0);
      }
    }
    EXPECT_EQ(help_delMsg(msg, 1), 0);
    EXPECT_EQ(msg->pObjList, nullptr);
    EXPECT_EQ(help_liveAllocations(), before + 1);  // the header is still there
    EXPECT_EQ(help_delMsg(msg, 0), 0);
    EXPECT_EQ(help_liveAllocations(), before);
  }
  MsgHeader empty{};
  EXPECT_EQ(help_delMsg(&empty, 1), 0);
  EXPECT_EQ(help_delMsg(nullptr, 1), 0);
  EXPECT_EQ(help_emptyObjList(nullptr), 0);
  help_delObj(nullptr);
}

TEST(Helper, EmptyKeepsTheHeadAndDelObjUnlinksOneNode) {
  long before = help_liveAllocations();
  MsgHeader *msg = simtest::newMessage(SOPT_OBJVALUE);
  auto *head = static_cast<ObjList *>(msg->pObjList);
  help_addObjList(head, "A", 0, 0, 0, 0);
  ObjList *b = help_addObjList(head, "B", 0, 0, 0, 0);
  help_addParamList(b, "X", 0, "1", 0);
  help_addObjList(head, "C", 0, 0, 0, 0);

  help_delObj(b);
  EXPECT_EQ(dump(msg), "A()C()");
  EXPECT_EQ(help_emptyObjList(msg), 0);
  EXPECT_EQ(msg->pObjList, head);
  EXPECT_EQ(dump(msg), "");
  help_addObjList(head, "D", 0, 0, 0, 0);
  EXPECT_EQ(dump(msg), "D()");
  help_delMsg(msg, 0);
  EXPECT_EQ(help_liveAllocations(), before);
}

TEST(Helper, ListWithoutKindIsLeftAlone) {
  MsgHeader *msg = simtest::newMessage(SOPT_OBJVALUE);
  msg->unListFlags = 0x20;  // no kind bit: the layout of the list is unknown
  EXPECT_EQ(help_delMsg(msg, 1), -1);
  EXPECT_NE(msg->pObjList, nullptr);
  msg->unListFlags = SOPT_OBJVALUE;
  EXPECT_EQ(help_delMsg(msg, 0), 0);
}

}  // namespace

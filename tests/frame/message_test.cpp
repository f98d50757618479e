// Message building: list kinds, object and parameter nodes, release.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "caltofal.h"
#include "fake_os.h"
#include "frame/message.h"
#include "help_objlist.h"

namespace {

using caltofal::Message;
using caltofal::objectsOf;
using caltofal::paramsOf;

std::vector<std::string> objectNames(const Message &msg) {
  std::vector<std::string> names;
  for (ObjList *obj : objectsOf(msg)) names.emplace_back(obj->sObjName);
  return names;
}

class MessageTest : public ::testing::Test {
 protected:
  void SetUp() override { fakeos::reset(); }
};

TEST_F(MessageTest, CreateObjSetsWordsAndAnEmptyValueList) {
  Message msg;
  msg.get()->unReserved = 77;
  HELP_CREATE_OBJ(msg.get(), 2, 0x1004, 9);
  const MsgHeader *h = msg.get();
  EXPECT_EQ(h->unMainOper, 2u);
  EXPECT_EQ(h->unListFlags, 0x1004u);
  EXPECT_EQ(h->unOwner, 9u);
  EXPECT_EQ(h->unInit, 1u);
  EXPECT_EQ(h->unReserved, 0u);
  ASSERT_NE(h->pObjList, nullptr);
  auto *head = static_cast<ObjList *>(h->pObjList);
  EXPECT_EQ(head->xOlist.next, &head->xOlist);
  EXPECT_EQ(head->xOlist.prev, &head->xOlist);
}

TEST_F(MessageTest, ListFlagsWithoutKindLeaveListNullAndLogAtLevelThree) {
  for (uint16_t level : {2, 3}) {
    fakeos::reset();
    unfaltocalLogLevel = level;
    Message msg;
    HELP_CREATE_OBJ(msg.get(), 1, 0, 2);
    EXPECT_EQ(msg.get()->pObjList, nullptr);
    EXPECT_EQ(fakeos::syslogLines().size(), level >= 3 ? 1u : 0u);
  }
  unfaltocalLogLevel = 5;
  EXPECT_EQ(fakeos::syslogLines().at(0).second,
            "faltocal{HELP_CREATE_OBJ, 135}: Pass Proper Objlist Flag (i.e SOPT_OBJVALUE, "
            "SOPT_OBJATTR, SOPT_OBJACSATTR\n");
}

TEST_F(MessageTest, AttributeFlagsBuildAttributeNodes) {
  Message msg;
  HELP_CREATE_OBJ(msg.get(), 1, SOPT_OBJATTR, 2);
  void *node = nullptr;
  ASSERT_EQ(faltocal_FillObject(&node, msg.get()->pObjList, "Device.A.", 1, 8, SOPT_OBJATTR), 0);
  ASSERT_NE(node, nullptr);
  EXPECT_STREQ(static_cast<ObjAttrList *>(node)->sObjName, "Device.A.");
  auto *head = static_cast<ObjAttrList *>(msg.get()->pObjList);
  EXPECT_EQ(head->xOlist.next, &static_cast<ObjAttrList *>(node)->xOlist);
}

struct FillCase {
  uint32_t main;
  uint32_t sub;
  uint32_t flags;
  int result;
  bool nodeAdded;
  uint32_t objOper;
};

class FillObjectTest : public MessageTest, public ::testing::WithParamInterface<FillCase> {};

TEST_P(FillObjectTest, MainAndSubOperationDecideTheNode) {
  const FillCase c = GetParam();
  Message msg;
  HELP_CREATE_OBJ(msg.get(), c.main, SOPT_OBJVALUE, 2);
  void *sentinel = reinterpret_cast<void *>(0x1);
  void *node = sentinel;
  EXPECT_EQ(faltocal_FillObject(&node, msg.get()->pObjList, "Device.A.", c.main, c.sub, c.flags),
            c.result);
  EXPECT_EQ(objectNames(msg).size(), c.nodeAdded ? 1u : 0u);
  if (c.nodeAdded) {
    ASSERT_NE(node, sentinel);
    EXPECT_EQ(static_cast<ObjList *>(node)->unObjOper, c.objOper);
  }
}

INSTANTIATE_TEST_SUITE_P(Table, FillObjectTest,
                         ::testing::Values(FillCase{1, 8, 4, 0, true, 0},     // get ignores sub
                                           FillCase{1, 8, 0x1004, 0, true, 0},
                                           FillCase{1, 8, 0, -1, false, 0},   // no kind
                                           FillCase{2, 1, 4, 0, true, 1},     // add
                                           FillCase{2, 2, 4, 0, true, 2},     // del
                                           FillCase{2, 4, 4, 0, true, 4},     // set
                                           FillCase{2, 16, 4, -1, false, 0},  // act refused
                                           FillCase{2, 8, 4, -1, false, 0},   // get refused
                                           FillCase{128, 16, 4, 0, false, 0},
                                           FillCase{32, 4, 4, 0, false, 0}));

TEST_F(MessageTest, FillObjectWithoutKindLogsTheConstructionError) {
  Message msg;
  HELP_CREATE_OBJ(msg.get(), 1, SOPT_OBJVALUE, 2);
  void *node = nullptr;
  faltocal_FillObject(&node, msg.get()->pObjList, "Device.A.", 1, 8, 0);
  ASSERT_EQ(fakeos::syslogLines().size(), 1u);
  EXPECT_EQ(fakeos::syslogLines()[0].second,
            "faltocal{HELP_OBJECT_GET, 241}:Error in Objlist Construction, Pass proper flag(i.e "
            "SOPT_OBJVALUE, SOPT_OBJATTR\n");
}

TEST_F(MessageTest, FillParamByMainOperation) {
  Message msg;
  HELP_CREATE_OBJ(msg.get(), 2, SOPT_OBJVALUE, 2);
  void *node = nullptr;
  faltocal_FillObject(&node, msg.get()->pObjList, "Device.A.", 2, 4, 4);
  EXPECT_EQ(faltocal_FillParam(&node, 2, "Name", 0, "v1"), 0);
  EXPECT_EQ(faltocal_FillParam(&node, 1, "Other", 0, "ignored"), 0);
  EXPECT_EQ(faltocal_FillParam(&node, 64, "Skipped", 0, "x"), 0);
  EXPECT_EQ(faltocal_FillParam(&node, 2, nullptr, 7, "by-id"), 0);
  EXPECT_EQ(faltocal_FillParam(&node, 2, nullptr, 0, "x"), -1);
  std::vector<std::pair<std::string, std::string>> params;
  for (ParamList *p : paramsOf(static_cast<ObjList *>(node))) {
    params.emplace_back(p->sParamName, p->sParamValue);
    EXPECT_EQ(p->unParamId, 0u);
  }
  std::vector<std::pair<std::string, std::string>> expected = {
      {"Name", "v1"}, {"Other", ""}, {"", "by-id"}};
  EXPECT_EQ(params, expected);
  ASSERT_EQ(fakeos::syslogLines().size(), 1u);
  EXPECT_EQ(fakeos::syslogLines()[0].second,
            "faltocal{faltocal_FillParam, 120}:Either of Parameter Name or Param ID is mandatory\n");
}

TEST_F(MessageTest, CreateMessageAndFinalize) {
  MsgHeader *h = faltocal_createMessage(1, 0x44);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(h->unOwner, 2u);
  EXPECT_EQ(h->unListFlags, 0x44u);
  EXPECT_EQ(h->unInit, 1u);
  EXPECT_NE(h->pObjList, nullptr);
  EXPECT_EQ(faltocal_finalize(h), 0);
  EXPECT_EQ(h->pObjList, nullptr);
  EXPECT_EQ(faltocal_finalize(h), 0);  // a released list is released again harmlessly
  help_free(h);
  EXPECT_EQ(faltocal_finalize(nullptr), -1);
}

TEST_F(MessageTest, NullArgumentsFailInsteadOfCrashing) {
  EXPECT_EQ(faltocal_FillObject(nullptr, nullptr, "x", 1, 8, 4), -1);
  EXPECT_EQ(faltocal_FillParam(nullptr, 2, "n", 0, "v"), -1);
  EXPECT_EQ(faltocal_AddFilter(nullptr, "n", "v"), -1);
  void *node = nullptr;
  EXPECT_EQ(faltocal_FillObject(&node, nullptr, "x", 1, 8, 4), -1);
}

}  // namespace

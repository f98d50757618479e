// Message building: header words, list kinds, object and parameter nodes,
// release, and the NULL arguments of the frame's functions.
#include "frame/message.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "caltofal.h"
#include "fake_os.h"
#include "help_objlist.h"

namespace {

using caltofal::Message;
using Words = std::array<uint32_t, 5>;  // main, flags, owner, init, reserved
using Log = std::vector<std::pair<int, std::string>>;

Words words(const MsgHeader *h) {
  return {h->unMainOper, h->unListFlags, h->unOwner, h->unInit, h->unReserved};
}

class MessageTest : public ::testing::Test {
 protected:
  void SetUp() override { fakeos::reset(); }
  void TearDown() override { unfaltocalLogLevel = 5; }
};

TEST_F(MessageTest, CreateSetsTheWordsAndAnEmptyValueList) {
  Message msg;
  msg.get()->unReserved = 77;
  HELP_CREATE_OBJ(msg.get(), 2, 0x1004, 9);
  EXPECT_EQ(words(msg.get()), (Words{2, 0x1004, 9, 1, 0}));
  auto *head = static_cast<ObjList *>(msg.get()->pObjList);
  ASSERT_NE(head, nullptr);
  EXPECT_EQ(head->xOlist.next, &head->xOlist);
  EXPECT_EQ(head->xOlist.prev, &head->xOlist);

  MsgHeader *created = faltocal_createMessage(1, 0x44);
  ASSERT_NE(created, nullptr);
  EXPECT_EQ(words(created), (Words{1, 0x44, 2, 1, 0}));
  EXPECT_NE(created->pObjList, nullptr);
  EXPECT_EQ(faltocal_finalize(created), 0);
  EXPECT_EQ(created->pObjList, nullptr);
  EXPECT_EQ(faltocal_finalize(created), 0);  // a released list is released again harmlessly
  help_free(created);
}

TEST_F(MessageTest, FlagsWithoutAKindLeaveTheListNullAndLogFromLevelThree) {
  for (uint16_t level : {2, 3}) {
    fakeos::reset();
    unfaltocalLogLevel = level;
    Message msg;
    HELP_CREATE_OBJ(msg.get(), 1, 0, 2);
    EXPECT_EQ(msg.get()->pObjList, nullptr);
    const Log logged = {{3,
                         "faltocal{HELP_CREATE_OBJ, 135}: Pass Proper Objlist Flag (i.e "
                         "SOPT_OBJVALUE, SOPT_OBJATTR, SOPT_OBJACSATTR\n"}};
    EXPECT_EQ(fakeos::syslogLines(), level < 3 ? Log{} : logged);
  }
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

TEST_F(MessageTest, FillObjectByMainAndSubOperation) {
  // out: 'n' the new node, '0' NULL, 'k' *outNode kept as it was.
  struct {
    uint32_t main, sub, flags;
    int result;
    char out;
    uint32_t objOper;
  } cases[] = {
      {1, 8, 4, 0, 'n', 0},    {1, 8, 0x1004, 0, 'n', 0},  // a get ignores the sub-operation
      {1, 8, 0, -1, '0', 0},   {2, 1, 4, 0, 'n', 1},      {2, 2, 4, 0, 'n', 2},
      {2, 4, 4, 0, 'n', 4},    {2, 16, 4, -1, 'k', 0},    {2, 8, 4, -1, 'k', 0},
      {128, 16, 4, 0, 'k', 0}, {32, 4, 4, 0, 'k', 0},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(std::to_string(c.main) + "/" + std::to_string(c.sub));
    Message msg;
    HELP_CREATE_OBJ(msg.get(), c.main, SOPT_OBJVALUE, 2);
    void *node = &msg;
    EXPECT_EQ(faltocal_FillObject(&node, msg.get()->pObjList, "Device.A.", c.main, c.sub, c.flags),
              c.result);
    auto objects = caltofal::objectsOf(msg);
    EXPECT_EQ(objects.begin() != objects.end(), c.out == 'n');
    if (c.out == 'n') {
      ASSERT_EQ(node, *objects.begin());
      EXPECT_EQ(static_cast<ObjList *>(node)->unObjOper, c.objOper);
    } else {
      EXPECT_EQ(node, c.out == '0' ? nullptr : &msg);
    }
  }
  EXPECT_EQ(fakeos::syslogLines(),
            (Log{{3,
                  "faltocal{HELP_OBJECT_GET, 241}:Error in Objlist Construction, Pass proper "
                  "flag(i.e SOPT_OBJVALUE, SOPT_OBJATTR\n"}}));
}

TEST_F(MessageTest, FillParamByMainOperationAndAddFilter) {
  Message msg;
  HELP_CREATE_OBJ(msg.get(), 2, SOPT_OBJVALUE, 2);
  void *node = nullptr;
  faltocal_FillObject(&node, msg.get()->pObjList, "Device.A.", 2, 4, 4);
  EXPECT_EQ(faltocal_FillParam(&node, 2, "Name", 0, "v1"), 0);
  EXPECT_EQ(faltocal_FillParam(&node, 1, "Other", 0, "ignored"), 0);
  EXPECT_EQ(faltocal_FillParam(&node, 64, "Skipped", 0, "x"), 0);
  EXPECT_EQ(faltocal_FillParam(&node, 2, nullptr, 7, "by-id"), 0);
  EXPECT_EQ(faltocal_FillParam(&node, 2, nullptr, 0, "x"), -1);
  EXPECT_EQ(faltocal_AddFilter(&node, "Filter", "f"), 0);
  EXPECT_EQ(faltocal_AddFilter(&node, nullptr, "x"), -1);
  std::vector<std::pair<std::string, std::string>> params;
  for (ParamList *p : caltofal::paramsOf(static_cast<ObjList *>(node))) {
    params.emplace_back(p->sParamName, p->sParamValue);
    EXPECT_EQ(p->unParamId, 0u);
  }
  EXPECT_EQ(params,
            (decltype(params){{"Name", "v1"}, {"Other", ""}, {"", "by-id"}, {"Filter", "f"}}));
  const Log logged = {
      {3, "faltocal{faltocal_FillParam, 120}:Either of Parameter Name or Param ID is mandatory\n"},
      {3, "faltocal{faltocal_AddFilter, 139}:Either of Parameter Name  is mandatory\n"}};
  EXPECT_EQ(fakeos::syslogLines(), logged);
}

// Without a place for the node, a get or a set still adds its node (the
// message owns it) and gives -1; the other operations add nothing and give
// their 0. A NULL node is refused where a parameter would be added to it.
TEST_F(MessageTest, FillWithoutANodePointer) {
  const struct {
    uint32_t main, sub;
    int object;  // FillObject's result
    bool added;
    int param;  // FillParam's result
  } cases[] = {{1, 8, -1, true, -1},   {2, 4, -1, true, -1},   {2, 1, -1, true, -1},
               {2, 16, -1, false, -1}, {128, 16, 0, false, 0}, {32, 4, 0, false, 0}};
  for (const auto &c : cases) {
    SCOPED_TRACE(std::to_string(c.main) + "/" + std::to_string(c.sub));
    Message msg;
    HELP_CREATE_OBJ(msg.get(), c.main, SOPT_OBJVALUE, 2);
    EXPECT_EQ(faltocal_FillObject(nullptr, msg.get()->pObjList, "Device.A.", c.main, c.sub, 4),
              c.object);
    auto objects = caltofal::objectsOf(msg);
    ASSERT_EQ(objects.begin() != objects.end(), c.added);
    if (c.added) {
      EXPECT_STREQ(static_cast<ObjList *>(*objects.begin())->sObjName, "Device.A.");
      auto params = caltofal::paramsOf(static_cast<ObjList *>(*objects.begin()));
      EXPECT_FALSE(params.begin() != params.end());
    }
    EXPECT_EQ(faltocal_FillParam(nullptr, c.main, "Name", 0, "v"), c.param);
  }
  EXPECT_EQ(fakeos::syslogLines(), Log{});
}

TEST_F(MessageTest, NullArgumentsGiveTheFailureResult) {
  void *node = nullptr;
  EXPECT_EQ(faltocal_FillObject(&node, nullptr, "x", 1, 8, 4), -1);
  EXPECT_EQ(faltocal_AddFilter(nullptr, "n", "v"), -1);
  EXPECT_EQ(faltocal_finalize(nullptr), -1);
  EXPECT_EQ(faltocal_sendQuery(nullptr), -1);
  Message msg;
  // A NULL object is refused before the message is even initialised.
  EXPECT_EQ(faltocal_send_main(msg.get(), nullptr, "get", "get", 0), -1);
  EXPECT_EQ(faltocal_send_main_ToDb(msg.get(), nullptr, "set", "set", 1, "Enable", "1"), -1);
  EXPECT_EQ(msg.get()->pObjList, nullptr);
  char *text = nullptr;
  EXPECT_EQ(strupr(text), nullptr);
  EXPECT_EQ(remove_rss_tag(text, "<a>"), nullptr);
  reverse_string(text);
  zintu_InsertDotEndofObj(text);
  EXPECT_EQ(atob(nullptr), 0);
  EXPECT_EQ(itoa(5, nullptr), -1);
  EXPECT_EQ(zintu_isValidMacAddress(nullptr), -1);
  EXPECT_EQ(zintu_isValidIPv4Address(nullptr), -1);
  EXPECT_EQ(fakeos::console(), "");
  EXPECT_EQ(fakeos::syslogLines(), Log{});
}

}  // namespace

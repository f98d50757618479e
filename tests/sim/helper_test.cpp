// The object-list helper: linking order, bounded texts, release by kind.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "help_sim.h"
#include "sim_msg.h"

namespace {

ObjList *head(MsgHeader *msg) {
  return static_cast<ObjList *>(msg->pObjList);
}

TEST(Helper, AppendsAtTheTailWithBoundedTexts) {
  MsgHeader *msg = simtest::newMessage(SOPT_OBJVALUE);
  ObjList *a = help_addObjList(head(msg), "Device.A.", 1, 2, OBJOPT_ADD, 5);
  ObjList *b = help_addObjList(head(msg), nullptr, 0, 0, 0, 0);
  help_addParamList(a, "X", 7, "1", 3);
  help_addParamList(a, "Y", 0, nullptr, 0);
  help_addParamList(b, nullptr, 0, "v", 0);
  EXPECT_EQ(a->unObjOper, static_cast<uint32_t>(OBJOPT_ADD));
  // A value of 1 MiB from a configuration layer is cut like any other.
  const std::string name(300, 'n'), value(1 << 20, 'v'), cut = name.substr(0, 255);
  help_addParamList(help_addObjList(head(msg), name.c_str(), 0, 0, 0, 0), name.c_str(), 0,
                    value.c_str(), 0);
  EXPECT_EQ(simtest::dump(head(msg)),
            "Device.A.{X=1,Y=}\n{=v}\n" + cut + "{" + cut + "=" + value.substr(0, 1023) + "}\n");

  EXPECT_EQ(help_addObjList(nullptr, "Device.A.", 0, 0, 0, 0), nullptr);
  EXPECT_EQ(help_addObjAttrList(nullptr, "Device.A.", 0, 0), nullptr);
  EXPECT_EQ(help_addParamList(nullptr, "X", 0, "1", 0), nullptr);
  EXPECT_EQ(help_addParamAttrList(nullptr, "X", 0, 0, 0, 0, 0, 0, 0, 0, 0), nullptr);
  EXPECT_EQ(help_delMsg(msg, 0), 0);
}

// Every kind's nodes go back, whatever word 2 selects (ASan checks that each
// node is freed from its own start); a list of no known kind is left alone.
TEST(Helper, DelMsgReleasesNodesByKind) {
  for (uint32_t flags : {SOPT_OBJVALUE, 0x1004, 0x100, 0x40, SOPT_OBJATTR, SOPT_OBJACSATTR}) {
    SCOPED_TRACE(flags);
    long before = help_liveAllocations();
    MsgHeader *msg = simtest::newMessage(flags);
    for (int i = 0; i < 3; ++i) {
      if (flags & SOPT_OBJVALUE_MASK) {
        ObjList *obj = help_addObjList(head(msg), "O", 0, 0, 0, 0);
        help_addParamList(obj, "P", 0, "v", 0);
        help_addParamList(obj, "Q", 0, "w", 0);
      } else if (flags & SOPT_OBJATTR) {
        auto *attrs = static_cast<ObjAttrList *>(msg->pObjList);
        help_addParamAttrList(help_addObjAttrList(attrs, "O", 0, 0), "P", 0, 0, 0, 0, 0, 0, 0, 0,
                              0);
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

  MsgHeader *unknown = simtest::newMessage(SOPT_OBJVALUE);
  unknown->unListFlags = 0x20;  // no kind bit: the layout of the list is unknown
  EXPECT_EQ(help_delMsg(unknown, 1), -1);
  EXPECT_NE(unknown->pObjList, nullptr);
  unknown->unListFlags = SOPT_OBJVALUE;
  EXPECT_EQ(help_delMsg(unknown, 0), 0);
}

TEST(Helper, EmptyKeepsTheHeadAndDelObjUnlinksOneNode) {
  long before = help_liveAllocations();
  MsgHeader *msg = simtest::newMessage(SOPT_OBJVALUE);
  ObjList *list = head(msg);
  help_addObjList(list, "A", 0, 0, 0, 0);
  help_addParamList(help_addObjList(list, "B", 0, 0, 0, 0), "X", 0, "1", 0);
  help_addObjList(list, "C", 0, 0, 0, 0);
  help_delObj(HELP_OBJ_OF(list->xOlist.next->next));
  EXPECT_EQ(simtest::dump(list), "A{}\nC{}\n");
  EXPECT_EQ(help_emptyObjList(msg), 0);
  EXPECT_EQ(msg->pObjList, list);
  EXPECT_EQ(simtest::dump(list), "");
  help_addObjList(list, "D", 0, 0, 0, 0);
  EXPECT_EQ(simtest::dump(list), "D{}\n");
  help_delMsg(msg, 0);
  EXPECT_EQ(help_liveAllocations(), before);
}

// Freed nodes are reused by the thread that freed them: a reused node shows
// nothing of its former life to a reader, and help_calloc's blocks are
// zeroed whichever way they come.
TEST(Helper, ReusedNodesShowNothingOfTheirFormerContents) {
  const std::string longValue(1000, 'v');
  MsgHeader *msg = simtest::newMessage(SOPT_OBJVALUE);
  ObjList *obj = help_addObjList(head(msg), "Device.Old.Object.With.A.Long.Name", 9, 9, 4, 7);
  help_addParamList(obj, "OldParameterName", 5, longValue.c_str(), 6);
  help_emptyObjList(msg);

  obj = help_addObjList(head(msg), "D", 0, 0, 0, 0);
  ParamList *param = help_addParamList(obj, "N", 0, nullptr, 0);
  EXPECT_EQ(simtest::dump(head(msg)), "D{N=}\n");
  EXPECT_EQ(obj->unSid + obj->unOid + obj->unObjOper + obj->unObjFlag, 0u);
  EXPECT_EQ(param->unParamId + param->unParamFlag, 0u);
  EXPECT_EQ(help_delMsg(msg, 0), 0);

  for (uint32_t size :
       {static_cast<uint32_t>(sizeof(ParamList)), static_cast<uint32_t>(sizeof(ObjList)), 24u}) {
    auto *block = static_cast<unsigned char *>(help_calloc(1, size, "test", __LINE__));
    std::memset(block, 0xa5, size);
    help_free(block);
    block = static_cast<unsigned char *>(help_calloc(1, size, "test", __LINE__));
    EXPECT_EQ(std::count(block, block + size, 0), static_cast<long>(size)) << size;
    help_free(block);
  }
}

// Each thread keeps its own freed nodes; a thread that ends gives them back
// (the leak checker of the sanitizer build would see them otherwise).
TEST(Helper, ThreadsReuseTheirOwnNodesAndReleaseThemAtTheEnd) {
  const long before = help_liveAllocations();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([] {
      for (int round = 0; round < 50; ++round) {
        MsgHeader *msg = simtest::newMessage(SOPT_OBJVALUE);
        for (int i = 0; i < 20; ++i) {
          ObjList *obj = help_addObjList(head(msg), "Device.X", 0, 0, 0, 0);
          help_addParamList(obj, "A", 0, "1", 0);
        }
        help_delMsg(msg, 0);
      }
    });
  }
  for (std::thread &t : threads) t.join();
  EXPECT_EQ(help_liveAllocations(), before);
}

}  // namespace

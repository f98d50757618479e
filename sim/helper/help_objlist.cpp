// The object-list helper library: allocation, linking and release of the
// nodes of a request message. Stateless apart from the allocation counter.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "block_cache.h"

#pragma GCC visibility push(default)
#include "help_objlist.h"
#include "help_sim.h"
#pragma GCC visibility pop

namespace {

std::atomic<long> g_liveAllocations{0};
std::atomic<long> g_allocations{0};  // allocations so far
std::atomic<long> g_failAt{0};       // the call that returns NULL (0: none)

// Counts an allocation (help_calloc or a node of the help_add* functions);
// true for the one chosen to fail.
bool allocationFails() {
  long failAt = g_failAt.load(std::memory_order_relaxed);
  if (g_allocations.fetch_add(1, std::memory_order_relaxed) + 1 != failAt) return false;
  g_failAt.compare_exchange_strong(failAt, 0);
  return true;
}

enum class Kind { Value, Attribute, Access, None };

// The node kind of a message's list: the first matching test on word 2.
Kind kindOf(uint32_t listFlags) {
  if (listFlags & SOPT_OBJVALUE_MASK) return Kind::Value;
  if (listFlags & SOPT_OBJATTR) return Kind::Attribute;
  if (listFlags & SOPT_OBJACSATTR) return Kind::Access;
  return Kind::None;
}

// Copies at most cap - 1 characters and terminates; NULL copies "".
void copyBounded(char *dst, size_t cap, const char *src) {
  size_t n = src ? strnlen(src, cap - 1) : 0;
  if (n) memcpy(dst, src, n);
  dst[n] = '\0';
}

void initEmpty(HelpListLink *head) {
  head->next = head->prev = head;
}

void linkAtTail(HelpListLink *head, HelpListLink *node) {
  // A head that was zero-filled but never initialised counts as empty.
  if (head->next == nullptr || head->prev == nullptr) initEmpty(head);
  node->next = head;
  node->prev = head->prev;
  head->prev->next = node;
  head->prev = node;
}

// The record that holds a link at a fixed offset.
void *nodeOf(HelpListLink *link, size_t offset) {
  return reinterpret_cast<char *>(link) - offset;
}

// Releases every node of a list whose links sit `offset` bytes into their
// records, and leaves the head empty.
void freeNodes(HelpListLink *head, size_t offset) {
  HelpListLink *link = head->next;
  while (link != nullptr && link != head) {
    HelpListLink *next = link->next;
    // Releasing writes the next node's first line and reads its header.
    __builtin_prefetch(static_cast<char *>(nodeOf(next, offset)) - 16, 1);
    __builtin_prefetch(next->next, 0);
    help_free(nodeOf(link, offset));
    link = next;
  }
  initEmpty(head);
}

// Releases an object node's parameters, the node kinds being fixed per list kind.
void freeParams(ObjList *obj) {
  freeNodes(&obj->xParamList, offsetof(ParamList, xPlist));
}
void freeParams(ObjAttrList *obj) {
  freeNodes(&obj->xParamAttrList, offsetof(ParamAttrList, xPlist));
}
void freeParams(ObjACSList *obj) {
  freeNodes(&obj->xParamList, offsetof(ParamList, xPlist));
}

// Releases every object node (with its parameters) of a list; the head too
// when asked.
template <typename Obj>
void freeObjects(Obj *head, bool withHead) {
  HelpListLink *link = head->xOlist.next;
  while (link != nullptr && link != &head->xOlist) {
    HelpListLink *next = link->next;
    Obj *obj = static_cast<Obj *>(nodeOf(link, offsetof(Obj, xOlist)));
    freeParams(obj);
    help_free(obj);
    link = next;
  }
  initEmpty(&head->xOlist);
  if (withHead) {
    freeParams(head);
    help_free(head);
  }
}

// Releases a message's list by the kind that word 2 selects; false when
// word 2 names no kind (the list is then left alone: its layout is unknown).
bool releaseList(MsgHeader *msg, bool withHead) {
  switch (kindOf(msg->unListFlags)) {
    case Kind::Value:
      freeObjects(static_cast<ObjList *>(msg->pObjList), withHead);
      return true;
    case Kind::Attribute:
      freeObjects(static_cast<ObjAttrList *>(msg->pObjList), withHead);
      return true;
    case Kind::Access:
      freeObjects(static_cast<ObjACSList *>(msg->pObjList), withHead);
      return true;
    case Kind::None:
      break;
  }
  return false;
}

// A zeroed node named `name` for appending under `owner`; nullptr when there
// is no owner or no memory.
template <typename Node>
Node *newNamedNode(const void *owner, const char *name);

}  // namespace

extern "C" {

long help_liveAllocations(void) {
  return g_liveAllocations.load();
}

long help_allocationCount(void) {
  return g_allocations.load();
}

void help_failAllocationAt(long n) {
  g_failAt.store(n > 0 ? g_allocations.load() + n : 0);
}

void *help_calloc(uint32_t count, uint32_t size, const char *file, uint32_t line) {
  (void)file;
  (void)line;
  if (allocationFails()) return nullptr;
  if (size != 0 && static_cast<uint64_t>(count) > SIZE_MAX / size) return nullptr;
  const size_t total = static_cast<size_t>(count) * size;
  bool fresh = true;
  void *p = helpsim::takeBlock(total, &fresh);
  if (p == nullptr) return nullptr;
  if (!fresh) memset(p, 0, total);
  g_liveAllocations.fetch_add(1);
  return p;
}

void help_free(void *ptr) {
  if (ptr == nullptr) return;
  g_liveAllocations.fetch_sub(1);
  helpsim::giveBlock(ptr);
}

ObjList *help_addObjList(ObjList *head, const char *name, uint16_t sid, uint16_t oid, uint32_t oper,
                         uint32_t flag) {
  auto *obj = newNamedNode<ObjList>(head, name);
  if (obj == nullptr) return nullptr;
  obj->unSid = sid;
  obj->unOid = oid;
  obj->unObjOper = oper;
  obj->unObjFlag = flag;
  initEmpty(&obj->xParamList);
  linkAtTail(&head->xOlist, &obj->xOlist);
  return obj;
}

ObjAttrList *help_addObjAttrList(ObjAttrList *head, const char *name, uint16_t sid, uint16_t oid) {
  auto *obj = newNamedNode<ObjAttrList>(head, name);
  if (obj == nullptr) return nullptr;
  obj->unSid = sid;
  obj->unOid = oid;
  initEmpty(&obj->xParamAttrList);
  linkAtTail(&head->xOlist, &obj->xOlist);
  return obj;
}

ParamList *help_addParamList(ObjList *obj, const char *name, uint16_t id, const char *value,
                             uint32_t flag) {
  auto *param = newNamedNode<ParamList>(obj, name);
  if (param == nullptr) return nullptr;
  copyBounded(param->sParamValue, sizeof param->sParamValue, value);
  param->unParamId = id;
  param->unParamFlag = flag;
  linkAtTail(&obj->xParamList, &param->xPlist);
  return param;
}

ParamAttrList *help_addParamAttrList(ObjAttrList *obj, const char *name, uint16_t id, uint32_t flag,
                                     uint32_t notify, uint32_t accessList, uint32_t activeNotify,
                                     uint32_t notifyChange, uint32_t isUpdated, uint32_t inform,
                                     uint32_t reserved) {
  auto *param = newNamedNode<ParamAttrList>(obj, name);
  if (param == nullptr) return nullptr;
  param->unParamId = id;
  param->unParamFlag = flag;
  param->unNotify = notify;
  param->unAccessList = accessList;
  param->unActiveNotify = activeNotify;
  param->unNotifyChange = notifyChange;
  param->unIsUpdated = isUpdated;
  param->unInform = inform;
  param->unReserved = reserved;
  linkAtTail(&obj->xParamAttrList, &param->xPlist);
  return param;
}

int help_delMsg(MsgHeader *msg, int flag) {
  if (msg == nullptr) return 0;
  if (msg->pObjList != nullptr) {
    if (!releaseList(msg, true)) return -1;
    msg->pObjList = nullptr;
  }
  if (flag == 0) help_free(msg);
  return 0;
}

int help_emptyObjList(MsgHeader *msg) {
  if (msg == nullptr || msg->pObjList == nullptr) return 0;
  return releaseList(msg, false) ? 0 : -1;
}

void help_delObj(ObjList *obj) {
  if (obj == nullptr) return;
  HelpListLink *link = &obj->xOlist;
  if (link->next != nullptr && link->prev != nullptr && link->next != link) {
    link->prev->next = link->next;
    link->next->prev = link->prev;
  }
  freeParams(obj);
  help_free(obj);
}

}  // extern "C"

namespace {

// A node taken from the cache keeps its old bytes past its texts' ends,
// where no reader looks; everything a reader can see is set here or by the
// caller.
template <typename Node>
void clearVisible(Node *node) {
  if constexpr (std::is_same_v<Node, ParamList>) {
    node->sParamValue[0] = '\0';
    node->unParamId = 0;
    node->unParamFlag = 0;
    node->xPlist = HelpListLink{};
  } else if constexpr (std::is_same_v<Node, ParamAttrList>) {
    std::memset(&node->unParamId, 0, sizeof *node - offsetof(ParamAttrList, unParamId));
  } else {
    node->unSid = 0;
    node->unOid = 0;
    node->unObjOper = 0;
    node->unObjFlag = 0;
    std::memset(node->sReserved, 0, sizeof node->sReserved);
    std::memset(&node->xOlist, 0, sizeof node->xOlist);
  }
}

template <typename Node>
Node *newNamedNode(const void *owner, const char *name) {
  if (owner == nullptr || allocationFails()) return nullptr;
  bool fresh = true;
  auto *node = static_cast<Node *>(helpsim::takeBlock(sizeof(Node), &fresh));
  if (node == nullptr) return nullptr;
  g_liveAllocations.fetch_add(1);
  if (!fresh) clearVisible(node);
  if constexpr (std::is_same_v<Node, ParamList> || std::is_same_v<Node, ParamAttrList>) {
    copyBounded(node->sParamName, sizeof node->sParamName, name);
  } else {
    copyBounded(node->sObjName, sizeof node->sObjName, name);
  }
  return node;
}

}  // namespace

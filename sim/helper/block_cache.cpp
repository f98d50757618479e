#include "block_cache.h"

#include <pthread.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "help_objlist.h"

namespace helpsim {
namespace {

// Precedes every block: its size and its node class (-1 for none).
struct alignas(16) Header {
  std::size_t size;
  std::int64_t cls;
};

// The node sizes worth keeping, one free list each.
constexpr std::size_t kNodeSizes[] = {sizeof(ParamList), sizeof(ObjList), sizeof(ParamAttrList),
                                      sizeof(ObjAttrList), sizeof(ObjACSList)};
constexpr int kClasses = sizeof kNodeSizes / sizeof kNodeSizes[0];

int classOf(std::size_t size) {
  for (int i = 0; i < kClasses; ++i) {
    if (kNodeSizes[i] == size) return i;
  }
  return -1;
}

// Under AddressSanitizer nothing is kept by default: a freed node goes back
// to the allocator at once, so a read after release is caught.
#if defined(__SANITIZE_ADDRESS__)
constexpr unsigned long kDefaultMiB = 0;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr unsigned long kDefaultMiB = 0;
#else
constexpr unsigned long kDefaultMiB = 256;
#endif
#else
constexpr unsigned long kDefaultMiB = 256;
#endif

std::size_t readLimit() {
  const char *text = std::getenv("CALTOFAL_HELPER_CACHE");
  char *end = nullptr;
  unsigned long mib = text != nullptr ? std::strtoul(text, &end, 10) : kDefaultMiB;
  if (text != nullptr && (end == text || *end != '\0' || mib > (1UL << 20))) mib = kDefaultMiB;
  return static_cast<std::size_t>(mib) << 20;
}

// A freed node's first bytes hold the next free node of its class.
struct FreeNode {
  FreeNode *next;
};

// One thread's cache, plain data in the static TLS block (the library is
// loaded with the program), so reaching it costs no lookup call. What it
// holds goes back to the C library when the thread ends.
// Nodes are handed out in the order they were freed: a message is freed in
// list order, so the next one is built over the same memory front to back.
struct Cache {
  FreeNode *heads[kClasses];
  FreeNode *tails[kClasses];
  std::size_t bytes;
  bool registered;
};
__attribute__((tls_model("initial-exec"))) thread_local Cache t_cache;

void releaseCache(void *cache) {
  auto *c = static_cast<Cache *>(cache);
  for (FreeNode *&head : c->heads) {
    while (head != nullptr) {
      FreeNode *next = head->next;
      std::free(reinterpret_cast<Header *>(head) - 1);
      head = next;
    }
  }
  for (FreeNode *&tail : c->tails) tail = nullptr;
  c->bytes = 0;
}

pthread_key_t cacheKey() {
  static pthread_key_t key = [] {
    pthread_key_t k;
    pthread_key_create(&k, releaseCache);
    return k;
  }();
  return key;
}

// The lines of a free node that building it writes: its header and first
// line (the name, the free-list link), the value's start and its last line
// (numbers and links).
void prefetchNode(const FreeNode *node, int cls) {
  const char *at = reinterpret_cast<const char *>(node);
  __builtin_prefetch(at - sizeof(Header), 1);
  __builtin_prefetch(at, 1);
  __builtin_prefetch(at + 256, 1);
  __builtin_prefetch(at + kNodeSizes[cls] - sizeof(void *), 1);
}

void *take(int cls) {
  FreeNode *node = t_cache.heads[cls];
  if (node == nullptr) return nullptr;
  // A large answer reuses megabytes of nodes that have left the caches:
  // start loading the one after next while this one is built.
  if (FreeNode *next = node->next; next != nullptr && next->next != nullptr) {
    prefetchNode(next->next, cls);
  }
  t_cache.heads[cls] = node->next;
  if (node->next == nullptr) t_cache.tails[cls] = nullptr;
  t_cache.bytes -= kNodeSizes[cls];
  return node;
}

bool keep(int cls, void *block) {
  if (t_cache.bytes + kNodeSizes[cls] > cacheLimit()) return false;
  if (!t_cache.registered) {
    pthread_setspecific(cacheKey(), &t_cache);
    t_cache.registered = true;
  }
  auto *node = static_cast<FreeNode *>(block);
  node->next = nullptr;
  if (t_cache.tails[cls] != nullptr) {
    t_cache.tails[cls]->next = node;
  } else {
    t_cache.heads[cls] = node;
  }
  t_cache.tails[cls] = node;
  t_cache.bytes += kNodeSizes[cls];
  return true;
}

}  // namespace

std::size_t cacheLimit() {
  static const std::size_t limit = readLimit();
  return limit;
}

void *takeBlock(std::size_t size, bool *fresh) {
  const int cls = classOf(size);
  if (cls >= 0) {
    if (void *block = take(cls)) {
      *fresh = false;
      return block;
    }
  }
  if (size > SIZE_MAX - sizeof(Header)) return nullptr;
  auto *header = static_cast<Header *>(std::calloc(1, sizeof(Header) + size));
  if (header == nullptr) return nullptr;
  header->size = size;
  header->cls = cls;
  *fresh = true;
  return header + 1;
}

void giveBlock(void *block) {
  Header *header = static_cast<Header *>(block) - 1;
  const auto cls = static_cast<int>(header->cls);
  if (cls >= 0 && keep(cls, block)) return;
  std::free(header);
}

}  // namespace helpsim

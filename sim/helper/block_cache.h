// The helper library's memory: blocks with a small header that records their
// size, and a per-thread cache of freed message nodes. A message is built and
// released node by node on every request; handing each node back to the C
// library and asking for it again costs more than the request's own work,
// and a large message released at once is trimmed back to the kernel only to
// be faulted in again by the next one.
#pragma once

#include <cstddef>

namespace helpsim {

// A block of `size` bytes. Blocks of the sizes of message nodes come from
// the calling thread's cache when it holds one, with their old contents
// (`fresh` is then false); any other block is new and zeroed.
void *takeBlock(std::size_t size, bool *fresh);

// Releases a block of takeBlock: a node is kept in the calling thread's cache
// while the cache holds less than its limit, anything else goes back to the
// C library.
void giveBlock(void *block);

// The limit of each thread's cache in bytes (CALTOFAL_HELPER_CACHE, in MiB,
// 0 to keep nothing; default 256, or 0 under AddressSanitizer).
std::size_t cacheLimit();

}  // namespace helpsim

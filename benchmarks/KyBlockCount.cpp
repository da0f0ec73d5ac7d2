// Counts the blocks of the heap, in place of the C library's functions and for everything in this process.
#include "KyBlockCount.h"

#include <cstddef>

namespace
{
long s_blocks = 0;

void* counted(void* block)
{
  if (block != nullptr) ++s_blocks;
  return block;
}
}    // namespace

extern "C"
{
  void* __libc_malloc(std::size_t size);
  void* __libc_calloc(std::size_t count, std::size_t size);
  void* __libc_realloc(void* block, std::size_t size);
  void* __libc_memalign(std::size_t alignment, std::size_t size);
  void __libc_free(void* block);

  void* malloc(std::size_t size) { return counted(__libc_malloc(size)); }
  void* calloc(std::size_t count, std::size_t size) { return counted(__libc_calloc(count, size)); }
  void* aligned_alloc(std::size_t alignment, std::size_t size) { return counted(__libc_memalign(alignment, size)); }
  void* realloc(void* block, std::size_t size)
  {
    if (block == nullptr) return malloc(size);
    return __libc_realloc(block, size);
  }
  void free(void* block)
  {
    if (block != nullptr) --s_blocks;
    __libc_free(block);
  }

  long kyBlocksInUse() { return s_blocks; }
}

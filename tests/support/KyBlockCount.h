// KyBlockCount.h: counts every allocation of the process. For one source of a program of its own, as it replaces the C
// allocator's functions.
//
//   const KyCBlockCount blocks;
//   lookUp();
//   EXPECT_EQ(blocks.get(), 0u);
#pragma once

#include <cstddef>

// The sanitizers need the C allocator for themselves; nothing is counted then, and KY_COUNTS_BLOCKS is 0.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KY_COUNTS_BLOCKS 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define KY_COUNTS_BLOCKS 0
#endif
#endif
#ifndef KY_COUNTS_BLOCKS
#define KY_COUNTS_BLOCKS 1
#endif

namespace
{
unsigned int s_blocks = 0;

class KyCBlockCount
{
public:
  KyCBlockCount() : m_before(s_blocks) {}
  unsigned int get() const { return s_blocks - m_before; }

private:
  unsigned int m_before;
};
}    // namespace

#if KY_COUNTS_BLOCKS
extern "C"
{
  void* __libc_malloc(std::size_t size);
  void* __libc_realloc(void* block, std::size_t size);

  void* malloc(std::size_t size)    // operator new ends here, too
  {
    ++s_blocks;
    return __libc_malloc(size);
  }
  void* realloc(void* block, std::size_t size)
  {
    ++s_blocks;
    return __libc_realloc(block, size);
  }
}
#endif

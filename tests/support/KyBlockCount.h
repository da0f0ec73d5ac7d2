// KyBlockCount.h: counts every allocation of the process, and lets them fail. For one source of a program of its own, as it
// replaces the C allocator's functions.
//
//   const KyCBlockCount blocks;
//   lookUp();
//   EXPECT_EQ(blocks.get(), 0u);
//
//   const KyCBlockLimit limit(2);    // as long as it lives, there is memory for two blocks more
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

unsigned int s_blocksLeft = 0xFFFFFFFFu;

class KyCBlockLimit
{
public:
  explicit KyCBlockLimit(unsigned int blocks) { s_blocksLeft = blocks; }
  ~KyCBlockLimit() { s_blocksLeft = 0xFFFFFFFFu; }
  KyCBlockLimit(const KyCBlockLimit&) = delete;
  KyCBlockLimit& operator=(const KyCBlockLimit&) = delete;
};

[[maybe_unused]] bool takeBlock()
{
  ++s_blocks;
  if (s_blocksLeft == 0) return false;
  if (s_blocksLeft != 0xFFFFFFFFu) --s_blocksLeft;
  return true;
}
}    // namespace

#if KY_COUNTS_BLOCKS
extern "C"
{
  void* __libc_malloc(std::size_t size);
  void* __libc_realloc(void* block, std::size_t size);

  void* malloc(std::size_t size)    // operator new ends here, too
  {
    return takeBlock() ? __libc_malloc(size) : nullptr;
  }
  void* realloc(void* block, std::size_t size) { return takeBlock() ? __libc_realloc(block, size) : nullptr; }
}
#endif

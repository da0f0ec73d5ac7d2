// KyFaultyHeap.cpp: the allocator of the program, whatever calls it.
#include "faults/KyFaultyHeap.h"

#include <malloc.h>

#include <cerrno>
#include <cstdlib>
#include <new>

namespace KyFaultyHeap
{
namespace
{
bool mustFail()
{
  if (s_toFailure == 0) return false;
  if (s_toFailure > 1)
  {
    --s_toFailure;
    return false;
  }
  s_wasHit = true;
  if (!s_isForEver) s_toFailure = 0;
  errno = ENOMEM;
  return true;
}

void* born(void* block)
{
  if (block == nullptr) return block;
  ++s_liveBlocks;
  s_liveBytes += malloc_usable_size(block);
  if (s_liveBytes > s_peakBytes) s_peakBytes = s_liveBytes;
  return block;
}

void gone(void* block)
{
  if (block == nullptr) return;
  --s_liveBlocks;
  s_liveBytes -= malloc_usable_size(block);
}
}    // namespace
}    // namespace KyFaultyHeap

#if KY_HAS_WHOLE_HEAP
// The C library's own allocator under the names that it has besides.
extern "C"
{
  void* __libc_malloc(std::size_t size);
  void* __libc_calloc(std::size_t count, std::size_t size);
  void* __libc_realloc(void* block, std::size_t size);
  void* __libc_memalign(std::size_t alignment, std::size_t size);
  void __libc_free(void* block);

  void* malloc(std::size_t size)
  {
    return KyFaultyHeap::mustFail() ? nullptr : KyFaultyHeap::born(__libc_malloc(size));
  }
  void* calloc(std::size_t count, std::size_t size)
  {
    return KyFaultyHeap::mustFail() ? nullptr : KyFaultyHeap::born(__libc_calloc(count, size));
  }
  void* realloc(void* block, std::size_t size)
  {
    if (KyFaultyHeap::mustFail()) return nullptr;
    const std::size_t before = block != nullptr ? malloc_usable_size(block) : 0;
    void* const grown = __libc_realloc(block, size);
    const bool isFreed = grown == nullptr && size == 0;
    if (grown == nullptr && !isFreed) return nullptr;
    if (block != nullptr)
    {
      --KyFaultyHeap::s_liveBlocks;
      KyFaultyHeap::s_liveBytes -= before;
    }
    return KyFaultyHeap::born(grown);
  }
  void* memalign(std::size_t alignment, std::size_t size)
  {
    return KyFaultyHeap::mustFail() ? nullptr : KyFaultyHeap::born(__libc_memalign(alignment, size));
  }
  void* aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }
  int posix_memalign(void** block, std::size_t alignment, std::size_t size)
  {
    *block = memalign(alignment, size);
    return *block != nullptr ? 0 : ENOMEM;
  }
  void free(void* block)
  {
    KyFaultyHeap::gone(block);
    __libc_free(block);
  }
}
namespace KyFaultyHeap
{
static void* take(std::size_t size) { return malloc(size != 0 ? size : 1); }
static void* takeAligned(std::size_t size, std::size_t alignment) { return memalign(alignment, size != 0 ? size : 1); }
static void give(void* block) { free(block); }
}    // namespace KyFaultyHeap
#else
namespace KyFaultyHeap
{
static void* take(std::size_t size) { return mustFail() ? nullptr : born(std::malloc(size != 0 ? size : 1)); }
static void* takeAligned(std::size_t size, std::size_t alignment)
{
  void* block = nullptr;
  if (mustFail() || ::posix_memalign(&block, alignment, size != 0 ? size : 1) != 0) return nullptr;
  return born(block);
}
static void give(void* block)
{
  gone(block);
  std::free(block);
}
}    // namespace KyFaultyHeap
#endif

namespace KyFaultyHeap
{
static void* orThrow(void* block)
{
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
}    // namespace KyFaultyHeap

// All forms of the operators.
// clang-format off
void* operator new(std::size_t size) { return KyFaultyHeap::orThrow(KyFaultyHeap::take(size)); }
void* operator new[](std::size_t size) { return KyFaultyHeap::orThrow(KyFaultyHeap::take(size)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return KyFaultyHeap::take(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return KyFaultyHeap::take(size); }
void* operator new(std::size_t size, std::align_val_t alignment)
{
  return KyFaultyHeap::orThrow(KyFaultyHeap::takeAligned(size, static_cast<std::size_t>(alignment)));
}
void* operator new[](std::size_t size, std::align_val_t alignment)
{
  return KyFaultyHeap::orThrow(KyFaultyHeap::takeAligned(size, static_cast<std::size_t>(alignment)));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept
{
  return KyFaultyHeap::takeAligned(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept
{
  return KyFaultyHeap::takeAligned(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept { KyFaultyHeap::give(block); }
void operator delete[](void* block) noexcept { KyFaultyHeap::give(block); }
void operator delete(void* block, std::size_t) noexcept { KyFaultyHeap::give(block); }
void operator delete[](void* block, std::size_t) noexcept { KyFaultyHeap::give(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { KyFaultyHeap::give(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { KyFaultyHeap::give(block); }
void operator delete(void* block, std::align_val_t) noexcept { KyFaultyHeap::give(block); }
void operator delete[](void* block, std::align_val_t) noexcept { KyFaultyHeap::give(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { KyFaultyHeap::give(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { KyFaultyHeap::give(block); }
void operator delete(void* block, std::align_val_t, const std::nothrow_t&) noexcept { KyFaultyHeap::give(block); }
void operator delete[](void* block, std::align_val_t, const std::nothrow_t&) noexcept { KyFaultyHeap::give(block); }
// clang-format on

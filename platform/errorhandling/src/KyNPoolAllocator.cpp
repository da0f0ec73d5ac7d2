// KyNPoolAllocator.cpp: allocation that reports instead of throwing.
#include "errorhandling/KyNPoolAllocator.h"

#include <atomic>
#include <climits>
#include <cstdlib>

#include "KyErrorHandlingMessages.h"

namespace
{
std::atomic<unsigned int> s_allocationsToFailure{0};    // counts down to the one that fails; 0: none is to fail

bool countsDownToZero() noexcept
{
  unsigned int left = s_allocationsToFailure.load(std::memory_order_relaxed);
  while (left != 0 && !s_allocationsToFailure.compare_exchange_weak(left, left - 1, std::memory_order_relaxed))
  {
  }
  return left == 1;
}

inline bool mustFail() noexcept
{
  return s_allocationsToFailure.load(std::memory_order_relaxed) != 0 && countsDownToZero();
}

void* checked(void* block, KyCErrorListPool& pool, const char* function) noexcept
{
  if (block == nullptr) pool.setError(KY_MSG_ERRORHANDLING_OUT_OF_MEMORY, __LINE__, function, nullptr);
  return block;
}

std::size_t atLeastOne(std::size_t size) noexcept { return size != 0 ? size : 1; }
}    // namespace

void* operator new(std::size_t size, KyCErrorListPool& pool) noexcept
{
  return checked(mustFail() ? nullptr : ::operator new(size, std::nothrow), pool, "operator new");
}

void* operator new[](std::size_t size, KyCErrorListPool& pool) noexcept
{
  return checked(mustFail() ? nullptr : ::operator new[](size, std::nothrow), pool, "operator new[]");
}

void operator delete(void* block, KyCErrorListPool&) noexcept { ::operator delete(block); }

void operator delete[](void* block, KyCErrorListPool&) noexcept { ::operator delete[](block); }

void KyNPoolAllocator::failAfter(unsigned int n) noexcept
{
  s_allocationsToFailure.store(n != UINT_MAX ? n + 1 : UINT_MAX, std::memory_order_relaxed);
}

void KyNPoolAllocator::reset() noexcept { s_allocationsToFailure.store(0, std::memory_order_relaxed); }

void* KyNPoolAllocator::allocate(KyCErrorListPool& pool, std::size_t size) noexcept
{
  return checked(mustFail() ? nullptr : std::malloc(atLeastOne(size)), pool, "allocate");
}

void* KyNPoolAllocator::reallocate(KyCErrorListPool& pool, void* block, std::size_t size) noexcept
{
  return checked(mustFail() ? nullptr : std::realloc(block, atLeastOne(size)), pool, "reallocate");
}

void KyNPoolAllocator::release(void* block) noexcept { std::free(block); }

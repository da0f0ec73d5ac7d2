// KyNPoolAllocator.h: allocation that reports into a pool and returns null instead of throwing.
#pragma once

#include <cstddef>
#include <new>

#include "errorhandling/KyCErrorListPool.h"

// Same heap as the global operators: release with the ordinary delete. Null when memory is exhausted; "Out of memory."
// is then recorded in the pool.
KY_ERRORHANDLING_API void* operator new(std::size_t size, KyCErrorListPool& pool) noexcept;
KY_ERRORHANDLING_API void* operator new[](std::size_t size, KyCErrorListPool& pool) noexcept;
// Called by the compiler alone, when a constructor throws.
KY_ERRORHANDLING_API void operator delete(void* block, KyCErrorListPool& pool) noexcept;
KY_ERRORHANDLING_API void operator delete[](void* block, KyCErrorListPool& pool) noexcept;

namespace KyNPoolAllocator
{
// For tests: the (n+1)-th pool allocation from now on fails, once. reset() ends that.
KY_ERRORHANDLING_API void failAfter(unsigned int n) noexcept;
KY_ERRORHANDLING_API void reset() noexcept;

// The C allocator under the same rules (null and a report when memory is exhausted, counted by failAfter), for storage
// that grows in place. reallocate leaves the block as it was when it fails. Release with release().
KY_ERRORHANDLING_API void* allocate(KyCErrorListPool& pool, std::size_t size) noexcept;
KY_ERRORHANDLING_API void* reallocate(KyCErrorListPool& pool, void* block, std::size_t size) noexcept;
KY_ERRORHANDLING_API void release(void* block) noexcept;
}    // namespace KyNPoolAllocator

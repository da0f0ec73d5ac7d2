// KyNPoolAllocator.h: allocation that reports into a pool and returns null instead of throwing.
//
//   KyCThing* const thing = new (pool) KyCThing(12);
//   if (thing == nullptr) return false;    // "Out of memory." is in the pool
//   delete thing;
//
// Any thread may use these functions at any time; a pool, as always, is for one thread at a time.
#pragma once

#include <cstddef>
#include <new>

#include "errorhandling/KyCErrorListPool.h"

// Memory from the heap of the global operators: release objects with the ordinary delete.
// Result: a block of at least size bytes; null when memory is exhausted, and then no constructor runs. An array length
//         whose size in bytes overflows is the compiler's business: code built by g++ throws std::bad_array_new_length
//         and does not come here, code built by clang++ asks for SIZE_MAX bytes, of which there are never that many.
// Errors: 0x1000000  memory is exhausted (function "operator new" or "operator new[]")
KY_ERRORHANDLING_API void* operator new(std::size_t size, KyCErrorListPool& pool) noexcept;
KY_ERRORHANDLING_API void* operator new[](std::size_t size, KyCErrorListPool& pool) noexcept;
// Called by the compiler alone, when a constructor throws. Cannot fail.
KY_ERRORHANDLING_API void operator delete(void* block, KyCErrorListPool& pool) noexcept;
KY_ERRORHANDLING_API void operator delete[](void* block, KyCErrorListPool& pool) noexcept;

namespace KyNPoolAllocator
{
// For tests: of all pool allocations of the process, the (n+1)-th from now on fails as if memory were exhausted, once;
// those behind it succeed again. n: 0 .. 2^32 - 2. Replaces an earlier call's wish. Cannot fail.
KY_ERRORHANDLING_API void failAfter(unsigned int n) noexcept;
// Ends that: no allocation is to fail. Cannot fail.
KY_ERRORHANDLING_API void reset() noexcept;

// The C allocator under the same rules, for storage that grows in place: null and a report when memory is exhausted,
// counted by failAfter. reallocate takes a null block for a new one, and leaves the block as it was when it fails.
//
//   size  in bytes; 0 gives a block too
//
// Errors:    0x1000000  memory is exhausted (function "allocate" or "reallocate")
// Ownership: the caller's; end it with release.
KY_ERRORHANDLING_API void* allocate(KyCErrorListPool& pool, std::size_t size) noexcept;
KY_ERRORHANDLING_API void* reallocate(KyCErrorListPool& pool, void* block, std::size_t size) noexcept;
// Frees a block of the two; null is ignored. Cannot fail.
KY_ERRORHANDLING_API void release(void* block) noexcept;
}    // namespace KyNPoolAllocator

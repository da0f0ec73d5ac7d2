// KyFaultyHeap.h: the heap of a test program: counts what lives on it, and lets the n-th allocation fail. A program
// that uses it lists tests/faults/KyFaultyHeap.cpp among its sources, which replaces the C allocator's functions and the
// global operators new and delete.
//
//   const std::size_t before = KyFaultyHeap::liveBlocks();
//   KyFaultyHeap::arm(3, KyFaultyHeap::ONCE);     // the third allocation from here on fails
//   work();
//   const bool wasHit = KyFaultyHeap::disarm();
//
// Sanitizers need the C allocator for themselves: with them only the operators are counted and made to fail, and what the
// libraries take from malloc and realloc is not (KY_HAS_WHOLE_HEAP is 0).
#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KY_HAS_WHOLE_HEAP 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define KY_HAS_WHOLE_HEAP 0
#endif
#endif
#ifndef KY_HAS_WHOLE_HEAP
#define KY_HAS_WHOLE_HEAP 1
#endif

namespace KyFaultyHeap
{
enum TEnd
{
  ONCE,       // the next one succeeds again
  FOR_EVER    // so do all behind it, until disarm
};

// Plain numbers, set before any constructor runs: the C library allocates early. One thread allocates at a time.
inline std::size_t s_liveBlocks = 0;
inline std::size_t s_liveBytes = 0;
inline std::size_t s_peakBytes = 0;
inline unsigned int s_toFailure = 0;    // counts down to the one that fails; 0: none is to fail
inline bool s_isForEver = false;
inline bool s_wasHit = false;

inline std::size_t liveBlocks() { return s_liveBlocks; }

inline void arm(unsigned int n, TEnd end)
{
  s_isForEver = end == FOR_EVER;
  s_wasHit = false;
  s_toFailure = n;
}

// Whether an allocation has failed since.
inline bool disarm()
{
  s_toFailure = 0;
  return s_wasHit;
}

// What is live from here on is measured: peakSince tells how many bytes more there were at once.
inline std::size_t startPeak()
{
  s_peakBytes = s_liveBytes;
  return s_liveBytes;
}
inline std::size_t peakSince(std::size_t start) { return s_peakBytes - start; }
}    // namespace KyFaultyHeap

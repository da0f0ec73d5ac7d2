// KyPoolFailure.h: pool allocations that fail.
#pragma once

#include "errorhandling/KyNPoolAllocator.h"

constexpr unsigned int OUT_OF_MEMORY = 0x01000000;

// As long as it lives, the (n+1)-th pool allocation from now on fails.
class KyFailNext
{
public:
  explicit KyFailNext(unsigned int n) { KyNPoolAllocator::failAfter(n); }
  ~KyFailNext() { KyNPoolAllocator::reset(); }
  KyFailNext(const KyFailNext&) = delete;
  KyFailNext& operator=(const KyFailNext&) = delete;
};

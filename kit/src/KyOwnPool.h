// KyOwnPool.h: pools whose reports are not the caller's.
#pragma once

#include <new>

#include "errorhandling/KyCErrorListPool.h"

namespace KyNInventoryKit
{
// What is recorded in a pool that nobody else sees must not be taken for a property of a file or a value when it is the
// memory that was missing: throws std::bad_alloc then. A report that could not even be described counts as such.
inline void kyThrowIfOutOfMemory(const KyCErrorListPool& own)
{
  constexpr unsigned int outOfMemory = 0x1000000;    // the error-handling library's
  bool isMissing = own.getEntryCount() != own.getErrorCount();
  for (unsigned int n = 0; n < own.getEntryCount(); ++n)
    isMissing = isMissing || own.getEntry(n).code == outOfMemory;
  if (isMissing) throw std::bad_alloc();
}
}    // namespace KyNInventoryKit
